// Choosing a target: the file dialog, what it leaves in the settings, and the text fields.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QtTest>

Q_DECLARE_METATYPE(TargetBench::Session)

using testsupport::click;
using Session = TargetBench::Session;

namespace {

QString desktop() {
    return QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
}

/// What a file dialog is set to.
struct DialogSettings {
    QWidget* parent = nullptr;
    QString title;
    QString folder;
    QStringList filters;
    QFileDialog::FileMode mode{};
    QFileDialog::AcceptMode acceptMode{};
    bool isModal = false;
};

/// Lays a cancelled target dialog ready that first notes its settings.
void noteAndCancel(TargetBench& bench, DialogSettings& settings) {
    bench.session.dialogs.expect("Select a target sound file", [&settings](QWidget* widget) {
        if (auto* dialog = qobject_cast<QFileDialog*>(widget)) {
            settings = {dialog->parentWidget(), dialog->windowTitle(), dialog->directory().path(),
                        dialog->nameFilters(),  dialog->fileMode(),    dialog->acceptMode(),
                        dialog->isModal()};
            dialog->reject();
        } else {
            widget->close();
        }
    });
}

const char* buttonOf(Session session) {
    return session == Session::Practice ? "pushButtonPractice" : "pushButtonExperiment";
}

void addBothSessions() {
    QTest::addColumn<Session>("session");
    QTest::newRow("practice") << Session::Practice;
    QTest::newRow("experiment") << Session::Experiment;
}

/// "Experiment" is locked until a session has ended.
void unlockExperiment(TargetBench& bench) {
    testsupport::find<QPushButton>(bench.window, "pushButtonExperiment")->setEnabled(true);
}

} // namespace

void TestTargetSelection::dialogAsksForOneSoundFileOnTheDesktop_data() {
    addBothSessions();
}

