// Replacing a file so that an error leaves its old content wherever this is possible.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/FileReplacement.h"

#include "session/DiskSync.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <sys/stat.h>

namespace {

constexpr QIODevice::OpenMode textMode = QIODevice::WriteOnly | QIODevice::Text;

/// Whether a new file can be created beside a file and renamed over it. Anything but a regular file
/// has to be written in place: a device would be replaced by a file.
bool canBeReplaced(const QFileInfo& file) {
    return (!file.exists() || file.isFile()) && QFileInfo(file.path()).isWritable();
}

/// Follows symbolic links to the file itself.
QString resolved(const QString& path) {
    const QFileInfo named(path);
    return named.exists() ? named.canonicalFilePath() : named.absoluteFilePath();
}

/// Writes to an open file. A full disk is reported only when the buffer is flushed.
bool writeThrough(QFileDevice& file, const QByteArray& bytes) {
    return file.write(bytes) == bytes.size() && file.flush() &&
           file.error() == QFileDevice::NoError && syncToDisk(file);
}

/// Opening a FIFO for writing blocks until it is read, and what is written there is on no disk.
bool isFifo(const QString& path) {
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISFIFO(status.st_mode);
}

FileReplacement writeInPlace(const QString& path, const QByteArray& bytes) {
    if (isFifo(path))
        return FileReplacement::NotOpened;
    QFile file(path);
    // With fs.protected_regular, O_CREAT on another user's file in a sticky directory fails even if
    // the file exists.
    const QIODevice::OpenMode existence =
        QFileInfo::exists(path) ? QIODevice::ExistingOnly : QIODevice::NotOpen;
    if (!file.open(textMode | QIODevice::Truncate | existence))
        return FileReplacement::NotOpened;
    const bool isWritten = writeThrough(file, bytes);
    file.close();
    return isWritten && file.error() == QFileDevice::NoError ? FileReplacement::Written
                                                             : FileReplacement::NotWritten;
}

} // namespace

FileReplacement replaceFile(const QString& path, const QByteArray& bytes) {
    const QFileInfo target(resolved(path));
    if (!canBeReplaced(target))
        return writeInPlace(path, bytes);
    QSaveFile file(path);
    if (!file.open(textMode)) {
        if (!target.exists())
            return writeInPlace(path, bytes);
        // The folder is writable, but no file can be created, as on a full disk: truncating the
        // existing one would lose it.
        return target.isWritable() ? FileReplacement::NotWritten : FileReplacement::NotOpened;
    }
    if (!writeThrough(file, bytes))
        return FileReplacement::NotWritten;
    // Renaming fails over another user's file in a sticky directory, or if the temporary name is
    // too long.
    if (!file.commit())
        return writeInPlace(path, bytes);
    syncNamesToDisk(target.path());
    return FileReplacement::Written;
}
