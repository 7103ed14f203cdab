// Whole files for tests.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace testsupport {

/// Replaces or creates a file; returns whether all of it was written.
bool writeBytes(const QString& path, const QByteArray& bytes);

/// Returns all of a file; a null array when it cannot be opened.
QByteArray readBytes(const QString& path);

} // namespace testsupport
