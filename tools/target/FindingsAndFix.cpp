// The problems of a WAV file in words, and the command that fixes them.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/target/FindingsAndFix.h"

#include "base/NumberTexts.h"
#include "base/Sampling.h"
#include "sound/TargetSamples.h"
#include "tools/target/Conversion.h"
#include "tools/target/HeaderObjections.h"
#include "tools/target/IntendedSound.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

/// What the program does with a file in which it does not find the sound.
QString programsAnswer(const Inspection& inspection, bool isLoaded) {
    if (!isLoaded)
        return QStringLiteral("Pellion refuses it (\"%1\") and goes on with the earlier "
                              "target, if there is one.")
            .arg(inspection.programMessage);
    if (!isUsableTarget(inspection.program, playedRate))
        return QStringLiteral("Pellion cannot play it (\"Unusable WAV file: %1\") and goes on "
                              "with the earlier target, if there is one.")
            .arg(inspection.fileName);
    return QStringLiteral("Pellion takes the %1 bytes from byte 44 on for the sound.")
        .arg(inspection.program.header.dataSize);
}

void addHeaderFindings(Inspection& inspection, bool isLoaded) {
    QStringList objections = headerObjections(inspection);
    const qint64 samples = samplesPerChannel(inspection.intended);
    if (objections.isEmpty() && !isUsableTarget(inspection.program, playedRate))
        objections << QStringLiteral("A sound of %1 samples is too short, or too long for the "
                                     "memory there is.")
                          .arg(samples);
    if (!objections.isEmpty())
        inspection.findings.append({objections.join(u' '), programsAnswer(inspection, isLoaded)});
}

/// How much of the file is heard when it is played at another rate than its own.
QString lengthHeard(qint64 samples, qint64 played) {
    if (played < samples)
        return QStringLiteral(" The last %1 of its %2 samples are left out.")
            .arg(samples - played)
            .arg(samples);
    if (played > samples)
        return QStringLiteral(" Its %1 samples are followed by %2 of silence.")
            .arg(samples)
            .arg(played - samples);
    return {};
}

void addRateFinding(Inspection& inspection, qint64 samples, quint32 samplingRate) {
    if (samplingRate == playedRate)
        return;
    constexpr double centsPerOctave = 1200;
    constexpr double exampleFrequency = 440;
    const double ratio = double(playedRate) / samplingRate;
    inspection.findings.append(
        {QStringLiteral("Its sampling rate is %1 Hz.").arg(samplingRate),
         QStringLiteral("Pellion plays it at %1 Hz without conversion: %2 Hz in it are heard "
                        "as %3 Hz (%4 cents).%5")
             .arg(playedRate)
             .arg(exampleFrequency)
             .arg(exampleFrequency * ratio, 0, 'f', 2)
             .arg(centsPerOctave * std::log2(ratio), 0, 'f', 1)
             .arg(lengthHeard(samples, playedSamples(samples, samplingRate)))});
}

void addChannelFinding(Inspection& inspection, int channels) {
    if (channels > 2)
        inspection.findings.append({QStringLiteral("It has %1 channels.").arg(channels),
                                    QStringLiteral("Pellion plays silence in its place.")});
    else if (channels == 2 &&
             channelOf(inspection.intended, 0) != channelOf(inspection.intended, 1))
        inspection.notes << QStringLiteral("Pellion plays the left of its two channels.");
}

/// The program shows the duration in hundredths of a millisecond, and plays as many samples as fit
/// the shown duration. A sample at 40000 Hz lasts 2.5 hundredths.
void addLengthFinding(Inspection& inspection, qint64 samples, quint32 samplingRate) {
    const int played = playedSamples(samples, samplingRate);
    if (samplingRate != playedRate || played == samples)
        return;
    const double seconds = double(samples) / samplingRate;
    inspection.findings.append(
        {QStringLiteral("Its %1 samples are %2 ms long, which Pellion shows as %3 ms.")
             .arg(samples)
             .arg(seconds * millisecondsPerSecond, 0, 'f', 3)
             .arg(millisecondsText(seconds)),
         QStringLiteral("Pellion plays as many samples as the duration shown holds, %1, and "
                        "leaves out the last %2.")
             .arg(played)
             .arg(samples - played)});
}

void addMinimumCodeFinding(Inspection& inspection) {
    const qint64 count = minimumCodesOf24Bits(inspection.intended);
    if (count == 0)
        return;
    inspection.findings.append(
        {QStringLiteral("It has the lowest code of 24 bits, which means -1, %1 times.").arg(count),
         QStringLiteral("Pellion reads it as +1: a click.")});
}

bool isReadAlike(const Inspection& inspection) {
    const std::vector<double>& intended = inspection.intended.samples;
    const std::vector<double>& read = inspection.program.samples;
    return samplesPerChannel(inspection.program) == samplesPerChannel(inspection.intended) &&
           read.size() >= intended.size() &&
           std::equal(intended.cbegin(), intended.cend(), read.cbegin());
}

void addSoundFindings(Inspection& inspection) {
    const WavHeader& header = inspection.intended.header;
    const qint64 samples = samplesPerChannel(inspection.intended);
    if (samples == 0)
        return;
    const bool isSilent =
        std::all_of(inspection.intended.samples.cbegin(), inspection.intended.samples.cend(),
                    [](double sample) { return sample == 0; });
    if (isSilent)
        inspection.notes << QStringLiteral("It is silent.");
    addChannelFinding(inspection, header.numberOfChannels);
    addRateFinding(inspection, samples, header.samplingRate);
    addMinimumCodeFinding(inspection);
    addLengthFinding(inspection, samples, header.samplingRate);
    if (inspection.findings.isEmpty() && !isReadAlike(inspection))
        inspection.findings.append({QStringLiteral("Its chunks contradict its first 44 bytes."),
                                    QStringLiteral("Pellion uses those 44 bytes.")});
}

/// Quotes a file's name for the shell, so that it is one word and not taken for an option.
QString nameWord(const QString& fileName) {
    QString name = fileName.startsWith(u'-') ? QStringLiteral("./") + fileName : fileName;
    const bool isPlain = std::all_of(name.cbegin(), name.cend(), [](QChar character) {
        return character.isLetterOrNumber() || QStringLiteral("/._-+").contains(character);
    });
    return isPlain ? name : u'\'' + name.replace(u'\'', QLatin1String("'\\''")) + u'\'';
}

QString fixedName(const QString& fileName) {
    const QFileInfo file(fileName);
    const QString folder = fileName.left(fileName.size() - file.fileName().size());
    return folder + file.completeBaseName() + QStringLiteral("-fixed.wav");
}

/// Returns the shell command that converts a file to one beside it with "-fixed" in its name.
QString fixCommand(const QString& fileName) {
    return QStringLiteral("pellion-target convert ") + nameWord(fileName) + u' ' +
           nameWord(fixedName(fileName));
}

} // namespace

void addFindings(Inspection& inspection, bool isLoaded) {
    addHeaderFindings(inspection, isLoaded);
    addSoundFindings(inspection);
    inspection.notes += headerNotes(inspection.riff);
    if (!inspection.fileName.endsWith(QLatin1String(".wav"), Qt::CaseInsensitive))
        inspection.notes << QStringLiteral("Its name does not end in .wav, so Pellion's dialog "
                                           "does not show it.");
    if (!inspection.isAsIntended() && conversionProblem(inspection.intended).isEmpty())
        inspection.fix = fixCommand(inspection.fileName);
}
