// The results file: saving through the real dialog.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_results.h"

#include "support/OneTranslation.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QtTest>

namespace {
QString saveTitle() {
    return QStringLiteral("Save a file");
}
} // namespace

void TestResultsSaving::dialogAsksAsLaidDown() {
    QStringList filters;
    QVariantList facts;
    fixture->dialogs.expect(saveTitle(), [&](QWidget* widget) {
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

void TestResultsSaving::proposalIsFolderSlashName_data() {
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

void TestResultsSaving::proposalIsFolderSlashName() {
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

void TestResultsSaving::namesBeyondAsciiFollowTheLocalesEncoding() {
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
