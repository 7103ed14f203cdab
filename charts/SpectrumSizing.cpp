// How long the spectrum of a sound is.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "charts/SpectrumSizing.h"

#include "app/Truncation.h"

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
