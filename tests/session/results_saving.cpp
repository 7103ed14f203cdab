// The results file: saving through the real dialog, saving that fails, and sessions one after the
// other.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_results.h"

#include "support/OneTranslation.h"

#include <QAbstractButton>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QTest>

namespace {

/// The warning about a file that cannot be opened.
QString warningText(const QString& path, const QString& name) {
    return QStringLiteral("could not open file for writing \r\n") + path + name;
}

} // namespace

void TestResultsSaving::dialogHasItsProperties() {
    QStringList filters;
    QVariantList facts;
    fixture->dialogs.expect("Save a file", [&](QWidget* widget) {
        auto* dialog = qobject_cast<QFileDialog*>(widget);
        filters = dialog->nameFilters() << dialog->selectedNameFilter();
        facts = {dialog->parentWidget() == &fixture->window(),
                 int(dialog->acceptMode()),
                 int(dialog->fileMode()),
                 dialog->testOption(QFileDialog::DontConfirmOverwrite),
                 dialog->isModal(),
                 dialog->directory().absolutePath(),
                 dialog->selectedFiles()};
        dialog->reject();
    });
    fixture->closeWarningOfNoFile();
    save({500});
    QCOMPARE(filters, QStringList({"All files (*.*)", "Text files (*.txt)", "Text files (*.txt)"}));
    QCOMPARE(facts,
             QVariantList({true, int(QFileDialog::AcceptSave), int(QFileDialog::AnyFile), true,
                           true, fixture->folder.path(), QStringList(proposedPath())}));
}

void TestResultsSaving::dialogIsTranslated() {
    const testsupport::OneTranslation german("MainWindow", "Save a file", "Datei sichern");
    fixture->dialogs.expect(QStringLiteral("Datei sichern"),
                            [](QWidget* dialog) { qobject_cast<QDialog*>(dialog)->reject(); });
    fixture->closeWarningOfNoFile();
    save({500});
}

void TestResultsSaving::proposalIsFolderAndName_data() {
    QTest::addColumn<QString>("subfolder");
    QTest::addColumn<QString>("name");
    const auto row = [](const char* name, const QString& subfolder, const QString& file) {
        QTest::newRow(name) << subfolder << file;
    };
    row("blanks", "my results", "a b c.txt");
    row("umlauts", "Größen", "Prüfling_practice001.txt");
    row("CJK", "結果", "七_practice001.txt");
    row("no ending", "results", "a");
}

void TestResultsSaving::proposalIsFolderAndName() {
    QFETCH(QString, subfolder);
    QFETCH(QString, name);
    const QString folder = fixture->pathOf(subfolder);
    QVERIFY(QDir().mkpath(folder));
    fixture->window().data.outputFilePath = folder;
    fixture->window().data.outputFileName = name;
    fixture->dialogs.saveAsProposed();
    save({500});
    QCOMPARE(fixture->dialogs.seen(), QStringList(folder + "/" + name));
    QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList(name));
    QCOMPARE(readBytes(folder + "/" + name), expectedResults("File001.wav", {"500"}));
}

void TestResultsSaving::fileHoldsHeaderAndOneLineForEachRequest() {
    fixture->dialogs.saveAsProposed();
    save({500, 523.25, 1e6});
    const QByteArray expected = "filename\tnTrials\tfrequency matched (Hz)\r\n"
                                "File001.wav\t1\t500\r\n"
                                "File001.wav\t2\t523.25\r\n"
                                "File001.wav\t3\t1e+06\r\n";
    QCOMPARE(readBytes(proposedPath()), expected);
}

void TestResultsSaving::firstRecordNamesTheTarget() {
    Record another;
    another.fileName = QStringLiteral("another.wav");
    another.frequencyMatched = 77;
    fixture->window().data.records.append(another);
    fixture->window().data.wavFileName = QStringLiteral("third.wav");
    fixture->window().currentFileIndex = 1;
    fixture->dialogs.saveAsProposed();
    save({500});
    QCOMPARE(readBytes(proposedPath()), expectedResults("File001.wav", {"500"}));
}

void TestResultsSaving::noRecordGivesAnEmptyFile() {
    fixture->window().data.records.clear();
    QVERIFY(writeBytes(proposedPath(), "earlier"));
    fixture->dialogs.saveAsProposed();
    save({500, 640});
    const QFileInfo file(proposedPath());
    QVERIFY(file.isFile());
    QCOMPARE(file.size(), 0);
}

