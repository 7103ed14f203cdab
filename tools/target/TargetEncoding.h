// Turns samples into a WAV file's header and bytes.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sound/CWav.h"
#include "tools/target/TargetRecipe.h"

#include <optional>

/// A sample beyond full scale.
struct ClippedSample {
    int number;   ///< Counted from 0.
    double value; ///< Full scale being -1 to +1.
};

/// Returns the first sample beyond full scale, if there is one.
std::optional<ClippedSample> firstClippedSample(const QVector<double>& samples);

/// Whether a sample of -1 is written as the lowest code.
enum class MinimumCode { Avoided, Used };

/// Returns a canonical WAV file of the recipe's rate, bits and channels, each channel of which
/// holds the samples. Its samples are not converted back.
///
/// A sample x, from -1 to +1, becomes the integer nearest to x 2^(bits - 1), halves away from zero,
/// but no greater than 2^(bits - 1) - 1, since +1 has no code of its own. Nor is it lower than the
/// negative of that, unless the lowest code may be used, which the program reads as +1 at 24 bits:
/// +1 and -1 are thus written one step below full scale.
CWav encodedTarget(const QVector<double>& samples, const TargetRecipe& recipe,
                   MinimumCode minimumCode = MinimumCode::Avoided);
