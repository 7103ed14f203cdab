// Waiting until files have reached the disk.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QFileDevice;

/// Waits until what was written to an open, flushed file has reached the disk. Returns false when
/// the disk reports an error; a file that is on no disk, like a pipe, counts as written.
bool syncToDisk(const QFileDevice& file);

/// Waits until the names in a folder (files created, renamed or removed) have reached the disk.
/// Errors are ignored: some file systems do not support it.
void syncNamesToDisk(const QString& folder);
