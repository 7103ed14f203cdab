// Waiting until files have reached the disk.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/DiskSync.h"

#include <QFile>
#include <QFileDevice>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

bool syncToDisk(const QFileDevice& file) {
    return fsync(file.handle()) == 0 || errno == EINVAL || errno == ENOTSUP;
}

void syncNamesToDisk(const QString& folder) {
    const int descriptor =
        open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    fsync(descriptor);
    close(descriptor);
}
