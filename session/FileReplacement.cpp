// Writing a file so that neither the new nor the old content is lost.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/FileReplacement.h"

#include "session/DiskSync.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <sys/stat.h>

namespace {

constexpr QIODevice::OpenMode textMode = QIODevice::WriteOnly | QIODevice::Text;

/// Whether the folder of a file takes another one beside it, which can then be renamed. Anything
/// but a regular file has to be written as it is: a device would be replaced by a file.
bool canBeReplaced(const QFileInfo& file) {
    return (!file.exists() || file.isFile()) && QFileInfo(file.path()).isWritable();
}

/// The path of the file itself, where the path is that of a link to one.
QString resolved(const QString& path) {
    const QFileInfo named(path);
    return named.exists() ? named.canonicalFilePath() : named.absoluteFilePath();
}

/// Writes to an open file. A full disk shows only when the bytes that are held back are flushed.
bool writeThrough(QFileDevice& file, const QByteArray& bytes) {
    return file.write(bytes) == bytes.size() && file.flush() &&
           file.error() == QFileDevice::NoError && syncToDisk(file);
}

/// Opening a FIFO waits for somebody who reads it, and what is written there is on no disk.
bool isFifo(const QString& path) {
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISFIFO(status.st_mode);
}

FileReplacement writeInPlace(const QString& path, const QByteArray& bytes) {
    if (isFifo(path))
        return FileReplacement::NotOpened;
    QFile file(path);
    // Some systems let nobody make a file where somebody else's stands, and mean its opening too.
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
        // Without room for a further file, what is there must not be emptied.
        return target.isWritable() ? FileReplacement::NotWritten : FileReplacement::NotOpened;
    }
    if (!writeThrough(file, bytes))
        return FileReplacement::NotWritten;
    // A file cannot be renamed over somebody else's in a folder that all share, nor be given
    // a longer name than names can have while it is unfinished.
    if (!file.commit())
        return writeInPlace(path, bytes);
    syncNamesToDisk(target.path());
    return FileReplacement::Written;
}
