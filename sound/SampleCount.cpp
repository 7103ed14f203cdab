// How many samples a duration holds.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/SampleCount.h"

#include "app/Truncation.h"

#include <algorithm>
#include <cmath>

int sampleCount(double durationSeconds, double samplingRate) {
    return std::clamp(truncatedToInt(std::floor(durationSeconds * samplingRate)), 0, mostSamples);
}
