// The results file: saving that fails, saving twice, and sessions one after the other.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_results.h"

#include <QAbstractButton>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QtTest>

namespace {

/// The warning about a file that cannot be opened.
QString warningText(const QString& path, const QString& name) {
    return QStringLiteral("could not open file for writing \r\n") + path + name;
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
    const QString path = fixture->pathOf(name);
    fixture->dialogs.saveAs(path);
    fixture->dialogs.closeWarning(warningText(path, "mine.txt"));
    save({500});
    QVERIFY(QFileInfo(path).isDir());
    QVERIFY(QDir(path).isEmpty());
    QCOMPARE(fixture->window().data.outputFilePath, path);
    QCOMPARE(fixture->window().data.outputFileName, QStringLiteral("mine.txt"));
}

void TestResultsRoad::cancelledDialogEmptiesPathAndNameAndWarns() {
    const QStringList before = QDir::current().entryList();
    fixture->cancelSaving();
    save({500});
    QVERIFY(fixture->window().data.outputFilePath.isEmpty());
    QVERIFY(fixture->window().data.outputFileName.isEmpty());
    QCOMPARE(fixture->textOf("lineEditOutputFilePath"), fixture->folder.path());
    QCOMPARE(fixture->textOf("lineEditOutputFileName"), QStringLiteral("SUB001_practice001.txt"));
    QVERIFY(!QFileInfo::exists(proposedPath()));
    QCOMPARE(QDir::current().entryList(), before);
}

void TestResultsRoad::warningIsAsLaidDown() {
    fixture->dialogs.saveAs("/proc/mine.txt");
    QVariantList facts;
    fixture->dialogs.expect("Warning", [&](QWidget* widget) {
        auto* box = qobject_cast<QMessageBox*>(widget);
        facts = {box->parentWidget() == &fixture->window(), int(box->icon()),
                 int(box->standardButtons()), box->buttons().size(), box->text()};
        QTest::mouseClick(box->buttons().first(), Qt::LeftButton);
    });
    save({500});
    QCOMPARE(facts, QVariantList({true, int(QMessageBox::Warning), int(QMessageBox::Ok), 1,
                                  "could not open file for writing \r\n/proc/mine.txtmine.txt"}));
}

void TestResultsRoad::failedSavingKeepsTheDataAndDoesNotAskAgain() {
    fixture->dialogs.saveAs("/proc/mine.txt");
    fixture->dialogs.closeWarning();
    fixture->window().trendFrequencies = {500, 640};
    fixture->window().refreshMainWindow();
    QCOMPARE(fixture->dialogs.seen().size(), 2);
    QCOMPARE(fixture->window().trendFrequencies, QVector<double>({500, 640}));
    QCOMPARE(fixture->window().data.records.size(), 1);
    QVERIFY(fixture->window().isEnabled());
    QCOMPARE(fixture->window().data.fileNumber, 2);
    QCOMPARE(fixture->textOf("lineEditOutputFileName"), QStringLiteral("SUB001_practice002.txt"));
}

void TestResultsRoad::secondSavingProposesTheDoubledPath() {
    const QString path = fixture->pathOf("mine.txt");
    fixture->dialogs.saveAs(path);
    save({500});
    // The dialog shows a path in full only where its folder is there.
    QVERIFY(QFile::remove(path));
    QVERIFY(QDir().mkpath(path));
    fixture->dialogs.saveAsProposed();
    saveAgain();
    QCOMPARE(fixture->dialogs.seen().last(), path + "/mine.txt");
    QCOMPARE(fixture->window().data.outputFilePath, path + "/mine.txt");
    QCOMPARE(readBytes(path + "/mine.txt"), expectedResults("File001.wav", {"500"}));
}

void TestResultsRoad::secondSavingAfterACancelledOneProposesNothing() {
    fixture->cancelSaving();
    save({500});
    // The two settings, both empty, with a slash between.
    fixture->cancelSaving();
    saveAgain();
    QCOMPARE(fixture->dialogs.seen().at(2), QDir::rootPath() + "/");
}

void TestResultsRoad::nameIsReplacedWhenTheNumberAdvances() {
    fixture->dialogs.saveAs(fixture->pathOf("mine.txt"));
    fixture->window().trendFrequencies = {500};
    fixture->window().refreshMainWindow();
    QCOMPARE(fixture->textOf("lineEditOutputFileName"), QStringLiteral("SUB001_practice002.txt"));
    QCOMPARE(fixture->window().data.outputFileName, QStringLiteral("SUB001_practice002.txt"));
    QCOMPARE(fixture->window().data.outputFilePath, fixture->pathOf("mine.txt"));
}

void TestResultsRoad::sessionWithoutASinusoidSavesTheHeaderOnly() {
    fixture->prepare(fixture->write("target.wav", QVector<int>(40, 99)));
    QVERIFY(fixture->start());
    QCOMPARE(readBytes(fixture->finish()), expectedResults("target.wav"));
    QCOMPARE(fixture->textOf("lineEditOutputFileName"), QStringLiteral("SUB001_practice002.txt"));
}

void TestResultsRoad::nextSessionStartsInTheFolderShown() {
    QVERIFY(QDir(fixture->folder.path()).mkdir("elsewhere"));
    const QString target = fixture->write("target.wav", QVector<int>(40, 99));
    const QString elsewhere = fixture->pathOf("elsewhere/mine.txt");
    fixture->prepare(target);
    QVERIFY(fixture->start());
    fixture->session().finish(elsewhere);
    QCOMPARE(fixture->window().data.outputFilePath, elsewhere);
    fixture->prepare(target);
    QVERIFY(fixture->start());
    QCOMPARE(readBytes(fixture->finish()), expectedResults("target.wav"));
    QCOMPARE(readBytes(elsewhere), expectedResults("target.wav"));
    QCOMPARE(fixture->dialogs.seen().last(), fixture->pathOf("SUB001_practice002.txt"));
}
