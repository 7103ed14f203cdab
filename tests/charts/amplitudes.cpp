// The amplitude spectrum of a sound and its analysis windows.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_charts.h"

#include "charts/AmplitudeSpectrum.h"

#include "FFTReal.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

namespace {

constexpr long double pi = 3.141592653589793238462643383279502884L;

struct Spectrum {
    QVector<double> frequencies;
    QVector<double> amplitudes;
    QVector<double> phases;
};

/// The spectrum of `samples`, in vectors of just the size it needs.
Spectrum spectrumOf(const QVector<double>& samples, int length, int nSamples,
                    double frequencyResolution = 1.0) {
    Spectrum spectrum;
    for (QVector<double>* bins : {&spectrum.frequencies, &spectrum.amplitudes, &spectrum.phases})
        bins->resize(length / 2);
    computeAmplitudeSpectrum(samples, length, nSamples, frequencyResolution,
                             {spectrum.frequencies, spectrum.amplitudes, spectrum.phases});
    return spectrum;
}

QVector<double> noise(int count) {
    std::mt19937 generator(14);
    std::uniform_real_distribution<double> value(-1.0, 1.0);
    QVector<double> samples(count);
    std::generate(samples.begin(), samples.end(), [&] { return value(generator); });
    return samples;
}

double norm(const QVector<double>& samples) {
    return std::sqrt(std::inner_product(samples.cbegin(), samples.cend(), samples.cbegin(), 0.0));
}

/// The bound of a bin's error: the transform's relative L2 error is at most 1e-15 x log2(length),
/// which a single bin may have alone.
double tolerance(const QVector<double>& samples, int length) {
    return 1e-15 * std::log2(length) * std::sqrt(length) * norm(samples);
}

} // namespace

QVector<double> sinusoid(int count, double amplitude, double periods, int length, double phase) {
    QVector<double> samples(count);
    for (int i = 0; i < count; ++i)
        samples[i] = static_cast<double>(
            amplitude * std::cos(2 * pi * static_cast<long double>(periods) * i / length + phase));
    return samples;
}

void TestAmplitudeSpectrum::hannWindowFollowsTheSampleCountOfTheSettings_data() {
    const auto row = columns<int, int>("size", "nSamples");
    row("all of the sound", 1001, 1001);
    row("even count", 1000, 1000);
    row("more than there are", 500, 1000);
    row("fewer than there are", 1000, 700);
    row("two", 2, 2);
    row("none", 0, 100);
}

void TestAmplitudeSpectrum::hannWindowFollowsTheSampleCountOfTheSettings() {
    QFETCH(int, size);
    QFETCH(int, nSamples);
    const QVector<double> original = noise(size);
    QVector<double> samples = original;
    applyAnalysisWindow(samples, HannWindow, nSamples);
    QCOMPARE(samples.size(), size);
    QCOMPARE(samples.value(0), 0.0);
    for (int i = 0; i < size; ++i) {
        const long double weight = (1 - std::cos(2 * pi * i / (nSamples - 1))) / 2;
        // The angle is rounded three times, the cosine once; up to two periods are covered.
        QVERIFY(std::abs(samples[i] - static_cast<double>(weight * original[i])) <= 2e-15);
    }
}

void TestAmplitudeSpectrum::otherWindowsKeepTheSoundOrZeroIt() {
    const QVector<double> original = noise(100);
    for (const int windowType : {-1, 0, 2, 3, 1000}) {
        QVector<double> samples = original;
        applyAnalysisWindow(samples, windowType, 100);
        QVERIFY(samples == (windowType == NoWindow ? original : QVector<double>(100, 0.0)));
    }
}

void TestAmplitudeSpectrum::everyBinIsComputedFromItsSlotsOfTheTransform_data() {
    const auto row = columns<int, int>("length", "count");
    row("two", 2, 2);
    row("three", 4, 3);
    row("short", 256, 201);
    row("not padded", 1024, 1024);
    row("long", 1 << 20, 700001);
}

void TestAmplitudeSpectrum::everyBinIsComputedFromItsSlotsOfTheTransform() {
    QFETCH(int, length);
    QFETCH(int, count);
    const double resolution = 40000.0 / length;
    const int halfSound = count / 2;
    const QVector<double> samples = noise(count);
    std::vector<double> padded(static_cast<std::size_t>(length), 0.0);
    std::copy(samples.cbegin(), samples.cend(), padded.begin());
    std::vector<double> transformed(padded.size());
    FFTReal<double>(length).do_fft(transformed.data(), padded.data());

    const Spectrum spectrum = spectrumOf(samples, length, count, resolution);
    for (std::size_t k = 0; k < padded.size() / 2; ++k) {
        const double re = transformed[k];
        const double im = -transformed[padded.size() / 2 + k];
        const int bin = static_cast<int>(k);
        QVERIFY(spectrum.frequencies[bin] == resolution * bin);
        QVERIFY(spectrum.amplitudes[bin] == std::sqrt(im * im + re * re) / halfSound);
        QVERIFY(spectrum.phases[bin] == std::atan2(im, re));
    }
}

