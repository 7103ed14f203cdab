// A presented sound in the recording of a sound device of another rate.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/HeardSounds.h"

/// Looks for a sound in that stretch of a recording, at the device's rate (Hz), in which it, and
/// nothing else, should be heard once the server has resampled it from `soundRate` (Hz).
///
/// Both are compared below 8 kHz, where no resampler's transition band reaches, at the delay that
/// fits best. The sound is complete when no 5 ms of it differ by more than a hundredth of its root
/// mean square; where a part of it is silent instead it has gaps. The sound must be at least 5 ms
/// long and not silent throughout. A single lost sample is found in noise and in tones from about
/// 100 Hz, a lost quantum in any sound. `start` and `samplesMissing` count samples at `soundRate`.
testsupport::HeardSound findResampledSound(const QVector<float>& stretch, double deviceRate,
                                           const QVector<float>& sound, double soundRate);
