// Whole files for tests.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/FileBytes.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace testsupport {

bool writeBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
}

QByteArray readBytes(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

QStringList filesIn(const QString& folder) {
    QStringList paths;
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files, QDir::Name))
        paths.append(file.absoluteFilePath());
    return paths;
}

QList<QByteArray> contentsOf(const QString& folder) {
    QList<QByteArray> contents;
    for (const QString& path : filesIn(folder))
        contents.append(readBytes(path));
    return contents;
}

} // namespace testsupport
