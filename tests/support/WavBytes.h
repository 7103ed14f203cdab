// Canonical WAV files for tests, byte by byte.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace testsupport {

struct WavFormat {
    quint32 samplingRate = 40000; ///< Hz
    quint16 channelCount = 1;
    quint16 bitsPerSample = 16;
};

/// Offsets of header fields in a file, for tests that change one.
namespace wavoffset {
constexpr int riffIdentifier = 0;
constexpr int riffChunkSize = 4;
constexpr int format = 8;
constexpr int formatChunkIdentifier = 12;
constexpr int formatChunkSize = 16;
constexpr int audioFormat = 20;
constexpr int channelCount = 22;
constexpr int samplingRate = 24;
constexpr int byteRate = 28;
constexpr int blockAlign = 32;
constexpr int bitsPerSample = 34;
constexpr int dataChunkIdentifier = 36;
constexpr int dataSize = 40;
constexpr int data = 44;
} // namespace wavoffset

/// Returns a 44-byte header for that many bytes of data.
QByteArray wavHeader(const WavFormat& format, quint32 dataSize);

/// Returns a header and the data after it.
QByteArray wavWithData(const WavFormat& format, const QByteArray& data);

/// Returns a header and the samples after it, channels interleaved. Each sample is the integer
/// that the file holds: 0 to 255 at 8 bits, signed at others; its lowest bytes are taken.
QByteArray wavWithSamples(const WavFormat& format, const QVector<int>& samples);

/// Returns that many samples of 16 bits, no two neighbours alike, none of them 0.
QVector<int> unevenCodes(int count, int seed = 1);

/// Writes a target of 16 bits whose samples are all alike and not silent; returns whether all of it
/// was written. 200 samples last 5 ms.
bool writeSteadyTarget(const QString& path, int samples = 200);

/// Overwrites two or four bytes at an offset by a little-endian number.
void setUnsigned16(QByteArray& bytes, int offset, quint16 value);
void setUnsigned32(QByteArray& bytes, int offset, quint32 value);

/// The same for a copy.
QByteArray with16(QByteArray bytes, int offset, quint16 value);
QByteArray with32(QByteArray bytes, int offset, quint32 value);

} // namespace testsupport
