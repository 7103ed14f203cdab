// How many samples a duration holds.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/SampleCount.h"

#include <algorithm>
#include <cmath>
#include <limits>

int truncatedToInt(double number) {
    if (std::isnan(number))
        return 0;
    constexpr double least = std::numeric_limits<int>::min();
    constexpr double most = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(number, least, most));
}

int sampleCount(double durationSeconds, double samplingRate) {
    return std::clamp(truncatedToInt(std::floor(durationSeconds * samplingRate)), 0, mostSamples);
}
