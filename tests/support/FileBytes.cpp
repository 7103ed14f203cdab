// Whole files for tests.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/FileBytes.h"

#include <QDir>
#include <QFile>

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

QList<QByteArray> contentsOf(const QString& folder) {
    QList<QByteArray> contents;
    const QDir files(folder);
    for (const QString& name : files.entryList(QDir::Files, QDir::Name))
        contents.append(readBytes(files.filePath(name)));
    return contents;
}

} // namespace testsupport
