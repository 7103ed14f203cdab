// The sampling rate, sample counts, and the constants and rounding of both.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QArrayData>
#include <QtGlobal>

#include <limits>

/// The sampling rate, in Hz, at which everything is generated and played. The settings start with
/// it.
constexpr quint32 playedRate = 40000;

constexpr double millisecondsPerSecond = 1000.0;

/// 2 pi as a double.
constexpr double twoPi = 6.283185307179586;

/// The size of the largest vector of samples: its bytes and its header must fit an int.
constexpr int maximumSampleCount =
    (std::numeric_limits<int>::max() - int(sizeof(QArrayData))) / int(sizeof(double));

/// Converts a real number to an int, dropping its fraction. Beyond the range of an int the nearest
/// int is returned, for NaN 0: a plain conversion would be undefined there.
int truncatedToInt(double number);

/// Returns floor(durationSeconds x samplingRate), the sampling rate in Hz, limited to
/// 0..maximumSampleCount; for NaN 0.
int sampleCount(double durationSeconds, double samplingRate);
