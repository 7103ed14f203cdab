// How many points a generated signal has.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Returns floor(samplingRate x durationSeconds), the sampling rate in Hz. Counts below 0 are
/// returned like others. For one that is no int (NaN, infinite or beyond its range) 0 is returned,
/// and one line on the log says so.
int pointCount(double samplingRate, double durationSeconds);
