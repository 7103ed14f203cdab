// The sampling rate, sample counts, and the constants and rounding of both.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Sampling.h"

#include <algorithm>
#include <cmath>

int truncatedToInt(double number) {
    if (std::isnan(number))
        return 0;
    constexpr double minimum = std::numeric_limits<int>::min();
    constexpr double maximum = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(number, minimum, maximum));
}

int sampleCount(double durationSeconds, double samplingRate) {
    return std::clamp(truncatedToInt(std::floor(durationSeconds * samplingRate)), 0,
                      maximumSampleCount);
}
