// Levels in decibels re full scale.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVector>

/// Returns the maximum magnitude of the samples; 0 without samples.
double peakOf(const QVector<double>& samples);

/// Returns the level of a magnitude, minus infinity for 0.
double decibelsOf(double magnitude);

/// Returns the factor of a level: 10^(decibels / 20).
double factorOfDecibels(double decibels);

/// Returns the level of a magnitude with two decimals and its unit, "-6.00 dB"; "-inf dB" for 0.
QString decibelsText(double magnitude);

/// Returns the peak and the RMS level of one channel: "peak -6.00 dB, RMS -9.01 dB re full scale".
QString levelsText(const QVector<double>& samples);
