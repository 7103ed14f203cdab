// The chunks of a WAV file.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QVector>

#include <optional>

class QIODevice;

/// The encoding number of linear PCM in a format chunk.
constexpr quint16 linearPcm = 1;

/// The length of the shortest format chunk, which is enough for linear PCM.
constexpr int plainFormatBytes = 16;

/// One chunk of a file.
struct RiffChunk {
    QByteArray identifier;    ///< Four characters.
    qint64 offset = 0;        ///< Of its content in the file, in bytes.
    quint32 declaredSize = 0; ///< Bytes of its content, as its header says.
    qint64 heldSize = 0;      ///< Bytes of its content that the file holds: the same or fewer.
};

/// What a format chunk says.
struct RiffFormat {
    quint16 encoding = 0; ///< 1 for linear PCM; of an extensible header, that of the subformat.
    bool isExtensible = false;
    quint16 channelCount = 0;
    quint32 samplingRate = 0; ///< Hz.
    quint32 byteRate = 0;     ///< Bytes per second.
    quint16 blockAlign = 0;   ///< Bytes of one sample of all channels.
    quint16 bitsPerSample = 0;

    /// Whether samples are encoded in blocks, the last of which is padded.
    bool isInBlocks() const { return bitsPerSample < 8; }

    /// Bytes of one sample of all channels, by the number of bits.
    quint32 frameBytes() const { return channelCount * ((bitsPerSample + 7U) / 8U); }
};

/// The chunks of a file, and what they declare.
struct RiffContents {
    qint64 fileSize = 0;      ///< Bytes.
    QByteArray identifier;    ///< The first four bytes; "RIFF" in a valid file.
    quint32 declaredSize = 0; ///< Bytes of the file after this field, as it says.
    QByteArray form;          ///< The bytes from 8 to 11; "WAVE" in a valid file.
    QVector<RiffChunk> chunks;
    qint64 bytesAfterChunks = 0; ///< Bytes at the end that are not a chunk.
    std::optional<RiffFormat> format;
    /// Samples of each channel by the fact chunk; 0 when it does not say.
    quint32 declaredFrames = 0;

    /// Returns the first chunk of an identifier; null when there is none.
    const RiffChunk* find(const QByteArray& wanted) const;
};

/// Walks through a file from its beginning to its end, whatever size its own header says. A chunk
/// that the end of the file cuts off is the last one. If a file is not WAVE or not little-endian,
/// or has more chunks than any program writes, the rest counts as bytesAfterChunks.
RiffContents readRiff(QIODevice& file);
