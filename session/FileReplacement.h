// Replacing a file so that an error leaves its old content wherever this is possible.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

enum class FileReplacement {
    NotOpened,  ///< Nothing was written, and an existing file is as it was.
    NotWritten, ///< The bytes could not all be written; a file written in place is incomplete.
    Written     ///< The file holds the bytes, and they have reached the disk.
};

/// Makes a file hold the given bytes. A file that exists stays as it was until the new one is
/// complete, which then takes its place with the old one's permissions. Where the folder is not
/// writable, renaming fails or the path names a device, the file is written in place, and an error
/// leaves it incomplete. A FIFO is not opened.
FileReplacement replaceFile(const QString& path, const QByteArray& bytes);
