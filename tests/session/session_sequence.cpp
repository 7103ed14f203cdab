// The order of presentation, against plain procedures and counts.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/TrialSequence.h"
#include "support/LogLines.h"
#include "test_session.h"

#include <QHash>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <random>

#include <sys/resource.h>

namespace {

/// The order by the plainest procedure: first every draw, then every exchange.
QVector<int> shuffledPlainly(QVector<int> entries, std::mt19937 generator) {
    QVector<int> draws;
    for (int left = entries.size(); left >= 2; --left)
        draws.append(std::uniform_int_distribution<int>(0, left - 1)(generator));
    for (int i = 0; i < draws.size(); ++i) {
        const int held = entries[i];
        entries[i] = entries[i + draws[i]];
        entries[i + draws[i]] = held;
    }
    return entries;
}

QVector<int> sorted(QVector<int> entries) {
    std::sort(entries.begin(), entries.end());
    return entries;
}

/// Counts the occurrences of each order; an order is identified by its digits.
class OrderCounts {
public:
    void add(const QVector<int>& order) {
        int digits = 0;
        for (const int entry : order)
            digits = digits * 10 + entry;
        ++counts[digits];
    }

    int differentOrders() const { return counts.size(); }

    /// Pearson's chi-squared statistic of the counts, against equal shares.
    double chiSquared(int drawn) const {
        const double share = double(drawn) / counts.size();
        double sum = 0;
        for (const int count : counts)
            sum += (count - share) * (count - share) / share;
        return sum;
    }

private:
    QHash<int, int> counts;
};

/// Seven standard deviations above the mean of the chi-squared distribution: a fair shuffle
/// exceeds it less than once in 10^8 times.
double fairLimit(int degreesOfFreedom) {
    return degreesOfFreedom + 7 * std::sqrt(2.0 * degreesOfFreedom);
}

struct CountingGenerator {
    using result_type = std::mt19937::result_type;
    static constexpr result_type min() { return std::mt19937::min(); }
    static constexpr result_type max() { return std::mt19937::max(); }
    result_type operator()() {
        ++draws;
        return generator();
    }

    std::mt19937 generator;
    int draws = 0;
};

} // namespace

void TestTrialSequence::filesInOrderOncePerRepetition_data() {
    QTest::addColumn<int>("nRepetitions");
    QTest::addColumn<int>("nFiles");
    QTest::addColumn<QVector<int>>("trials");
    QTest::newRow("nothing") << 0 << 0 << QVector<int>{};
    QTest::newRow("no repetition") << 0 << 3 << QVector<int>{};
    QTest::newRow("no file") << 3 << 0 << QVector<int>{};
    QTest::newRow("one file once") << 1 << 1 << QVector<int>{0};
    QTest::newRow("one file three times") << 3 << 1 << QVector<int>{0, 0, 0};
    QTest::newRow("four files once") << 1 << 4 << QVector<int>{0, 1, 2, 3};
    QTest::newRow("three files twice") << 2 << 3 << QVector<int>{0, 1, 2, 0, 1, 2};
}

void TestTrialSequence::filesInOrderOncePerRepetition() {
    QFETCH(int, nRepetitions);
    QFETCH(int, nFiles);
    QTEST(orderedTrials(nRepetitions, nFiles), "trials");
}

void TestTrialSequence::shuffleFollowsThePlainProcedure_data() {
    QTest::addColumn<int>("length");
    QTest::addColumn<quint32>("seed");
    for (const int length : {2, 3, 4, 10, 1000})
        for (const quint32 seed : {0U, 5489U, 4294967295U})
            QTest::addRow("%d entries, seed %u", length, seed) << length << seed;
}

