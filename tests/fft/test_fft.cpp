// Known transforms of the real FFT, and the main function of its tests.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_fft.h"

#include "FFTReal.h"
#include "support/TestMain.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

constexpr double pi = 3.14159265358979323846;

std::vector<double> transformed(const std::vector<double>& x) {
    const FFTReal<double> fft(static_cast<std::int64_t>(x.size()));
    std::vector<double> f(x.size(), -77.0);
    fft.do_fft(f.data(), x.data());
    return f;
}

/// An uneven sequence without any symmetry.
std::vector<double> unevenSequence(std::size_t length) {
    std::vector<double> x(length);
    for (std::size_t n = 0; n < length; ++n)
        x[n] = std::sin(0.7 + static_cast<double>(n * n % 1009)) - 0.125;
    return x;
}

/// Compares each value with `expected`; `tolerance` is absolute.
void compareAll(const std::vector<double>& actual, const std::vector<double>& expected,
                double tolerance) {
    QCOMPARE(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i)
        QVERIFY2(std::abs(actual[i] - expected[i]) <= tolerance,
                 qPrintable(QStringLiteral("value %1 is %2, not %3")
                                .arg(i)
                                .arg(actual[i], 0, 'g', 17)
                                .arg(expected[i], 0, 'g', 17)));
}

} // namespace

void TestFftValues::impulseOfLength8HasOnesAndNoImaginaryParts() {
    compareAll(transformed({1, 0, 0, 0, 0, 0, 0, 0}), {1, 1, 1, 1, 1, 0, 0, 0}, 0);
}

void TestFftValues::delayedImpulseOfLength4HasThePositiveImaginarySlot() {
    compareAll(transformed({0, 1, 0, 0}), {1, 0, -1, 1}, 0);
}

void TestFftValues::lengthsBelowEight_data() {
    QTest::addColumn<std::vector<double>>("x");
    QTest::addColumn<std::vector<double>>("expected");
    QTest::newRow("one value is copied") << std::vector<double>{-0.3} << std::vector<double>{-0.3};
    QTest::newRow("two values: sum and difference")
        << std::vector<double>{3, 5} << std::vector<double>{8, -2};
    QTest::newRow("four values") << std::vector<double>{1, 2, 4, 8}
                                 << std::vector<double>{15, -3, -5, -6};
}

void TestFftValues::lengthsBelowEight() {
    QFETCH(std::vector<double>, x);
    QFETCH(std::vector<double>, expected);
    compareAll(transformed(x), expected, 0);
}

void TestFftValues::cosineOfWholePeriodsFillsOneRealBin_data() {
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("periods");
    for (int length = 4; length <= 4096; length *= 2)
        for (const int periods : {1, length / 4, length / 2 - 1})
            QTest::addRow("%d periods in %d", periods, length) << length << periods;
}

void TestFftValues::cosineOfWholePeriodsFillsOneRealBin() {
    QFETCH(int, length);
    QFETCH(int, periods);
    std::vector<double> x(static_cast<std::size_t>(length));
    for (int n = 0; n < length; ++n)
        // The product is reduced first: only then is the argument accurate to one rounding.
        x[static_cast<std::size_t>(n)] = std::cos(2 * pi * (n * periods % length) / length);
    std::vector<double> expected(x.size(), 0.0);
    expected[static_cast<std::size_t>(periods)] = length / 2.0;
    // An argument below 2 pi carries up to 2^-50 of error into each of the samples.
    compareAll(transformed(x), expected, length * 1e-15);
}

void TestFftValues::sineOfWholePeriodsFillsOneImaginarySlotPositively() {
    const int length = 64;
    const int periods = 5;
    std::vector<double> x(length);
    for (int n = 0; n < length; ++n)
        x[static_cast<std::size_t>(n)] = std::sin(2 * pi * (n * periods % length) / length);
    std::vector<double> expected(length, 0.0);
    expected[length / 2 + periods] = length / 2.0; // the usual transform has -length / 2 here
    compareAll(transformed(x), expected, length * 1e-15);
}

void TestFftValues::constantAndAlternationGoToTheEnds() {
    const std::size_t length = 1024;
    std::vector<double> x(length);
    for (std::size_t n = 0; n < length; ++n)
        x[n] = n % 2 == 0 ? 3.0 : -1.0; // 1 all the time, and 2 up and down
    std::vector<double> expected(length, 0.0);
    expected[0] = 1.0 * length;
    expected[length / 2] = 2.0 * length;
    compareAll(transformed(x), expected, 0);
}

void TestFftValues::oneObjectServesManyTransforms() {
    const std::size_t length = 32768;
    const FFTReal<double> fft(length);
    const std::vector<double> first = unevenSequence(length);
    std::vector<double> second = first;
    second[0] = 1e6;
    const std::vector<double> firstAlone = transformed(first);
    const std::vector<double> secondAlone = transformed(second);
    QVERIFY(firstAlone != secondAlone);

    std::vector<double> f(length);
    for (int round = 0; round < 3; ++round) {
        fft.do_fft(f.data(), first.data());
        QVERIFY(f == firstAlone);
        fft.do_fft(f.data(), second.data());
        QVERIFY(f == secondAlone);
    }
}

void TestFftValues::inputIsOnlyRead() {
    for (std::size_t length = 1; length <= 65536; length *= 2) {
        const std::vector<double> x = unevenSequence(length);
        const std::vector<double> before(x.begin(), x.end());
        transformed(x);
        QVERIFY(x == before);
    }
}

void TestFftValues::nothingBeyondTheOutputIsWritten() {
    const double mark = -77.0;
    for (std::size_t length = 1; length <= 65536; length *= 2) {
        const std::vector<double> x = unevenSequence(length);
        const FFTReal<double> fft(static_cast<std::int64_t>(length));
        std::vector<double> framed(length + 2, mark);
        fft.do_fft(framed.data() + 1, x.data());
        QCOMPARE(framed.front(), mark);
        QCOMPARE(framed.back(), mark);
        QVERIFY(std::vector<double>(framed.begin() + 1, framed.end() - 1) == transformed(x));
    }
}

int main(int argc, char** argv) {
    return testsupport::runAll<TestFftValues, TestFftParts, TestFftWays, TestFftAccuracy>(argc,
                                                                                          argv);
}
