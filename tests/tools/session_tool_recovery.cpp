// pellion-session recover, on journals that sessions leave.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_session_tool.h"

#include "examples/analysis_tables.h"
#include "session/ResponseJournal.h"
#include "session/ResultsFile.h"
#include "support/DiskFaults.h"
#include "support/SyncCalls.h"
#include "tools/session/Recovery.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

using testsupport::readBytes;
using testsupport::writeBytes;

namespace {

QByteArray results(const QVector<double>& frequencies) {
    return resultsText("t.wav", frequencies).toUtf8();
}

} // namespace

void TestSessionRecovery::journalsAreListedAndStay() {
    const SessionHome home;
    QCOMPARE(home.run({"recover"}).errors,
             QString("pellion-session: there is nothing to recover\n"));
    const QString path = home.leaveJournal("A b_experiment012", {440, 441.5}, "t.wav\t3\t4");
    const SessionToolRun run = home.run({"recover"});
    QCOMPARE(run.output,
             "subject\tsession\tnumber\tstart\ttarget\tresponses\tbytes left out\tjournal\n"
             "A b\texperiment\t012\t2026-03-09T08:05:59\tt.wav\t2\t9\t" +
                 path + '\n');
    QCOMPARE(run.errors,
             QString("pellion-session: to save them: pellion-session recover FOLDER\n"));
    QCOMPARE(run.status, 0);
    QCOMPARE(SessionHome::namesIn(home.journals()), QStringList(QFileInfo(path).fileName()));
}

void TestSessionRecovery::journalsBecomeResultsFiles() {
    const SessionHome home;
    // By the program's own class, as a session ends that cannot be saved.
    {
        ResponseJournal journal(home.journals());
        for (const char* name : {"SUB001_practice001.txt", "SUB001_experiment002.txt"}) {
            journal.begin(name, QDateTime::currentDateTime());
            journal.record("t.wav", {500});
            journal.record("t.wav", {500, 437});
        }
    }
    home.leaveJournal("S_practice1000", {10, 1000}, "\n\n\r\n\n");
    const SessionToolRun run = home.run({"recover", "Desktop"});
    QVERIFY2(run.output.contains("Desktop/S_practice1000.txt: saved\n"), qPrintable(run.output));
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(
        SessionHome::namesIn(home.desktop()),
        QStringList({"S_practice1000.txt", "SUB001_experiment002.txt", "SUB001_practice001.txt"}));
    QCOMPARE(readBytes(home.desktop() + "/SUB001_practice001.txt"), results({500, 437}));
    QCOMPARE(readBytes(home.desktop() + "/SUB001_experiment002.txt"), results({500, 437}));
    QCOMPARE(readBytes(home.desktop() + "/S_practice1000.txt"), results({10, 1000}));
    QCOMPARE(SessionHome::namesIn(home.journals()), QStringList());
}

void TestSessionRecovery::anExistingFileIsKept() {
    const SessionHome home;
    const QByteArray other = "another file";
    QVERIFY(writeBytes(home.desktop() + "/SUB001_practice001.txt", other));
    QVERIFY(QFile::link("nowhere", home.desktop() + "/SUB001_practice002.txt"));
    QVERIFY(QDir(home.desktop()).mkdir("SUB001_practice003.txt"));
    const QString path = home.leaveJournal("SUB001_practice001", {440});
    const SessionToolRun run = home.run({"recover", home.desktop()});
    const QString copy = home.desktop() + "/SUB001_practice004.txt";
    QCOMPARE(run.output, copy + ": saved\n");
    QCOMPARE(readBytes(copy), results({440}));
    QCOMPARE(readBytes(home.desktop() + "/SUB001_practice001.txt"), other);
    QVERIFY(!QFileInfo::exists(home.desktop() + "/nowhere"));
    QVERIFY(!QFileInfo::exists(path));
}

void TestSessionRecovery::sessionsOfOneNameAreNumberedByTheirStarts() {
    const SessionHome home;
    const char* const last = "/SUB001_practice001-20260309-080601-2.txt";
    const char* const second = "/SUB001_practice001-20260309-080601.txt";
    QVERIFY(writeBytes(home.journals() + last, results({440})));
    QVERIFY(writeBytes(home.journals() + second, results({441})));
    home.leaveJournal("SUB001_practice001", {442}); // At 08:05:59.
    QCOMPARE(home.run({"recover", home.desktop()}).status, 0);
    QCOMPARE(testsupport::contentsOf(home.desktop()),
             QList<QByteArray>({results({442}), results({441}), results({440})}));
}

