// The number of samples of a generated signal.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "signal/PointCount.h"

#include <QtGlobal>

#include <cmath>
#include <limits>

int pointCount(double samplingRate, double durationSeconds) {
    const double count = std::floor(samplingRate * durationSeconds);
    if (count < 1)
        return 0;
    // Also refuses NaN, for which every comparison is false.
    if (count <= std::numeric_limits<int>::max())
        return static_cast<int>(count);
    qWarning("no signal has %g samples (%g Hz x %g s)", count, samplingRate, durationSeconds);
    return 0;
}
