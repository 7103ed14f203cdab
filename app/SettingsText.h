// How numbers of the settings read in the main window's fields, and back.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Returns a duration given in seconds as milliseconds with two decimals, the decimal point a
/// point in every locale: 0.25 s reads "250.00".
QString millisecondsText(double durationSeconds);

/// Returns the duration in seconds of a text in milliseconds. A text that is no number gives 0.
double secondsFromMillisecondsText(const QString& milliseconds);

/// Returns the duration, in seconds, that is read back of the text of a duration in seconds.
double durationAsShown(double durationSeconds);

/// Returns a rate or frequency in Hz in general format with six significant digits, the decimal
/// point a point in every locale.
QString hertzText(double hertz);
