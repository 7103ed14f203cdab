// What a WAV file is meant to hold.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/target/IntendedSound.h"

#include "base/Sampling.h"

#include <QIODevice>

#include <algorithm>

bool isReadableFormat(const RiffFormat& format) {
    const quint16 bits = format.bitsPerSample;
    return format.encoding == linearPcm && (bits == 8 || bits == 16 || bits == 24);
}

CWav intendedSound(QIODevice& file, const RiffContents& riff) {
    CWav wav;
    const RiffChunk* const data = riff.find("data");
    if (data == nullptr || !riff.format || !isReadableFormat(*riff.format))
        return wav;
    RiffFormat format = *riff.format;
    format.channelCount = std::max<quint16>(format.channelCount, 1);
    if (format.samplingRate == 0)
        format.samplingRate = playedRate;
    const qint64 size = data->declaredSize == 0 ? riff.fileSize - data->offset : data->heldSize;
    const qint64 frames = std::min<qint64>(size / format.frameBytes(), maximumSampleCount);
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
    // At 24 bits only the lowest code is read as +1.
    if (format.bitsPerSample == 24)
        std::replace(wav.samples.begin(), wav.samples.end(), 1.0, -1.0);
    return wav;
}

qint64 minimumCodesOf24Bits(const CWav& wav) {
    if (wav.header.bitsPerSample != 24)
        return 0;
    return std::count(wav.samples.cbegin(), wav.samples.cend(), -1.0);
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
