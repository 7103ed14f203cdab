// The results file: saving through the real dialog.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_results.h"

#include "support/FileBytes.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QLocale>
#include <QTranslator>
#include <QtTest>

using testsupport::readBytes;
using testsupport::writeBytes;

namespace {
QString saveTitle() {
    return QStringLiteral("Save a file");
}
} // namespace

void TestResultsSaving::dialogAsksAsLaidDown() {
    SavingWindow saving({500});
    QStringList filters;
    QVariantList facts;
    saving.dialogs.expect(saveTitle(), [&](QWidget* widget) {
        auto* dialog = qobject_cast<QFileDialog*>(widget);
        filters = dialog->nameFilters() << dialog->selectedNameFilter();
        facts = {dialog->parentWidget() == &saving.window,
                 int(dialog->acceptMode()),
                 int(dialog->fileMode()),
                 dialog->testOption(QFileDialog::DontConfirmOverwrite),
                 dialog->isModal(),
                 dialog->directory().absolutePath(),
                 dialog->selectedFiles()};
        dialog->reject();
    });
    saving.dialogs.click("Warning", QMessageBox::Ok);
    saving.window.writeDataToTxt();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
    QCOMPARE(filters, QStringList({"All files (*.*)", "Text files (*.txt)", "Text files (*.txt)"}));
    QCOMPARE(facts, QVariantList({true, int(QFileDialog::AcceptSave), int(QFileDialog::AnyFile),
                                  true, true, saving.folder(),
                                  QStringList(saving.path("SUB001_practice001.txt"))}));
}

void TestResultsSaving::dialogIsTranslated() {
    class German : public QTranslator {
    public:
        bool isEmpty() const override { return false; }
        QString translate(const char* context, const char* sourceText,
                          const char* /*disambiguation*/, int /*n*/) const override {
            if (qstrcmp(context, "MainWindow") == 0 && qstrcmp(sourceText, "Save a file") == 0)
                return QStringLiteral("Datei sichern");
            return {};
        }
    };
    German translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    SavingWindow saving({500});
    saving.dialogs.expect(QStringLiteral("Datei sichern"),
                          [](QWidget* dialog) { qobject_cast<QDialog*>(dialog)->reject(); });
    saving.dialogs.click("Warning", QMessageBox::Ok);
    saving.window.writeDataToTxt();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
}

void TestResultsSaving::proposalIsFolderSlashName_data() {
    QTest::addColumn<QString>("subfolder");
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << "results"
                           << "a.txt";
    QTest::newRow("blanks") << "my results"
                            << "a b c.txt";
    QTest::newRow("umlauts") << "Größen"
                             << "Prüfling_practice001.txt";
    QTest::newRow("CJK") << "結果"
                         << "七_practice001.txt";
    QTest::newRow("no ending") << "results"
                               << "a";
}

void TestResultsSaving::proposalIsFolderSlashName() {
    QFETCH(QString, subfolder);
    QFETCH(QString, name);
    SavingWindow saving({500});
    const QString folder = saving.path(subfolder);
    QVERIFY(QDir().mkpath(folder));
    saving.window.data.outputFilePath = folder;
    saving.window.data.outputFileName = name;
    saving.dialogs.saveAsProposed();
    saving.window.writeDataToTxt();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
    QCOMPARE(saving.dialogs.seen(), QStringList(folder + "/" + name));
    QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList(name));
    QCOMPARE(readBytes(folder + "/" + name), expectedResults("File001.wav", {"500"}));
}

void TestResultsSaving::fileHoldsHeaderAndOneLineForEachRequest() {
    SavingWindow saving({500, 640, 523.25, 440.125, 1.0 / 3, 1e6, 640});
    saving.dialogs.saveAsProposed();
    saving.window.writeDataToTxt();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
    const QByteArray expected = "filename\tnTrials\tfrequency matched (Hz)\r\n"
                                "File001.wav\t1\t500\r\n"
                                "File001.wav\t2\t640\r\n"
                                "File001.wav\t3\t523.25\r\n"
                                "File001.wav\t4\t440.125\r\n"
                                "File001.wav\t5\t0.333333\r\n"
                                "File001.wav\t6\t1e+06\r\n"
                                "File001.wav\t7\t640\r\n";
    QCOMPARE(readBytes(saving.path("SUB001_practice001.txt")), expected);
}

