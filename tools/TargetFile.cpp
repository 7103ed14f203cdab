// Puts a made target on the disk.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/TargetFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace {

/// A file that goes when this does, unless it has been given another name.
class PartialFile {
public:
    explicit PartialFile(const QFileInfo& target)
        : name(QStringLiteral("%1/.pellion-target.%2.part")
                   .arg(target.path(), QString::number(QCoreApplication::applicationPid()))) {}
    ~PartialFile() {
        if (isMade)
            QFile::remove(name);
    }
    PartialFile(const PartialFile&) = delete;
    PartialFile(PartialFile&&) = delete;
    PartialFile& operator=(const PartialFile&) = delete;
    PartialFile& operator=(PartialFile&&) = delete;

    /// The writer appends: what it writes to has to be there and empty.
    bool make() {
        QFile file(name);
        isMade = file.open(QIODevice::WriteOnly | QIODevice::NewOnly);
        return isMade;
    }

    bool fill(const CWav& wav) const {
        if (!wav.WriteWav(name.toStdString()))
            return false;
        QFile file(name);
        const bool isPadded = wav.header.dataSize % 2 != 0;
        return !isPadded || (file.open(QIODevice::Append) && file.putChar('\0') && file.flush());
    }

    /// The writer does not tell about a disk that is full.
    bool holds(const CWav& wav) const {
        QFile file(name);
        QByteArray expected(reinterpret_cast<const char*>(&wav.header), sizeof(wav.header));
        expected.append(wav.rawData.data(), static_cast<int>(wav.rawData.size()));
        if (wav.header.dataSize % 2 != 0)
            expected.append('\0');
        return file.open(QIODevice::ReadOnly) && file.readAll() == expected;
    }

    bool rename(const QString& fileName, ExistingFile existing) {
        const bool isRenamed = existing == ExistingFile::Replace
                                   ? std::rename(QFile::encodeName(name).constData(),
                                                 QFile::encodeName(fileName).constData()) == 0
                                   : QFile::rename(name, fileName);
        isMade = !isRenamed;
        return isRenamed;
    }

private:
    QString name;
    bool isMade = false;
};

} // namespace

QString writeTarget(const CWav& wav, const QString& fileName, ExistingFile existing) {
    const QFileInfo named(fileName);
    if (named.exists() && !named.isFile())
        return QStringLiteral("%1 is no regular file").arg(fileName);
    if ((named.exists() || named.isSymLink()) && existing == ExistingFile::Keep)
        return QStringLiteral("%1 exists; --force replaces it").arg(fileName);
    // What a link leads to is replaced, not the link, unless it leads nowhere.
    const QFileInfo target(named.exists() ? named.canonicalFilePath() : named.absoluteFilePath());
    PartialFile partial(target);
    if (!partial.make())
        return QStringLiteral("no file can be made in %1").arg(target.path());
    if (!partial.fill(wav) || !partial.holds(wav))
        return QStringLiteral("%1 cannot be written completely").arg(fileName);
    if (!partial.rename(target.filePath(), existing))
        return QStringLiteral("%1 cannot be given its name").arg(fileName);
    return {};
}
