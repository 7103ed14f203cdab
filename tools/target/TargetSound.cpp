// Makes the samples of a target.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/target/TargetSound.h"

#include "base/Numbers.h"
#include "signal/OstrelClasses.h"
#include "signal/RandomGenerator.h"
#include "tools/target/Levels.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>

namespace {

double rampPoints(const TargetRecipe& recipe) {
    if (recipe.rampKind == RampKind::None)
        return 0;
    return std::round(recipe.rampMs * recipe.samplingRate / millisecondsPerSecond);
}

/// Half a sample more than the sound has: the library takes the integer below rate x duration,
/// which is one too few wherever that product comes out a hair below an integer.
double librarysDuration(const TargetRecipe& recipe) {
    return (sampleCountOf(recipe) + 0.5) / recipe.samplingRate;
}

QVector<double> harmonicComplex(const TargetRecipe& recipe) {
    QVector<double> sum(static_cast<int>(sampleCountOf(recipe)), 0.0);
    for (const int harmonic : recipe.harmonics) {
        const QVector<double> partial = sine(recipe.samplingRate, librarysDuration(recipe),
                                             harmonic * recipe.frequency, 1, recipe.phaseDegrees);
        std::transform(sum.cbegin(), sum.cend(), partial.cbegin(), sum.begin(), std::plus<>());
    }
    return sum;
}

/// The numbers of whiteNoise(), which would seed them with the time.
QVector<double> centredNoise(int count, int seed) {
    seedRandomNumbers(static_cast<uint>(seed));
    QVector<double> noise(count);
    for (double& sample : noise)
        sample = nextRandomNumber() / static_cast<double>(maximumRandomNumber);
    const double mean = std::accumulate(noise.cbegin(), noise.cend(), 0.0) / noise.size();
    for (double& sample : noise)
        sample -= mean;
    return noise;
}

QVector<double> unscaledSound(const TargetRecipe& recipe) {
    switch (recipe.kind) {
    case SoundKind::Tone:
        return sine(recipe.samplingRate, librarysDuration(recipe), recipe.frequency, 1,
                    recipe.phaseDegrees);
    case SoundKind::Complex:
        return harmonicComplex(recipe);
    case SoundKind::Sam:
        return sam(recipe.samplingRate, librarysDuration(recipe), recipe.frequency,
                   recipe.modulationFrequency, recipe.modulationDepth, 1, recipe.phaseDegrees,
                   recipe.modulationPhaseDegrees, true);
    case SoundKind::Noise:
        return centredNoise(static_cast<int>(sampleCountOf(recipe)), recipe.seed);
    }
    return {};
}

void ramp(RampKind kind, QVector<double>& samples, int points) {
    switch (kind) {
    case RampKind::None:
        return;
    case RampKind::Cosine:
        return cosRamp(&samples, points);
    case RampKind::CosineSquared:
        return cos2Ramp(&samples, points);
    case RampKind::Linear:
        return linearRamp(&samples, points);
    }
}

/// The highest frequency in the sound, in Hz; that of noise is whatever the rate carries.
double highestFrequency(const TargetRecipe& recipe) {
    switch (recipe.kind) {
    case SoundKind::Tone:
        return recipe.frequency;
    case SoundKind::Complex:
        return recipe.frequency * recipe.harmonics.last();
    case SoundKind::Sam:
        return recipe.frequency + recipe.modulationFrequency;
    case SoundKind::Noise:
        return 0;
    }
    return 0;
}

/// The samples per channel that fit a file, whose sizes have 32 bits and count all but eight bytes
/// of it, and the largest vector.
double mostSamplesOf(const TargetRecipe& recipe) {
    constexpr double headerBytesCounted = 36;
    constexpr double padByte = 1;
    const double bytes = std::numeric_limits<quint32>::max() - headerBytesCounted - padByte;
    return std::min(std::floor(bytes * 8 / (recipe.bitsPerSample * recipe.channelCount)),
                    static_cast<double>(maximumSampleCount));
}

} // namespace

double sampleCountOf(const TargetRecipe& recipe) {
    return std::round(recipe.durationMs * recipe.samplingRate / millisecondsPerSecond);
}

QString problemOf(const TargetRecipe& recipe) {
    if (recipe.kind == SoundKind::Complex && recipe.harmonics.isEmpty())
        return QStringLiteral("a complex needs at least one harmonic");
    const double highest = highestFrequency(recipe);
    if (highest >= recipe.samplingRate / 2.0)
        return QStringLiteral("%1 Hz are not below half the sampling rate, %2 Hz")
            .arg(highest)
            .arg(recipe.samplingRate / 2.0);
    const double count = sampleCountOf(recipe);
    if (count < 1)
        return QStringLiteral("%1 ms hold no sample at %2 Hz")
            .arg(recipe.durationMs)
            .arg(recipe.samplingRate);
    if (count > mostSamplesOf(recipe))
        return QStringLiteral("%1 ms are more than a file can hold").arg(recipe.durationMs);
    if (2 * rampPoints(recipe) > count)
        return QStringLiteral("two ramps of %1 ms do not fit into %2 ms")
            .arg(recipe.rampMs)
            .arg(recipe.durationMs);
    return {};
}

QVector<double> targetSound(const TargetRecipe& recipe) {
    QVector<double> samples = unscaledSound(recipe);
    const double reference = recipe.levelKind == LevelKind::Peak ? peakOf(samples) : rms(samples);
    if (reference == 0)
        return {};
    const double amplitude = factorOfDecibels(recipe.levelDecibels);
    // Divided, so that the highest sample of a peak of 0 dB is full scale and not a hair beyond it.
    for (double& sample : samples)
        sample = sample / reference * amplitude;
    ramp(recipe.rampKind, samples, static_cast<int>(rampPoints(recipe)));
    return samples;
}
