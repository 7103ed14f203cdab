// The results file: sessions whose responses must survive failures.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_results.h"

#include "session/ResponseJournal.h"
#include "support/DiskFaults.h"
#include "support/SyncCalls.h"

#include <QCheckBox>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using testsupport::Fixture;

/// Prepares and starts a practice session; a pause of that many milliseconds follows each request.
bool TestResultsNothingLost::start(int pauseMs) {
    fixture->prepare(fixture->write("target.wav", QVector<int>(40, 99)));
    fixture->session().setPause(pauseMs);
    return fixture->start();
}

/// The listener asks for a sinusoid and hears it.
void TestResultsNothingLost::respond(int frequency) {
    fixture->soundSignals.clear();
    emit fixture->session().listener()->subjectResponded(4, frequency);
    QTRY_COMPARE(fixture->soundSignals, (QVector<int>{1, -1}));
}

void TestResultsNothingLost::initTestCase() {
    devices = std::make_unique<QTemporaryDir>();
}

void TestResultsNothingLost::journalHoldsEveryResponseOfTheSession() {
    QVERIFY(start());
    const QString before = QDateTime::currentDateTime().toString("yyyyMMdd-HHmm");
    QStringList texts;
    for (const int frequency : {500, 640, 10, 1000}) {
        emit fixture->session().listener()->subjectResponded(4, frequency);
        // Before the presentation and any other event.
        texts.append(QString::number(frequency));
        QCOMPARE(Fixture::journals().size(), 1);
        QCOMPARE(readBytes(Fixture::journals().first()), expectedResults("target.wav", texts));
    }
    const QString name = QFileInfo(Fixture::journals().first()).fileName();
    QVERIFY2(QRegularExpression("^SUB001_practice001-\\d{8}-\\d{6}\\.txt$").match(name).hasMatch(),
             qPrintable(name));
    const QString after = QDateTime::currentDateTime().toString("yyyyMMdd-HHmm");
    QVERIFY2(name.contains(before) || name.contains(after), qPrintable(name));
    fixture->finish();
}

void TestResultsNothingLost::savedSessionLeavesNoJournal() {
    QVERIFY(start());
    respond(640);
    QStringList journalsWhileAsked;
    fixture->dialogs.answerClosing(QMessageBox::Yes);
    fixture->dialogs.expect("Save a file", [&](QWidget* dialog) {
        journalsWhileAsked = Fixture::journals();
        qobject_cast<QDialog*>(dialog)->accept();
    });
    QVERIFY(fixture->session().listener()->close());
    QCOMPARE(journalsWhileAsked.size(), 1);
    QCOMPARE(Fixture::journals(), QStringList());
    QCOMPARE(readBytes(fixture->pathOf("SUB001_practice001.txt")),
             expectedResults("target.wav", {"640"}));
}

void TestResultsNothingLost::resultsSavedOverTheirJournalAreKept() {
    QVERIFY(start());
    respond(640);
    QCOMPARE(Fixture::journals().size(), 1);
    const QString journal = Fixture::journals().first();
    fixture->session().finish(journal);
    QCOMPARE(Fixture::journals(), QStringList(journal));
    QCOMPARE(readBytes(journal), expectedResults("target.wav", {"640"}));
    QCOMPARE(fixture->takePrinted(),
             QStringList("Responses saved in the journal itself: " + journal));
}

void TestResultsNothingLost::unsavedSessionLeavesItsJournal_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("warning");
    const QString cannotOpen = QStringLiteral("could not open file for writing \r\n");
    const QString cannotWrite = QStringLiteral("could not write file \r\n");
    const QString full = testsupport::fullDevice(*devices);
    QTest::newRow("cancelled") << "" << cannotOpen;
    QTest::newRow("unwritable") << "/proc/mine.txt" << cannotOpen + "/proc/mine.txtmine.txt";
    QTest::newRow("full disk") << full << cannotWrite + full;
    const QString fifo = devices->filePath("fifo");
    QCOMPARE(::mkfifo(fifo.toLocal8Bit().constData(), 0600), 0);
    QTest::newRow("FIFO") << fifo << cannotOpen + fifo + "fifo";
}

