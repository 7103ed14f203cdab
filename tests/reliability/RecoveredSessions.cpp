// What pellion-session recovers of sessions that were killed.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/RecoveredSessions.h"

#include "examples/analysis_tables.h"
#include "support/FileBytes.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>

namespace {

void recoverInto(const QString& folder, Remains& remains) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", folder + "/data");
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(PELLION_SESSION), {"recover", folder});
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        remains.faults.append("pellion-session: " + process.readAllStandardOutput() +
                              process.readAllStandardError());
    // One that was just made and holds nothing may stay.
    for (const QByteArray& journal : testsupport::contentsOf(folder + "/data/pellion/journal"))
        if (!journal.isEmpty())
            remains.faults.append("a journal was not recovered: " + journal);
}

/// The session as the analyses should read it, by its file.
AnalysedSession analysedSession(const KilledSession& session, const QByteArray& file) {
    const QString name = QFileInfo(session.resultsName).completeBaseName();
    AnalysedSession analysed{name.section('_', 0, 0), "practice", name.right(3).toInt(), {}, {}};
    const QList<QByteArray> lines = file.split('\n');
    for (int i = 1; i < lines.size() - 1; ++i) {
        analysed.target = QString::fromUtf8(lines[i].split('\t')[0]);
        analysed.frequencies.append(lines[i].trimmed().split('\t').last().toDouble());
    }
    return analysed;
}

} // namespace

void recoverSessions(const QString& folder, const QList<KilledSession>& sessions,
                     Remains& remains) {
    recoverInto(folder, remains);
    QVector<AnalysedSession> analysed;
    for (const KilledSession& session : sessions) {
        const QByteArray file = testsupport::readBytes(folder + '/' + session.resultsName);
        for (const Response& response : session.acknowledged)
            if (holds(file, response))
                ++remains.recovered;
            else
                remains.faults.append(QStringLiteral("%1: response %2 is not recovered")
                                          .arg(session.resultsName)
                                          .arg(response.number));
        if (!file.isEmpty())
            analysed.append(analysedSession(session, file));
    }
    if (analysed.isEmpty())
        return;
    forLanguages([&](const char* language, const QStringList& command) {
        const AnalysisRun run = analyse(command, "440", {folder});
        if (run.status != 0 || run.output != expectedTables(analysed, 440))
            remains.faults.append(language + QStringLiteral(" reads otherwise: ") + run.errors +
                                  run.output);
    });
}
