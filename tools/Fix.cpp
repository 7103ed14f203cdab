// The command that makes a target of a file that is none yet.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/Fix.h"

#include "base/Numbers.h"

#include <QFileInfo>
#include <QStringList>

#include <algorithm>

namespace {

/// Returns a text as one word of a shell's command line.
QString shellWord(const QString& word) {
    const bool isPlain = std::all_of(word.cbegin(), word.cend(), [](QChar character) {
        return character.isLetterOrNumber() || QStringLiteral("/._-+").contains(character);
    });
    return isPlain ? word : u'\'' + QString(word).replace(u'\'', QLatin1String("'\\''")) + u'\'';
}

/// Returns a file's name as a word that no program takes for an option.
QString nameWord(const QString& fileName) {
    return shellWord(fileName.startsWith(u'-') ? QStringLiteral("./") + fileName : fileName);
}

QString fixedName(const QString& fileName) {
    const QFileInfo file(fileName);
    const QString folder = fileName.left(fileName.size() - file.fileName().size());
    return folder + file.completeBaseName() + QStringLiteral("-fixed.wav");
}

QStringList soxWords(const Fix& fix, const QString& source, const QString& result) {
    QStringList words{"sox"};
    if (fix.isSizeIgnored)
        words << "--ignore-length";
    words << source;
    if (fix.bitsPerSample != 0)
        words << "-b" << QString::number(fix.bitsPerSample) << "-e"
              << "signed-integer";
    // Without this type sox writes a longer header for 24 bits.
    words << "-t"
          << "wavpcm" << result;
    if (fix.isFirstChannelOnly)
        words << "remix"
              << "1";
    if (fix.isResampled)
        words << "rate"
              << "-v" << QString::number(playedRate);
    if (fix.isLowestCodeAvoided)
        words << "vol"
              << "0.9999998";
    if (fix.paddingSamples > 0)
        words << "pad"
              << "0" << QString::number(fix.paddingSamples) + u's';
    return words;
}

QString rawEncoding(const RawSound& raw) {
    return raw.bitsPerSample == 8 ? QStringLiteral("u8")
                                  : QStringLiteral("s%1le").arg(raw.bitsPerSample);
}

/// What is done to the sound on its way from the file to the file, in ffmpeg's words.
QStringList ffmpegFilters(const Fix& fix) {
    QStringList filters;
    const bool isRaw = fix.program == Fix::Program::FfmpegRaw;
    // Of several channels the first, as the program plays it; "-ac 1" would mix them.
    if (!isRaw || fix.raw.channelCount > 1)
        filters << "pan=mono|c0=c0";
    if (isRaw && fix.raw.frames > 0)
        filters << QStringLiteral("atrim=end_sample=%1").arg(fix.raw.frames);
    if (fix.paddingSamples > 0)
        filters << QStringLiteral("aresample=%1").arg(playedRate)
                << QStringLiteral("apad=pad_len=%1").arg(fix.paddingSamples);
    return filters;
}

QStringList ffmpegWords(const Fix& fix, const QString& source, const QString& result) {
    QStringList words{"ffmpeg"};
    if (fix.program == Fix::Program::FfmpegRaw)
        words << "-f" << rawEncoding(fix.raw) << "-ar" << QString::number(fix.raw.samplingRate)
              << "-ac" << QString::number(fix.raw.channelCount) << "-skip_initial_bytes"
              << QString::number(fix.raw.offset);
    words << "-i" << source << "-ar" << QString::number(playedRate);
    const QStringList filters = ffmpegFilters(fix);
    if (!filters.isEmpty())
        words << "-af" << shellWord(filters.join(u','));
    // Bit-exact means without a chunk that tells which program wrote the file.
    words << "-c:a"
          << "pcm_s16le"
          << "-bitexact" << result;
    return words;
}

} // namespace

QString fixCommand(const Fix& fix, const QString& fileName) {
    if (fix.program == Fix::Program::None)
        return {};
    const QString source = nameWord(fileName);
    const QString result = nameWord(fixedName(fileName));
    const QStringList words = fix.program == Fix::Program::Sox ? soxWords(fix, source, result)
                                                               : ffmpegWords(fix, source, result);
    return words.join(u' ');
}