void TestTargetSelection::dialogAsksForOneSoundFileOnTheDesktop() {
    QFETCH(Session, session);
    TargetBench bench;
    unlockExperiment(bench);
    DialogSettings settings;
    noteAndCancel(bench, settings);
    errorsOf([&] { click(bench.window, buttonOf(session)); });
    QCOMPARE(settings.parent, &bench.window);
    QCOMPARE(settings.title, QString("Select a target sound file"));
    QCOMPARE(settings.folder, desktop());
    QCOMPARE(settings.filters, QStringList("Sound files (*.wav)"));
    QCOMPARE(settings.mode, QFileDialog::ExistingFile);
    QCOMPARE(settings.acceptMode, QFileDialog::AcceptOpen);
    QVERIFY(settings.isModal);
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetSelection::dialogOpensOnTheDesktopEveryTime() {
    TargetBench bench;
    QCOMPARE(bench.prepare(bench.write("target.wav", unevenCodes(40))), std::string());
    QCOMPARE(bench.window.data.wavFolder, desktop());
    bench.window.data.wavFolder = bench.folder.path();
    DialogSettings settings;
    noteAndCancel(bench, settings);
    errorsOf([&] { bench.window.selectWavFile(); });
    QCOMPARE(settings.folder, desktop());
    QCOMPARE(bench.window.data.wavFolder, desktop());
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetSelection::chosenFileBecomesTheOnlyRecord() {
    TargetBench bench;
    bench.write("another.wav", unevenCodes(40));
    const QString path = bench.write("target.wav", unevenCodes(40));
    bench.window.data.records = {Record(), Record(), Record()};
    bench.session.dialogs.chooseTarget(path);
    QCOMPARE(errorsOf([&] { bench.window.selectWavFile(); }), std::string());
    QCOMPARE(bench.window.data.wavFilePath, bench.folder.path());
    QCOMPARE(bench.window.data.wavFileName, QString("target.wav"));
    QCOMPARE(bench.window.data.records.size(), 1);
    const Record& record = bench.window.data.records.first();
    QCOMPARE(record.filePath, bench.folder.path());
    QCOMPARE(record.fileName, QString("target.wav"));
    QVERIFY(record.frequencyMatched == 0.0);
    QCOMPARE(record.reserved1, 0);
    QCOMPARE(record.reserved2, 0);
    QCOMPARE(bench.window.nFiles, 1);
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetSelection::namesWithBlanksAndUmlautsAreFound_data() {
    QTest::addColumn<QString>("folderName");
    QTest::addColumn<QString>("name");
    QTest::newRow("blanks") << "two words"
                            << "a low tone.wav";
    QTest::newRow("umlauts") << QString::fromUtf8("Töne") << QString::fromUtf8("tiefer Größe.wav");
    QTest::newRow("CJK") << QString::fromUtf8("聲音") << QString::fromUtf8("目標.wav");
    QTest::newRow("several dots") << "v1.0"
                                  << "tone.440.Hz.wav";
    QTest::newRow("signs") << "100%"
                           << "%1 #&'(1).wav";
}

void TestTargetSelection::namesWithBlanksAndUmlautsAreFound() {
    QFETCH(QString, folderName);
    QFETCH(QString, name);
    TargetBench bench;
    QVERIFY(QDir(bench.folder.path()).mkdir(folderName));
    const QVector<int> codes = unevenCodes(40);
    const QString path = bench.write(folderName + '/' + name, codes);
    QCOMPARE(bench.prepare(path), std::string());
    QCOMPARE(bench.text("lineEditWavFilePath"), bench.folder.filePath(folderName));
    QCOMPARE(bench.text("lineEditWavFileName"), name);
    QCOMPARE(bench.window.currentTargetPath, path);
    QVERIFY(bench.window.targetSamples == scaledFrom16Bits(codes));
    QVERIFY(bench.isEnabled("pushButtonGo"));
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetSelection::selectionAloneStoresACancelledDialogLikeAnyChoice() {
    TargetBench bench;
    bench.session.dialogs.cancelTarget();
    QCOMPARE(errorsOf([&] { bench.window.selectWavFile(); }), std::string());
    QCOMPARE(bench.window.data.wavFilePath, QString());
    QCOMPARE(bench.window.data.wavFileName, QString());
    QCOMPARE(bench.window.data.records.size(), 1);
    QCOMPARE(bench.window.data.records.first().filePath, QString());
    QCOMPARE(bench.window.data.records.first().fileName, QString());
    QCOMPARE(bench.window.nFiles, 1);
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetSelection::updateWavTextFieldsShowsFolderAndCurrentRecord() {
    TargetBench bench;
    Record first;
    first.fileName = "first.wav";
    Record second;
    second.fileName = "second.wav";
    bench.window.data.records = {first, second};
    bench.window.data.wavFilePath = "/some/folder";
    bench.window.data.wavFileName = "neither.wav";
    bench.window.currentFileIndex = 1;
    bench.window.updateWavTextFields();
    QCOMPARE(bench.text("lineEditWavFilePath"), QString("/some/folder"));
    QCOMPARE(bench.text("lineEditWavFileName"), QString("second.wav"));
    bench.window.currentFileIndex = 0;
    bench.window.updateWavTextFields();
    QCOMPARE(bench.text("lineEditWavFileName"), QString("first.wav"));
}

void TestTargetSelection::updateWavTextFieldsKeepsTheNameWithoutRecords() {
    TargetBench bench;
    bench.window.data.records.clear();
    bench.window.data.wavFilePath = "/some/folder";
    bench.window.updateWavTextFields();
    QCOMPARE(bench.text("lineEditWavFilePath"), QString("/some/folder"));
    QCOMPARE(bench.text("lineEditWavFileName"), QString("File001.wav"));
}

void TestTargetSelection::cancellingWithoutAnEarlierTargetDisablesGo_data() {
    addBothSessions();
}

void TestTargetSelection::cancellingWithoutAnEarlierTargetDisablesGo() {
    QFETCH(Session, session);
    TargetBench bench;
    unlockExperiment(bench);
    const QStringList before = bench.preparedState();
    QCOMPARE(bench.prepareCancelled(session), std::string("Unable to open WAV file: /\n"));
    QCOMPARE(bench.preparedState(), before);
    QCOMPARE(bench.text("lineEditWavFileName"), QString("File001.wav"));
    QCOMPARE(bench.text("lineEditWavFilePath"), desktop());
    QCOMPARE(bench.window.nFiles, 0);
    QCOMPARE(bench.window.trialSequence, QVector<int>());
    QCOMPARE(bench.window.data.records.size(), 1);
    QCOMPARE(bench.window.data.records.first().fileName, QString());
    QVERIFY(bench.isEnabled("pushButtonPractice"));
    QCOMPARE(bench.isEnabled("pushButtonExperiment"), session == Session::Experiment);
    QVERIFY(!bench.isEnabled("pushButtonGo"));
    QVERIFY(bench.window.isEnabled());
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetSelection::cancellingKeepsWhatAnEarlierTargetHasDrawn_data() {
    addBothSessions();
}

void TestTargetSelection::cancellingKeepsWhatAnEarlierTargetHasDrawn() {
    QFETCH(Session, session);
    TargetBench bench;
    const QString path = bench.write("earlier.wav", unevenCodes(400));
    QCOMPARE(bench.prepare(path), std::string());
    unlockExperiment(bench);
    bench.window.data.nResponses = 1;
    bench.window.data.records[0].frequencyMatched = 612;
    bench.window.updateTrend();
    bench.window.updateFrequencyMatched();
    const QStringList before = bench.preparedState();
    QCOMPARE(bench.prepareCancelled(session), std::string("Unable to open WAV file: /\n"));
    QCOMPARE(bench.preparedState(), before);
    QCOMPARE(bench.text("lineEditWavFileName"), QString("earlier.wav"));
    QCOMPARE(bench.text("lineEditFrequencyMatched"), QString("612"));
    QCOMPARE(bench.window.nFiles, 0);
    QCOMPARE(bench.window.trialSequence, QVector<int>());
    QCOMPARE(bench.window.data.records.size(), 1);
    QCOMPARE(bench.window.data.records.first().fileName, QString());
    QVERIFY(!bench.isEnabled("pushButtonGo"));
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetSelection::preparationAfterACancelledOneSucceeds() {
    TargetBench bench;
    bench.prepareCancelled();
    QCOMPARE(bench.prepare(bench.write("target.wav", unevenCodes(40))), std::string());
    QCOMPARE(bench.window.nFiles, 1);
    QCOMPARE(bench.window.trialSequence, QVector<int>{0});
    QCOMPARE(bench.text("lineEditWavFileName"), QString("target.wav"));
    QCOMPARE(bench.text("lineEditFrequencyMatched"), QString("not started yet"));
    QVERIFY(bench.isEnabled("pushButtonGo"));
    QCOMPARE(bench.complaints(), QString());
}
