// Whole files for tests.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

namespace testsupport {

/// Replaces or creates a file; returns whether all of it was written.
bool writeBytes(const QString& path, const QByteArray& bytes);

/// Returns all of a file; a null array when it cannot be opened.
QByteArray readBytes(const QString& path);

/// Returns the paths of the files in a folder, by their names; none when there is no such folder.
QStringList filesIn(const QString& folder);

/// Returns all of each file in a folder, by their names; none when there is no such folder.
QList<QByteArray> contentsOf(const QString& folder);

} // namespace testsupport
