// How many points a generated signal has.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Returns floor(samplingRate x durationSeconds), the sampling rate in Hz; 0 when that is below 1,
/// down to minus infinity. For NaN and for counts beyond an int 0 is returned as well, and one line
/// on the log says so.
int pointCount(double samplingRate, double durationSeconds);
