// How numbers of the settings read in the main window's fields, and back.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SettingsText.h"

namespace {
constexpr double millisecondsPerSecond = 1000.0;
}

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
