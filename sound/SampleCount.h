// How many samples a duration holds.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QArrayData>

#include <limits>

/// The samples that the largest vector holds: its bytes and its header have to fit an int.
constexpr int mostSamples =
    (std::numeric_limits<int>::max() - int(sizeof(QArrayData))) / int(sizeof(double));

/// Returns floor(durationSeconds x samplingRate), the sampling rate in Hz, limited to 0 and
/// mostSamples; for NaN 0.
int sampleCount(double durationSeconds, double samplingRate);
