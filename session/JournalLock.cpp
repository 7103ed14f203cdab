// Locks a journal against other recoveries, and detects that a running session holds it.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/JournalLock.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

/// Whether a journal is so new that its session may not have locked it yet. A journal that is not
/// empty has been locked.
bool mayBeUnlocked(const QFileInfo& file) {
    constexpr int minimumSeconds = 60;
    return file.exists() && file.size() == 0 &&
           file.lastModified().secsTo(QDateTime::currentDateTime()) < minimumSeconds;
}

/// NFS locks only files that are open for writing; after disk errors a file system may be
/// read-only.
int openJournal(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    const int descriptor = ::open(name.constData(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
    return descriptor >= 0 ? descriptor
                           : ::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
}

} // namespace

JournalLock::JournalLock(const QString& path) : heldElsewhere(mayBeUnlocked(QFileInfo(path))) {
    if (heldElsewhere)
        return;
    descriptor = openJournal(path);
    if (descriptor < 0 || flock(descriptor, LOCK_EX | LOCK_NB) == 0)
        return;
    heldElsewhere = errno == EWOULDBLOCK;
    ::close(descriptor);
    descriptor = -1;
}

JournalLock::~JournalLock() {
    if (descriptor >= 0)
        ::close(descriptor);
}

std::optional<QByteArray> JournalLock::contents() const {
    if (descriptor < 0)
        return std::nullopt;
    QFile file;
    file.open(descriptor, QIODevice::ReadOnly);
    QByteArray bytes = file.readAll();
    // A disk with errors may hand out a part, or nothing.
    if (bytes.size() != file.size())
        return std::nullopt;
    return bytes;
}
