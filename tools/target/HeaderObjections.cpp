// What keeps the program from finding the sound in a WAV file.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/target/HeaderObjections.h"

#include "base/Numbers.h"
#include "tools/target/IntendedSound.h"

namespace {

QString text(const QByteArray& identifier) {
    return QString::fromLatin1(identifier).trimmed();
}

/// What the first twelve bytes say.
QStringList fileObjections(const Inspection& inspection) {
    const RiffWalk& walk = inspection.walk;
    if (walk.fileSize == 0)
        return {QStringLiteral("It is empty.")};
    if (walk.form != "WAVE")
        return {inspection.container.isEmpty()
                    ? QStringLiteral("It is not a WAVE file.")
                    : QStringLiteral("It is not a WAVE file but %1.").arg(inspection.container)};
    if (walk.identifier == "RIFX")
        return {QStringLiteral("It is big-endian (RIFX).")};
    if (walk.identifier == "RF64" || walk.identifier == "BW64")
        return {QStringLiteral("It has the header of files beyond 4 GiB (%1).")
                    .arg(text(walk.identifier))};
    return {};
}

QStringList chunkObjections(const RiffWalk& walk) {
    QStringList objections;
    const RiffChunk* const format = walk.find("fmt ");
    if (format == nullptr || !walk.format)
        objections << QStringLiteral("It has no format chunk.");
    else if (walk.format->isExtensible)
        objections << QStringLiteral("Its header is extensible, with a format chunk of %1 bytes "
                                     "instead of 16.")
                          .arg(format->declaredSize);
    else if (format->declaredSize != plainFormatBytes)
        objections << QStringLiteral("Its format chunk has %1 bytes instead of 16.")
                          .arg(format->declaredSize);
    const RiffChunk* const data = walk.find("data");
    if (data == nullptr)
        objections << QStringLiteral("It has no data chunk.");
    for (const RiffChunk& chunk : walk.chunks) {
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
        objections << QStringLiteral("Its header says that it has no channels, which is taken for "
                                     "one.");
    if (format.samplingRate == 0)
        objections << QStringLiteral("Its header says a sampling rate of 0 Hz, which is taken for "
                                     "%1 Hz.")
                          .arg(playedRate);
    return objections;
}

QStringList dataObjections(const RiffWalk& walk, const RiffChunk& data) {
    if (data.heldSize < data.declaredSize && data.heldSize > 0)
        return {QStringLiteral("Its header says %1 bytes of data, but the file ends after %2.")
                    .arg(data.declaredSize)
                    .arg(data.heldSize)};
    if (data.heldSize > 0)
        return {};
    const bool isAtTheEnd = data.offset == walk.fileSize;
    return {isAtTheEnd ? QStringLiteral("It has no data.")
                       : QStringLiteral("Its header says 0 bytes of data.")};
}

} // namespace

QStringList headerObjections(const Inspection& inspection) {
    const RiffWalk& walk = inspection.walk;
    QStringList objections = fileObjections(inspection);
    if (!objections.isEmpty() && walk.chunks.isEmpty())
        return objections;
    objections += chunkObjections(walk);
    const RiffChunk* const data = walk.find("data");
    if (!walk.format || data == nullptr)
        return objections;
    return objections + formatObjections(*walk.format, inspection.encoding) +
           dataObjections(walk, *data);
}

QStringList headerNotes(const RiffWalk& walk) {
    QStringList notes;
    const RiffChunk* const data = walk.find("data");
    if (data == nullptr || !walk.format)
        return notes;
    const RiffFormat& format = *walk.format;
    if (walk.identifier != "RIFF")
        notes << QStringLiteral("It does not begin with RIFF. The program ignores this, most "
                                "others do not.");
    if (format.encoding == linearPcm &&
        (format.blockAlign != format.frameBytes() ||
         format.byteRate != format.frameBytes() * format.samplingRate))
        notes << QStringLiteral("The bytes per second or per sample in its header do not fit the "
                                "rest. The program ignores this, others may not.");
    for (const RiffChunk& chunk : walk.chunks)
        if (chunk.offset > data->offset)
            notes << (chunk.identifier == "RIFF"
                          ? QStringLiteral("A second WAV file begins after its data, which the "
                                           "program does not read.")
                          : QStringLiteral("It has a chunk %1 of %2 bytes after its data, which "
                                           "the program does not read.")
                                .arg(text(chunk.identifier), QString::number(chunk.declaredSize)));
    if (walk.bytesAfterData > 0)
        notes << QStringLiteral("Its last bytes, %1 of them, are not a chunk. The program does not "
                                "read them.")
                     .arg(walk.bytesAfterData);
    if (isReadableFormat(format) && format.channelCount > 0 &&
        data->heldSize % format.frameBytes() != 0)
        notes << QStringLiteral("Its data end within a sample, which the program leaves out.");
    constexpr qint64 bytesNotCounted = 8;
    const qint64 declared = walk.declaredSize + bytesNotCounted;
    if (declared != walk.fileSize && declared != walk.fileSize + 1)
        notes << QStringLiteral("Its header says a file of %1 bytes, which has %2. The program "
                                "ignores this.")
                     .arg(declared)
                     .arg(walk.fileSize);
    return notes;
}
