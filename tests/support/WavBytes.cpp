// Canonical WAV files for tests, byte by byte.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/WavBytes.h"

#include "support/FileBytes.h"

#include <QtEndian>

namespace testsupport {

namespace {

template <typename Number> void overwrite(QByteArray& bytes, int offset, Number value) {
    Q_ASSERT(offset >= 0 && offset + static_cast<int>(sizeof(Number)) <= bytes.size());
    qToLittleEndian(value, bytes.data() + offset);
}

} // namespace

QByteArray wavHeader(const WavFormat& format, quint32 dataSize) {
    const quint32 bytesPerFrame = quint32{format.channelCount} * format.bitsPerSample / 8U;
    QByteArray bytes("RIFF....WAVEfmt ....................data....");
    setUnsigned32(bytes, wavoffset::riffChunkSize, dataSize + 36);
    setUnsigned32(bytes, wavoffset::formatChunkSize, 16);
    setUnsigned16(bytes, wavoffset::audioFormat, 1);
    setUnsigned16(bytes, wavoffset::channelCount, format.channelCount);
    setUnsigned32(bytes, wavoffset::samplingRate, format.samplingRate);
    setUnsigned32(bytes, wavoffset::byteRate, format.samplingRate * bytesPerFrame);
    setUnsigned16(bytes, wavoffset::blockAlign, static_cast<quint16>(bytesPerFrame));
    setUnsigned16(bytes, wavoffset::bitsPerSample, format.bitsPerSample);
    setUnsigned32(bytes, wavoffset::dataSize, dataSize);
    return bytes;
}

QByteArray wavWithData(const WavFormat& format, const QByteArray& data) {
    return wavHeader(format, static_cast<quint32>(data.size())) + data;
}

QByteArray wavWithSamples(const WavFormat& format, const QVector<int>& samples) {
    QByteArray data;
    data.reserve(samples.size() * format.bitsPerSample / 8);
    for (const int sample : samples) {
        const auto code = static_cast<quint32>(sample);
        for (int shift = 0; shift < format.bitsPerSample; shift += 8)
            data.append(static_cast<char>((code >> shift) & 0xFFU));
    }
    return wavWithData(format, data);
}

QVector<int> unevenCodes(int count, int seed) {
    QVector<int> codes(count);
    for (int i = 0; i < count; ++i)
        codes[i] = ((i + seed) * 7919 % 16381 + 1) * (i % 2 == 0 ? 1 : -1);
    return codes;
}

bool writeSteadyTarget(const QString& path, int samples) {
    constexpr int code = 12345;
    return writeBytes(path, wavWithSamples({}, QVector<int>(samples, code)));
}

void setUnsigned16(QByteArray& bytes, int offset, quint16 value) {
    overwrite(bytes, offset, value);
}

void setUnsigned32(QByteArray& bytes, int offset, quint32 value) {
    overwrite(bytes, offset, value);
}

QByteArray with16(QByteArray bytes, int offset, quint16 value) {
    setUnsigned16(bytes, offset, value);
    return bytes;
}

QByteArray with32(QByteArray bytes, int offset, quint32 value) {
    setUnsigned32(bytes, offset, value);
    return bytes;
}

} // namespace testsupport