/// It may be that of another session, with the same few responses.
void TestSessionRecovery::aFileThatHoldsTheSameIsNotWrittenTwice() {
    const SessionHome home;
    QVERIFY(writeBytes(home.desktop() + "/SUB001_practice001.txt", "something else"));
    QVERIFY(writeBytes(home.desktop() + "/SUB001_practice002.txt", results({440})));
    const QString path = home.leaveJournal("SUB001_practice001", {440});
    QCOMPARE(home.run({"recover", home.desktop()}).output,
             home.desktop() + "/SUB001_practice002.txt: holds the same responses already; " + path +
                 " is kept: delete the journal if both are of the same session\n");
    QCOMPARE(SessionHome::namesIn(home.desktop()).size(), 2);
    QCOMPARE(readBytes(path), results({440}));
}

void TestSessionRecovery::aTornJournalIsKeptBesideItsCopy() {
    const SessionHome home;
    const QString path = home.leaveJournal("SUB001_practice001", {440, 441}, "t.wav\t3\t4");
    const QByteArray journal = readBytes(path);
    const QString copy = home.desktop() + "/SUB001_practice001.txt";
    const QString kept = "; " + path + " is kept: ";
    // Once more changes nothing.
    for (const QString& outcome :
         {": saved" + kept + "its last 9 bytes are not a whole response and were left out\n",
          ": holds the same responses already" + kept +
              "delete the journal if both are of the same session\n"}) {
        const SessionToolRun run = home.run({"recover", home.desktop()});
        QCOMPARE(run.output, copy + outcome);
        QCOMPARE(run.status, 1);
        QCOMPARE(readBytes(copy), results({440, 441}));
        QCOMPARE(readBytes(path), journal);
        QCOMPARE(SessionHome::namesIn(home.desktop()).size(), 1);
    }
}

void TestSessionRecovery::aRunningSessionIsLeftAlone() {
    const SessionHome home;
    ResponseJournal journal(home.journals());
    journal.begin("SUB001_practice001.txt", QDateTime::currentDateTime());
    journal.record("t.wav", {500});
    const SessionToolRun run = home.run({"recover", home.desktop()});
    QCOMPARE(run.errors, QString("pellion-session: journals left alone, because a running session "
                                 "holds them or they cannot be read: 1\n"));
    QCOMPARE(SessionHome::namesIn(home.desktop()), QStringList());
    journal.record("t.wav", {500, 501});
    journal.keep();
    QCOMPARE(home.run({"recover", home.desktop()}).status, 0);
    QCOMPARE(readBytes(home.desktop() + "/SUB001_practice001.txt"), results({500, 501}));
}

void TestSessionRecovery::emptyJournalsGoWhenTheyAreOld() {
    const SessionHome home;
    for (const char* name : {"new-20260309-080559.txt", "old-20260309-080559.txt"})
        QVERIFY(writeBytes(home.journals() + '/' + name, {}));
    QFile old(home.journals() + "/old-20260309-080559.txt");
    QVERIFY(old.open(QIODevice::Append));
    QVERIFY(old.setFileTime(QDateTime::currentDateTime().addSecs(-100),
                            QFileDevice::FileModificationTime));
    old.close();
    const QString torn = home.leaveJournal("torn_practice001", {}, "t.wav\t1\t4");
    const SessionToolRun run = home.run({"recover", home.desktop()});
    QCOMPARE(run.output, "old-20260309-080559.txt: held no response, removed\n" + torn +
                             " is kept: it holds no whole response\n");
    QCOMPARE(run.status, 1);
    QCOMPARE(SessionHome::namesIn(home.journals()),
             QStringList({"new-20260309-080559.txt", QFileInfo(torn).fileName()}));
}

void TestSessionRecovery::whatCannotBeCopiedIsKept_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("problem");
    const QString elsewhere = "SUB001_practice001";
    QTest::newRow("no session type")
        << "a name of one's own"
        << "Desktop"
        << "its name does not hold session type and file number; rename it to "
           "CODE_practiceNNN-20260309-080559.txt or CODE_experimentNNN-20260309-080559.txt\n";
    QTest::newRow("file number beyond the program's")
        << "S_practice99999999999"
        << "Desktop"
        << "its name does not hold session type and file number";
    QTest::newRow("no further file number") << "S_practice2147483647"
                                            << "Desktop"
                                            << "no file number is free in Desktop\n";
    QTest::newRow("the journals' own folder")
        << elsewhere << ".local/share/pellion/journal"
        << ".local/share/pellion/journal is the journals' own folder\n";
    QTest::newRow("a folder that takes no file") << elsewhere << "/proc"
                                                 << "/proc/SUB001_practice001.txt cannot be made (";
}

