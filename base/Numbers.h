// Numbers of the settings: limits, truncation, sample counts, and how they read as text.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QArrayData>
#include <QString>

#include <limits>

/// Hz, at which everything is generated and played: the settings start with it.
constexpr quint32 playedRate = 40000;

constexpr double millisecondsPerSecond = 1000.0;

/// 2 pi as a double.
constexpr double twoPi = 6.283185307179586;

/// The samples that the largest vector holds: its bytes and its header have to fit an int.
constexpr int maximumSampleCount =
    (std::numeric_limits<int>::max() - int(sizeof(QArrayData))) / int(sizeof(double));

/// Converts a real number to an int, dropping its fraction. Beyond the range of an int the nearest
/// int is returned, for NaN 0: a plain conversion would be undefined there.
int truncatedToInt(double number);

/// Returns floor(durationSeconds x samplingRate), the sampling rate in Hz, limited to 0 and
/// maximumSampleCount; for NaN 0.
int sampleCount(double durationSeconds, double samplingRate);

/// Returns a duration given in seconds as milliseconds with two decimals, the decimal point a
/// point in every locale: 0.25 s reads "250.00".
QString millisecondsText(double durationSeconds);

/// Returns the duration in seconds of a text in milliseconds, and 0 if the text is not a number.
double secondsFromMillisecondsText(const QString& milliseconds);

/// Returns the duration, in seconds, that is read back from the text of a duration in seconds.
double durationAsShown(double durationSeconds);

/// Returns a rate or frequency in Hz in general format with six significant digits, the decimal
/// point a point in every locale.
QString hertzText(double hertz);
