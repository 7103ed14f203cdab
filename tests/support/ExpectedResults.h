// What results files and journals hold, for tests.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QStringList>
#include <QVector>

namespace testsupport {

/// Returns what a results file or a journal holds of a target and these matches (Hz): the header
/// line, then a line for each, by the texts that the frequencies have in it or by whole numbers.
QByteArray expectedResults(const QString& targetName, const QStringList& frequencies = {});
QByteArray expectedResults(const QString& targetName, const QVector<int>& frequencies);

} // namespace testsupport
