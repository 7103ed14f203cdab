// Durations and frequencies as texts, as the windows show them.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

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
