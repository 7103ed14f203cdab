// The results file: sessions whose responses must outlive what happens.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_results.h"

#include "session/ResponseJournal.h"
#include "support/DiskFaults.h"
#include "support/FileBytes.h"
#include "support/SessionDriver.h"
#include "support/StreamCapture.h"
#include "support/SyncCalls.h"
#include "support/WavBytes.h"

#include <QCheckBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLineEdit>
#include <QtTest>

#include <iostream>

#include <sys/stat.h>

using testsupport::readBytes;
using testsupport::SessionDriver;
using testsupport::StreamCapture;

namespace {

/// Returns the paths of the journals that are there.
QStringList journals() {
    QStringList paths;
    const QFileInfoList files = QDir(journalFolder()).entryInfoList(QDir::Files);
    for (const QFileInfo& file : files)
        paths.append(file.absoluteFilePath());
    return paths;
}

/// A session of a window of its own whose journal goes into an empty folder, and what it prints.
class JournalledSession {
public:
    JournalledSession() {
        QDir(journalFolder()).removeRecursively();
        window->show();
        if (!QTest::qWaitForWindowExposed(window.get()))
            qFatal("the main window does not appear");
        target = folder.filePath("target.wav");
        if (!testsupport::writeBytes(target, testsupport::wavWithSamples({}, QVector<int>(40, 99))))
            qFatal("no target can be made");
    }

    /// Prepares and starts a practice session; a pause of that many milliseconds follows each
    /// request.
    void start(int pauseMs = 1) {
        driver.prepare(SessionDriver::Session::Practice, target);
        testsupport::find<QLineEdit>(*window, "lineEditSilentInterval")
            ->setText(QString::number(pauseMs - 1));
        window->lineEditOutputFilePath->setText(folder.path());
        QVERIFY(driver.go() != nullptr);
        driver.beReady();
    }

    /// The listener asks for a sinusoid and hears it.
    void respond(int frequency) const {
        QSignalSpy sounds(window.get(), &MainWindow::soundPlaying);
        emit driver.listener()->subjectResponded(4, frequency);
        QTRY_COMPARE(sounds.count(), 2);
    }

    /// Closes the listener's window and saves under a path; an empty one accepts the proposal.
    void finish(const QString& path = QString()) {
        driver.dialogs.click("Confirmation MessageBox", QMessageBox::Yes);
        if (path.isEmpty())
            driver.dialogs.saveAsProposed();
        else
            driver.dialogs.saveAs(path);
        QVERIFY(driver.listener()->close());
        QCOMPARE(driver.dialogs.takeComplaints(), QStringList());
    }

    [[nodiscard]] QStringList printed() const {
        return QString::fromLocal8Bit(errors.text().c_str()).split(u'\n', Qt::SkipEmptyParts);
    }

    StreamCapture errors{std::cerr};
    QTemporaryDir folder;
    QString target;
    std::unique_ptr<ResultsWindow> window = std::make_unique<ResultsWindow>();
    SessionDriver driver{*window};
};

} // namespace

void TestResultsNothingLost::initTestCase() {
    devices = std::make_unique<QTemporaryDir>();
}

void TestResultsNothingLost::journalHoldsEveryResponseOfTheSession() {
    JournalledSession session;
    session.start();
    const QString before = QDateTime::currentDateTime().toString("yyyyMMdd-HHmm");
    QStringList texts;
    for (const int frequency : {500, 640, 10, 1000}) {
        emit session.driver.listener()->subjectResponded(4, frequency);
        // Before the presentation, and before anything else happens.
        texts.append(QString::number(frequency));
        QCOMPARE(journals().size(), 1);
        QCOMPARE(readBytes(journals().first()), expectedResults("target.wav", texts));
    }
    const QString name = QFileInfo(journals().first()).fileName();
    QVERIFY2(QRegularExpression("^SUB001_practice001-\\d{8}-\\d{6}\\.txt$").match(name).hasMatch(),
             qPrintable(name));
    const QString after = QDateTime::currentDateTime().toString("yyyyMMdd-HHmm");
    QVERIFY2(name.contains(before) || name.contains(after), qPrintable(name));
    session.finish();
}

