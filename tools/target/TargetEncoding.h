// Turns samples into a WAV file's header and bytes.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sound/CWav.h"
#include "tools/target/TargetRecipe.h"

#include <optional>

/// A sample beyond full scale.
struct SampleBeyondFullScale {
    int number;   ///< Counted from 0.
    double value; ///< Full scale being -1 to +1.
};

/// Returns the first sample beyond full scale, if there is one.
std::optional<SampleBeyondFullScale> firstSampleBeyondFullScale(const QVector<double>& samples);

/// Whether a sample of -1 is written as the lowest code.
enum class MinimumCode { Avoided, Used };

/// Returns a canonical WAV file of the recipe's rate, bits and channels, each channel of which
/// holds the samples. CWav::samples stays empty.
///
/// A sample s, from -1 to +1, becomes the integer nearest to s x 2^(bits - 1), halves away from
/// zero, at most 2^(bits - 1) - 1, since +1 has no code of its own. The lowest integer is the
/// negative of that or, with MinimumCode::Used, -2^(bits - 1), which the program reads as +1 at 24
/// bits.
CWav encodedTarget(const QVector<double>& samples, const TargetRecipe& recipe,
                   MinimumCode minimumCode = MinimumCode::Avoided);
