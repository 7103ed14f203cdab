// The journal of responses, without a window.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_results.h"

#include "session/FileReplacement.h"
#include "session/ResponseJournal.h"
#include "support/DiskFaults.h"
#include "support/SyncCalls.h"

#include <QCoreApplication>
#include <QDate>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QTime>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

using testsupport::SyncCalls;

namespace {

QDateTime start() {
    return {QDate(2026, 3, 9), QTime(8, 5, 59)};
}

QString results() {
    return QStringLiteral("SUB001_practice001.txt");
}

QString nameOfJournal() {
    return QStringLiteral("SUB001_practice001-20260309-080559.txt");
}

/// The path of a results file that is not the journal.
QString resultsPath() {
    return QStringLiteral("/tmp/SUB001_practice001.txt");
}

QStringList filesIn(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

/// A journal that holds one response.
struct StartedJournal : ResponseJournal {
    explicit StartedJournal(const QString& journalsFolder) : ResponseJournal(journalsFolder) {
        begin(results(), start());
        record("t.wav", {500});
    }
};

} // namespace

void TestResponseJournal::nameComesFromTheResultsFileAndTheStart_data() {
    QTest::addColumn<QString>("resultsFileName");
    QTest::addColumn<QString>("name");
    const auto row = [](const char* name, const QString& resultsFileName, const QString& begin) {
        QTest::newRow(name) << resultsFileName << begin + "-20260309-080559.txt";
    };
    row("usual", results(), "SUB001_practice001");
    row("no code", "_experiment012.txt", "_experiment012");
    row("nothing at all", "", "");
    row("another ending", "S.dat", "S.dat");
    row("folders", "../a/b\\c_practice001.txt", "_._a_b_c_practice001");
    row("refused elsewhere", "a:b*c?d\"e<f>g|h.txt", "a_b_c_d_e_f_g_h");
    row("control characters",
        "a\tb\nc\rd\x01"
        "e\x7f.txt",
        "a_b_c_d_e_");
    row("zero", QString(QChar(0)) + "a.txt", "_a");
    row("hidden", ".a.txt", "_a");
    row("blanks", " a b .txt", " a b ");
    row("beyond ASCII", "Prüfling 七.txt", "Prüfling 七");
    row("pairs of surrogates", "S\U0001F442.txt", "S__");
    row("placeholder", "%1.txt", "%1");
    row("60 characters", QString(60, 'n') + ".txt", QString(60, 'n'));
    row("61 characters", QString(61, 'n') + ".txt", QString(60, 'n'));
}

void TestResponseJournal::nameComesFromTheResultsFileAndTheStart() {
    QFETCH(QString, resultsFileName);
    QTEST(journalName(resultsFileName, start()), "name");
}

void TestResponseJournal::namesFitIntoAnyFolder() {
    for (const QString& code : {QString(32767, 'n'), QString(32767, QChar(0x4e03)), QString("/"),
                                QString(".."), QString(100, QChar(0xd83d))}) {
        ResponseJournal journal(folder->path());
        journal.begin(code + "_practice001.txt", start());
        journal.record("t.wav", {500});
        QCOMPARE(filesIn(folder->path()).size(), 1);
        QCOMPARE(readBytes(folder->filePath(filesIn(folder->path()).constFirst())),
                 expectedResults("t.wav", {"500"}));
        journal.discard(resultsPath());
    }
}

void TestResponseJournal::folderIsInTheApplicationData() {
    qunsetenv("XDG_DATA_HOME");
    QCOMPARE(journalFolder(), QDir::homePath() + "/.local/share/" +
                                  QCoreApplication::applicationName() + "/journal");
}

void TestResponseJournal::thereIsNoFileBeforeTheFirstResponse() {
    const QString path = folder->filePath("deep/er");
    {
        ResponseJournal journal(path);
        journal.begin(results(), start());
        journal.record("t.wav", {});
        QVERIFY(!QFileInfo::exists(path));
    }
    QVERIFY(filesIn(folder->path()).isEmpty());
}

void TestResponseJournal::eachResponseIsInTheFileAtOnce() {
    const QString deep = folder->filePath("deep/er");
    ResponseJournal journal(deep);
    journal.begin(results(), start());
    QVector<double> frequencies;
    QStringList texts;
    for (const double frequency : {500.0, 640.0, 523.25, 10.0, 1000.0}) {
        frequencies.append(frequency);
        texts.append(QString::number(frequency));
        journal.record("Größe 目標.wav", frequencies);
        QCOMPARE(readBytes(deep + '/' + nameOfJournal()), expectedResults("Größe 目標.wav", texts));
    }
    journal.record("Größe 目標.wav", frequencies);
    QCOMPARE(readBytes(deep + '/' + nameOfJournal()), expectedResults("Größe 目標.wav", texts));
    journal.discard(resultsPath());
}

void TestResponseJournal::eachResponseIsSynced() {
    SyncCalls syncs;
    ResponseJournal journal(folder->path());
    journal.begin(results(), start());
    QCOMPARE(syncs.count, 0);
    journal.record("t.wav", {500});
    // The folder's entry and the file.
    QCOMPARE(syncs.count, 2);
    QCOMPARE(syncs.bytesSynced, expectedResults("t.wav", {"500"}).size());
    journal.record("t.wav", {500, 640});
    QCOMPARE(syncs.count, 3);
    QCOMPARE(syncs.bytesSynced, expectedResults("t.wav", {500, 640}).size());
    journal.discard(resultsPath());
}

void TestResponseJournal::onlyTheOwnerMayReadIt() {
    ResponseJournal journal(folder->path());
    const mode_t mask = ::umask(0);
    journal.begin(results(), start());
    journal.record("t.wav", {500});
    ::umask(mask);
    struct stat status = {};
    QCOMPARE(::stat(folder->filePath(nameOfJournal()).toLocal8Bit().constData(), &status), 0);
    QCOMPARE(status.st_mode & 07777U, 0600U);
    journal.discard(resultsPath());
}

void TestResponseJournal::nothingIsRecordedOutsideOfASession() {
    {
        ResponseJournal journal(folder->path());
        journal.record("t.wav", {500});
        QCOMPARE(filesIn(folder->path()), QStringList());
        journal.begin(results(), start());
        journal.record("t.wav", {500});
        QCOMPARE(filesIn(folder->path()), QStringList(nameOfJournal()));
        journal.discard(resultsPath());
        journal.record("t.wav", {500, 640});
    }
    QCOMPARE(filesIn(folder->path()), QStringList());
}

void TestResponseJournal::savedResponsesLeaveNoJournal() {
    {
        StartedJournal journal(folder->path());
        journal.discard(resultsPath());
        journal.discard(resultsPath());
        journal.keep();
    }
    QCOMPARE(filesIn(folder->path()), QStringList());
}

void TestResponseJournal::resultsSavedOverTheJournalAreKept_data() {
    QTest::addColumn<QString>("way");
    for (const char* way : {"by its path", "by a link", "by a link to its folder", "in place"})
        QTest::newRow(way) << way;
}

void TestResponseJournal::resultsSavedOverTheJournalAreKept() {
    QFETCH(QString, way);
    const QTemporaryDir elsewhere;
    const QString path = folder->filePath(nameOfJournal());
    const QByteArray saved = "the results";
    StartedJournal journal(folder->path());
    QString chosen = path;
    if (way == "by a link")
        chosen = elsewhere.filePath("results.txt");
    else if (way == "by a link to its folder")
        chosen = elsewhere.filePath("folder/" + nameOfJournal());
    QVERIFY(way != "by a link" || QFile::link(path, chosen));
    QVERIFY(way != "by a link to its folder" ||
            QFile::link(folder->path(), QFileInfo(chosen).path()));
    if (way == "in place")
        QVERIFY(testsupport::writeBytes(path, saved));
    else
        QCOMPARE(replaceFile(chosen, saved), FileReplacement::Written);
    journal.discard(chosen);
    QCOMPARE(fixture->takePrinted(), QStringList("Responses saved in the journal itself: " + path));
    QCOMPARE(readBytes(path), saved);
}

void TestResponseJournal::savingOverAHardLinkRemovesTheJournal() {
    const QString path = folder->filePath(nameOfJournal());
    const QString chosen = folder->filePath("results.txt");
    StartedJournal journal(folder->path());
    QCOMPARE(::link(path.toLocal8Bit().constData(), chosen.toLocal8Bit().constData()), 0);
    QCOMPARE(replaceFile(chosen, "the results"), FileReplacement::Written);
    journal.discard(chosen);
    QCOMPARE(filesIn(folder->path()), QStringList("results.txt"));
    QCOMPARE(readBytes(chosen), QByteArray("the results"));
}

void TestResponseJournal::fileThatReplacesTheJournalIsKept() {
    const QString path = folder->filePath(nameOfJournal());
    StartedJournal journal(folder->path());
    QCOMPARE(replaceFile(path, "the results of another program"), FileReplacement::Written);
    journal.discard(resultsPath());
    QCOMPARE(readBytes(path), QByteArray("the results of another program"));
}

void TestResponseJournal::journalThatCannotBeRemovedIsReported() {
    const QString path = folder->filePath(nameOfJournal());
    const auto setMode = [&](mode_t mode) {
        return ::chmod(folder->path().toLocal8Bit().constData(), mode) == 0;
    };
    StartedJournal journal(folder->path());
    QVERIFY(setMode(0555));
    {
        const testsupport::WithoutPrivileges user;
        journal.discard(resultsPath());
    }
    QVERIFY(setMode(0755));
    QCOMPARE(fixture->takePrinted(), QStringList("Responses that were saved are also in: " + path));
    QCOMPARE(readBytes(path), expectedResults("t.wav", {"500"}));
}

void TestResponseJournal::keptJournalIsReported() {
    {
        StartedJournal journal(folder->path());
        journal.keep();
        journal.record("t.wav", {500, 640});
        journal.keep();
    }
    QCOMPARE(fixture->takePrinted(),
             QStringList("Responses kept in: " + folder->filePath(nameOfJournal())));
    QCOMPARE(readBytes(folder->filePath(nameOfJournal())), expectedResults("t.wav", {"500"}));
}

void TestResponseJournal::destructorKeepsTheJournal() {
    { StartedJournal journal(folder->path()); }
    QCOMPARE(fixture->takePrinted(),
             QStringList("Responses kept in: " + folder->filePath(nameOfJournal())));
    QCOMPARE(readBytes(folder->filePath(nameOfJournal())), expectedResults("t.wav", {"500"}));
}

void TestResponseJournal::responsesOfAnEarlierSessionAreKept() {
    StartedJournal journal(folder->path());
    journal.begin("SUB001_practice002.txt", start().addSecs(1));
    QCOMPARE(fixture->takePrinted(),
             QStringList("Responses kept in: " + folder->filePath(nameOfJournal())));
    journal.record("u.wav", {640});
    QCOMPARE(readBytes(folder->filePath(nameOfJournal())), expectedResults("t.wav", {"500"}));
    QCOMPARE(readBytes(folder->filePath("SUB001_practice002-20260309-080600.txt")),
             expectedResults("u.wav", {"640"}));
    journal.discard(resultsPath());
    QCOMPARE(filesIn(folder->path()), QStringList(nameOfJournal()));
}

void TestResponseJournal::sessionsInTheSameSecondHaveSeparateJournals() {
    ResponseJournal first(folder->path());
    ResponseJournal second(folder->path());
    ResponseJournal third(folder->path());
    double frequency = 500;
    for (ResponseJournal* journal : {&first, &second, &third}) {
        journal->begin(results(), start());
        journal->record("t.wav", {frequency});
        frequency += 1;
    }
    const QString common = QStringLiteral("SUB001_practice001-20260309-080559");
    QCOMPARE(filesIn(folder->path()),
             QStringList({common + "-2.txt", common + "-3.txt", common + ".txt"}));
    QCOMPARE(readBytes(folder->filePath(common + ".txt")), expectedResults("t.wav", {"500"}));
    QCOMPARE(readBytes(folder->filePath(common + "-2.txt")), expectedResults("t.wav", {"501"}));
    QCOMPARE(readBytes(folder->filePath(common + "-3.txt")), expectedResults("t.wav", {"502"}));
    for (ResponseJournal* journal : {&first, &second, &third})
        journal->discard(resultsPath());
}

void TestResponseJournal::fullDiskIsReportedOnceAndResponsesAreWrittenLater() {
    const testsupport::SmallDisk disk;
    if (!disk.isThere())
        QSKIP("mounting a small disk requires root");
    const QString path = disk.path(nameOfJournal());
    disk.fill();
    ResponseJournal journal(disk.path());
    journal.begin(results(), start());
    journal.record("t.wav", {500});
    journal.record("t.wav", {500, 501});
    QCOMPARE(fixture->takePrinted(), QStringList("Responses cannot be kept in: " + path));
    QCOMPARE(readBytes(path), QByteArray(""));
    disk.clear();
    journal.record("t.wav", {500, 501, 502});
    QCOMPARE(readBytes(path), expectedResults("t.wav", {"500", "501", "502"}));
    journal.record("t.wav", {500, 501, 502, 503});
    QCOMPARE(readBytes(path), expectedResults("t.wav", {"500", "501", "502", "503"}));
    journal.discard(resultsPath());
}

void TestResponseJournal::lineIsWrittenWholeOrNotAtAll() {
    const QString path = folder->filePath(nameOfJournal());
    const QByteArray one = expectedResults("t.wav", {"500"});
    const QByteArray two = expectedResults("t.wav", {500, 640});
    ResponseJournal journal(folder->path());
    {
        const testsupport::FileSizeLimit limit(rlim_t(one.size()) - 1);
        journal.begin(results(), start());
        journal.record("t.wav", {500});
        QCOMPARE(readBytes(path), QByteArray(""));
        journal.keep();
        QVERIFY(!QFileInfo::exists(path));
    }
    QCOMPARE(fixture->takePrinted(), QStringList("Responses cannot be kept in: " + path));

    journal.begin(results(), start());
    journal.record("t.wav", {500});
    {
        const testsupport::FileSizeLimit limit(rlim_t(two.size()) - 1);
        journal.record("t.wav", {500, 640});
    }
    QCOMPARE(fixture->takePrinted(), QStringList("Responses cannot be kept in: " + path));
    QCOMPARE(readBytes(path), one);
    journal.record("t.wav", {500, 640});
    QCOMPARE(readBytes(path), two);
    journal.discard(resultsPath());
}

void TestResponseJournal::tornLineThatCannotBeTruncatedIsNoResponse() {
    const QString path = folder->filePath(nameOfJournal());
    const QByteArray one = expectedResults("t.wav", {"500"});
    const int torn = int(qstrlen("t.wav\t2\t64"));
    testsupport::SyncCalls disk;
    StartedJournal journal(folder->path());
    disk.truncationFailure = EIO;
    {
        const testsupport::FileSizeLimit limit(rlim_t(one.size() + torn));
        journal.record("t.wav", {500, 640});
    }
    QCOMPARE(fixture->takePrinted(), QStringList("Responses cannot be kept in: " + path));
    // Without a torn "64" that would read as a frequency.
    QCOMPARE(readBytes(path), one + QByteArray(torn, '\n'));
    journal.record("t.wav", {500, 640});
    QCOMPARE(readBytes(path), expectedResults("t.wav", {500, 640}));
    journal.record("t.wav", {500, 640, 700});
    QCOMPARE(readBytes(path), expectedResults("t.wav", {"500", "640", "700"}));
    journal.discard(resultsPath());
}

void TestResponseJournal::folderThatCannotBeCreatedIsReportedOnce() {
    QVERIFY(testsupport::writeBytes(folder->filePath("file"), "in the way"));
    const QString path = folder->filePath("file/journal");
    {
        ResponseJournal journal(path);
        journal.begin(results(), start());
        journal.record("t.wav", {500});
        journal.record("t.wav", {500, 640});
        journal.keep();
    }
    QCOMPARE(fixture->takePrinted(),
             QStringList("Responses cannot be kept in: " + path + '/' + nameOfJournal()));
    QCOMPARE(readBytes(folder->filePath("file")), QByteArray("in the way"));
}

void TestResponseJournal::failedSyncIsReportedOnceAndRepeatsNothing() {
    const QString path = folder->filePath(nameOfJournal());
    SyncCalls syncs;
    ResponseJournal journal(folder->path());
    journal.begin(results(), start());
    // A file system without fsync is no failure.
    syncs.failure = EINVAL;
    journal.record("t.wav", {500});
    syncs.failure = EIO;
    journal.record("t.wav", {500, 640});
    journal.record("t.wav", {500, 640, 700});
    QCOMPARE(fixture->takePrinted(), QStringList("Responses cannot be kept in: " + path));
    QCOMPARE(readBytes(path), expectedResults("t.wav", {"500", "640", "700"}));
    journal.discard(resultsPath());
}

void TestResponseJournal::leftoverJournalsAreReportedOldestFirst() {
    reportLeftoverJournals(folder->filePath("missing"));
    reportLeftoverJournals(folder->path());
    const QDateTime now = QDateTime::currentDateTime();
    int age = 0;
    for (const char* name : {"b.txt", "a.txt", "c.txt"}) {
        QVERIFY(testsupport::writeBytes(folder->filePath(name), "responses"));
        QFile file(folder->filePath(name));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(now.addSecs(--age), QFileDevice::FileModificationTime));
    }
    QVERIFY(testsupport::writeBytes(folder->filePath("notes.md"), "not a journal"));
    const QString line = "Responses of an earlier session kept in: " + folder->path() + '/';
    reportLeftoverJournals(folder->path());
    QCOMPARE(fixture->takePrinted(), QStringList({line + "c.txt", line + "a.txt", line + "b.txt"}));
}

void TestResponseJournal::journalOfARunningSessionIsNotReported() {
    StartedJournal journal(folder->path());
    reportLeftoverJournals(folder->path());
    journal.keep();
    QCOMPARE(fixture->takePrinted().size(), 1);
    reportLeftoverJournals(folder->path());
    QCOMPARE(fixture->takePrinted(), QStringList("Responses of an earlier session kept in: " +
                                                 folder->filePath(nameOfJournal())));
}

void TestResponseJournal::newFoldersAreSynced() {
    SyncCalls syncs;
    ResponseJournal journal(folder->filePath("deep/er"));
    journal.begin(results(), start());
    journal.record("t.wav", {500});
    std::vector<unsigned long> expected;
    for (const char* path : {".", "deep", "deep/er"}) {
        struct stat status = {};
        QCOMPARE(::stat(folder->filePath(path).toLocal8Bit().constData(), &status), 0);
        expected.push_back(status.st_ino);
    }
    QCOMPARE(syncs.foldersSynced, expected);
    journal.discard(resultsPath());
}
