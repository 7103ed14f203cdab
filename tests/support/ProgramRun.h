// Other programs, run by tests.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace testsupport {

/// What a program has left when it ended.
struct ProgramRun {
    int status = -1; ///< Of its exit; -1 where it did not start, crashed or did not end.
    QByteArray output;
    QByteArray errors;
};

/// Runs a program to its end, in a folder where one is given.
ProgramRun runProgram(const QString& program, const QStringList& arguments,
                      const QString& folder = QString());

} // namespace testsupport
