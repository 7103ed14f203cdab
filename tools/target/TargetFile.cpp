// Writes a target to the disk.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/target/TargetFile.h"

#include "session/DiskSync.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace {

QByteArray bytesOf(const CWav& wav) {
    QByteArray bytes(reinterpret_cast<const char*>(&wav.header), sizeof(wav.header));
    bytes.append(wav.rawData.data(), static_cast<int>(wav.rawData.size()));
    if (wav.header.dataSize % 2 != 0)
        bytes.append('\0');
    return bytes;
}

/// A full disk is reported only when the buffer is flushed.
bool write(QFile& file, const QByteArray& bytes) {
    return file.write(bytes) == bytes.size() && file.flush() &&
           file.error() == QFileDevice::NoError && syncToDisk(file);
}

bool rename(QFile& file, const QString& name, ExistingFile existing) {
    if (existing == ExistingFile::Keep)
        return file.rename(name);
    return std::rename(QFile::encodeName(file.fileName()).constData(),
                       QFile::encodeName(name).constData()) == 0;
}

} // namespace

QString writeTarget(const CWav& wav, const QString& fileName, ExistingFile existing) {
    const QFileInfo named(fileName);
    if (named.exists() && !named.isFile())
        return QStringLiteral("%1 is not a regular file").arg(fileName);
    if ((named.exists() || named.isSymLink()) && existing == ExistingFile::Keep)
        return QStringLiteral("%1 exists; --force replaces it").arg(fileName);
    // Replaces the file that a link points to, not the link, unless the link is dangling.
    const QFileInfo target(named.exists() ? named.canonicalFilePath() : named.absoluteFilePath());
    const QByteArray bytes = bytesOf(wav);
    QFile partial(QStringLiteral("%1/.pellion-target.%2.part")
                      .arg(target.path(), QString::number(QCoreApplication::applicationPid())));
    if (!partial.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return QStringLiteral("no file can be made in %1").arg(target.path());
    QString problem;
    if (!write(partial, bytes))
        problem = QStringLiteral("%1 cannot be written completely").arg(fileName);
    else if (!rename(partial, target.filePath(), existing))
        problem = QStringLiteral("%1 cannot be created: renaming failed").arg(fileName);
    if (!problem.isEmpty())
        partial.remove();
    return problem;
}
