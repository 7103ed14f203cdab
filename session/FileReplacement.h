// Writing a file so that neither the new nor the old content is lost.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

enum class FileReplacement {
    NotOpened,  ///< Nothing was written, and an existing file is as it was.
    NotWritten, ///< The file is incomplete: the disk is full or failed.
    Written     ///< The file holds the bytes, and they have reached the disk.
};

/// Makes a file hold the given bytes. A file that exists stays as it was until the new one is
/// complete, then the new one takes its place with its permissions. Where that is impossible (no
/// file can be created in the folder, or the path names a device), the file is written in place,
/// and an error leaves it incomplete. A FIFO is not opened.
FileReplacement replaceFile(const QString& path, const QByteArray& bytes);
