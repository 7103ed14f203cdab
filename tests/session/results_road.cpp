// The results file: saving that fails, saving twice, and whole sessions.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_results.h"

#include "support/DiskFaults.h"
#include "support/FileBytes.h"
#include "support/LogLines.h"
#include "support/SessionDriver.h"
#include "support/WavBytes.h"

#include <QAbstractButton>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QSpinBox>
#include <QtTest>

using testsupport::readBytes;
using testsupport::SessionDriver;
using testsupport::writeBytes;

namespace {

/// The warning about a file that cannot be opened.
QString warningText(const QString& path, const QString& name) {
    return QStringLiteral("could not open file for writing \r\n") + path + name;
}

/// A short target, so that preparing takes no time.
QString makeTarget(const QTemporaryDir& folder) {
    QVector<int> samples;
    for (int i = 0; i < 400; ++i)
        samples.append(100 * (i % 20));
    const QString path = folder.filePath("target.wav");
    return writeBytes(path, testsupport::wavWithSamples({}, samples)) ? path : QString();
}

/// Prepares a session, opens the listener's window and ends it at once, without a sound.
void holdSilentSession(ResultsWindow& window, const QString& target, const QString& resultsPath) {
    SessionDriver session(window);
    session.prepare(SessionDriver::Session::Practice, target);
    SubjectWindow* listener = session.go();
    QVERIFY(listener != nullptr);
    session.dialogs.click("Confirmation MessageBox", QMessageBox::Yes);
    if (resultsPath.isEmpty())
        session.dialogs.saveAsProposed();
    else
        session.dialogs.saveAs(resultsPath);
    QVERIFY(listener->close());
    QCOMPARE(session.dialogs.takeComplaints(), QStringList());
}

} // namespace

void TestResultsRoad::missingFolderBecomesADirectoryOfTheFilesOwnPath_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("one level") << "missing/mine.txt";
    QTest::newRow("two levels") << "missing/deeper/mine.txt";
    QTest::newRow("beyond ASCII") << "fehlt für 七/mine.txt";
}

void TestResultsRoad::missingFolderBecomesADirectoryOfTheFilesOwnPath() {
    QFETCH(QString, name);
    SavingWindow saving({500});
    const QString path = saving.path(name);
    saving.dialogs.saveAs(path);
    saving.dialogs.click("Warning", QMessageBox::Ok, warningText(path, "mine.txt"));
    saving.window.writeDataToTxt();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
    QVERIFY(QFileInfo(path).isDir());
    QVERIFY(QDir(path).isEmpty());
    QCOMPARE(saving.window.data.outputFilePath, path);
    QCOMPARE(saving.window.data.outputFileName, QStringLiteral("mine.txt"));
}

void TestResultsRoad::cancelledDialogEmptiesPathAndNameAndWarns() {
    SavingWindow saving({500});
    const QStringList before = QDir::current().entryList();
    saving.dialogs.cancelSaving();
    saving.dialogs.click("Warning", QMessageBox::Ok,
                         QStringLiteral("could not open file for writing \r\n"));
    saving.window.writeDataToTxt();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
    QVERIFY(saving.window.data.outputFilePath.isEmpty());
    QVERIFY(saving.window.data.outputFileName.isEmpty());
    QCOMPARE(saving.shownPath(), saving.folder());
    QCOMPARE(saving.shownName(), QStringLiteral("SUB001_practice001.txt"));
    QVERIFY(QDir(saving.folder()).isEmpty());
    QCOMPARE(QDir::current().entryList(), before);
}

void TestResultsRoad::unwritableLocationWarnsWithTheNameTwice_data() {
    QTest::addColumn<QString>("path");
    // Not even the administrator can make a file in either.
    QTest::newRow("process information") << "/proc/mine.txt";
    QTest::newRow("a file in the folder's place") << "file/mine.txt";
}

void TestResultsRoad::unwritableLocationWarnsWithTheNameTwice() {
    QFETCH(QString, path);
    SavingWindow saving({500});
    QVERIFY(writeBytes(saving.path("file"), "in the way"));
    if (QFileInfo(path).isRelative())
        path = saving.path(path);
    saving.dialogs.saveAs(path);
    saving.dialogs.click("Warning", QMessageBox::Ok, warningText(path, "mine.txt"));
    saving.window.writeDataToTxt();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
    QVERIFY(!QFileInfo::exists(path));
    QCOMPARE(readBytes(saving.path("file")), QByteArray("in the way"));
}

void TestResultsRoad::warningIsAsLaidDown() {
    SavingWindow saving({500});
    saving.dialogs.saveAs("/proc/mine.txt");
    QVariantList facts;
    saving.dialogs.expect("Warning", [&](QWidget* widget) {
        auto* box = qobject_cast<QMessageBox*>(widget);
        facts = {box->parentWidget() == &saving.window, int(box->icon()),
                 int(box->standardButtons()), box->buttons().size(), box->text()};
        QTest::mouseClick(box->buttons().first(), Qt::LeftButton);
    });
    saving.window.writeDataToTxt();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
    QCOMPARE(facts, QVariantList({true, int(QMessageBox::Warning), int(QMessageBox::Ok), 1,
                                  "could not open file for writing \r\n/proc/mine.txtmine.txt"}));
}

