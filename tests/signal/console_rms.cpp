// Root mean squares.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_signal_console.h"

#include "signal/OstrelClasses.h"

#include <QTest>

#include <cmath>
#include <limits>

void TestSignalRms::integers_data() {
    const auto row = columns<QVector<int>, double>("signal", "value");
    using Samples = QVector<int>;
    row("3 and 4", {3, 4}, std::sqrt(12.5));
    row("mean not rounded", {1, 1, 0}, std::sqrt(2.0 / 3.0));
    row("both signs", {-2, 2, -2}, 2);
    row("zeros", {0, 0}, 0);
    row("16 bits", Samples(1000, -32768), 32768);
    row("24 bits", Samples(1000, 8388607), 8388607);
    row("32 bits", {maximumInt}, 2147483647);
    row("24 bits, largest sum that fits 64 bits", Samples(131071, -8388608), 8388608);
    row("24 bits, one more", Samples(131072, -8388608), 8388608);
    row("24 bits, many more", Samples(400000, -8388608), 8388608);
    row("32 bits, sum beyond 64 bits", Samples(5, minimumInt), 2147483648.0);
}

void TestSignalRms::integers() {
    QFETCH(QVector<int>, signal);
    QFETCH(double, value);
    QVERIFY2(rms(signal) == value, qPrintable(QString::number(rms(signal), 'g', 17)));
}

void TestSignalRms::doubles_data() {
    const auto row = columns<QVector<double>, double>("signal", "value");
    row("ones of both signs", {1.0, -1.0, 1.0, -1.0}, 1);
    row("3 and 4", {3, 4}, std::sqrt(12.5));
    row("fractions", {0.25, 0, 0, 0}, 0.125);
    row("overflow is infinite", {1e200}, std::numeric_limits<double>::infinity());
}

void TestSignalRms::doubles() {
    QFETCH(QVector<double>, signal);
    QFETCH(double, value);
    QVERIFY2(rms(signal) == value, qPrintable(QString::number(rms(signal), 'g', 17)));
}

void TestSignalRms::emptyVectorGivesNaN() {
    QVERIFY(std::isnan(rms(QVector<int>())));
    QVERIFY(std::isnan(rms(QVector<double>())));
}

void TestSignalRms::integersAreSummedExactly() {
    // In doubles each one would be rounded away when added to 2^60.
    QVector<int> signal(1000001, 1);
    signal[0] = 1 << 30;
    const qint64 sum = (qint64(1) << 60) + 1000000;
    QVERIFY(rms(signal) == std::sqrt(static_cast<double>(sum) / 1000001));
    QVERIFY(static_cast<double>(sum) != std::ldexp(1, 60));
}

void TestSignalRms::doublesAreSummedInOrder() {
    // Ones are rounded away when added to 2^60, unless they are summed first.
    QVector<double> largeFirst(1000001, 1.0);
    largeFirst.first() = 1 << 30;
    QVector<double> largeLast(1000001, 1.0);
    largeLast.last() = 1 << 30;
    const double large = std::ldexp(1, 60);
    QVERIFY(rms(largeFirst) == std::sqrt(large / 1000001));
    QVERIFY(rms(largeLast) == std::sqrt((large + 1000000) / 1000001));
    QVERIFY(rms(largeFirst) != rms(largeLast));
}
