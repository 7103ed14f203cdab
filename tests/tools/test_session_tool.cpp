// Tests of pellion-session, which checks a computer and recovers responses.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_session_tool.h"

#include "session/ResultsFile.h"
#include "support/TestMain.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>

QStringList SessionToolRun::findings() const {
    QStringList found;
    const QString label = QStringLiteral("Finding").leftJustified(27) + QStringLiteral(": ");
    for (const QString& line : output.split(u'\n'))
        if (line.startsWith(label) && !line.startsWith(label + QStringLiteral("processor: ")))
            found.append(line.mid(label.size()));
    return found;
}

SessionHome::SessionHome() {
    QDir(folder.path()).mkpath(QStringLiteral("Desktop"));
    QDir(folder.path()).mkpath(journals());
}

SessionToolRun SessionHome::run(const QStringList& arguments,
                                const QStringList& environment) const {
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.remove("XDG_DATA_HOME");
    variables.insert("HOME", folder.path());
    for (const QString& variable : environment)
        variables.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
    QProcess process;
    process.setProcessEnvironment(variables);
    process.setWorkingDirectory(folder.path());
    QElapsedTimer clock;
    clock.start();
    process.start(QStringLiteral(PELLION_SESSION), arguments);
    process.closeWriteChannel();
    SessionToolRun run;
    if (process.waitForFinished() && process.exitStatus() == QProcess::NormalExit)
        run.status = process.exitCode();
    run.milliseconds = clock.elapsed();
    run.output = QString::fromUtf8(process.readAllStandardOutput());
    run.errors = QString::fromUtf8(process.readAllStandardError());
    return run;
}

QString SessionHome::leaveJournal(const QString& resultsName, const QVector<double>& frequencies,
                                  const QByteArray& remainder) const {
    QString path = journals() + u'/' + resultsName + QStringLiteral("-20260309-080559.txt");
    testsupport::writeBytes(path, resultsText("t.wav", frequencies).toUtf8() + remainder);
    return path;
}

QStringList SessionHome::namesIn(const QString& path) {
    return QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return testsupport::runAll<TestSessionParts, TestSessionCheck, TestSessionRecovery,
                               TestSessionUsage>(argc, argv);
}
