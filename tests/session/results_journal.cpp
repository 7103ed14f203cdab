// The journal of responses, without a window.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_results.h"

#include "session/FileReplacement.h"
#include "session/ResponseJournal.h"
#include "support/DiskFaults.h"
#include "support/FileBytes.h"
#include "support/StreamCapture.h"
#include "support/SyncCalls.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QtTest>

#include <cerrno>
#include <iostream>
#include <memory>

#include <sys/stat.h>
#include <unistd.h>

using testsupport::readBytes;
using testsupport::StreamCapture;
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

/// A results file that has nothing to do with the journal.
QString resultsPath() {
    return QStringLiteral("/tmp/SUB001_practice001.txt");
}

QStringList filesIn(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

/// Returns what a function writes to standard error, line by line.
template <typename Function> QStringList errorsOf(Function&& function) {
    const StreamCapture errors(std::cerr);
    function();
    QStringList lines = QString::fromLocal8Bit(errors.flushedText().c_str()).split(u'\n');
    lines.removeLast();
    return lines;
}

} // namespace

void TestResponseJournal::init() {
    folder = std::make_unique<QTemporaryDir>();
}

void TestResponseJournal::nameComesFromTheResultsFileAndTheStart_data() {
    QTest::addColumn<QString>("resultsFileName");
    QTest::addColumn<QString>("name");
    const QString at = QStringLiteral("-20260309-080559.txt");
    QTest::newRow("usual") << results() << "SUB001_practice001" + at;
    QTest::newRow("no code") << "_experiment012.txt"
                             << "_experiment012" + at;
    QTest::newRow("nothing at all") << "" << at;
    QTest::newRow("another ending") << "S.dat"
                                    << "S.dat" + at;
    QTest::newRow("folders") << "../a/b\\c_practice001.txt"
                             << "_._a_b_c_practice001" + at;
    QTest::newRow("refused elsewhere") << "a:b*c?d\"e<f>g|h.txt"
                                       << "a_b_c_d_e_f_g_h" + at;
    QTest::newRow("control characters") << QString("a\tb\nc\rd\x01"
                                                   "e\x7f.txt")
                                        << "a_b_c_d_e_" + at;
    QTest::newRow("zero") << QString(QChar(0)) + "a.txt"
                          << "_a" + at;
    QTest::newRow("hidden") << ".a.txt"
                            << "_a" + at;
    QTest::newRow("blanks") << " a b .txt"
                            << " a b " + at;
    QTest::newRow("beyond ASCII") << "Prüfling 七.txt"
                                  << "Prüfling 七" + at;
    QTest::newRow("pairs of surrogates") << "S\U0001F442.txt"
                                         << "S__" + at;
    QTest::newRow("placeholder") << "%1.txt"
                                 << "%1" + at;
    QTest::newRow("60 characters") << QString(60, 'n') + ".txt" << QString(60, 'n') + at;
    QTest::newRow("61 characters") << QString(61, 'n') + ".txt" << QString(60, 'n') + at;
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
        const QStringList errors = errorsOf([&] { journal.record("t.wav", {500}); });
        QCOMPARE(errors, QStringList());
        QCOMPARE(filesIn(folder->path()).size(), 1);
        QCOMPARE(readBytes(folder->filePath(filesIn(folder->path()).constFirst())),
                 expectedResults("t.wav", {"500"}));
        journal.discard(resultsPath());
    }
}

void TestResponseJournal::folderLiesInTheApplicationsData() {
    QCOMPARE(journalFolder(), QDir::homePath() + "/.local/share/" +
                                  QCoreApplication::applicationName() + "/journal");
}

