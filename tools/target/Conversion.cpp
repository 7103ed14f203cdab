// Converts the sound of another file to a target.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/target/Conversion.h"

#include "base/Sampling.h"
#include "sound/TargetSamples.h"
#include "tools/target/HeaderObjections.h"
#include "tools/target/IntendedSound.h"
#include "tools/target/Levels.h"
#include "tools/target/TargetEncoding.h"

#include <algorithm>
#include <cmath>
#include <samplerate.h>
#include <stdexcept>
#include <vector>

namespace {

/// At most so many samples are added until the duration shown, in hundredths of a millisecond (2.5
/// for each sample), holds all.
constexpr int maximumPadding = 4;

/// Far above any intended level, and far below the resampler's overflow.
constexpr double maximumMagnitude = 1e6;

/// Hz. The resampler refuses lower rates, and leaves out samples at 10 MHz.
constexpr quint32 minimumRate = 157;
constexpr quint32 maximumRate = 4000000;

double resamplingRatio(quint32 samplingRate) {
    return double(playedRate) / samplingRate;
}

qint64 resampledCount(qint64 count, quint32 samplingRate) {
    return std::llround(double(count) * resamplingRatio(samplingRate));
}

QVector<double> resampled(const QVector<double>& samples, quint32 samplingRate) {
    std::vector<float> input(samples.cbegin(), samples.cend());
    // Without silence after the end the last output sample can be missing.
    input.resize(input.size() + samplingRate / playedRate + 2);
    std::vector<float> output(
        static_cast<std::size_t>(resampledCount(samples.size(), samplingRate)));
    SRC_DATA data{};
    data.data_in = input.data();
    data.data_out = output.data();
    data.input_frames = static_cast<long>(input.size());
    data.output_frames = static_cast<long>(output.size());
    data.src_ratio = resamplingRatio(samplingRate);
    const int error = src_simple(&data, SRC_SINC_BEST_QUALITY, 1);
    if (error != 0)
        throw std::runtime_error(src_strerror(error));
    if (data.output_frames_gen != data.output_frames)
        throw std::runtime_error("the resampler has left out samples");
    return {output.cbegin(), output.cend()};
}

/// Changes the level, and returns whether the result is within full scale.
bool amplify(Conversion& conversion, double decibels) {
    const double factor = factorOfDecibels(decibels);
    for (double& sample : conversion.samples)
        sample *= factor;
    if (decibels != 0)
        conversion.steps << QStringLiteral("level changed by %1 dB").arg(decibels);
    const double peak = peakOf(conversion.samples);
    if (peak <= 1)
        return true;
    // Rounded up; the margin keeps the rounding of doubles from making the result too small.
    constexpr double stepsPerDecibel = 100;
    constexpr double margin = 1e-6;
    const double excess = std::ceil(decibelsOf(peak) * stepsPerDecibel + margin) / stepsPerDecibel;
    conversion.problem = QStringLiteral("the sound would reach %1 re full scale: nothing was "
                                        "written; --gain %2 lowers it enough")
                             .arg(decibelsText(peak))
                             .arg(decibels - excess, 0, 'f', 2);
    return false;
}

void pad(Conversion& conversion) {
    const int count = conversion.samples.size();
    int padded = count;
    // Beyond the longest target no length is played whole.
    while (playedSamples(padded, playedRate) != padded && padded - count < maximumPadding)
        ++padded;
    if (padded == count)
        return;
    conversion.samples += QVector<double>(padded - count, 0.0);
    conversion.steps << QStringLiteral("silence added, %1 samples to %2, so that Pellion plays the "
                                       "last one")
                            .arg(count)
                            .arg(padded);
}

void encode(Conversion& conversion, int bitsPerSample) {
    TargetRecipe format;
    format.bitsPerSample = bitsPerSample;
    const auto lowest = std::count(conversion.samples.cbegin(), conversion.samples.cend(), -1.0);
    const bool isMinimumCodeUsed = bitsPerSample != 24;
    if (lowest > 0 && !isMinimumCodeUsed)
        conversion.steps << QStringLiteral("lowest code of 24 bits, which Pellion reads as +1, "
                                           "raised by one step: %1 times")
                                .arg(lowest);
    conversion.wav = encodedTarget(conversion.samples, format,
                                   isMinimumCodeUsed ? MinimumCode::Used : MinimumCode::Avoided);
}

} // namespace

QString conversionProblem(const CWav& sound) {
    const qint64 samples = samplesPerChannel(sound);
    if (samples == 0)
        return QStringLiteral("it holds no sound that can be read");
    const quint32 samplingRate = sound.header.samplingRate;
    if (samplingRate < minimumRate || samplingRate > maximumRate)
        return QStringLiteral("its sampling rate, %1 Hz, is too far from %2 Hz")
            .arg(samplingRate)
            .arg(playedRate);
    // Also false for NaN.
    const auto isLevel = [](double sample) { return std::abs(sample) <= maximumMagnitude; };
    if (!std::all_of(sound.samples.cbegin(), sound.samples.cend(), isLevel))
        return QStringLiteral("it holds samples that are not numbers or beyond %1")
            .arg(maximumMagnitude);
    const qint64 count = resampledCount(samples, samplingRate);
    // A source of maximumSampleCount samples may have been cut off when it was read.
    if (count < 1 || std::max(count, samples) > maximumSampleCount - maximumPadding)
        return QStringLiteral("%1 samples at %2 Hz are too few or too many")
            .arg(samples)
            .arg(samplingRate);
    return {};
}

Conversion convert(const Inspection& source, double gainDecibels) {
    const WavHeader& header = source.intended.header;
    Conversion conversion;
    conversion.problem = conversionProblem(source.intended);
    if (!conversion.problem.isEmpty())
        return conversion;
    const QStringList objections = headerObjections(source);
    if (!objections.isEmpty())
        conversion.steps << QStringLiteral("header replaced: ") + objections.join(u' ');
    conversion.samples = channelOf(source.intended, 0);
    if (header.numberOfChannels > 1)
        conversion.steps
            << QStringLiteral("first of %1 channels kept").arg(header.numberOfChannels);
    const bool isResampled = header.samplingRate != playedRate;
    if (isResampled) {
        conversion.samples = resampled(conversion.samples, header.samplingRate);
        conversion.steps << QStringLiteral("resampled from %1 to %2 Hz")
                                .arg(header.samplingRate)
                                .arg(playedRate);
    }
    if (!amplify(conversion, gainDecibels))
        return conversion;
    const bool isRounded = isResampled || gainDecibels != 0 || header.bitsPerSample > 24;
    const int bits = isRounded ? 24 : header.bitsPerSample;
    conversion.steps << (isRounded ? QStringLiteral("rounded to %1 bits").arg(bits)
                                   : QStringLiteral("%1 bits kept").arg(bits));
    pad(conversion);
    encode(conversion, bits);
    return conversion;
}
