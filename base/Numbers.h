// Numbers of the settings: limits, truncation, sample counts, and their texts.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QArrayData>
#include <QString>

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

/// Returns floor(durationSeconds x samplingRate), the sampling rate in Hz, limited to 0 and
/// maximumSampleCount; for NaN 0.
int sampleCount(double durationSeconds, double samplingRate);

/// Returns a duration given in seconds as milliseconds with two decimals and, in every locale, a
/// decimal point: 0.25 s reads "250.00".
QString millisecondsText(double durationSeconds);

/// Returns the duration in seconds of a text in milliseconds, and 0 if the text is not a number.
double secondsFromMillisecondsText(const QString& milliseconds);

/// Returns a duration in seconds as it is read back from millisecondsText(), hence rounded to 0.01
/// ms.
double durationAsShown(double durationSeconds);

/// Returns a rate or frequency in Hz in general format with six significant digits and, in every
/// locale, a decimal point.
QString hertzText(double hertz);
