// Makes the samples of a target.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/target/TargetRecipe.h"

#include <QString>

/// Returns the number of samples per channel: duration x sampling rate, rounded to the nearest.
double sampleCountOf(const TargetRecipe& recipe);

/// Returns why a recipe is not possible, in one sentence without full stop: a frequency too high
/// for the sampling rate, a duration without samples or too long for a file, ramps that do not fit.
/// Empty if it is possible.
QString problemOf(const TargetRecipe& recipe);

/// Returns the samples of one channel of a recipe without problems: the signal library's sound,
/// scaled to the recipe's level and then ramped. Nothing is limited to full scale. The peak is the
/// greatest magnitude among the samples, the RMS level that of all samples, 0 dB being a magnitude
/// or root mean square of 1: a sine at a peak of 0 dB has an RMS level of -3.01 dB.
///
/// Noise is whiteNoise() of the library, seeded by the recipe instead of the time, minus its mean.
///
/// Empty when the sound is silent before it is scaled.
QVector<double> targetSound(const TargetRecipe& recipe);
