// The report of "pellion-session check".
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/session/CheckReport.h"

#include "base/Sampling.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QString line(const QString& label, const QString& text) {
    constexpr int labelWidth = 27;
    return label.leftJustified(labelWidth) + QStringLiteral(": ") + text + u'\n';
}

QString findingText(const SessionFinding& finding) {
    return QStringLiteral("%1: %2. %3").arg(finding.subject, finding.problem, finding.remedy);
}

QString soundText(const SoundState& sound) {
    if (!sound.problem.isEmpty() || sound.output.isEmpty())
        return line("Sound server", sound.problem.isEmpty() ? sound.server : "unknown");
    QString resampling = QStringLiteral("not resampled");
    if (!sound.resampler.isEmpty())
        resampling =
            QStringLiteral("resampled from %1 Hz by %2").arg(playedRate).arg(sound.resampler);
    else if (sound.rate != int(playedRate))
        resampling = QStringLiteral("resampler unknown");
    return line("Sound server", sound.server) +
           line("Output", QStringLiteral("%1 (%2)").arg(sound.output, sound.device)) +
           line("Format",
                QStringLiteral("%1, channels: %2").arg(sound.format).arg(sound.channels)) +
           line("Sampling rate", QStringLiteral("%1 Hz, %2").arg(sound.rate).arg(resampling)) +
           line("Volume", QStringLiteral("%1 %").arg(sound.volume));
}

QJsonArray toJson(const QVector<SessionFinding>& findings) {
    QJsonArray array;
    for (const SessionFinding& finding : findings)
        array.append(QJsonObject{{"subject", finding.subject},
                                 {"problem", finding.problem},
                                 {"remedy", finding.remedy}});
    return array;
}

QJsonObject toJson(const FolderState& folder) {
    return {{"path", folder.path},
            {"problem", folder.problem},
            {"free bytes", double(folder.freeBytes)}};
}

} // namespace

CheckReport checkReport(const ComputerState& state, const std::optional<SavedState>& saved) {
    const ComparedFindings sound = compareSound(state.sound, saved);
    return {state, sound.findings + diskAndLoadFindings(state), sound.notes};
}

QString reportText(const CheckReport& report) {
    QString text = soundText(report.state.sound) + line("Desktop", report.state.desktop.path) +
                   line("Journals", report.state.journals.path);
    for (const SessionFinding& finding : report.notes)
        text += line("Note, as saved", findingText(finding));
    for (const SessionFinding& finding : report.findings)
        text += line("Finding", findingText(finding));
    QString ready = QStringLiteral("yes");
    if (!report.findings.isEmpty())
        ready = QStringLiteral("no (findings: %1)").arg(report.findings.size());
    return text + line("Ready", ready);
}

QString reportJson(const CheckReport& report) {
    const SoundState& sound = report.state.sound;
    QJsonObject object{{"ready", report.findings.isEmpty()},
                       {"findings", toJson(report.findings)},
                       {"notes", toJson(report.notes)},
                       {"desktop", toJson(report.state.desktop)},
                       {"journals", toJson(report.state.journals)},
                       {"kept journals", report.state.keptJournals},
                       {"load", report.state.load},
                       {"processors", report.state.processors}};
    if (sound.problem.isEmpty())
        object.insert("sound", lastingValues(sound));
    return QString::fromUtf8(QJsonDocument(object).toJson());
}
