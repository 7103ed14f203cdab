// The number of samples of a generated signal.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Returns floor(samplingRate x durationSeconds), the sampling rate in Hz; 0 if that is below 1.
/// Also returns 0, and logs it in one line, for NaN and for counts that do not fit an int.
int pointCount(double samplingRate, double durationSeconds);
