// Root mean squares.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_signal_console.h"

#include "signal/OstrelClasses.h"

#include <QtTest>

#include <cmath>
#include <limits>

namespace {
constexpr int leastInt = std::numeric_limits<int>::min();
constexpr int mostInt = std::numeric_limits<int>::max();
} // namespace

void TestSignalRms::integers_data() {
    QTest::addColumn<QVector<int>>("signal");
    QTest::addColumn<double>("value");
    using Samples = QVector<int>;
    QTest::newRow("3 and 4") << Samples{3, 4} << std::sqrt(12.5);
    QTest::newRow("mean not rounded") << Samples{1, 1, 0} << std::sqrt(2.0 / 3.0);
    QTest::newRow("both signs") << Samples{-2, 2, -2} << 2.0;
    QTest::newRow("zeros") << Samples{0, 0} << 0.0;
    QTest::newRow("16 bits") << Samples(1000, -32768) << 32768.0;
    QTest::newRow("24 bits") << Samples(1000, 8388607) << 8388607.0;
    QTest::newRow("32 bits") << Samples{mostInt} << 2147483647.0;
}

void TestSignalRms::integers() {
    QFETCH(QVector<int>, signal);
    QFETCH(double, value);
    QVERIFY2(rms(signal) == value, qPrintable(QString::number(rms(signal), 'g', 17)));
}

void TestSignalRms::doubles_data() {
    QTest::addColumn<QVector<double>>("signal");
    QTest::addColumn<double>("value");
    using Samples = QVector<double>;
    QTest::newRow("ones of both signs") << Samples{1.0, -1.0, 1.0, -1.0} << 1.0;
    QTest::newRow("3 and 4") << Samples{3, 4} << std::sqrt(12.5);
    QTest::newRow("fractions") << Samples{0.25, 0, 0, 0} << 0.125;
    QTest::newRow("overflow is infinite")
        << Samples{1e200} << std::numeric_limits<double>::infinity();
}

void TestSignalRms::doubles() {
    QFETCH(QVector<double>, signal);
    QFETCH(double, value);
    QVERIFY2(rms(signal) == value, qPrintable(QString::number(rms(signal), 'g', 17)));
}

void TestSignalRms::emptyVectorsAreNotANumber() {
    QVERIFY(std::isnan(rms(QVector<int>())));
    QVERIFY(std::isnan(rms(QVector<double>())));
}

void TestSignalRms::integersAreSummedExactly() {
    // In doubles each of the ones would be lost beside 2^60.
    QVector<int> signal(1000001, 1);
    signal[0] = 1 << 30;
    const qint64 sum = (qint64(1) << 60) + 1000000;
    QVERIFY(rms(signal) == std::sqrt(static_cast<double>(sum) / 1000001));
    QVERIFY(static_cast<double>(sum) != std::ldexp(1, 60));
}

void TestSignalRms::sumsBeyond64BitsGoOn_data() {
    QTest::addColumn<QVector<int>>("signal");
    QTest::addColumn<double>("value");
    QTest::newRow("24 bits, the last that fits") << QVector<int>(131071, -8388608) << 8388608.0;
    QTest::newRow("24 bits, one more") << QVector<int>(131072, -8388608) << 8388608.0;
    QTest::newRow("24 bits, many more") << QVector<int>(400000, -8388608) << 8388608.0;
    QTest::newRow("32 bits") << QVector<int>(5, leastInt) << 2147483648.0;
}

void TestSignalRms::sumsBeyond64BitsGoOn() {
    QFETCH(QVector<int>, signal);
    QFETCH(double, value);
    QVERIFY2(rms(signal) == value, qPrintable(QString::number(rms(signal), 'g', 17)));
}

void TestSignalRms::doublesAreSummedInOrder() {
    // Ones are lost beside 2^60, unless they are summed up first.
    QVector<double> largeFirst(1000001, 1.0);
    largeFirst.first() = 1 << 30;
    QVector<double> largeLast(1000001, 1.0);
    largeLast.last() = 1 << 30;
    const double large = std::ldexp(1, 60);
    QVERIFY(rms(largeFirst) == std::sqrt(large / 1000001));
    QVERIFY(rms(largeLast) == std::sqrt((large + 1000000) / 1000001));
    QVERIFY(rms(largeFirst) != rms(largeLast));
}