void TestTrialSequence::shuffleFollowsThePlainProcedure() {
    QFETCH(int, length);
    QFETCH(quint32, seed);
    const QVector<int> inOrder = orderedTrials(1, length);
    QVector<int> trials = inOrder;
    std::mt19937 generator(seed);
    shuffleTrials(trials, generator);
    QCOMPARE(trials, shuffledPlainly(inOrder, std::mt19937(seed)));
    QCOMPARE(sorted(trials), inOrder);
}

void TestTrialSequence::oneEntryOrNoneDrawsNothing_data() {
    QTest::addColumn<QVector<int>>("trials");
    QTest::newRow("none") << QVector<int>{};
    QTest::newRow("one") << QVector<int>{7};
}

void TestTrialSequence::oneEntryOrNoneDrawsNothing() {
    QFETCH(QVector<int>, trials);
    const QVector<int> before = trials;
    CountingGenerator generator;
    shuffleTrials(trials, generator);
    QCOMPARE(trials, before);
    QCOMPARE(generator.draws, 0);
    QVector<int> two{1, 2};
    shuffleTrials(two, generator);
    QVERIFY(generator.draws > 0);
}

void TestTrialSequence::everyOrderOfAShuffleIsEquallyLikely() {
    constexpr int entries = 5;
    constexpr int orders = 120;
    constexpr int shuffles = 120000;
    std::mt19937 generator(5489);
    OrderCounts counts;
    for (int i = 0; i < shuffles; ++i) {
        QVector<int> trials = orderedTrials(1, entries);
        shuffleTrials(trials, generator);
        counts.add(trials);
    }
    QCOMPARE(counts.differentOrders(), orders);
    const double deviation = counts.chiSquared(shuffles);
    QVERIFY2(deviation < fairLimit(orders - 1), qPrintable(QString::number(deviation)));
}

void TestTrialSequence::everyOrderOfRandomTrialsIsEquallyLikely() {
    constexpr int orders = 6;
    constexpr int sequences = 3000;
    // With few degrees of freedom the tail is longer than the normal one: 60 is exceeded once in
    // 10^11 times.
    constexpr double limit = 60;
    OrderCounts counts;
    for (int i = 0; i < sequences; ++i)
        counts.add(randomTrials(1, 3));
    QCOMPARE(counts.differentOrders(), orders);
    const double deviation = counts.chiSquared(sequences);
    QVERIFY2(deviation < limit, qPrintable(QString::number(deviation)));
}

void TestTrialSequence::randomTrialsHoldEveryFileOncePerRepetition_data() {
    filesInOrderOncePerRepetition_data();
}

void TestTrialSequence::randomTrialsHoldEveryFileOncePerRepetition() {
    QFETCH(int, nRepetitions);
    QFETCH(int, nFiles);
    QFETCH(QVector<int>, trials);
    QCOMPARE(sorted(randomTrials(nRepetitions, nFiles)), sorted(trials));
}

void TestTrialSequence::twoRandomSequencesDiffer() {
    constexpr int files = 50;
    const QVector<int> first = randomTrials(1, files);
    QVERIFY(first != randomTrials(1, files));
    QVERIFY(first != orderedTrials(1, files));
}

void TestTrialSequence::missingRandomDeviceIsReplacedByTheClockAndLogged() {
    constexpr int files = 50;
    rlimit before{};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &before), 0);
    QVector<int> trials;
    QVector<int> others;
    const testsupport::LogLines log;
    {
        // No file descriptor is free for the device.
        const rlimit none{0, before.rlim_max};
        QCOMPARE(setrlimit(RLIMIT_NOFILE, &none), 0);
        trials = randomTrials(1, files);
        others = randomTrials(1, files);
        QCOMPARE(setrlimit(RLIMIT_NOFILE, &before), 0);
    }
    QCOMPARE(sorted(trials), orderedTrials(1, files));
    QVERIFY(trials != orderedTrials(1, files));
    QVERIFY(trials != others);
    const QString line = "no random device: the order of trials is drawn from the clock";
    QCOMPARE(log.warnings(), QStringList({line, line}));
}
