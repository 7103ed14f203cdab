// Disks that fail, for tests.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <csignal>

#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace testsupport {

/// Limits the size of files that this process writes, while it lives: writing fails half-way, as on
/// a disk that becomes full.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : earlierHandler(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &earlier);
        // Only the soft limit, so that the earlier one can be restored.
        const rlimit lowered{bytes, earlier.rlim_max};
        if (::setrlimit(RLIMIT_FSIZE, &lowered) != 0)
            qFatal("the size of files cannot be limited");
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &earlier);
        std::signal(SIGXFSZ, earlierHandler);
    }
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

private:
    void (*earlierHandler)(int);
    rlimit earlier{};
};

/// A small file system of about 64 KiB and seven files. Creating one requires the right to mount.
class SmallDisk {
public:
    SmallDisk()
        : isMounted(::mount("tmpfs", path().constData(), "tmpfs", 0,
                            "size=64k,nr_inodes=8,mode=0777") == 0) {}
    ~SmallDisk() {
        if (isMounted)
            ::umount2(path().constData(), MNT_DETACH);
    }
    Q_DISABLE_COPY_MOVE(SmallDisk)

    [[nodiscard]] bool isThere() const { return isMounted; }
    [[nodiscard]] QByteArray path() const { return folder.path().toLocal8Bit(); }
    [[nodiscard]] QString path(const QString& name) const { return folder.filePath(name); }

    /// Makes it read-only; returns whether that succeeded.
    [[nodiscard]] bool makeReadOnly() const {
        return ::mount("tmpfs", path().constData(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr) == 0;
    }

    /// Fills it completely.
    void fill() const {
        QFile filling(path("filling"));
        const QByteArray page(4096, 'x');
        if (!filling.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            qFatal("the small disk cannot be filled");
        while (filling.write(page) == page.size())
            ;
    }

    /// Frees the space that fill() has taken.
    void clear() const { QFile::remove(path("filling")); }

private:
    QTemporaryDir folder;
    bool isMounted;
};

/// Makes a device of the given number in a folder, for tests that could replace the system's own by
/// a file when root runs them. Where no device can be made, returns the system's, which only root
/// could replace.
inline QString deviceIn(const QTemporaryDir& folder, const char* name, unsigned minorNumber) {
    QString path = folder.filePath(QLatin1String(name));
    constexpr unsigned memoryDevices = 1;
    const bool isMade = ::mknod(path.toLocal8Bit().constData(), S_IFCHR | 0666U,
                                makedev(memoryDevices, minorNumber)) == 0;
    QFile device(path);
    if (isMade && device.open(QIODevice::ReadWrite))
        return path;
    QFile::remove(path);
    return QStringLiteral("/dev/") + QLatin1String(name);
}

/// A device that accepts bytes and fails at flushing them, and one that accepts every byte.
inline QString fullDevice(const QTemporaryDir& folder) {
    return deviceIn(folder, "full", 7);
}
inline QString nullDevice(const QTemporaryDir& folder) {
    return deviceIn(folder, "null", 3);
}

/// Drops the process's root privileges while this lives; changes nothing without them.
class WithoutPrivileges {
public:
    WithoutPrivileges() {
        constexpr uid_t nobody = 65534;
        // Qt asks what the real user may do, opening a file what the effective one may.
        if (::getuid() == 0 && ::setresuid(nobody, nobody, 0) != 0)
            qFatal("root privileges cannot be dropped");
    }
    ~WithoutPrivileges() {
        if (::setresuid(own, own, own) != 0)
            qFatal("root privileges cannot be restored");
    }
    Q_DISABLE_COPY_MOVE(WithoutPrivileges)

private:
    uid_t own = ::getuid();
};

} // namespace testsupport
