// What a target is made of.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Sampling.h"

#include <QVector>

enum class SoundKind { Tone, Complex, Sam, Noise };
enum class RampKind { None, Cosine, CosineSquared, Linear };
enum class LevelKind { Peak, Rms };

/// A sound and the file that holds it. Each kind of sound ignores the members that do not apply to
/// it.
struct TargetRecipe {
    SoundKind kind = SoundKind::Tone;
    double frequency = 440;  ///< Hz: of a tone, of a complex's fundamental, of SAM's carrier.
    double phaseDegrees = 0; ///< Phase at which tone, harmonics or carrier start.
    QVector<int> harmonics;  ///< Multiples of the frequency in a complex, ascending.
    double modulationFrequency = 40;   ///< Hz.
    double modulationDepth = 1;        ///< From 0 to 1, 1 being full modulation.
    double modulationPhaseDegrees = 0; ///< Phase at which the modulating cosine starts.
    int seed = 0;                      ///< Of noise, from 0; the same seed gives the same noise.

    double durationMs = 250;
    LevelKind levelKind = LevelKind::Peak;
    double levelDecibels = -6; ///< Re full scale, of the sound before its ramps.
    RampKind rampKind = RampKind::Cosine;
    double rampMs = 20; ///< Of either ramp.

    int samplingRate = static_cast<int>(playedRate); ///< Hz.
    int bitsPerSample = 16;                          ///< 8, 16 or 24.
    int channelCount = 1;                            ///< 1 or 2, each of which gets the same sound.
};
