// Makes the samples of a target.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/target/TargetSound.h"

#include "base/Sampling.h"
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

/// Half a sample longer than the sound: the generators truncate rate x duration, which gives one
/// sample too few if rounding makes that product slightly less than an integer.
double durationForGenerator(const TargetRecipe& recipe) {
    return (sampleCountOf(recipe) + 0.5) / recipe.samplingRate;
}

QVector<double> harmonicComplex(const TargetRecipe& recipe) {
    QVector<double> sum(static_cast<int>(sampleCountOf(recipe)), 0.0);
    for (const int harmonic : recipe.harmonics) {
        const QVector<double> partial = sine(recipe.samplingRate, durationForGenerator(recipe),
                                             harmonic * recipe.frequency, 1, recipe.phaseDegrees);
        std::transform(sum.cbegin(), sum.cend(), partial.cbegin(), sum.begin(), std::plus<>());
    }
    return sum;
}

/// The numbers of whiteNoise(), but seeded by `seed` instead of the time, minus their mean.
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
        return sine(recipe.samplingRate, durationForGenerator(recipe), recipe.frequency, 1,
                    recipe.phaseDegrees);
    case SoundKind::Complex:
        return harmonicComplex(recipe);
    case SoundKind::Sam:
        return sam(recipe.samplingRate, durationForGenerator(recipe), recipe.frequency,
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

/// The highest frequency in the sound, in Hz; noise has no limit but half the rate.
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

/// The maximum number of samples per channel: they must fit the largest vector, and a file whose
/// 32-bit size counts all but eight of its bytes.
double maximumSamplesOf(const TargetRecipe& recipe) {
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
    if (count > maximumSamplesOf(recipe))
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
    // Divided first, so that with a peak of 0 dB rounding does not put the highest sample beyond
    // full scale.
    for (double& sample : samples)
        sample = sample / reference * amplitude;
    ramp(recipe.rampKind, samples, static_cast<int>(rampPoints(recipe)));
    return samples;
}
