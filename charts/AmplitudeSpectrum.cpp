// The one-sided amplitude spectrum of a sound.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "charts/AmplitudeSpectrum.h"

#include "DynArray.h"
#include "FFTReal.h"

#include <algorithm>
#include <cmath>
#include <future>
#include <thread>
#include <vector>

namespace {

/// Where bins are computed from and written to.
struct Bins {
    const double* real;
    const double* negatedImaginary;
    double frequencyResolution;
    int halfSound;
    double* frequency;
    double* amplitude;
    double* phase;

    void compute(int begin, int end) const {
        for (int k = begin; k < end; ++k) {
            const double re = real[k];
            const double im = -negatedImaginary[k];
            frequency[k] = frequencyResolution * k;
            amplitude[k] = std::sqrt(im * im + re * re) / halfSound;
            phase[k] = std::atan2(im, re);
        }
    }
};

/// Computes all bins, those of a long spectrum on several processors at once: its arctangents take
/// longer than the transform.
void computeBins(const Bins& bins, int count) {
    constexpr int leastPerThread = 1 << 15; // a fraction of a millisecond
    const int processors = std::max(static_cast<int>(std::thread::hardware_concurrency()), 1);
    const int perThread = std::max(count / processors + 1, leastPerThread);
    std::vector<std::future<void>> others;
    for (int begin = perThread; begin < count; begin += perThread)
        // Where the system has no thread to give, get() below computes instead.
        others.push_back(
            std::async([=] { bins.compute(begin, std::min(count, begin + perThread)); }));
    bins.compute(0, std::min(count, perThread));
    for (std::future<void>& other : others)
        other.get();
}

} // namespace

void applyAnalysisWindow(QVector<double>& samples, int windowType, int nSamples) {
    if (windowType == NoWindow)
        return;
    constexpr double twoPi = 6.283185307179586;
    int i = 0;
    for (double& sample : samples) {
        const double weight =
            windowType == HannWindow ? 0.5 * (1 - std::cos(twoPi * i / (nSamples - 1))) : 0.0;
        sample *= weight;
        ++i;
    }
}

void computeAmplitudeSpectrum(const QVector<double>& samples, qint64 length, int nSamples,
                              double frequencyResolution, const SpectrumVectors& spectrum) {
    const FFTReal<double> transform(length);
    DynArray<double> input(length);
    DynArray<double> output(length);
    const qint64 copied = std::min<qint64>(samples.size(), length);
    std::copy_n(samples.cbegin(), copied, &input[0]);
    std::fill_n(&input[0] + copied, length - copied, 0.0);
    transform.do_fft(&output[0], &input[0]);

    const double* const real = &output[0];
    const int halfSound = nSamples / 2; // whole samples, deliberately
    computeBins({real, real + length / 2, frequencyResolution, halfSound,
                 spectrum.frequencies.data(), spectrum.amplitudes.data(), spectrum.phases.data()},
                static_cast<int>(length / 2));
}
