// The command that makes a target of a file that is none yet.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/Mending.h"

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

QString mendedName(const QString& fileName) {
    const QFileInfo file(fileName);
    const QString folder = fileName.left(fileName.size() - file.fileName().size());
    return folder + file.completeBaseName() + QStringLiteral("-mended.wav");
}

QStringList soxWords(const Mending& mending, const QString& source, const QString& result) {
    QStringList words{"sox"};
    if (mending.isSizeIgnored)
        words << "--ignore-length";
    words << source;
    if (mending.bitsPerSample != 0)
        words << "-b" << QString::number(mending.bitsPerSample) << "-e"
              << "signed-integer";
    // Without this type sox writes a longer header for 24 bits.
    words << "-t"
          << "wavpcm" << result;
    if (mending.isFirstChannelOnly)
        words << "remix"
              << "1";
    if (mending.isResampled)
        words << "rate"
              << "-v" << QString::number(playedRate);
    if (mending.isLowestCodeAvoided)
        words << "vol"
              << "0.9999998";
    if (mending.paddingSamples > 0)
        words << "pad"
              << "0" << QString::number(mending.paddingSamples) + u's';
    return words;
}

QString rawEncoding(const RawSound& raw) {
    return raw.bitsPerSample == 8 ? QStringLiteral("u8")
                                  : QStringLiteral("s%1le").arg(raw.bitsPerSample);
}

/// What is done to the sound on its way from the file to the file, in ffmpeg's words.
QStringList ffmpegFilters(const Mending& mending) {
    QStringList filters;
    const bool isRaw = mending.program == Mending::Program::FfmpegRaw;
    // Of several channels the first, as the program plays it; "-ac 1" would mix them.
    if (!isRaw || mending.raw.channelCount > 1)
        filters << "pan=mono|c0=c0";
    if (isRaw && mending.raw.frames > 0)
        filters << QStringLiteral("atrim=end_sample=%1").arg(mending.raw.frames);
    if (mending.paddingSamples > 0)
        filters << QStringLiteral("aresample=%1").arg(playedRate)
                << QStringLiteral("apad=pad_len=%1").arg(mending.paddingSamples);
    return filters;
}

QStringList ffmpegWords(const Mending& mending, const QString& source, const QString& result) {
    QStringList words{"ffmpeg"};
    if (mending.program == Mending::Program::FfmpegRaw)
        words << "-f" << rawEncoding(mending.raw) << "-ar"
              << QString::number(mending.raw.samplingRate) << "-ac"
              << QString::number(mending.raw.channelCount) << "-skip_initial_bytes"
              << QString::number(mending.raw.offset);
    words << "-i" << source << "-ar" << QString::number(playedRate);
    const QStringList filters = ffmpegFilters(mending);
    if (!filters.isEmpty())
        words << "-af" << shellWord(filters.join(u','));
    // Bit-exact means without a chunk that tells which program wrote the file.
    words << "-c:a"
          << "pcm_s16le"
          << "-bitexact" << result;
    return words;
}

} // namespace

QString mendingCommand(const Mending& mending, const QString& fileName) {
    if (mending.program == Mending::Program::None)
        return {};
    const QString source = nameWord(fileName);
    const QString result = nameWord(mendedName(fileName));
    const QStringList words = mending.program == Mending::Program::Sox
                                  ? soxWords(mending, source, result)
                                  : ffmpegWords(mending, source, result);
    return words.join(u' ');
}
