// The random generator and the integers drawn from it.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_signal_console.h"

#include "signal/OstrelClasses.h"
#include "signal/RandomGenerator.h"
#include "support/SignalCalls.h"
#include "support/StreamCapture.h"

#include <QSet>
#include <QtTest>

#include <iostream>
#include <limits>
#include <thread>

using testsupport::StreamCapture;

namespace {

constexpr int leastInt = std::numeric_limits<int>::min();
constexpr int mostInt = std::numeric_limits<int>::max();

/// The first numbers after a seed.
QVector<int> numbersAfter(uint seed, int count) {
    seedRandomNumbers(seed);
    QVector<int> numbers;
    for (int i = 0; i < count; ++i)
        numbers.append(nextRandomNumber());
    return numbers;
}

/// Runs an action in a thread of its own, to its end.
template <typename Action> void inAnotherThread(Action action) {
    std::thread(action).join();
}

} // namespace

void TestSignalRandom::numbersAreTheToolkits() {
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    qsrand(4711);
    const int first = qrand();
    const int second = qrand();
    seedRandomNumbers(4711);
    QCOMPARE(qrand(), first);
    QCOMPARE(nextRandomNumber(), second);
    QT_WARNING_POP
    QVERIFY(first != second);
    for (const int number : numbersAfter(3, 1000))
        QVERIFY(number >= 0 && number <= largestRandomNumber);
}

void TestSignalRandom::everyThreadHasItsOwnNumbers() {
    const QVector<int> ofDefaultSeed = numbersAfter(1, 2);
    const QVector<int> here = numbersAfter(4711, 3);
    seedRandomNumbers(4711);
    QCOMPARE(nextRandomNumber(), here[0]);
    QVector<int> unseeded;
    inAnotherThread([&unseeded] { unseeded = {nextRandomNumber(), nextRandomNumber()}; });
    // The seed given here does not reach a new thread, which begins with the default one ...
    QCOMPARE(unseeded, ofDefaultSeed);
    QCOMPARE(nextRandomNumber(), here[1]);
    // ... and seeding there, by noise for example, leaves the numbers here as they were.
    inAnotherThread([] { whiteNoise(5); });
    inAnotherThread([] { randomIntegers(5, 1, 6); });
    QCOMPARE(nextRandomNumber(), here[2]);
}

void TestSignalRandom::integerFollowsTheFormula_data() {
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");
    QTest::addColumn<int>("range");
    QTest::newRow("die") << 1 << 6 << 6;
    QTest::newRow("both signs") << -50 << 50 << 101;
    QTest::newRow("one value") << 3 << 3 << 1;
    QTest::newRow("widest from 0") << 0 << mostInt - 1 << mostInt;
    QTest::newRow("widest from below") << leastInt << -2 << mostInt;
    QTest::newRow("reversed") << 7 << 2 << -4;
    QTest::newRow("reversed by two") << 7 << 5 << -1;
}

void TestSignalRandom::integerFollowsTheFormula() {
    QFETCH(int, min);
    QFETCH(int, max);
    QFETCH(int, range);
    const StreamCapture standardError(std::cerr);
    const QVector<int> numbers = numbersAfter(12345, 200);
    seedRandomNumbers(12345);
    for (const int number : numbers) {
        const qint64 quotient = number / range;
        QCOMPARE(qint64(randomInteger(min, max)), min + (number - quotient * range));
    }
}

void TestSignalRandom::integersFrom1To6() {
    QSet<int> values;
    for (int i = 0; i < 1000; ++i)
        values.insert(randomInteger(1, 6));
    QCOMPARE(values, (QSet<int>{1, 2, 3, 4, 5, 6}));
}

void TestSignalRandom::reversedBoundsAreNotCorrected() {
    const StreamCapture standardError(std::cerr);
    QSet<int> values;
    for (int i = 0; i < 1000; ++i)
        values.insert(randomInteger(7, 2));
    // From 7 to 7 + (7 - 2 - 2).
    QCOMPARE(values, (QSet<int>{7, 8, 9, 10}));
    const QByteArray warnings = QByteArray("min cannot be larger than max\n").repeated(1000);
    QCOMPARE(QByteArray::fromStdString(standardError.text()), warnings);
}

void TestSignalRandom::oneIntegerDoesNotSeed() {
    const QVector<int> numbers = numbersAfter(99, 3);
    seedRandomNumbers(99);
    for (const int number : numbers)
        QCOMPARE(randomInteger(0, 999999), number % 1000000);
}

void TestSignalRandom::integersFollowTheFormula_data() {
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");
    QTest::newRow("die") << 1 << 6;
    QTest::newRow("both signs") << -50 << 50;
    QTest::newRow("largest int") << 0 << mostInt;
    QTest::newRow("close to the largest int") << mostInt - 2 << mostInt;
    QTest::newRow("smallest int") << leastInt << -1;
    QTest::newRow("all ints") << leastInt << mostInt;
}

void TestSignalRandom::integersFollowTheFormula() {
    QFETCH(int, min);
    QFETCH(int, max);
    QVector<int> integers;
    int next = 0;
    const uint second = testsupport::inOneSecond([&] {
        integers = randomIntegers(200, min, max);
        next = nextRandomNumber();
    });
    QCOMPARE(integers.size(), 200);
    seedRandomNumbers(second);
    const qint64 values = qint64(max) + 1 - qint64(min);
    for (const int integer : qAsConst(integers))
        QCOMPARE(qint64(integer), qint64(nextRandomNumber()) % values + min);
    QCOMPARE(next, nextRandomNumber());
}

void TestSignalRandom::equalBoundsGiveThatValue() {
    const StreamCapture standardError(std::cerr);
    QCOMPARE(randomIntegers(5, 3, 3), (QVector<int>{3, 3, 3, 3, 3}));
    QCOMPARE(standardError.text(), std::string());
}

void TestSignalRandom::reversedBoundsGiveTheUpperBound() {
    const StreamCapture standardError(std::cerr);
    QCOMPARE(randomIntegers(4, 7, 2), (QVector<int>{2, 2, 2, 2}));
    QCOMPARE(standardError.text(), std::string("min cannot be larger than max; force min = max\n"));
    QCOMPARE(randomIntegers(2, mostInt, leastInt), (QVector<int>{leastInt, leastInt}));
}

void TestSignalRandom::noIntegersAreEmptyAndReseed_data() {
    QTest::addColumn<int>("count");
    QTest::newRow("none") << 0;
    QTest::newRow("below none") << -3;
    QTest::newRow("far below none") << leastInt;
}

void TestSignalRandom::noIntegersAreEmptyAndReseed() {
    QFETCH(int, count);
    int next = 0;
    const uint second = testsupport::inOneSecond([&] {
        seedRandomNumbers(1);
        QVERIFY(randomIntegers(count, 1, 6).isEmpty());
        next = nextRandomNumber();
    });
    seedRandomNumbers(second);
    QCOMPARE(next, nextRandomNumber());
}

void TestSignalRandom::integersOfTheSameSecondAreTheSame() {
    QVector<int> first;
    QVector<int> second;
    testsupport::inOneSecond([&] {
        first = randomIntegers(100, 1, 1000000);
        second = randomIntegers(100, 1, 1000000);
    });
    QCOMPARE(first.size(), 100);
    QCOMPARE(second, first);
}
