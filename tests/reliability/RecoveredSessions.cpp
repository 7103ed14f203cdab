// The recovery of killed sessions by pellion-session.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/RecoveredSessions.h"

#include "examples/analysis_tables.h"
#include "support/FileBytes.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>

namespace {

void recoverInto(const QString& folder, KillResult& result) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", folder + "/data");
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(PELLION_SESSION), {"recover", folder});
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() > 1)
        result.faults.append("pellion-session: " + process.readAllStandardError());
    // A journal that was just created and is empty stays, and so does one whose session was already
    // saved.
    const QList<QByteArray> results = testsupport::contentsOf(folder);
    for (const QByteArray& journal : testsupport::contentsOf(folder + "/data/pellion/journal"))
        if (!journal.isEmpty() && !results.contains(journal))
            result.faults.append("a journal was not recovered: " + journal +
                                 process.readAllStandardOutput());
}

/// The beginning of the line that the analyses should print of a session, by its file.
QString expectedLine(const KilledSession& session, const QByteArray& file) {
    const QString name = QFileInfo(session.resultsName).completeBaseName();
    const int requests = file.count('\n') - 1;
    const QByteArray match = file.trimmed().split('\t').last();
    return QStringList{name.section('_', 0, 0),
                       "practice",
                       QString::number(name.right(3).toInt()),
                       "target.wav",
                       QString::number(requests),
                       QString::number(match.toDouble(), 'f', 2)}
        .join('\t');
}

} // namespace

void recoverSessions(const QString& folder, const QList<KilledSession>& sessions,
                     KillResult& result) {
    recoverInto(folder, result);
    QStringList expected;
    for (const KilledSession& session : sessions) {
        const QByteArray file = testsupport::readBytes(folder + '/' + session.resultsName);
        for (const Response& response : session.acknowledged)
            if (holds(file, response))
                ++result.recovered;
            else
                result.faults.append(QStringLiteral("%1: response %2 is not recovered")
                                         .arg(session.resultsName)
                                         .arg(response.number));
        if (!file.isEmpty())
            expected.append(expectedLine(session, file));
    }
    if (expected.isEmpty())
        return;
    forLanguages([&](const char* language, const QStringList& command) {
        const AnalysisRun run = analyse(command, {"--target", "440", folder});
        QStringList lines = run.output.section("\n\n", 0, 0).split('\n').mid(1);
        for (QString& line : lines)
            line = line.section('\t', 0, 5);
        if (run.status != 0 || !run.errors.isEmpty() || lines != expected)
            result.faults.append(language + QStringLiteral(" reads otherwise: ") + run.errors +
                                 run.output);
    });
}
