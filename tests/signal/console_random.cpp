// The random generator and the integers drawn from it.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_signal_console.h"

#include "signal/OstrelClasses.h"
#include "signal/RandomGenerator.h"
#include "support/SignalCalls.h"
#include "support/StreamCapture.h"

#include <QTest>

#include <algorithm>
#include <iostream>
#include <thread>

using testsupport::StreamCapture;

namespace {

/// The first numbers after a seed.
QVector<int> numbersAfter(uint seed, int count) {
    seedRandomNumbers(seed);
    QVector<int> numbers;
    for (int i = 0; i < count; ++i)
        numbers.append(nextRandomNumber());
    return numbers;
}

/// Runs an action in another thread and waits for its end.
template <typename Action> void inAnotherThread(Action action) {
    std::thread(action).join();
}

} // namespace

void TestSignalRandom::numbersAreThoseOfQrand() {
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
        QVERIFY(number >= 0 && number <= maximumRandomNumber);
}

void TestSignalRandom::randomNumbersAreSeparateForEachThread() {
    const QVector<int> ofDefaultSeed = numbersAfter(1, 2);
    const QVector<int> here = numbersAfter(4711, 3);
    seedRandomNumbers(4711);
    QCOMPARE(nextRandomNumber(), here[0]);
    QVector<int> unseeded;
    inAnotherThread([&unseeded] { unseeded = {nextRandomNumber(), nextRandomNumber()}; });
    // A seed set here does not affect a new thread, which begins with the default one ...
    QCOMPARE(unseeded, ofDefaultSeed);
    QCOMPARE(nextRandomNumber(), here[1]);
    // ... and seeding there, by noise for example, does not affect the numbers here.
    inAnotherThread([] { whiteNoise(5); });
    inAnotherThread([] { randomIntegers(5, 1, 6); });
    QCOMPARE(nextRandomNumber(), here[2]);
}

void TestSignalRandom::integerFollowsTheFormula_data() {
    const auto row = columns<int, int, int>("min", "max", "range");
    row("die", 1, 6, 6);
    row("both signs", -50, 50, 101);
    row("one value", 3, 3, 1);
    row("widest from 0", 0, maximumInt - 1, maximumInt);
    row("widest from below", minimumInt, -2, maximumInt);
    row("reversed", 7, 2, -4); // 7 to 10: reversed bounds are not corrected
    row("reversed by two", 7, 5, -1);
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

void TestSignalRandom::integersFollowTheFormula_data() {
    const auto row = columns<int, int>("min", "max");
    row("die", 1, 6);
    row("both signs", -50, 50);
    row("one value", 3, 3);
    row("largest int", 0, maximumInt);
    row("close to the largest int", maximumInt - 2, maximumInt);
    row("smallest int", minimumInt, -1);
    row("all ints", minimumInt, maximumInt);
    row("reversed", 7, 2);
    row("reversed, all ints", maximumInt, minimumInt);
}

void TestSignalRandom::integersFollowTheFormula() {
    QFETCH(int, min);
    QFETCH(int, max);
    const StreamCapture standardError(std::cerr);
    QVector<int> integers;
    int next = 0;
    const uint second = testsupport::inOneSecond([&] {
        integers = randomIntegers(200, min, max);
        next = nextRandomNumber();
    });
    QCOMPARE(integers.size(), 200);
    seedRandomNumbers(second);
    // With reversed bounds the upper one is used for both.
    const qint64 lower = std::min(min, max);
    const qint64 values = min > max ? 1 : qint64(max) + 1 - lower;
    for (const int integer : qAsConst(integers))
        QCOMPARE(qint64(integer), qint64(nextRandomNumber()) % values + lower);
    QCOMPARE(next, nextRandomNumber());
}

void TestSignalRandom::countBelowOneGivesEmptyVectorAndReseeds_data() {
    const auto row = columns<int>("count");
    row("none", 0);
    row("below none", -3);
    row("minimum int", minimumInt);
}

void TestSignalRandom::countBelowOneGivesEmptyVectorAndReseeds() {
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
