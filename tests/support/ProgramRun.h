// Programs that a test runs to their end.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QStringList>

namespace testsupport {

/// The results of a run of a program.
struct ProgramRun {
    int status = -1; ///< -1 when it did not end by itself.
    QByteArray output;
    QByteArray errors;
};

/// Runs a program in a folder, the current one by default, with nothing to read from standard
/// input and with more environment variables ("NAME=value").
ProgramRun runProgram(const QString& program, const QStringList& arguments,
                      const QString& folder = QString(), const QStringList& environment = {});

/// Runs a shell's command line in a folder; returns whether it succeeded and reports its errors
/// where it did not.
bool runShell(const QString& commandLine, const QString& folder);

/// Returns the options that lines of a text contain, such as "-h" and "--help", sorted and each
/// once. The lines are those that match a pattern.
QStringList optionsIn(const QString& text, const QString& lines);

/// Returns the text of a manual page, whose hyphens are escaped in the file.
QString manualText(const QString& path);

} // namespace testsupport
