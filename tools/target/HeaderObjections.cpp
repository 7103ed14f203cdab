// What keeps the program from finding the sound in a WAV file.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/target/HeaderObjections.h"

#include "base/Sampling.h"
#include "tools/target/IntendedSound.h"

namespace {

QString text(const QByteArray& identifier) {
    return QString::fromLatin1(identifier).trimmed();
}

/// What the first twelve bytes say.
QStringList fileObjections(const Inspection& inspection) {
    const RiffContents& riff = inspection.riff;
    if (riff.fileSize == 0)
        return {QStringLiteral("It is empty.")};
    if (riff.form != "WAVE")
        return {inspection.container.isEmpty()
                    ? QStringLiteral("It is not a WAVE file.")
                    : QStringLiteral("It is not a WAVE file but %1.").arg(inspection.container)};
    if (riff.identifier == "RIFX")
        return {QStringLiteral("It is big-endian (RIFX).")};
    if (riff.identifier == "RF64" || riff.identifier == "BW64")
        return {QStringLiteral("It has the header of files beyond 4 GiB (%1).")
                    .arg(text(riff.identifier))};
    return {};
}

QStringList chunkObjections(const RiffContents& riff) {
    QStringList objections;
    const RiffChunk* const format = riff.find("fmt ");
    if (format == nullptr || !riff.format)
        objections << QStringLiteral("It has no format chunk.");
    else if (riff.format->isExtensible)
        objections << QStringLiteral("Its header is extensible, with a format chunk of %1 bytes "
                                     "instead of 16.")
                          .arg(format->declaredSize);
    else if (format->declaredSize != plainFormatBytes)
        objections << QStringLiteral("Its format chunk has %1 bytes instead of 16.")
                          .arg(format->declaredSize);
    const RiffChunk* const data = riff.find("data");
    if (data == nullptr)
        objections << QStringLiteral("It has no data chunk.");
    for (const RiffChunk& chunk : riff.chunks) {
        if (data == nullptr || chunk.offset >= data->offset)
            break;
        if (chunk.identifier != "fmt ")
            objections << QStringLiteral("It has a chunk %1 of %2 bytes before its data.")
                              .arg(text(chunk.identifier), QString::number(chunk.declaredSize));
    }
    return objections;
}

QStringList formatObjections(const RiffFormat& format, const QString& encoding) {
    QStringList objections;
    if (format.encoding != linearPcm)
        objections << QStringLiteral("Its samples are encoded as %1, not as linear PCM.")
                          .arg(encoding.isEmpty() ? QStringLiteral("format %1").arg(format.encoding)
                                                  : encoding);
    else if (!isReadableFormat(format))
        objections << QStringLiteral("Its samples have %1 bits, not 8, 16 or 24.")
                          .arg(format.bitsPerSample);
    if (format.channelCount == 0)
        objections << QStringLiteral("Its header declares no channel; one is assumed here.");
    if (format.samplingRate == 0)
        objections << QStringLiteral("Its header declares a sampling rate of 0 Hz; %1 Hz is "
                                     "assumed here.")
                          .arg(playedRate);
    return objections;
}

QStringList dataObjections(const RiffContents& riff, const RiffChunk& data) {
    if (data.heldSize < data.declaredSize && data.heldSize > 0)
        return {QStringLiteral("Its header declares %1 bytes of data, but the file ends after %2.")
                    .arg(data.declaredSize)
                    .arg(data.heldSize)};
    if (data.heldSize > 0)
        return {};
    const bool isAtTheEnd = data.offset == riff.fileSize;
    return {isAtTheEnd ? QStringLiteral("It has no data.")
                       : QStringLiteral("Its header declares 0 bytes of data.")};
}

} // namespace

QStringList headerObjections(const Inspection& inspection) {
    const RiffContents& riff = inspection.riff;
    QStringList objections = fileObjections(inspection);
    if (!objections.isEmpty() && riff.chunks.isEmpty())
        return objections;
    objections += chunkObjections(riff);
    const RiffChunk* const data = riff.find("data");
    if (!riff.format || data == nullptr)
        return objections;
    return objections + formatObjections(*riff.format, inspection.encoding) +
           dataObjections(riff, *data);
}

QStringList headerNotes(const RiffContents& riff) {
    QStringList notes;
    const RiffChunk* const data = riff.find("data");
    if (data == nullptr || !riff.format)
        return notes;
    const RiffFormat& format = *riff.format;
    if (riff.identifier != "RIFF")
        notes << QStringLiteral("It does not begin with RIFF. Pellion ignores this, most other "
                                "programs do not.");
    if (format.encoding == linearPcm &&
        (format.blockAlign != format.frameBytes() ||
         format.byteRate != format.frameBytes() * format.samplingRate))
        notes << QStringLiteral("The bytes per second or per sample in its header do not fit the "
                                "rest. Pellion ignores this, other programs may not.");
    for (const RiffChunk& chunk : riff.chunks)
        if (chunk.offset > data->offset)
            notes << (chunk.identifier == "RIFF"
                          ? QStringLiteral("Pellion does not read the second WAV file that begins "
                                           "after its data.")
                          : QStringLiteral("Pellion does not read its chunk %1 of %2 bytes after "
                                           "the data.")
                                .arg(text(chunk.identifier), QString::number(chunk.declaredSize)));
    if (riff.bytesAfterChunks > 0)
        notes << QStringLiteral("Its last bytes, %1 of them, are not a chunk. Pellion does not "
                                "read them.")
                     .arg(riff.bytesAfterChunks);
    if (isReadableFormat(format) && format.channelCount > 0 &&
        data->heldSize % format.frameBytes() != 0)
        notes << QStringLiteral("Its data end within a sample, which Pellion leaves out.");
    constexpr qint64 bytesNotCounted = 8;
    const qint64 declared = riff.declaredSize + bytesNotCounted;
    if (declared != riff.fileSize && declared != riff.fileSize + 1)
        notes << QStringLiteral("Its header declares a file of %1 bytes, but it has %2. Pellion "
                                "ignores this.")
                     .arg(declared)
                     .arg(riff.fileSize);
    return notes;
}
