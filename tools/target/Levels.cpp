// Levels in decibels re full scale.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/target/Levels.h"

#include "signal/OstrelClasses.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr double decibelsPerDecade = 20;
}

double peakOf(const QVector<double>& samples) {
    double peak = 0;
    for (const double sample : samples)
        peak = std::max(peak, std::abs(sample));
    return peak;
}

double factorOfDecibels(double decibels) {
    return std::pow(10.0, decibels / decibelsPerDecade);
}

double decibelsOf(double magnitude) {
    return decibelsPerDecade * std::log10(magnitude);
}

QString decibelsText(double magnitude) {
    const QString number = QString::number(decibelsOf(magnitude), 'f', 2);
    return (number == QLatin1String("-0.00") ? QStringLiteral("0.00") : number) +
           QStringLiteral(" dB");
}

QString levelsText(const QVector<double>& samples) {
    return QStringLiteral("peak %1, RMS %2 re full scale")
        .arg(decibelsText(peakOf(samples)), decibelsText(samples.isEmpty() ? 0 : rms(samples)));
}
