// Programs that a test runs to their end.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ProgramRun.h"

#include "support/FileBytes.h"

#include <QProcess>
#include <QRegularExpression>

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

QStringList optionsIn(const QString& text, const QString& lines) {
    const QRegularExpression line(lines, QRegularExpression::MultilineOption);
    const QRegularExpression option(QStringLiteral("(?<![\\w-])--?[a-z][a-z-]*"));
    QStringList options;
    for (auto found = line.globalMatch(text); found.hasNext();)
        for (auto in = option.globalMatch(found.next().captured()); in.hasNext();)
            options << in.next().captured();
    options.removeDuplicates();
    options.sort();
    return options;
}

QString manualText(const QString& path) {
    return QString::fromUtf8(readBytes(path)).replace(QLatin1String("\\-"), QLatin1String("-"));
}

} // namespace testsupport
