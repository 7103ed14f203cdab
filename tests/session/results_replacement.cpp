// The results file: written whole, in place of an earlier one, on disks that fail.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_results.h"

#include "session/FileReplacement.h"
#include "support/DiskFaults.h"
#include "support/EndsByItself.h"
#include "support/SyncCalls.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using testsupport::SmallDisk;
using testsupport::WithoutPrivileges;

namespace {

QByteArray earlierBytes() {
    return "an earlier session\r\n";
}

QByteArray newBytes() {
    return "a later session, which is longer\r\n";
}

/// A folder that every user can access.
class OpenFolder {
public:
    OpenFolder() { setMode(0777); }
    ~OpenFolder() { setMode(0777); }
    Q_DISABLE_COPY_MOVE(OpenFolder)

    void setMode(mode_t mode) const {
        if (::chmod(folder.path().toLocal8Bit().constData(), mode) != 0)
            qFatal("the folder's mode cannot be set");
    }
    [[nodiscard]] QStringList names() const {
        return QDir(folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    [[nodiscard]] QString path(const QString& name) const { return folder.filePath(name); }

    /// Makes a file that holds earlierBytes(); returns its path.
    [[nodiscard]] QString makeFile(const QString& name, mode_t mode = 0666) const {
        if (!writeBytes(path(name), earlierBytes()) ||
            ::chmod(path(name).toLocal8Bit().constData(), mode) != 0)
            qFatal("a file cannot be made");
        return path(name);
    }

private:
    QTemporaryDir folder;
};

struct stat statusOf(const QString& path) {
    struct stat status = {};
    ::lstat(path.toLocal8Bit().constData(), &status);
    return status;
}

} // namespace

void TestFileReplacement::newFileHoldsTheBytes() {
    const OpenFolder folder;
    const QString path = folder.path("new.txt");
    const mode_t mask = ::umask(0027);
    const FileReplacement outcome = replaceFile(path, newBytes());
    ::umask(mask);
    QCOMPARE(outcome, FileReplacement::Written);
    QCOMPARE(readBytes(path), newBytes());
    QCOMPARE(statusOf(path).st_mode & 0777U, 0640U);
    QCOMPARE(folder.names(), QStringList("new.txt"));
}

void TestFileReplacement::existingFileIsReplacedWithItsPermissions_data() {
    QTest::addColumn<unsigned>("mode");
    QTest::newRow("private") << 0600U;
    QTest::newRow("for all") << 0666U;
    QTest::newRow("for the group") << 0640U;
}

void TestFileReplacement::existingFileIsReplacedWithItsPermissions() {
    QFETCH(unsigned, mode);
    const OpenFolder folder;
    const QString path = folder.makeFile("old.txt", mode);
    const ino_t earlier = statusOf(path).st_ino;
    QCOMPARE(replaceFile(path, newBytes()), FileReplacement::Written);
    QCOMPARE(readBytes(path), newBytes());
    QCOMPARE(statusOf(path).st_mode & 0777U, mode);
    QVERIFY(statusOf(path).st_ino != earlier);
    QCOMPARE(folder.names(), QStringList("old.txt"));
}

void TestFileReplacement::emptyContentGivesAnEmptyFile() {
    const OpenFolder folder;
    const QString path = folder.makeFile("old.txt");
    QCOMPARE(replaceFile(path, {}), FileReplacement::Written);
    QCOMPARE(readBytes(path), QByteArray(""));
    QVERIFY(QFileInfo::exists(path));
}

void TestFileReplacement::fileSizeLimitKeepsTheEarlierFile() {
    const OpenFolder folder;
    const QString path = folder.makeFile("old.txt");
    FileReplacement outcome = FileReplacement::Written;
    {
        const testsupport::FileSizeLimit limit(10);
        outcome = replaceFile(path, newBytes());
    }
    QCOMPARE(outcome, FileReplacement::NotWritten);
    QCOMPARE(readBytes(path), earlierBytes());
    QCOMPARE(folder.names(), QStringList("old.txt"));
}

void TestFileReplacement::fileSizeLimitLeavesNoNewFile() {
    const OpenFolder folder;
    FileReplacement outcome = FileReplacement::Written;
    {
        const testsupport::FileSizeLimit limit(10);
        outcome = replaceFile(folder.path("new.txt"), newBytes());
    }
    QCOMPARE(outcome, FileReplacement::NotWritten);
    QCOMPARE(folder.names(), QStringList());
}

void TestFileReplacement::fullDiskKeepsTheEarlierFile() {
    const SmallDisk disk;
    if (!disk.isThere())
        QSKIP("mounting a small disk requires root");
    const QString path = disk.path("old.txt");
    QVERIFY(writeBytes(path, earlierBytes()));
    disk.fill();
    QCOMPARE(replaceFile(path, newBytes()), FileReplacement::NotWritten);
    QCOMPARE(readBytes(path), earlierBytes());
    QCOMPARE(replaceFile(disk.path("new.txt"), newBytes()), FileReplacement::NotWritten);
    QVERIFY(!QFileInfo::exists(disk.path("new.txt")));
    disk.clear();
    QCOMPARE(replaceFile(path, newBytes()), FileReplacement::Written);
    QCOMPARE(readBytes(path), newBytes());
}

void TestFileReplacement::diskWithoutRoomForANewFileKeepsTheEarlierOne() {
    const SmallDisk disk;
    if (!disk.isThere())
        QSKIP("mounting a small disk requires root");
    const QString path = disk.path("old.txt");
    QVERIFY(writeBytes(path, earlierBytes()));
    for (int others = 0; writeBytes(disk.path(QString::number(others)), {}); ++others)
        QVERIFY(others < 10);
    QCOMPARE(replaceFile(path, newBytes()), FileReplacement::NotWritten);
    QCOMPARE(readBytes(path), earlierBytes());
    QCOMPARE(replaceFile(disk.path("new.txt"), newBytes()), FileReplacement::NotOpened);
}

void TestFileReplacement::readOnlyDiskIsNotOpened() {
    const SmallDisk disk;
    if (!disk.isThere())
        QSKIP("mounting a small disk requires root");
    const QString path = disk.path("old.txt");
    QVERIFY(writeBytes(path, earlierBytes()));
    QVERIFY(disk.makeReadOnly());
    QCOMPARE(replaceFile(path, newBytes()), FileReplacement::NotOpened);
    QCOMPARE(replaceFile(disk.path("new.txt"), newBytes()), FileReplacement::NotOpened);
    QCOMPARE(readBytes(path), earlierBytes());
}

void TestFileReplacement::fileInAReadOnlyFolderIsWrittenInPlace() {
    const OpenFolder folder;
    const QString path = folder.makeFile("old.txt");
    const ino_t earlier = statusOf(path).st_ino;
    folder.setMode(0555);
    FileReplacement replaced = FileReplacement::NotWritten;
    FileReplacement made = FileReplacement::Written;
    {
        const WithoutPrivileges user;
        replaced = replaceFile(path, newBytes());
        made = replaceFile(folder.path("new.txt"), newBytes());
    }
    QCOMPARE(replaced, FileReplacement::Written);
    QCOMPARE(readBytes(path), newBytes());
    QCOMPARE(statusOf(path).st_ino, earlier);
    QCOMPARE(made, FileReplacement::NotOpened);
    QCOMPARE(folder.names(), QStringList("old.txt"));
}

void TestFileReplacement::fileOfAnotherUserInASharedFolderIsWrittenInPlace() {
    if (::getuid() != 0)
        QSKIP("a file of another user requires root");
    const OpenFolder folder;
    const QString path = folder.makeFile("old.txt");
    const ino_t earlier = statusOf(path).st_ino;
    folder.setMode(01777);
    FileReplacement outcome = FileReplacement::NotWritten;
    {
        const WithoutPrivileges user;
        outcome = replaceFile(path, newBytes());
    }
    QCOMPARE(outcome, FileReplacement::Written);
    QCOMPARE(readBytes(path), newBytes());
    QCOMPARE(statusOf(path).st_ino, earlier);
    QCOMPARE(folder.names(), QStringList("old.txt"));
}

void TestFileReplacement::fileWithoutPermissionIsNotOpened() {
    const OpenFolder folder;
    const QString path = folder.makeFile("old.txt", 0444);
    FileReplacement outcome = FileReplacement::Written;
    {
        const WithoutPrivileges user;
        outcome = replaceFile(path, newBytes());
    }
    QCOMPARE(outcome, FileReplacement::NotOpened);
    QCOMPARE(readBytes(path), earlierBytes());
    QCOMPARE(folder.names(), QStringList("old.txt"));
}

void TestFileReplacement::linkIsFollowed_data() {
    QTest::addColumn<bool>("isDangling");
    QTest::newRow("to a file") << false;
    QTest::newRow("to a file that is not there yet") << true;
}

void TestFileReplacement::linkIsFollowed() {
    QFETCH(bool, isDangling);
    const OpenFolder folder;
    const QString path = isDangling ? folder.path("there.txt") : folder.makeFile("there.txt");
    const QString link = folder.path("link.txt");
    QVERIFY(QFile::link(path, link));
    QCOMPARE(replaceFile(link, newBytes()), FileReplacement::Written);
    QVERIFY(S_ISLNK(statusOf(link).st_mode));
    QVERIFY(S_ISREG(statusOf(path).st_mode));
    QCOMPARE(readBytes(path), newBytes());
    QCOMPARE(folder.names(), QStringList({"link.txt", "there.txt"}));
}

void TestFileReplacement::folderOfTheFileItselfIsSynced() {
    const OpenFolder folder;
    const OpenFolder otherFolder;
    const QString path = otherFolder.makeFile("there.txt");
    const QString link = folder.path("link.txt");
    QVERIFY(QFile::link(path, link));
    testsupport::SyncCalls syncs;
    QCOMPARE(replaceFile(link, newBytes()), FileReplacement::Written);
    QCOMPARE(syncs.foldersSynced,
             std::vector<unsigned long>{statusOf(QFileInfo(path).path()).st_ino});
    QCOMPARE(readBytes(path), newBytes());
}

void TestFileReplacement::deviceStaysADevice() {
    const QTemporaryDir folder;
    for (const auto& [device, outcome] :
         {std::pair(testsupport::nullDevice(folder), FileReplacement::Written),
          std::pair(testsupport::fullDevice(folder), FileReplacement::NotWritten)}) {
        const dev_t earlier = statusOf(device).st_rdev;
        QCOMPARE(replaceFile(device, newBytes()), outcome);
        QVERIFY(S_ISCHR(statusOf(device).st_mode));
        QCOMPARE(statusOf(device).st_rdev, earlier);
    }
}

void TestFileReplacement::fifoIsNotOpened_data() {
    QTest::addColumn<bool>("isLink");
    QTest::addColumn<bool>("isRead");
    QTest::newRow("without a reader") << false << false;
    QTest::newRow("without a reader, by a link") << true << false;
    QTest::newRow("with a reader") << false << true;
}

void TestFileReplacement::fifoIsNotOpened() {
    QFETCH(bool, isLink);
    QFETCH(bool, isRead);
    const OpenFolder folder;
    const QByteArray fifo = folder.path("fifo").toLocal8Bit();
    QCOMPARE(::mkfifo(fifo.constData(), 0600), 0);
    const int reader = isRead ? ::open(fifo.constData(), O_RDONLY | O_NONBLOCK) : -1;
    QVERIFY(!isLink || QFile::link("fifo", folder.path("results.txt")));
    FileReplacement outcome = FileReplacement::Written;
    QVERIFY(testsupport::endsByItself(
        [&] { outcome = replaceFile(folder.path(isLink ? "results.txt" : "fifo"), newBytes()); },
        fifo));
    ::close(reader);
    QCOMPARE(outcome, FileReplacement::NotOpened);
    QVERIFY(S_ISFIFO(statusOf(folder.path("fifo")).st_mode));
}

void TestFileReplacement::bytesAndNameAreSynced() {
    const OpenFolder folder;
    testsupport::SyncCalls syncs;
    QCOMPARE(replaceFile(folder.path("new.txt"), newBytes()), FileReplacement::Written);
    QCOMPARE(syncs.count, 2);
    QCOMPARE(syncs.bytesSynced, newBytes().size());
}

void TestFileReplacement::failedSyncKeepsTheEarlierFile() {
    const OpenFolder folder;
    const QString path = folder.makeFile("old.txt");
    testsupport::SyncCalls syncs;
    syncs.failure = EIO;
    QCOMPARE(replaceFile(path, newBytes()), FileReplacement::NotWritten);
    QCOMPARE(readBytes(path), earlierBytes());
    QCOMPARE(folder.names(), QStringList("old.txt"));
}

void TestFileReplacement::pathThatCannotBeAFileIsNotOpened_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("folder") << ".";
    QTest::newRow("missing folder") << "missing/new.txt";
    QTest::newRow("file as a folder") << "old.txt/new.txt";
    QTest::newRow("name of 256 bytes") << QString(256, 'n');
}

void TestFileReplacement::pathThatCannotBeAFileIsNotOpened() {
    QFETCH(QString, name);
    const OpenFolder folder;
    QVERIFY(QFileInfo::exists(folder.makeFile("old.txt")));
    QCOMPARE(replaceFile(folder.path(name), newBytes()), FileReplacement::NotOpened);
    QCOMPARE(folder.names(), QStringList("old.txt"));
    QCOMPARE(replaceFile(QString(), newBytes()), FileReplacement::NotOpened);
}

void TestFileReplacement::longestNamesAreWritten_data() {
    QTest::addColumn<QString>("name");
    for (const int length : {247, 248, 249, 255})
        QTest::addRow("%d bytes", length) << QString(length, 'n');
    QTest::newRow("255 bytes in 85 letters") << QString(85, QChar(0x4e03));
}

void TestFileReplacement::longestNamesAreWritten() {
    QFETCH(QString, name);
    const OpenFolder folder;
    for (const QByteArray& bytes : {earlierBytes(), newBytes()}) {
        QCOMPARE(replaceFile(folder.path(name), bytes), FileReplacement::Written);
        QCOMPARE(readBytes(folder.path(name)), bytes);
        QCOMPARE(folder.names(), QStringList(name));
    }
}