void TestResultsNothingLost::savedSessionLeavesNoJournal() {
    JournalledSession session;
    session.start();
    session.respond(640);
    QStringList journalsWhileAsked;
    session.driver.dialogs.click("Confirmation MessageBox", QMessageBox::Yes);
    session.driver.dialogs.expect("Save a file", [&](QWidget* dialog) {
        journalsWhileAsked = journals();
        qobject_cast<QDialog*>(dialog)->accept();
    });
    QVERIFY(session.driver.listener()->close());
    QCOMPARE(session.driver.dialogs.takeComplaints(), QStringList());
    QCOMPARE(journalsWhileAsked.size(), 1);
    QCOMPARE(journals(), QStringList());
    QCOMPARE(readBytes(session.folder.filePath("SUB001_practice001.txt")),
             expectedResults("target.wav", {"640"}));
    QCOMPARE(session.printed(), QStringList());
}

void TestResultsNothingLost::resultsSavedOnTheirJournalStay() {
    JournalledSession session;
    session.start();
    session.respond(640);
    QCOMPARE(journals().size(), 1);
    const QString journal = journals().first();
    session.finish(journal);
    QCOMPARE(journals(), QStringList(journal));
    QCOMPARE(readBytes(journal), expectedResults("target.wav", {"640"}));
    QCOMPARE(session.printed(), QStringList("Responses saved in the journal itself: " + journal));
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
    JournalledSession session;
    session.start();
    session.respond(640);
    session.respond(523);
    session.driver.dialogs.click("Confirmation MessageBox", QMessageBox::Yes);
    if (path.isEmpty())
        session.driver.dialogs.cancelSaving();
    else
        session.driver.dialogs.saveAs(path);
    QStringList printedBeforeTheWarning;
    QString warned;
    session.driver.dialogs.expect("Warning", [&](QWidget* box) {
        warned = qobject_cast<QMessageBox*>(box)->text();
        printedBeforeTheWarning = session.printed();
        qobject_cast<QDialog*>(box)->accept();
    });
    QVERIFY(session.driver.listener()->close());
    QCOMPARE(session.driver.dialogs.takeComplaints(), QStringList());
    QCOMPARE(warned, warning);
    QCOMPARE(journals().size(), 1);
    QCOMPARE(readBytes(journals().first()), expectedResults("target.wav", {"640", "523"}));
    QCOMPARE(session.printed(), QStringList("Responses kept in: " + journals().first()));
    QCOMPARE(printedBeforeTheWarning, session.printed());
    // The session has ended as ever.
    QVERIFY(session.window->isEnabled());
    QCOMPARE(session.window->data.fileNumber, 2);
}

void TestResultsNothingLost::windowThatGoesLeavesItsJournal() {
    JournalledSession session;
    session.start();
    session.respond(640);
    session.window.reset();
    QCOMPARE(journals().size(), 1);
    QCOMPARE(readBytes(journals().first()), expectedResults("target.wav", {"640"}));
    QCOMPARE(session.printed(), QStringList("Responses kept in: " + journals().first()));
}

void TestResultsNothingLost::sessionThatIsNotToBeSavedHasNoJournal() {
    JournalledSession session;
    session.window->checkBoxSaveData->setChecked(false);
    session.start();
    session.respond(640);
    QVERIFY(!QFileInfo::exists(journalFolder()));
    session.driver.dialogs.click("Confirmation MessageBox", QMessageBox::Yes);
    QVERIFY(session.driver.listener()->close());
    QVERIFY(!QFileInfo::exists(journalFolder()));
    QCOMPARE(session.printed(), QStringList());
}

void TestResultsNothingLost::sessionWithoutAResponseHasNoJournal() {
    JournalledSession session;
    session.start();
    session.driver.dialogs.click("Confirmation MessageBox", QMessageBox::Yes);
    session.driver.dialogs.cancelSaving();
    session.driver.dialogs.click("Warning", QMessageBox::Ok);
    QVERIFY(session.driver.listener()->close());
    QVERIFY(!QFileInfo::exists(journalFolder()));
    QCOMPARE(session.printed(), QStringList());
}

void TestResultsNothingLost::nextSessionHasAJournalOfItsOwn() {
    JournalledSession session;
    for (const int frequency : {300, 400}) {
        session.start();
        session.respond(frequency);
        session.driver.dialogs.click("Confirmation MessageBox", QMessageBox::Yes);
        session.driver.dialogs.cancelSaving();
        session.driver.dialogs.click("Warning", QMessageBox::Ok);
        QVERIFY(session.driver.listener()->close());
    }
    const QStringList kept = journals();
    QCOMPARE(kept.size(), 2);
    QVERIFY(kept[0].contains("/SUB001_practice001-"));
    QVERIFY(kept[1].contains("/SUB001_practice002-"));
    QCOMPARE(readBytes(kept[0]), expectedResults("target.wav", {"300"}));
    QCOMPARE(readBytes(kept[1]), expectedResults("target.wav", {"400"}));
    QCOMPARE(session.printed(),
             QStringList({"Responses kept in: " + kept[0], "Responses kept in: " + kept[1]}));
}

