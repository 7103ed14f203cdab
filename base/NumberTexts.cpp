// Durations and frequencies as texts, as the windows show them.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/NumberTexts.h"

#include "base/Sampling.h"

QString millisecondsText(double durationSeconds) {
    return QString::number(durationSeconds * millisecondsPerSecond, 'f', 2);
}

double secondsFromMillisecondsText(const QString& milliseconds) {
    return milliseconds.toDouble() / millisecondsPerSecond;
}

double durationAsShown(double durationSeconds) {
    return secondsFromMillisecondsText(millisecondsText(durationSeconds));
}

QString hertzText(double hertz) {
    return QString::number(hertz, 'g', 6);
}
