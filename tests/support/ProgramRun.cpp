// Programs that a test runs to their end.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ProgramRun.h"

#include <QProcess>

namespace testsupport {

ProgramRun runProgram(const QString& program, const QStringList& arguments, const QString& folder,
                      const QStringList& environment) {
    QProcess process;
    process.setWorkingDirectory(folder);
    process.setProcessEnvironment([&] {
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        for (const QString& variable : environment)
            variables.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
        return variables;
    }());
    process.start(program, arguments);
    process.closeWriteChannel();
    const bool hasEnded = process.waitForFinished() && process.exitStatus() == QProcess::NormalExit;
    return {hasEnded ? process.exitCode() : -1, process.readAllStandardOutput(),
            process.readAllStandardError()};
}

bool runShell(const QString& commandLine, const QString& folder) {
    const ProgramRun run =
        runProgram(QStringLiteral("sh"), {QStringLiteral("-c"), commandLine}, folder);
    if (run.status != 0)
        qWarning("%s: %s", qPrintable(commandLine), run.errors.constData());
    return run.status == 0;
}

} // namespace testsupport