void TestResultsNothingLost::subjectCodeMayBeAnything_data() {
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("begin");
    QTest::newRow("empty") << ""
                           << "_practice001-";
    QTest::newRow("folders") << "../../S/7"
                             << "_._.._S_7_practice001-";
    QTest::newRow("beyond ASCII") << "Prüfling 七"
                                  << "Prüfling 七_practice001-";
}

void TestResultsNothingLost::subjectCodeMayBeAnything() {
    QFETCH(QString, code);
    QFETCH(QString, begin);
    JournalledSession session;
    session.window->lineEditSubCode->setText(code);
    session.start();
    session.respond(640);
    QCOMPARE(journals().size(), 1);
    const QString name = QFileInfo(journals().first()).fileName();
    QVERIFY2(name.startsWith(begin), qPrintable(name));
    session.finish(session.folder.filePath("mine.txt"));
    QCOMPARE(journals(), QStringList());
}

void TestResultsNothingLost::targetRequestsAreNotRecorded() {
    JournalledSession session;
    session.start();
    QSignalSpy sounds(session.window.get(), &MainWindow::soundPlaying);
    emit session.driver.listener()->subjectResponded(2, 0);
    QTRY_COMPARE(sounds.count(), 2);
    QCOMPARE(journals(), QStringList());
    session.respond(640);
    emit session.driver.listener()->subjectResponded(2, 0);
    QCOMPARE(readBytes(journals().first()), expectedResults("target.wav", {"640"}));
    session.finish();
}

void TestResultsNothingLost::slowDiskTakesNothingFromThePause() {
    constexpr int pauseMs = 600;
    testsupport::SyncCalls syncs;
    JournalledSession session;
    QVERIFY(QDir().mkpath(journalFolder()));
    session.start(pauseMs);
    QElapsedTimer sinceTheRequest;
    qint64 pause = 0;
    connect(session.window.get(), &MainWindow::soundPlaying, this, [&](int index) {
        if (index == 1)
            pause = sinceTheRequest.elapsed();
    });
    // The first response waits for its file's name as well.
    syncs.delayMs = pauseMs / 3;
    sinceTheRequest.start();
    session.respond(640);
    QCOMPARE(syncs.count, 2);
    QVERIFY2(pause >= pauseMs && pause < pauseMs + pauseMs / 3, qPrintable(QString::number(pause)));
    session.finish();
}

void TestResultsNothingLost::journalThatCannotBeWrittenChangesNothing() {
    JournalledSession session;
    QVERIFY(QDir().mkpath(QFileInfo(journalFolder()).path()));
    QVERIFY(testsupport::writeBytes(journalFolder(), "in the way"));
    session.start();
    for (const int frequency : {640, 641, 642})
        session.respond(frequency);
    session.finish();
    QCOMPARE(readBytes(session.folder.filePath("SUB001_practice001.txt")),
             expectedResults("target.wav", {"640", "641", "642"}));
    QCOMPARE(session.printed().size(), 1);
    QVERIFY(session.printed().first().startsWith("Responses cannot be kept in: " + journalFolder() +
                                                 "/SUB001_practice001-"));
    QVERIFY(QFile::remove(journalFolder()));
}

void TestResultsNothingLost::fullDiskKeepsTheEarlierResultsAndTheJournal() {
    const testsupport::SmallDisk disk;
    if (!disk.isThere())
        QSKIP("a disk of one's own takes the right to mount");
    const QString path = disk.path("results.txt");
    QVERIFY(testsupport::writeBytes(path, "an earlier session\r\n"));
    disk.fill();
    JournalledSession session;
    session.start();
    session.respond(640);
    session.driver.dialogs.click("Confirmation MessageBox", QMessageBox::Yes);
    session.driver.dialogs.saveAs(path);
    session.driver.dialogs.click("Warning", QMessageBox::Ok,
                                 QStringLiteral("could not write file \r\n") + path);
    QVERIFY(session.driver.listener()->close());
    QCOMPARE(session.driver.dialogs.takeComplaints(), QStringList());
    QCOMPARE(readBytes(path), QByteArray("an earlier session\r\n"));
    QCOMPARE(journals().size(), 1);
    QCOMPARE(readBytes(journals().first()), expectedResults("target.wav", {"640"}));
}
