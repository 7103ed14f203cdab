// What keeps the program from finding the sound in a WAV file.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/HeaderObjections.h"

#include "base/Numbers.h"
#include "tools/IntendedSound.h"

#include <QMap>

#include <algorithm>

namespace {

constexpr quint16 ieeeFloat = 3;

QString text(const QByteArray& identifier) {
    return QString::fromLatin1(identifier).trimmed();
}

/// An encoding other than linear PCM.
struct Encoding {
    QString name;
    bool isReadBySox = true;
};

Encoding encodingOf(quint16 code) {
    static const QMap<quint16, Encoding> encodings{
        {2, {"MS ADPCM"}},   {ieeeFloat, {"floating point"}},
        {6, {"A-law"}},      {7, {"mu-law"}},
        {17, {"IMA ADPCM"}}, {49, {"GSM 6.10"}},
        {85, {"MP3", false}}};
    return encodings.value(code, {QStringLiteral("format %1").arg(code), false});
}

bool isReadBySox(const RiffFormat& format) {
    const quint16 bits = format.bitsPerSample;
    if (format.encoding == linearPcm)
        return bits == 8 || bits == 16 || bits == 24 || bits == 32;
    return encodingOf(format.encoding).isReadBySox;
}

/// What the first twelve bytes say.
QStringList fileObjections(const RiffWalk& walk, Fix& fix) {
    if (walk.fileSize == 0) {
        fix.program = Fix::Program::None;
        return {QStringLiteral("It is empty.")};
    }
    if (walk.form != "WAVE") {
        fix.program = Fix::Program::Ffmpeg;
        return {QStringLiteral("It is no WAVE file.")};
    }
    if (walk.identifier == "RIFX")
        return {QStringLiteral("It is big-endian (RIFX).")};
    if (walk.identifier == "RF64" || walk.identifier == "BW64") {
        fix.program = Fix::Program::Ffmpeg;
        return {QStringLiteral("It has the header of files beyond 4 GiB (%1).")
                    .arg(text(walk.identifier))};
    }
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
            objections << QStringLiteral("A chunk %1 of %2 bytes stands before the data.")
                              .arg(text(chunk.identifier), QString::number(chunk.declaredSize));
    }
    return objections;
}

QStringList formatObjections(const RiffFormat& format, Fix& fix) {
    QStringList objections;
    const quint16 bits = format.bitsPerSample;
    if (format.encoding != linearPcm) {
        objections << QStringLiteral("Its samples are encoded as %1, not as linear PCM.")
                          .arg(encodingOf(format.encoding).name);
        fix.bitsPerSample = format.encoding == ieeeFloat ? 24 : 16;
    } else if (bits != 8 && bits != 16 && bits != 24) {
        objections << QStringLiteral("Its samples have %1 bits, not 8, 16 or 24.").arg(bits);
        fix.bitsPerSample = 24;
    }
    if (!isReadBySox(format))
        fix.program = Fix::Program::Ffmpeg;
    if (format.channelCount == 0)
        objections << QStringLiteral("Its header says that it has no channels.");
    if (format.samplingRate == 0)
        objections << QStringLiteral("Its header says a sampling rate of 0 Hz.");
    return objections;
}

QStringList dataObjections(const RiffWalk& walk, const RiffChunk& data, Fix& fix) {
    const bool isShort = data.heldSize < data.declaredSize;
    if (!isShort && data.declaredSize != 0)
        return {};
    fix.isSizeIgnored = true;
    if (isShort && data.heldSize > 0)
        return {QStringLiteral("Its header says %1 bytes of data, but the file ends after %2.")
                    .arg(data.declaredSize)
                    .arg(data.heldSize)};
    const bool isNothingBehind = data.offset + data.heldSize == walk.fileSize;
    if (isNothingBehind)
        fix.program = Fix::Program::None;
    return {isNothingBehind ? QStringLiteral("It has no data.")
                            : QStringLiteral("Its header says 0 bytes of data.")};
}

/// Other programs refuse to open what this one does. What its header does not tell, or wrongly, is
/// taken for one channel at the program's rate.
void fixRaw(const RiffWalk& walk, const RiffFormat& format, const RiffChunk& data, Fix& fix) {
    const bool isRead = format.encoding == linearPcm && isReadBySox(format);
    if (!isRead) {
        fix.program = Fix::Program::None;
        return;
    }
    fix.program = Fix::Program::FfmpegRaw;
    RawSound& raw = fix.raw;
    raw.offset = data.offset;
    raw.bitsPerSample = format.bitsPerSample;
    raw.channelCount = std::max<int>(format.channelCount, 1);
    raw.samplingRate = format.samplingRate == 0 ? playedRate : format.samplingRate;
    const bool isMoreBehind = data.offset + data.heldSize < walk.fileSize;
    if (isMoreBehind)
        raw.frames = data.heldSize / (qint64(raw.channelCount) * (raw.bitsPerSample / 8));
}

} // namespace

QStringList headerObjections(const RiffWalk& walk, Fix& fix) {
    QStringList objections = fileObjections(walk, fix);
    if (!objections.isEmpty() && walk.chunks.isEmpty())
        return objections;
    objections += chunkObjections(walk);
    const RiffChunk* const data = walk.find("data");
    if (!walk.format || data == nullptr) {
        fix.program = Fix::Program::None;
        return objections;
    }
    objections += formatObjections(*walk.format, fix);
    if (walk.format->channelCount == 0 || walk.format->samplingRate == 0 ||
        (!walk.identifier.startsWith("RIF") && fix.program == Fix::Program::Sox))
        fixRaw(walk, *walk.format, *data, fix);
    return objections + dataObjections(walk, *data, fix);
}

QStringList headerNotes(const RiffWalk& walk) {
    QStringList notes;
    const RiffChunk* const data = walk.find("data");
    if (data == nullptr || !walk.format)
        return notes;
    const RiffFormat& format = *walk.format;
    if (walk.identifier != "RIFF")
        notes << QStringLiteral("It does not begin with RIFF. The program does not mind, most "
                                "others do.");
    if (format.encoding == linearPcm &&
        (format.blockAlign != format.frameBytes() ||
         format.byteRate != format.frameBytes() * format.samplingRate))
        notes << QStringLiteral("The bytes per second or per sample in its header do not fit the "
                                "rest. The program does not mind, others may.");
    for (const RiffChunk& chunk : walk.chunks)
        if (chunk.offset > data->offset)
            notes << (chunk.identifier == "RIFF"
                          ? QStringLiteral("Behind its data a second WAV file begins, which the "
                                           "program does not read.")
                          : QStringLiteral("Behind its data stands a chunk %1 of %2 bytes, which "
                                           "the program does not read.")
                                .arg(text(chunk.identifier), QString::number(chunk.declaredSize)));
    if (walk.bytesBehind > 0)
        notes << QStringLiteral("Its last bytes, %1 of them, are no chunk. The program does not "
                                "read them.")
                     .arg(walk.bytesBehind);
    if (isReadableFormat(format) && data->heldSize % format.frameBytes() != 0)
        notes << QStringLiteral("Its data end within a sample, which the program leaves out.");
    constexpr qint64 bytesNotCounted = 8;
    const qint64 declared = walk.declaredSize + bytesNotCounted;
    if (declared != walk.fileSize && declared != walk.fileSize + 1)
        notes << QStringLiteral("Its header says a file of %1 bytes, which has %2. The program "
                                "does not mind.")
                     .arg(declared)
                     .arg(walk.fileSize);
    return notes;
}