void TestResultsNothingLost::unsavedSessionLeavesItsJournal() {
    QFETCH(QString, path);
    QFETCH(QString, warning);
    QVERIFY(start());
    respond(640);
    respond(523);
    fixture->dialogs.answerClosing(QMessageBox::Yes);
    if (path.isEmpty()) {
        fixture->dialogs.cancelSaving();
        fixture->log.expect("QFSFileEngine::open: No file name specified");
    } else {
        fixture->dialogs.saveAs(path);
    }
    QStringList printedBeforeTheWarning;
    QString warned;
    fixture->dialogs.expect("Warning", [&](QWidget* box) {
        warned = qobject_cast<QMessageBox*>(box)->text();
        printedBeforeTheWarning = fixture->takePrinted();
        qobject_cast<QDialog*>(box)->accept();
    });
    QVERIFY(fixture->session().listener()->close());
    QCOMPARE(warned, warning);
    QCOMPARE(Fixture::journals().size(), 1);
    QCOMPARE(readBytes(Fixture::journals().first()), expectedResults("target.wav", {640, 523}));
    QCOMPARE(printedBeforeTheWarning,
             QStringList("Responses kept in: " + Fixture::journals().first()));
    // The session has ended normally.
    QVERIFY(fixture->window().isEnabled());
    QCOMPARE(fixture->window().data.fileNumber, 2);
}

void TestResultsNothingLost::destroyedWindowLeavesItsJournal() {
    QVERIFY(start());
    respond(640);
    fixture->destroyWindow();
    QCOMPARE(Fixture::journals().size(), 1);
    QCOMPARE(readBytes(Fixture::journals().first()), expectedResults("target.wav", {"640"}));
    QCOMPARE(fixture->takePrinted(),
             QStringList("Responses kept in: " + Fixture::journals().first()));
}

void TestResultsNothingLost::sessionWithoutSavingHasNoJournal() {
    fixture->window().checkBoxSaveData->setChecked(false);
    QVERIFY(start());
    respond(640);
    QVERIFY(!QFileInfo::exists(journalFolder()));
    fixture->finish();
    QVERIFY(!QFileInfo::exists(journalFolder()));
}

void TestResultsNothingLost::sessionWithoutAResponseHasNoJournal() {
    QVERIFY(start());
    fixture->finishCancelled();
    QVERIFY(!QFileInfo::exists(journalFolder()));
}

void TestResultsNothingLost::nextSessionHasASeparateJournal() {
    for (const int frequency : {300, 400}) {
        QVERIFY(start());
        respond(frequency);
        fixture->finishCancelled();
    }
    const QStringList kept = Fixture::journals();
    QCOMPARE(kept.size(), 2);
    QVERIFY(kept[0].contains("/SUB001_practice001-"));
    QVERIFY(kept[1].contains("/SUB001_practice002-"));
    QCOMPARE(readBytes(kept[0]), expectedResults("target.wav", {"300"}));
    QCOMPARE(readBytes(kept[1]), expectedResults("target.wav", {"400"}));
    QCOMPARE(fixture->takePrinted(),
             QStringList({"Responses kept in: " + kept[0], "Responses kept in: " + kept[1]}));
}

void TestResultsNothingLost::targetRequestsAreNotRecorded() {
    QVERIFY(start());
    QVERIFY(fixture->playTarget());
    QCOMPARE(Fixture::journals(), QStringList());
    respond(640);
    emit fixture->session().listener()->subjectResponded(2, 0);
    QCOMPARE(readBytes(Fixture::journals().first()), expectedResults("target.wav", {"640"}));
    fixture->finish();
}

void TestResultsNothingLost::slowDiskDoesNotLengthenThePause() {
    constexpr int pauseMs = 600;
    testsupport::SyncCalls syncs;
    QVERIFY(QDir().mkpath(journalFolder()));
    QVERIFY(start(pauseMs));
    QElapsedTimer sinceTheRequest;
    qint64 pause = 0;
    connect(&fixture->window(), &MainWindow::soundPlaying, this, [&](int index) {
        if (index == 1)
            pause = sinceTheRequest.elapsed();
    });
    // The first response also waits for the sync of its folder.
    syncs.delayMs = pauseMs / 3;
    sinceTheRequest.start();
    respond(640);
    QCOMPARE(syncs.count, 2);
    QVERIFY2(pause >= pauseMs && pause < pauseMs + pauseMs / 3, qPrintable(QString::number(pause)));
    fixture->finish();
}

void TestResultsNothingLost::journalThatCannotBeWrittenChangesNothing() {
    QVERIFY(QDir().mkpath(QFileInfo(journalFolder()).path()));
    QVERIFY(testsupport::writeBytes(journalFolder(), "in the way"));
    QVERIFY(start());
    for (const int frequency : {640, 641, 642})
        respond(frequency);
    fixture->finish();
    QCOMPARE(readBytes(fixture->pathOf("SUB001_practice001.txt")),
             expectedResults("target.wav", {"640", "641", "642"}));
    const QStringList printed = fixture->takePrinted();
    QCOMPARE(printed.size(), 1);
    QVERIFY(printed.first().startsWith("Responses cannot be kept in: " + journalFolder() +
                                       "/SUB001_practice001-"));
}