void TestResultsRoad::fullDiskIsReported() {
    SavingWindow saving({500});
    const QTemporaryDir folder;
    const QString path = testsupport::fullDevice(folder);
    saving.dialogs.saveAs(path);
    saving.dialogs.click("Warning", QMessageBox::Ok,
                         QStringLiteral("could not write file \r\n") + path);
    saving.window.writeDataToTxt();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
}

void TestResultsRoad::failedSavingKeepsTheDataAndDoesNotAskAgain() {
    SavingWindow saving({500, 640});
    saving.dialogs.saveAs("/proc/mine.txt");
    saving.dialogs.click("Warning", QMessageBox::Ok);
    saving.window.refreshMainWindow();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
    QCOMPARE(saving.dialogs.seen().size(), 2);
    QCOMPARE(saving.window.trendFrequencies, QVector<double>({500, 640}));
    QCOMPARE(saving.window.data.records.size(), 1);
    QVERIFY(saving.window.isEnabled());
}

void TestResultsRoad::secondSavingProposesTheDoubledPath() {
    SavingWindow saving({500});
    const QString path = saving.path("mine.txt");
    saving.dialogs.saveAs(path);
    saving.window.writeDataToTxt();
    // The dialog shows a path in full only where its folder is there.
    QVERIFY(QFile::remove(path));
    QVERIFY(QDir().mkpath(path));
    saving.dialogs.saveAsProposed();
    saving.window.writeDataToTxt();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
    QCOMPARE(saving.dialogs.seen().last(), path + "/mine.txt");
    QCOMPARE(saving.window.data.outputFilePath, path + "/mine.txt");
    QCOMPARE(readBytes(path + "/mine.txt"), expectedResults("File001.wav", {"500"}));
}

void TestResultsRoad::secondSavingAfterACancelledOneProposesNothing() {
    SavingWindow saving({500});
    saving.dialogs.cancelSaving();
    saving.dialogs.click("Warning", QMessageBox::Ok);
    saving.window.writeDataToTxt();
    // The two settings, both empty, with a slash between.
    saving.dialogs.cancelSaving();
    saving.dialogs.click("Warning", QMessageBox::Ok);
    saving.window.writeDataToTxt();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
    QCOMPARE(saving.dialogs.seen().at(2), QDir::rootPath() + "/");
}

void TestResultsRoad::goReadsTheFolderFromItsFieldAgain() {
    SavingWindow saving({500});
    QVERIFY(QDir().mkpath(saving.path("elsewhere")));
    const QString path = saving.path("elsewhere/mine.txt");
    saving.dialogs.saveAs(path);
    saving.window.writeDataToTxt();
    // With a folder in the file's place the dialog would show the doubled path.
    QVERIFY(QFile::remove(path));
    QVERIFY(QDir().mkpath(path));
    saving.window.getParameters();
    QCOMPARE(saving.window.data.outputFilePath, saving.folder());
    QCOMPARE(saving.window.data.outputFileName, QStringLiteral("SUB001_practice001.txt"));
    saving.dialogs.saveAsProposed();
    saving.window.writeDataToTxt();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
    QCOMPARE(saving.dialogs.seen().last(), saving.path("SUB001_practice001.txt"));
}

void TestResultsRoad::nameIsReplacedWhenTheNumberAdvances() {
    SavingWindow saving({500});
    saving.dialogs.saveAs(saving.path("mine.txt"));
    saving.window.refreshMainWindow();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
    QCOMPARE(saving.shownName(), QStringLiteral("SUB001_practice002.txt"));
    QCOMPARE(saving.window.data.outputFileName, QStringLiteral("SUB001_practice002.txt"));
    QCOMPARE(saving.window.data.outputFilePath, saving.path("mine.txt"));
}

void TestResultsRoad::numberAdvancesWhenSavingFails() {
    SavingWindow saving({500});
    saving.dialogs.cancelSaving();
    saving.dialogs.click("Warning", QMessageBox::Ok);
    saving.window.refreshMainWindow();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
    QCOMPARE(saving.window.data.fileNumber, 2);
    QCOMPARE(saving.window.spinBoxFileNumber->value(), 2);
    QCOMPARE(saving.shownName(), QStringLiteral("SUB001_practice002.txt"));
}

void TestResultsRoad::sessionWithoutASinusoidSavesTheHeaderOnly() {
    const testsupport::LogLines log;
    const QTemporaryDir folder;
    const QString target = makeTarget(folder);
    ResultsWindow window;
    window.show();
    window.lineEditOutputFilePath->setText(folder.path());
    holdSilentSession(window, target, QString());
    QCOMPARE(readBytes(folder.filePath("SUB001_practice001.txt")),
             expectedResults("target.wav", {}));
    QCOMPARE(window.lineEditOutputFileName->text(), QStringLiteral("SUB001_practice002.txt"));
    QCOMPARE(log.warnings(), QStringList());
}

void TestResultsRoad::nextSessionStartsInTheFolderShown() {
    const QTemporaryDir folder;
    const QTemporaryDir elsewhere;
    const QString target = makeTarget(folder);
    ResultsWindow window;
    window.show();
    window.lineEditOutputFilePath->setText(folder.path());
    holdSilentSession(window, target, elsewhere.filePath("mine.txt"));
    QCOMPARE(window.data.outputFilePath, elsewhere.filePath("mine.txt"));
    holdSilentSession(window, target, QString());
    QCOMPARE(readBytes(elsewhere.filePath("mine.txt")), expectedResults("target.wav", {}));
    QCOMPARE(readBytes(folder.filePath("SUB001_practice002.txt")),
             expectedResults("target.wav", {}));
}