void TestSessionRecovery::whatCannotBeCopiedIsKept() {
    QFETCH(QString, name);
    QFETCH(QString, folder);
    QFETCH(QString, problem);
    const SessionHome home;
    const QString path = home.leaveJournal(name, {440});
    const SessionToolRun run = home.run({"recover", folder});
    QVERIFY2(run.output.startsWith(path + " is kept: " + problem), qPrintable(run.output));
    QCOMPARE(run.status, 1);
    QCOMPARE(readBytes(path), results({440}));
    QCOMPARE(SessionHome::namesIn(home.desktop()), QStringList());
}

void TestSessionRecovery::aFullDiskCostsNothing() {
    const testsupport::SmallDisk disk;
    if (!disk.isThere())
        QSKIP("mounting needs root");
    const SessionHome home;
    const QVector<double> frequencies(100, 500.0);
    const QString path = home.leaveJournal("SUB001_practice001", frequencies);
    disk.fill();
    const SessionToolRun run = home.run({"recover", disk.path()});
    QCOMPARE(run.output,
             path + " is kept: " + disk.path("SUB001_practice001.txt") + " cannot be written\n");
    QCOMPARE(run.status, 1);
    QCOMPARE(readBytes(path), results(frequencies));
    QCOMPARE(SessionHome::namesIn(disk.path()), QStringList("filling"));
    disk.clear();
    QCOMPARE(home.run({"recover", disk.path()}).status, 0);
    QCOMPARE(readBytes(disk.path("SUB001_practice001.txt")), results(frequencies));
}

/// The journal is there until the copy, and its name, are on the disk.
void TestSessionRecovery::aKillCostsNothing() {
    enum { SyncOfCopy = 1, SyncOfItsName, SyncOfRemoval, Syncs = SyncOfRemoval };
    for (int sync = 1; sync <= Syncs; ++sync) {
        const SessionHome home;
        const QString path = home.leaveJournal("SUB001_practice001", {440});
        const pid_t process = fork();
        if (process == 0) {
            testsupport::SyncCalls syncs;
            syncs.killAt = sync;
            recover(path, home.desktop());
            _exit(0);
        }
        int status = 0;
        QCOMPARE(waitpid(process, &status, 0), process);
        QVERIFY(WIFSIGNALED(status));
        QCOMPARE(QFileInfo::exists(path), sync < SyncOfRemoval);
        QCOMPARE(readBytes(home.desktop() + "/SUB001_practice001.txt"),
                 sync > SyncOfCopy ? results({440}) : QByteArray(""));
    }
}

void TestSessionRecovery::aJournalOnAReadOnlyDiskIsCopied() {
    const testsupport::SmallDisk disk;
    if (!disk.isThere())
        QSKIP("mounting needs root");
    const SessionHome home;
    const QString path = disk.path("pellion/journal/SUB001_practice001-20260309-080559.txt");
    QVERIFY(QDir().mkpath(QFileInfo(path).path()) && writeBytes(path, results({440})));
    QVERIFY(disk.makeReadOnly());
    const SessionToolRun run =
        home.run({"recover", home.desktop()}, {"XDG_DATA_HOME=" + disk.path()});
    const QString copy = home.desktop() + "/SUB001_practice001.txt";
    QCOMPARE(run.output, copy + ": saved; " + path + " is kept: it cannot be removed\n");
    QCOMPARE(run.status, 1);
    QCOMPARE(readBytes(copy), results({440}));
}

void TestSessionRecovery::analysesReadWhatIsRecovered_data() {
    addLanguages();
}

void TestSessionRecovery::analysesReadWhatIsRecovered() {
    QFETCH(QStringList, command);
    const SessionHome home;
    home.leaveJournal("SUB001_practice001", {300, 441}, "t.wav\t3");
    home.leaveJournal("SUB001_experiment001", {10, 1000, 438.25}, "\n\n\n");
    QCOMPARE(home.run({"recover", home.desktop()}).status, 1);
    const AnalysisRun run = analyse(command, {"--target", "440", home.desktop()});
    QCOMPARE(run.output, expectedTables({{"SUB001", "experiment", 1, "t.wav", {10, 1000, 438.25}},
                                         {"SUB001", "practice", 1, "t.wav", {300, 441}}},
                                        440));
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.status, 0);
}
