// What a WAV file is meant to hold.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/IntendedSound.h"

#include "base/Numbers.h"

#include <QIODevice>

#include <algorithm>

namespace {

constexpr std::size_t bytesOf24Bits = 3;

bool isLowestCode(const char* bytes) {
    return bytes[0] == '\0' && bytes[1] == '\0' && bytes[2] == '\x80';
}

/// Calls a function with the number of each sample that has the lowest code of 24 bits.
template <typename Function> void forLowestCodes(const CWav& wav, Function&& function) {
    if (wav.header.bitsPerSample != 24)
        return;
    for (std::size_t i = 0; i < wav.samples.size(); ++i)
        if (isLowestCode(wav.rawData.data() + i * bytesOf24Bits))
            function(i);
}

} // namespace

bool isReadableFormat(const RiffFormat& format) {
    const quint16 bits = format.bitsPerSample;
    return format.encoding == linearPcm && format.channelCount > 0 &&
           (bits == 8 || bits == 16 || bits == 24);
}

CWav intendedSound(QIODevice& file, const RiffWalk& walk) {
    CWav wav;
    const RiffChunk* const data = walk.find("data");
    if (data == nullptr || !walk.format || !isReadableFormat(*walk.format))
        return wav;
    const RiffFormat& format = *walk.format;
    const qint64 frames =
        std::min<qint64>(data->heldSize / format.frameBytes(), maximumSampleCount);
    wav.header.audioFormat = format.encoding;
    wav.header.numberOfChannels = format.channelCount;
    wav.header.samplingRate = format.samplingRate;
    wav.header.bitsPerSample = format.bitsPerSample;
    file.seek(data->offset);
    const QByteArray bytes = file.read(frames * format.frameBytes());
    wav.rawData.assign(bytes.cbegin(), bytes.cend());
    wav.header.dataSize = static_cast<quint32>(bytes.size());
    wav.bytesRead = bytes.size();
    wav.numberOfSamples = wav.header.dataSize / (format.bitsPerSample / 8U);
    wav.ConvertData();
    forLowestCodes(wav, [&](std::size_t i) { wav.samples[i] = -1; });
    return wav;
}

int lowestCodesOf24Bits(const CWav& wav) {
    int count = 0;
    forLowestCodes(wav, [&](std::size_t) { ++count; });
    return count;
}

QVector<double> channelOf(const CWav& wav, int channel) {
    const std::size_t channels = wav.header.numberOfChannels;
    if (channels == 0)
        return {};
    QVector<double> samples(static_cast<int>(wav.samples.size() / channels));
    for (int i = 0; i < samples.size(); ++i)
        samples[i] =
            wav.samples[static_cast<std::size_t>(i) * channels + static_cast<std::size_t>(channel)];
    return samples;
}
