// Other programs, run by tests.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ProgramRun.h"

#include <QProcess>

namespace testsupport {

ProgramRun runProgram(const QString& program, const QStringList& arguments, const QString& folder) {
    QProcess process;
    if (!folder.isEmpty())
        process.setWorkingDirectory(folder);
    process.start(program, arguments);
    const bool hasEnded = process.waitForFinished() && process.exitStatus() == QProcess::NormalExit;
    return {hasEnded ? process.exitCode() : -1, process.readAllStandardOutput(),
            process.readAllStandardError()};
}

} // namespace testsupport
