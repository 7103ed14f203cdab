// What the FFT sees of generators and ramps.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_signal_console.h"

#include "FFTReal.h"
#include "signal/OstrelClasses.h"

#include <QMap>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <complex>

namespace {

// Bins of 8 Hz: every frequency below that is a multiple of it falls on one.
constexpr double samplingRate = 32768;
constexpr double duration = 0.125;
constexpr int length = 4096;
constexpr double hertzPerBin = 8;

// The argument of the sines goes up to 2 pi x 4096 Hz x 0.125 s, about 3200, with three roundings
// of 2^-53 of it each.
constexpr double tolerance = 2e-12;

/// Returns the bins below half the sampling rate of the first `size` values, padded with zeros,
/// scaled so that a sine of amplitude A and phase p that falls on a bin of the signal's own length
/// is A x exp(i (p - 90 degrees)) there.
QVector<std::complex<double>> lines(const QVector<double>& signal, int size = length) {
    QVector<double> input(size, 0.0);
    std::copy(signal.begin(), signal.end(), input.begin());
    QVector<double> output(size);
    const FFTReal<double> transform(size);
    transform.do_fft(output.data(), input.constData());
    QVector<std::complex<double>> bins(size / 2);
    const double scale = 2.0 / length;
    for (int k = 1; k < size / 2; ++k)
        bins[k] = std::complex<double>(output[k], -output[size / 2 + k]) * scale;
    bins[0] = output[0] * scale;
    return bins;
}

/// Compares all bins with lines of these amplitudes and phases, and with nothing in between.
void compareLines(const QVector<double>& signal,
                  const QMap<int, std::complex<double>>& expectedLines) {
    QCOMPARE(signal.size(), length);
    const QVector<std::complex<double>> bins = lines(signal);
    for (int k = 0; k < bins.size(); ++k)
        QVERIFY2(std::abs(bins[k] - expectedLines.value(k)) <= tolerance,
                 qPrintable(QStringLiteral("bin %1 is %2, not %3")
                                .arg(k)
                                .arg(std::abs(bins[k]))
                                .arg(std::abs(expectedLines.value(k)))));
}

/// A line as lines() shows it.
std::complex<double> line(double amplitude, double phaseDegrees) {
    const double pi = 3.14159265358979323846;
    return std::polar(std::abs(amplitude), (phaseDegrees - 90) * pi / 180) *
           std::copysign(1.0, amplitude);
}

/// The energy far from the carrier of a tone with each of the ramps.
struct Splatter {
    double abrupt = 0;
    double linear = 0;
    double raisedCosine = 0;
    double squared = 0;
};

Splatter splatterOfRamps(int rampPoints) {
    const int padded = 4 * length;
    const int carrier = padded / 8;
    // Six times as far as a sinusoid whose period is the ramp: beyond the main lobes.
    const int nearby = 6 * padded / rampPoints;
    const auto energy = [=](const QVector<double>& signal) {
        const QVector<std::complex<double>> bins = lines(signal, padded);
        double sum = 0;
        for (int k = 0; k < bins.size(); ++k)
            if (std::abs(k - carrier) > nearby)
                sum += std::norm(bins[k]);
        return sum;
    };
    const QVector<double> tone = sine(samplingRate, duration, samplingRate / 8, 1, 0);
    return {energy(tone), energy(linearRamp(tone, rampPoints)), energy(cosRamp(tone, rampPoints)),
            energy(cos2Ramp(tone, rampPoints))};
}

QString text(const Splatter& splatter) {
    return QStringLiteral("abrupt %1, linear %2, raised cosine %3, squared %4")
        .arg(splatter.abrupt)
        .arg(splatter.linear)
        .arg(splatter.raisedCosine)
        .arg(splatter.squared);
}

} // namespace

void TestSignalSpectra::sineHasOneLine_data() {
    QTest::addColumn<int>("bin");
    QTest::addColumn<double>("amplitude");
    QTest::addColumn<double>("phase");
    QTest::newRow("lowest") << 1 << 1.0 << 0.0;
    QTest::newRow("sine") << 125 << 1.0 << 0.0;
    QTest::newRow("cosine") << 125 << 1.0 << 90.0;
    QTest::newRow("in between") << 512 << 0.7 << 33.0;
    QTest::newRow("upside down") << 512 << -0.7 << 33.0;
}

void TestSignalSpectra::sineHasOneLine() {
    QFETCH(int, bin);
    QFETCH(double, amplitude);
    QFETCH(double, phase);
    compareLines(sine(samplingRate, duration, bin * hertzPerBin, amplitude, phase),
                 {{bin, line(amplitude, phase)}});
}

void TestSignalSpectra::samHasSidebandsOfHalfTheDepth_data() {
    QTest::addColumn<double>("depth");
    QTest::addColumn<double>("modulatorPhase");
    QTest::addColumn<bool>("normalise");
    for (const double depth : {0.0, 0.25, 1.0, 1.5})
        for (const double phase : {0.0, 70.0})
            for (const bool normalise : {false, true})
                QTest::addRow("depth %g, modulator at %g degrees%s", depth, phase,
                              normalise ? ", normalised" : "")
                    << depth << phase << normalise;
}

void TestSignalSpectra::samHasSidebandsOfHalfTheDepth() {
    QFETCH(double, depth);
    QFETCH(double, modulatorPhase);
    QFETCH(bool, normalise);
    const int carrier = 400;
    const int modulation = 21;
    const double carrierPhase = 20;
    const double peak = normalise ? 0.8 / (1 + depth) : 0.8;
    const double sideband = peak * depth / 2;
    compareLines(sam(samplingRate, duration, carrier * hertzPerBin, modulation * hertzPerBin, depth,
                     0.8, carrierPhase, modulatorPhase, normalise),
                 {{carrier - modulation, line(sideband, carrierPhase - modulatorPhase)},
                  {carrier, line(peak, carrierPhase)},
                  {carrier + modulation, line(sideband, carrierPhase + modulatorPhase)}});
}

void TestSignalSpectra::rampsThatMeetSplatterLessTheSmootherTheyAre() {
    const Splatter splatter = splatterOfRamps(length / 2);
    QVERIFY2(splatter.linear < splatter.abrupt / 100, qPrintable(text(splatter)));
    QVERIFY2(splatter.raisedCosine < splatter.linear / 100, qPrintable(text(splatter)));
    QVERIFY2(splatter.squared < splatter.raisedCosine / 100, qPrintable(text(splatter)));
}

void TestSignalSpectra::squaringDoublesTheSplatterBesideAPlateau_data() {
    QTest::addColumn<int>("rampPoints");
    for (const int points : {100, 400, 1000})
        QTest::addRow("%d points", points) << points;
}

void TestSignalSpectra::squaringDoublesTheSplatterBesideAPlateau() {
    QFETCH(int, rampPoints);
    const Splatter splatter = splatterOfRamps(rampPoints);
    QVERIFY2(splatter.linear < splatter.abrupt / 100, qPrintable(text(splatter)));
    QVERIFY2(splatter.squared < splatter.linear / 30, qPrintable(text(splatter)));
    // Far from the carrier a raised cosine shows its two bends, at the foot and at the plateau. The
    // square has none at the foot, and one twice as sharp at the plateau: 2^2 instead of 1 + 1.
    const double ratio = splatter.squared / splatter.raisedCosine;
    QVERIFY2(std::abs(ratio - 2) < 0.1, qPrintable(QString::number(ratio)));
}