void TestResultsSaving::firstRecordNamesTheTarget() {
    SavingWindow saving({500});
    Record another;
    another.fileName = QStringLiteral("another.wav");
    another.frequencyMatched = 77;
    saving.window.data.records.append(another);
    saving.window.data.wavFileName = QStringLiteral("third.wav");
    saving.window.currentFileIndex = 1;
    saving.dialogs.saveAsProposed();
    saving.window.writeDataToTxt();
    QCOMPARE(readBytes(saving.path("SUB001_practice001.txt")),
             expectedResults("File001.wav", {"500"}));
}

void TestResultsSaving::noRequestGivesTheHeaderLineOnly() {
    SavingWindow saving;
    saving.dialogs.saveAsProposed();
    saving.window.writeDataToTxt();
    QCOMPARE(readBytes(saving.path("SUB001_practice001.txt")),
             QByteArray("filename\tnTrials\tfrequency matched (Hz)\r\n"));
}

void TestResultsSaving::noRecordGivesAnEmptyFile() {
    SavingWindow saving({500, 640});
    saving.window.data.records.clear();
    QVERIFY(writeBytes(saving.path("SUB001_practice001.txt"), "earlier"));
    saving.dialogs.saveAsProposed();
    saving.window.writeDataToTxt();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
    const QFileInfo file(saving.path("SUB001_practice001.txt"));
    QVERIFY(file.isFile());
    QCOMPARE(file.size(), 0);
}

void TestResultsSaving::pathAndNameOfTheChosenFileAreStoredAndNoFieldIsWritten() {
    SavingWindow saving({500});
    QVERIFY(QDir().mkpath(saving.path("elsewhere")));
    const QString chosen = saving.path("elsewhere/mine.txt");
    saving.dialogs.saveAs(chosen);
    saving.window.writeDataToTxt();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
    QCOMPARE(saving.window.data.outputFilePath, chosen);
    QCOMPARE(saving.window.data.outputFileName, QStringLiteral("mine.txt"));
    QCOMPARE(saving.shownPath(), saving.folder());
    QCOMPARE(saving.shownName(), QStringLiteral("SUB001_practice001.txt"));
    QCOMPARE(readBytes(chosen), expectedResults("File001.wav", {"500"}));
    QCOMPARE(QDir(saving.folder()).entryList(QDir::Files), QStringList());
}

void TestResultsSaving::existingFileIsOverwrittenWithoutAQuestion() {
    SavingWindow saving({500});
    const QString path = saving.path("SUB001_practice001.txt");
    QVERIFY(writeBytes(path, QByteArray(100000, 'x')));
    saving.dialogs.saveAsProposed();
    saving.window.writeDataToTxt();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
    QCOMPARE(saving.dialogs.seen().size(), 1);
    QCOMPARE(readBytes(path), expectedResults("File001.wav", {"500"}));
}

void TestResultsSaving::namesBeyondAsciiFollowTheLocalesEncoding() {
    SavingWindow saving({500});
    const QString target = QStringLiteral("Größe 目標.wav");
    saving.window.data.records[0].fileName = target;
    const QString path = saving.path("Prüfling 七.txt");
    saving.dialogs.saveAs(path);
    saving.window.writeDataToTxt();
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
    QCOMPARE(saving.window.data.outputFileName, QStringLiteral("Prüfling 七.txt"));
    const QByteArray bytes = readBytes(path);
    QCOMPARE(bytes, expectedResults(target, {"500"}));
    QVERIFY(bytes.contains("\r\n" + target.toLocal8Bit() + "\t1\t500\r\n"));
}

void TestResultsSaving::localeWithADecimalCommaKeepsThePoint() {
    const QLocale earlier;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    SavingWindow saving({523.25, 12345.5});
    saving.dialogs.saveAsProposed();
    saving.window.writeDataToTxt();
    QLocale::setDefault(earlier);
    QCOMPARE(saving.dialogs.takeComplaints(), QStringList());
    QCOMPARE(readBytes(saving.path("SUB001_practice001.txt")),
             expectedResults("File001.wav", {"523.25", "12345.5"}));
}