void TestResponseJournal::thereIsNoFileBeforeTheFirstResponse() {
    const QString path = folder->filePath("deep/er");
    const QStringList errors = errorsOf([&] {
        ResponseJournal journal(path);
        journal.begin(results(), start());
        journal.record("t.wav", {});
        QVERIFY(!QFileInfo::exists(path));
    });
    QCOMPARE(errors, QStringList());
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
    // The name in its folder and the file.
    QCOMPARE(syncs.count, 2);
    QCOMPARE(syncs.bytesSynced, expectedResults("t.wav", {"500"}).size());
    journal.record("t.wav", {500, 640});
    QCOMPARE(syncs.count, 3);
    QCOMPARE(syncs.bytesSynced, expectedResults("t.wav", {"500", "640"}).size());
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
    const QStringList errors = errorsOf([&] {
        ResponseJournal journal(folder->path());
        journal.record("t.wav", {500});
        QCOMPARE(filesIn(folder->path()), QStringList());
        journal.begin(results(), start());
        journal.record("t.wav", {500});
        QCOMPARE(filesIn(folder->path()), QStringList(nameOfJournal()));
        journal.discard(resultsPath());
        journal.record("t.wav", {500, 640});
    });
    QCOMPARE(errors, QStringList());
    QCOMPARE(filesIn(folder->path()), QStringList());
}

void TestResponseJournal::savedResponsesLeaveNoJournal() {
    const QStringList errors = errorsOf([&] {
        ResponseJournal journal(folder->path());
        journal.begin(results(), start());
        journal.record("t.wav", {500});
        journal.discard(resultsPath());
        journal.discard(resultsPath());
        journal.keep();
    });
    QCOMPARE(errors, QStringList());
    QCOMPARE(filesIn(folder->path()), QStringList());
}

void TestResponseJournal::resultsInTheJournalsPlaceStay_data() {
    QTest::addColumn<QString>("way");
    for (const char* way : {"by its path", "by a link", "by a link to its folder", "in place"})
        QTest::newRow(way) << way;
}

void TestResponseJournal::resultsInTheJournalsPlaceStay() {
    QFETCH(QString, way);
    const QTemporaryDir elsewhere;
    const QString path = folder->filePath(nameOfJournal());
    const QByteArray saved = "the results";
    ResponseJournal journal(folder->path());
    journal.begin(results(), start());
    journal.record("t.wav", {500});
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
    const QStringList errors = errorsOf([&] { journal.discard(chosen); });
    QCOMPARE(errors, QStringList("Responses saved in the journal itself: " + path));
    QCOMPARE(readBytes(path), saved);
}

void TestResponseJournal::savingOverAHardLinkRemovesTheJournal() {
    const QString path = folder->filePath(nameOfJournal());
    const QString chosen = folder->filePath("results.txt");
    ResponseJournal journal(folder->path());
    journal.begin(results(), start());
    journal.record("t.wav", {500});
    QCOMPARE(::link(path.toLocal8Bit().constData(), chosen.toLocal8Bit().constData()), 0);
    QCOMPARE(replaceFile(chosen, "the results"), FileReplacement::Written);
    QCOMPARE(errorsOf([&] { journal.discard(chosen); }), QStringList());
    QCOMPARE(filesIn(folder->path()), QStringList("results.txt"));
    QCOMPARE(readBytes(chosen), QByteArray("the results"));
}

void TestResponseJournal::fileThatHasTakenTheJournalsPlaceStays() {
    const QString path = folder->filePath(nameOfJournal());
    ResponseJournal journal(folder->path());
    journal.begin(results(), start());
    journal.record("t.wav", {500});
    QCOMPARE(replaceFile(path, "the results of another program"), FileReplacement::Written);
    QCOMPARE(errorsOf([&] { journal.discard(resultsPath()); }), QStringList());
    QCOMPARE(readBytes(path), QByteArray("the results of another program"));
}

void TestResponseJournal::journalThatCannotBeRemovedIsNamed() {
    const QString path = folder->filePath(nameOfJournal());
    const auto setMode = [&](mode_t mode) {
        return ::chmod(folder->path().toLocal8Bit().constData(), mode) == 0;
    };
    ResponseJournal journal(folder->path());
    journal.begin(results(), start());
    journal.record("t.wav", {500});
    QVERIFY(setMode(0555));
    QStringList errors;
    {
        const testsupport::WithoutPrivileges user;
        errors = errorsOf([&] { journal.discard(resultsPath()); });
    }
    QVERIFY(setMode(0755));
    QCOMPARE(errors, QStringList("Responses that were saved are also in: " + path));
    QCOMPARE(readBytes(path), expectedResults("t.wav", {"500"}));
}

