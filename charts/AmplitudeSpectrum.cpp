// The one-sided amplitude spectrum of a sound, and its length.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "charts/AmplitudeSpectrum.h"

#include "DynArray.h"
#include "FFTReal.h"
#include "base/Sampling.h"

#include <algorithm>
#include <cmath>

SpectrumSizing spectrumSizing(int nSamples, double samplingRate, double maxFrequency) {
    constexpr double ln2 = 0.6931471805599453;
    SpectrumSizing sizing{};
    const double exponent = std::ceil(std::log(static_cast<double>(std::max(nSamples, 1))) / ln2);
    sizing.length = static_cast<qint64>(std::pow(2.0, exponent));
    sizing.frameDurationSeconds = static_cast<double>(sizing.length) / samplingRate;
    sizing.pointsToPlot =
        std::clamp(truncatedToInt(sizing.frameDurationSeconds * maxFrequency), 0, sizing.bins());
    return sizing;
}

qint64 spectrumMemory(int nSamples) {
    const qint64 length = spectrumSizing(nSamples, 1.0, 0.0).length;
    // Input, output, scratch, bit reversal; half a length each of cosines, frequencies, amplitudes
    // and phases.
    return (4 * length + 4 * length / 2) * qint64(sizeof(double));
}

void applyAnalysisWindow(QVector<double>& samples, int windowType, int nSamples) {
    if (windowType == NoWindow)
        return;
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
    fillSpectrum(&output[0], length, nSamples, frequencyResolution, spectrum);
}

void fillSpectrum(const double* transformed, qint64 length, int nSamples,
                  double frequencyResolution, const SpectrumVectors& spectrum) {
    const int bins = static_cast<int>(length / 2);
    const double* const real = transformed;
    const double* const negatedImaginary = transformed + bins;
    const int halfSound = nSamples / 2; // integer division, deliberately
    double* const frequency = spectrum.frequencies.data();
    double* const amplitude = spectrum.amplitudes.data();
    double* const phase = spectrum.phases.data();
    for (int k = 0; k < bins; ++k) {
        const double re = real[k];
        const double im = -negatedImaginary[k];
        frequency[k] = frequencyResolution * k;
        amplitude[k] = std::sqrt(im * im + re * re) / halfSound;
        phase[k] = std::atan2(im, re);
    }
}
