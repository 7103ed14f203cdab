// What "pellion-target info" prints of an inspected file.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/target/InfoReport.h"

#include "base/NumberTexts.h"
#include "base/Sampling.h"
#include "signal/OstrelClasses.h"
#include "sound/TargetSamples.h"
#include "tools/target/IntendedSound.h"
#include "tools/target/Levels.h"

#include <QJsonArray>

#include <iostream>

namespace {

/// As wide as the labels of CWav::DisplayHeader().
constexpr int labelWidth = 27;

void printLine(const QString& label, const QString& text) {
    std::cout << label.leftJustified(labelWidth).toStdString() << ": " << text.toStdString()
              << '\n';
}

void printSound(const CWav& wav) {
    if (samplesPerChannel(wav) == 0) {
        printLine(QStringLiteral("Duration"), QStringLiteral("unknown"));
        return;
    }
    printLine(QStringLiteral("Duration"), lengthText(wav));
    for (int channel = 0; channel < wav.header.numberOfChannels; ++channel)
        printLine(QStringLiteral("Channel %1").arg(channel + 1),
                  levelsText(channelOf(wav, channel)));
}

/// No number where a level is minus infinity.
QJsonArray jsonLevels(const CWav& wav) {
    QJsonArray levels;
    for (int channel = 0; channel < wav.header.numberOfChannels; ++channel) {
        const QVector<double> samples = channelOf(wav, channel);
        levels << QJsonObject{{"peakDb", decibelsOf(peakOf(samples))},
                              {"rmsDb", decibelsOf(rms(samples))}};
    }
    return levels;
}

} // namespace

QString lengthText(const CWav& wav) {
    return QStringLiteral("%1 ms, %2 samples")
        .arg(millisecondsText(durationSeconds(wav)))
        .arg(samplesPerChannel(wav));
}

void printReport(const Inspection& inspection) {
    std::cout << inspection.fileName.toStdString() << '\n';
    if (!inspection.isOpened) {
        printLine(QStringLiteral("Read as intended"),
                  QStringLiteral("no: it cannot be opened as a regular file"));
        return;
    }
    inspection.program.DisplayHeader();
    printSound(inspection.intended);
    printLine(QStringLiteral("Read as intended"),
              inspection.isAsIntended() ? QStringLiteral("yes") : QStringLiteral("no"));
    for (const Finding& finding : inspection.findings) {
        printLine(QStringLiteral("Problem"), finding.what);
        printLine(QStringLiteral("Effect"), finding.consequence);
    }
    if (!inspection.isAsIntended())
        printLine(QStringLiteral("Fix"), inspection.fix.isEmpty()
                                             ? QStringLiteral("make the file again")
                                             : inspection.fix);
    for (const QString& note : inspection.notes)
        printLine(QStringLiteral("Note"), note);
}

QJsonObject jsonReport(const Inspection& inspection) {
    const CWav& wav = inspection.intended;
    const bool isKnown = samplesPerChannel(wav) > 0;
    const auto known = [isKnown](const QJsonValue& value) {
        return isKnown ? value : QJsonValue();
    };
    QJsonArray problems;
    for (const Finding& finding : inspection.findings)
        problems << QJsonObject{{"problem", finding.what}, {"effect", finding.consequence}};
    return {{"file", inspection.fileName},
            {"opened", inspection.isOpened},
            {"asIntended", inspection.isAsIntended()},
            {"channels", known(wav.header.numberOfChannels)},
            {"samplingRate", known(qint64(wav.header.samplingRate))},
            {"bitsPerSample", known(wav.header.bitsPerSample)},
            {"samples", known(samplesPerChannel(wav))},
            {"durationMs", isKnown ? durationSeconds(wav) * millisecondsPerSecond : QJsonValue()},
            {"levels", jsonLevels(wav)},
            {"problems", problems},
            {"fix", inspection.fix.isEmpty() ? QJsonValue() : inspection.fix},
            {"notes", QJsonArray::fromStringList(inspection.notes)}};
}