void TestResponseJournal::keptResponsesAreNamed() {
    const QStringList errors = errorsOf([&] {
        ResponseJournal journal(folder->path());
        journal.begin(results(), start());
        journal.record("t.wav", {500});
        journal.keep();
        journal.keep();
    });
    QCOMPARE(errors, QStringList("Responses kept in: " + folder->filePath(nameOfJournal())));
    QCOMPARE(readBytes(folder->filePath(nameOfJournal())), expectedResults("t.wav", {"500"}));
}

void TestResponseJournal::responsesAreKeptWhenTheJournalGoes() {
    const QStringList errors = errorsOf([&] {
        ResponseJournal journal(folder->path());
        journal.begin(results(), start());
        journal.record("t.wav", {500});
    });
    QCOMPARE(errors, QStringList("Responses kept in: " + folder->filePath(nameOfJournal())));
    QCOMPARE(readBytes(folder->filePath(nameOfJournal())), expectedResults("t.wav", {"500"}));
}

void TestResponseJournal::responsesOfAnEarlierSessionAreKept() {
    ResponseJournal journal(folder->path());
    journal.begin(results(), start());
    journal.record("t.wav", {500});
    const QStringList errors =
        errorsOf([&] { journal.begin("SUB001_practice002.txt", start().addSecs(1)); });
    QCOMPARE(errors, QStringList("Responses kept in: " + folder->filePath(nameOfJournal())));
    journal.record("u.wav", {640});
    QCOMPARE(readBytes(folder->filePath(nameOfJournal())), expectedResults("t.wav", {"500"}));
    QCOMPARE(readBytes(folder->filePath("SUB001_practice002-20260309-080600.txt")),
             expectedResults("u.wav", {"640"}));
    journal.discard(resultsPath());
    QCOMPARE(filesIn(folder->path()), QStringList(nameOfJournal()));
}

