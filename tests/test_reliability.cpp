// What the long campaigns judge recordings by.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/PresentedSounds.h"
#include "reliability/ToneFrequency.h"

#include <QtTest>

#include <cmath>

namespace {

constexpr double samplingRate = 40000;

QVector<float> tone(double frequency, int count, double amplitude, double phase) {
    constexpr double twoPi = 6.283185307179586;
    QVector<float> samples(count);
    for (int i = 0; i < count; ++i)
        samples[i] =
            static_cast<float>(amplitude * std::sin(twoPi * frequency * i / samplingRate + phase));
    return samples;
}

} // namespace

class TestReliability : public QObject {
    Q_OBJECT

private slots:
    void frequencies_data();
    void frequencies();
    void silenceHasNoFrequency();
    void cents();
    void fates_data();
    void fates();
};

void TestReliability::frequencies_data() {
    QTest::addColumn<double>("frequency");
    QTest::addColumn<int>("count");
    QTest::addColumn<double>("amplitude");
    QTest::addColumn<double>("phase");
    QTest::newRow("one period of the lowest") << 10.0 << 4000 << 1.0 << 0.0;
    QTest::newRow("lowest, upside down") << 10.0 << 4000 << -1.0 << 0.0;
    QTest::newRow("two and a half periods") << 10.0 << 10000 << 1.0 << 0.0;
    QTest::newRow("lowest, a little too high") << 10.001 << 10000 << 1.0 << 0.0;
    QTest::newRow("middle") << 500.0 << 4000 << 1.0 << 0.0;
    QTest::newRow("middle, soft") << 500.0 << 4000 << 0.01 << 0.0;
    QTest::newRow("middle, any phase") << 437.3 << 6000 << 0.7 << 2.5;
    QTest::newRow("highest") << 1000.0 << 4000 << 1.0 << 0.0;
    QTest::newRow("highest, long") << 1000.0 << 10000 << 1.0 << 1.0;
    QTest::newRow("beyond") << 1999.0 << 10000 << 1.0 << 0.0;
}

void TestReliability::frequencies() {
    QFETCH(double, frequency);
    QFETCH(int, count);
    QFETCH(double, amplitude);
    QFETCH(double, phase);
    const double measured = toneFrequency(tone(frequency, count, amplitude, phase), samplingRate);
    // What rounding to floats leaves of a single slow period.
    constexpr double mostCents = 1e-5;
    const double error = centsAbove(measured, frequency);
    QVERIFY2(std::abs(error) < mostCents, qPrintable(QString::number(error)));
}

void TestReliability::silenceHasNoFrequency() {
    QVERIFY(std::isnan(toneFrequency(QVector<float>(4000, 0.0F), samplingRate)));
}

void TestReliability::cents() {
    QCOMPARE(centsAbove(880, 440), 1200.0);
    QCOMPARE(centsAbove(220, 440), -1200.0);
    QCOMPARE(centsAbove(440, 440), 0.0);
}

void TestReliability::fates_data() {
    using Samples = QVector<float>;
    QTest::addColumn<Samples>("stretch");
    QTest::addColumn<int>("fate");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("missing");
    QTest::addColumn<bool>("isFollowedByMore");
    const auto row = [](const char* name, const Samples& stretch, Fate fate, int start = -1,
                        int missing = 0, bool isFollowedByMore = false) {
        QTest::newRow(name) << stretch << int(fate) << start << missing << isFollowedByMore;
    };
    // The sound is 0, 1, 2, 0, 3, 4.
    row("alone", {0, 1, 2, 0, 3, 4}, Fate::Complete, 0);
    row("between silence", {0, 0, 0, 1, 2, 0, 3, 4, 0, 0}, Fate::Complete, 2);
    row("with its first zero outside", {1, 2, 0, 3, 4}, Fate::Gaps);
    row("twice", {0, 1, 2, 0, 3, 4, 0, 1, 2, 0, 3, 4}, Fate::Complete, 0, 0, true);
    row("click behind", {0, 1, 2, 0, 3, 4, 0, 5}, Fate::Complete, 0, 0, true);
    row("click before", {5, 0, 1, 2, 0, 3, 4}, Fate::Different);
    row("silence", {0, 0, 0, 0, 0, 0, 0, 0}, Fate::Missing, -1, 4);
    row("nothing", {}, Fate::Missing, -1, 4);
    row("end cut off", {0, 0, 1, 2, 0, 3, 0, 0}, Fate::CutAtEnd, -1, 1);
    row("end of the recording", {0, 0, 1, 2, 0, 3}, Fate::CutAtEnd, -1, 1);
    row("end cut off behind a gap", {0, 1, 0, 0, 0, 2, 0, 0}, Fate::CutAtEnd, -1, 2);
    row("start cut off", {0, 0, 0, 0, 3, 4, 0, 0}, Fate::CutAtStart, -1, 2);
    row("piece missing", {0, 1, 0, 3, 4, 0, 0}, Fate::CutInside, -1, 1);
    row("piece replaced by silence", {0, 1, 0, 0, 3, 4, 0, 0}, Fate::CutInside, -1, 1);
    row("gap", {0, 1, 0, 0, 0, 2, 0, 3, 4}, Fate::Gaps);
    row("longer silence in the middle", {0, 1, 2, 0, 0, 3, 4}, Fate::Gaps);
    row("missing silence in the middle", {0, 1, 2, 3, 4, 0, 0}, Fate::Gaps);
    row("one sample wrong", {0, 1, 2, 0, 3, 5}, Fate::Different);
    row("another sound", {0, 5, 6, 7, 8, 9, 10}, Fate::Different);
    row("in another order", {0, 2, 1, 0, 3, 4}, Fate::Different);
    row("half of another sound", {0, 5, 6, 0, 0, 0}, Fate::Different, -1, 2);
    row("wrong and cut", {0, 1, 5, 4, 0, 0}, Fate::Different, -1, 1);
}

void TestReliability::fates() {
    QFETCH(QVector<float>, stretch);
    QFETCH(int, fate);
    QFETCH(int, start);
    QFETCH(int, missing);
    QFETCH(bool, isFollowedByMore);
    const HeardSound heard = findSound(stretch, {0, 1, 2, 0, 3, 4});
    QCOMPARE(int(heard.fate), fate);
    QCOMPARE(heard.start, start);
    QCOMPARE(heard.samplesMissing, missing);
    QCOMPARE(heard.isFollowedByMore, isFollowedByMore);
}

QTEST_APPLESS_MAIN(TestReliability)
#include "test_reliability.moc"
