// The one-sided amplitude spectrum of a sound.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "charts/AmplitudeSpectrum.h"

#include "DynArray.h"
#include "FFTReal.h"

#include <algorithm>
#include <cmath>

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
    fillSpectrum(&output[0], length, nSamples, frequencyResolution, spectrum);
}

void fillSpectrum(const double* transformed, qint64 length, int nSamples,
                  double frequencyResolution, const SpectrumVectors& spectrum) {
    const int bins = static_cast<int>(length / 2);
    const double* const real = transformed;
    const double* const negatedImaginary = transformed + bins;
    const int halfSound = nSamples / 2; // whole samples, deliberately
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
