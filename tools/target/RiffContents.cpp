// The chunks of a WAV file.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/target/RiffContents.h"

#include <QIODevice>
#include <QtEndian>

#include <algorithm>

namespace {

constexpr int identifierBytes = 4;
constexpr int chunkHeaderBytes = 8;
constexpr int riffHeaderBytes = 12;
constexpr int extensibleFormatBytes = 40;
constexpr int subformatOffset = 24;
constexpr quint16 extensibleEncoding = 0xFFFE;
constexpr int maximumChunks = 1000;

template <typename Number> Number numberAt(const QByteArray& bytes, int offset) {
    return qFromLittleEndian<Number>(bytes.constData() + offset);
}

/// Returns up to `count` bytes from `offset` on.
QByteArray bytesAt(QIODevice& file, qint64 offset, qint64 count) {
    return file.seek(offset) ? file.read(count) : QByteArray();
}

bool isPrintable(const QByteArray& identifier) {
    return std::all_of(identifier.cbegin(), identifier.cend(),
                       [](char character) { return character >= ' ' && character <= '~'; });
}

std::optional<RiffFormat> formatIn(const QByteArray& content) {
    if (content.size() < plainFormatBytes)
        return std::nullopt;
    RiffFormat format;
    format.encoding = numberAt<quint16>(content, 0);
    format.channelCount = numberAt<quint16>(content, 2);
    format.samplingRate = numberAt<quint32>(content, 4);
    format.byteRate = numberAt<quint32>(content, 8);
    format.blockAlign = numberAt<quint16>(content, 12);
    format.bitsPerSample = numberAt<quint16>(content, 14);
    format.isExtensible =
        format.encoding == extensibleEncoding && content.size() >= extensibleFormatBytes;
    if (format.isExtensible)
        format.encoding = numberAt<quint16>(content, subformatOffset);
    return format;
}

} // namespace

const RiffChunk* RiffContents::find(const QByteArray& wanted) const {
    const auto* const found =
        std::find_if(chunks.cbegin(), chunks.cend(),
                     [&](const RiffChunk& chunk) { return chunk.identifier == wanted; });
    return found == chunks.cend() ? nullptr : found;
}

RiffContents readRiff(QIODevice& file) {
    RiffContents riff;
    const QByteArray head = bytesAt(file, 0, riffHeaderBytes);
    riff.fileSize = file.size();
    riff.identifier = head.left(identifierBytes);
    if (head.size() >= chunkHeaderBytes)
        riff.declaredSize = numberAt<quint32>(head, identifierBytes);
    riff.form = head.mid(chunkHeaderBytes);
    qint64 position = head.size();
    const bool isWalkable = riff.form == "WAVE" && riff.identifier != "RIFX";
    while (isWalkable && riff.chunks.size() < maximumChunks) {
        const QByteArray header = bytesAt(file, position, chunkHeaderBytes);
        RiffChunk chunk;
        chunk.identifier = header.left(identifierBytes);
        if (header.size() < chunkHeaderBytes || !isPrintable(chunk.identifier))
            break;
        chunk.declaredSize = numberAt<quint32>(header, identifierBytes);
        chunk.offset = position + chunkHeaderBytes;
        chunk.heldSize = std::min<qint64>(chunk.declaredSize, riff.fileSize - chunk.offset);
        riff.chunks.append(chunk);
        // Chunks begin at even offsets; at the end of a file the padding byte is often missing.
        position = std::min(chunk.offset + chunk.heldSize + chunk.heldSize % 2, riff.fileSize);
    }
    riff.bytesAfterChunks = riff.fileSize - position;
    if (const RiffChunk* chunk = riff.find("fmt "))
        riff.format = formatIn(
            bytesAt(file, chunk->offset, std::min<qint64>(chunk->heldSize, extensibleFormatBytes)));
    if (const RiffChunk* chunk = riff.find("fact"); chunk != nullptr && chunk->heldSize >= 4)
        riff.declaredFrames = numberAt<quint32>(bytesAt(file, chunk->offset, 4), 0);
    return riff;
}