void TestResponseJournal::sessionsOfTheSameSecondHaveTheirOwn() {
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

void TestResponseJournal::fullDiskCostsOneLineAndIsMadeUpFor() {
    const testsupport::SmallDisk disk;
    if (!disk.isThere())
        QSKIP("a disk of one's own takes the right to mount");
    const QString path = disk.path(nameOfJournal());
    disk.fill();
    ResponseJournal journal(disk.path());
    const QStringList errors = errorsOf([&] {
        journal.begin(results(), start());
        journal.record("t.wav", {500});
        journal.record("t.wav", {500, 501});
    });
    QCOMPARE(errors, QStringList("Responses cannot be kept in: " + path));
    QCOMPARE(readBytes(path), QByteArray(""));
    disk.clear();
    const QStringList later = errorsOf([&] { journal.record("t.wav", {500, 501, 502}); });
    QCOMPARE(later, QStringList());
    QCOMPARE(readBytes(path), expectedResults("t.wav", {"500", "501", "502"}));
    journal.record("t.wav", {500, 501, 502, 503});
    QCOMPARE(readBytes(path), expectedResults("t.wav", {"500", "501", "502", "503"}));
    journal.discard(resultsPath());
}

void TestResponseJournal::lineIsWrittenWholeOrNotAtAll() {
    const QString path = folder->filePath(nameOfJournal());
    const QByteArray one = expectedResults("t.wav", {"500"});
    const QByteArray two = expectedResults("t.wav", {"500", "640"});
    ResponseJournal journal(folder->path());
    QStringList errors;
    {
        const testsupport::FileSizeLimit limit(rlim_t(one.size()) - 1);
        errors += errorsOf([&] {
            journal.begin(results(), start());
            journal.record("t.wav", {500});
        });
        QCOMPARE(readBytes(path), QByteArray(""));
        errors += errorsOf([&] { journal.keep(); });
        QVERIFY(!QFileInfo::exists(path));
    }
    QCOMPARE(errors, QStringList("Responses cannot be kept in: " + path));

    journal.begin(results(), start());
    journal.record("t.wav", {500});
    {
        const testsupport::FileSizeLimit limit(rlim_t(two.size()) - 1);
        errors = errorsOf([&] { journal.record("t.wav", {500, 640}); });
    }
    QCOMPARE(errors, QStringList("Responses cannot be kept in: " + path));
    QCOMPARE(readBytes(path), one);
    journal.record("t.wav", {500, 640});
    QCOMPARE(readBytes(path), two);
    journal.discard(resultsPath());
}

void TestResponseJournal::tornLineThatCannotBeTakenBackIsNoResponse() {
    const QString path = folder->filePath(nameOfJournal());
    const QByteArray one = expectedResults("t.wav", {"500"});
    const int torn = int(qstrlen("t.wav\t2\t64"));
    testsupport::SyncCalls disk;
    ResponseJournal journal(folder->path());
    journal.begin(results(), start());
    journal.record("t.wav", {500});
    disk.truncationFailure = EIO;
    QStringList errors;
    {
        const testsupport::FileSizeLimit limit(rlim_t(one.size() + torn));
        errors = errorsOf([&] { journal.record("t.wav", {500, 640}); });
    }
    QCOMPARE(errors, QStringList("Responses cannot be kept in: " + path));
    // Not 64 Hz.
    QCOMPARE(readBytes(path), one + QByteArray(torn, '\n'));
    journal.record("t.wav", {500, 640});
    QCOMPARE(readBytes(path), expectedResults("t.wav", {"500", "640"}));
    journal.record("t.wav", {500, 640, 700});
    QCOMPARE(readBytes(path), expectedResults("t.wav", {"500", "640", "700"}));
    journal.discard(resultsPath());
}

void TestResponseJournal::folderThatCannotBeMadeCostsOneLine() {
    QVERIFY(testsupport::writeBytes(folder->filePath("file"), "in the way"));
    const QString path = folder->filePath("file/journal");
    const QStringList errors = errorsOf([&] {
        ResponseJournal journal(path);
        journal.begin(results(), start());
        journal.record("t.wav", {500});
        journal.record("t.wav", {500, 640});
        journal.keep();
    });
    QCOMPARE(errors, QStringList("Responses cannot be kept in: " + path + '/' + nameOfJournal()));
    QCOMPARE(readBytes(folder->filePath("file")), QByteArray("in the way"));
}

void TestResponseJournal::failedSyncCostsOneLineAndRepeatsNothing() {
    const QString path = folder->filePath(nameOfJournal());
    SyncCalls syncs;
    ResponseJournal journal(folder->path());
    journal.begin(results(), start());
    // A disk that cannot be asked is no failure.
    syncs.failure = EINVAL;
    QCOMPARE(errorsOf([&] { journal.record("t.wav", {500}); }), QStringList());
    syncs.failure = EIO;
    const QStringList errors = errorsOf([&] {
        journal.record("t.wav", {500, 640});
        journal.record("t.wav", {500, 640, 700});
    });
    QCOMPARE(errors, QStringList("Responses cannot be kept in: " + path));
    QCOMPARE(readBytes(path), expectedResults("t.wav", {"500", "640", "700"}));
    journal.discard(resultsPath());
}

void TestResponseJournal::keptJournalsAreNamedOldestFirst() {
    QCOMPARE(errorsOf([&] { reportLeftoverJournals(folder->filePath("missing")); }), QStringList());
    QCOMPARE(errorsOf([&] { reportLeftoverJournals(folder->path()); }), QStringList());
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
    QCOMPARE(errorsOf([&] { reportLeftoverJournals(folder->path()); }),
             QStringList({line + "c.txt", line + "a.txt", line + "b.txt"}));
}

void TestResponseJournal::journalOfARunningSessionIsNotNamed() {
    ResponseJournal journal(folder->path());
    journal.begin(results(), start());
    journal.record("t.wav", {500});
    QCOMPARE(errorsOf([&] { reportLeftoverJournals(folder->path()); }), QStringList());
    QCOMPARE(errorsOf([&] { journal.keep(); }).size(), 1);
    QCOMPARE(errorsOf([&] { reportLeftoverJournals(folder->path()); }),
             QStringList("Responses of an earlier session kept in: " +
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