void TestAmplitudeSpectrum::binZeroTakesTheNyquistComponentAsImaginaryPart_data() {
    const auto row = columns<QVector<double>, double, double>("samples", "amplitude", "phase");
    const double quarter = std::atan2(1.0, 0.0);
    row("constant", QVector<double>(8, 1.0), 2, std::atan2(-0.0, 8.0));
    row("constant, padded", QVector<double>(6, 1.0), 2, std::atan2(-0.0, 6.0));
    row("constant below 0", QVector<double>(8, -1.0), 2, std::atan2(-0.0, -8.0));
    // The alternating sum of five is 1, and half of five is two.
    row("odd count", QVector<double>(5, 1.0), std::sqrt(26.0) / 2, std::atan2(-1.0, 5.0));
    row("alternation", {1, -1, 1, -1, 1, -1, 1, -1}, 2, -quarter);
    row("alternation from below", {-1, 1, -1, 1, -1, 1, -1, 1}, 2, quarter);
    // Sum and alternating sum are 4 each.
    row("both", {1, 0, 1, 0, 1, 0, 1, 0}, std::sqrt(32.0) / 4, std::atan2(-4.0, 4.0));
}

void TestAmplitudeSpectrum::binZeroTakesTheNyquistComponentAsImaginaryPart() {
    QFETCH(QVector<double>, samples);
    QFETCH(double, amplitude);
    QFETCH(double, phase);
    const Spectrum spectrum = spectrumOf(samples, 8, samples.size());
    QVERIFY(spectrum.amplitudes[0] == amplitude);
    QVERIFY(spectrum.phases[0] == phase);
    QVERIFY(spectrum.frequencies[0] == 0.0);
}

void TestAmplitudeSpectrum::sinusoidOnABinShowsItsAmplitude_data() {
    const auto row = columns<int, int, double>("count", "bin", "phase");
    // Whole periods in the sound as well as in the transform.
    row("not padded", 8192, 205, 0.5);
    row("padded from half", 4096, 204, -1);
    row("padded from three quarters", 6144, 400, 2);
    row("next to the highest", 8192, 4095, 1);
    row("lowest", 8192, 1, -3);
}

void TestAmplitudeSpectrum::sinusoidOnABinShowsItsAmplitude() {
    QFETCH(int, count);
    QFETCH(int, bin);
    QFETCH(double, phase);
    constexpr int length = 8192;
    const QVector<double> samples = sinusoid(count, 0.5, bin, length, phase);
    const Spectrum spectrum = spectrumOf(samples, length, count);
    const int divisor = count / 2;
    const double allowed = tolerance(samples, length) / divisor;
    QVERIFY(std::abs(spectrum.amplitudes[bin] - 0.5) <= allowed);
    QVERIFY(std::abs(spectrum.phases[bin] - phase) <= 2 * allowed / 0.5);
    QCOMPARE(std::max_element(spectrum.amplitudes.cbegin(), spectrum.amplitudes.cend()) -
                 spectrum.amplitudes.cbegin(),
             bin);
}

void TestAmplitudeSpectrum::kilohertzPeaksBetweenTwoBins() {
    constexpr int length = 16384;
    constexpr int count = 10000;
    const QVector<double> samples = sinusoid(count, 0.5, 1000, 40000, 0.0);
    const Spectrum spectrum = spectrumOf(samples, length, count, 40000.0 / length);
    QVERIFY(spectrum.frequencies[409] == 998.53515625);
    QVERIFY(spectrum.frequencies[410] == 1000.9765625);
    QVector<int> bins(length / 2);
    std::iota(bins.begin(), bins.end(), 0);
    std::partial_sort(bins.begin(), bins.begin() + 2, bins.end(), [&spectrum](int a, int b) {
        return spectrum.amplitudes[a] > spectrum.amplitudes[b];
    });
    // Bin 410 is nearer to 1000 Hz.
    QCOMPARE(bins.mid(0, 2), (QVector<int>{410, 409}));
    QVERIFY(spectrum.amplitudes[410] < 0.5);
}

void TestAmplitudeSpectrum::oneSampleDividesByZero() {
    QVERIFY(std::isinf(spectrumOf({1, 0}, 2, 1).amplitudes[0]));
    QVERIFY(std::isnan(spectrumOf({0, 0}, 2, 1).amplitudes[0]));
}

void TestAmplitudeSpectrum::soundBeyondTheLengthIsCutOff() {
    const QVector<double> samples = noise(1000);
    const Spectrum cutOff = spectrumOf(samples, 64, 64);
    const Spectrum whole = spectrumOf(samples.mid(0, 64), 64, 64);
    QCOMPARE(cutOff.amplitudes, whole.amplitudes);
    QCOMPARE(cutOff.phases, whole.phases);
}

void TestAmplitudeSpectrum::elementsBeyondHalfTheLengthStay() {
    Spectrum spectrum{QVector<double>(5, 7), QVector<double>(5, 7), QVector<double>(5, 7)};
    computeAmplitudeSpectrum({1, 0, 0, 0, 0, 0, 0, 0}, 8, 8, 1,
                             {spectrum.frequencies, spectrum.amplitudes, spectrum.phases});
    QCOMPARE(spectrum.frequencies, (QVector<double>{0, 1, 2, 3, 7}));
    QCOMPARE(spectrum.amplitudes[4], 7.0);
    QCOMPARE(spectrum.phases[4], 7.0);
}