void TestResultsSaving::pathAndNameOfTheChosenFileAreStoredAndNoFieldIsWritten() {
    QVERIFY(QDir().mkpath(fixture->pathOf("elsewhere")));
    const QString chosen = fixture->pathOf("elsewhere/mine.txt");
    fixture->dialogs.saveAs(chosen);
    save({500});
    QCOMPARE(fixture->window().data.outputFilePath, chosen);
    QCOMPARE(fixture->window().data.outputFileName, QStringLiteral("mine.txt"));
    QCOMPARE(fixture->textOf("lineEditOutputFilePath"), fixture->folder.path());
    QCOMPARE(fixture->textOf("lineEditOutputFileName"), QStringLiteral("SUB001_practice001.txt"));
    QCOMPARE(readBytes(chosen), expectedResults("File001.wav", {"500"}));
    QCOMPARE(QDir(fixture->folder.path()).entryList(QDir::Files), QStringList());
}

void TestResultsSaving::existingFileIsOverwrittenWithoutAQuestion() {
    const QString path = proposedPath();
    QVERIFY(writeBytes(path, QByteArray(100000, 'x')));
    fixture->dialogs.saveAsProposed();
    save({500});
    QCOMPARE(fixture->dialogs.seen().size(), 1);
    QCOMPARE(readBytes(path), expectedResults("File001.wav", {"500"}));
}

void TestResultsSaving::namesBeyondAsciiFollowTheLocaleEncoding() {
    const QString target = QStringLiteral("Größe 目標.wav");
    fixture->window().data.records[0].fileName = target;
    const QString path = fixture->pathOf("Prüfling 七.txt");
    fixture->dialogs.saveAs(path);
    save({500});
    QCOMPARE(fixture->window().data.outputFileName, QStringLiteral("Prüfling 七.txt"));
    const QByteArray bytes = readBytes(path);
    QCOMPARE(bytes, expectedResults(target, {"500"}));
    QVERIFY(bytes.contains("\r\n" + target.toLocal8Bit() + "\t1\t500\r\n"));
}

void TestResultsSaving::missingFolderBecomesADirectoryAtTheFilePath_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("one level") << "missing/mine.txt";
    QTest::newRow("two levels") << "missing/deeper/mine.txt";
    QTest::newRow("beyond ASCII") << "fehlt für 七/mine.txt";
}

void TestResultsSaving::missingFolderBecomesADirectoryAtTheFilePath() {
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

void TestResultsSaving::cancelledDialogEmptiesPathAndNameAndWarns() {
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

void TestResultsSaving::warningHasItsProperties() {
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

void TestResultsSaving::failedSavingKeepsTheDataAndDoesNotAskAgain() {
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

void TestResultsSaving::secondSavingProposesTheDoubledPath() {
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

void TestResultsSaving::secondSavingAfterACancelledOneProposesNothing() {
    fixture->cancelSaving();
    save({500});
    // The two settings, both empty, with a slash between.
    fixture->cancelSaving();
    saveAgain();
    QCOMPARE(fixture->dialogs.seen().at(2), QDir::rootPath() + "/");
}

void TestResultsSaving::nameIsReplacedWhenTheNumberAdvances() {
    fixture->dialogs.saveAs(fixture->pathOf("mine.txt"));
    fixture->window().trendFrequencies = {500};
    fixture->window().refreshMainWindow();
    QCOMPARE(fixture->textOf("lineEditOutputFileName"), QStringLiteral("SUB001_practice002.txt"));
    QCOMPARE(fixture->window().data.outputFileName, QStringLiteral("SUB001_practice002.txt"));
    QCOMPARE(fixture->window().data.outputFilePath, fixture->pathOf("mine.txt"));
}

void TestResultsSaving::sessionWithoutASinusoidSavesTheHeaderOnly() {
    fixture->prepare(fixture->write("target.wav", QVector<int>(40, 99)));
    QVERIFY(fixture->start());
    QCOMPARE(readBytes(fixture->finish()), expectedResults("target.wav"));
    QCOMPARE(fixture->textOf("lineEditOutputFileName"), QStringLiteral("SUB001_practice002.txt"));
}

void TestResultsSaving::nextSessionStartsInTheFolderShown() {
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
