// Turns samples into a WAV file's header and bytes.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/target/TargetEncoding.h"

#include "tools/target/RiffContents.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int bitsPerByte = 8;

/// The bytes of the header that its RIFF size counts.
constexpr quint32 headerBytesCounted = sizeof(WavHeader) - 8;

WavHeader headerOf(const TargetRecipe& recipe, quint32 dataSize) {
    const auto frameBytes =
        static_cast<quint16>(recipe.channelCount * recipe.bitsPerSample / bitsPerByte);
    WavHeader header{};
    header.riffIdentifier = {'R', 'I', 'F', 'F'};
    // A chunk of an odd size is followed by a byte that makes it even.
    header.riffChunkSize = headerBytesCounted + dataSize + dataSize % 2;
    header.format = {'W', 'A', 'V', 'E'};
    header.formatChunkIdentifier = {'f', 'm', 't', ' '};
    header.formatChunkSize = plainFormatBytes;
    header.audioFormat = linearPcm;
    header.numberOfChannels = static_cast<quint16>(recipe.channelCount);
    header.samplingRate = static_cast<quint32>(recipe.samplingRate);
    header.byteRate = header.samplingRate * frameBytes;
    header.blockAlign = frameBytes;
    header.bitsPerSample = static_cast<quint16>(recipe.bitsPerSample);
    header.dataChunkIdentifier = {'d', 'a', 't', 'a'};
    header.dataSize = dataSize;
    return header;
}

int codeOf(double sample, int bitsPerSample, MinimumCode minimumCode) {
    const double scale = std::ldexp(1.0, bitsPerSample - 1);
    const double minimum = minimumCode == MinimumCode::Used ? -scale : 1 - scale;
    const double code = std::clamp(std::round(sample * scale), minimum, scale - 1);
    constexpr int zeroAt8Bits = 128;
    return static_cast<int>(code) + (bitsPerSample == bitsPerByte ? zeroAt8Bits : 0);
}

} // namespace

std::optional<SampleBeyondFullScale> firstSampleBeyondFullScale(const QVector<double>& samples) {
    const auto* const beyond = std::find_if(samples.cbegin(), samples.cend(),
                                            [](double sample) { return std::abs(sample) > 1; });
    if (beyond == samples.cend())
        return std::nullopt;
    return SampleBeyondFullScale{static_cast<int>(beyond - samples.cbegin()), *beyond};
}

CWav encodedTarget(const QVector<double>& samples, const TargetRecipe& recipe,
                   MinimumCode minimumCode) {
    CWav wav;
    for (const double sample : samples) {
        const auto code = static_cast<unsigned>(codeOf(sample, recipe.bitsPerSample, minimumCode));
        for (int channel = 0; channel < recipe.channelCount; ++channel)
            for (int shift = 0; shift < recipe.bitsPerSample; shift += bitsPerByte)
                wav.rawData.push_back(static_cast<char>((code >> unsigned(shift)) & 0xFFU));
    }
    wav.bytesRead = static_cast<std::int64_t>(wav.rawData.size());
    wav.numberOfSamples = static_cast<quint32>(samples.size() * qint64(recipe.channelCount));
    wav.header = headerOf(recipe, static_cast<quint32>(wav.rawData.size()));
    return wav;
}
