// Choosing a target: the file dialog, the settings after it, and the text fields.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target.h"

#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QTest>

Q_DECLARE_METATYPE(testsupport::Fixture::Session)

using testsupport::click;
using Session = testsupport::Fixture::Session;

namespace {

QString desktop() {
    return QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
}

/// The settings of a file dialog.
struct DialogSettings {
    QWidget* parent = nullptr;
    QString title;
    QString folder;
    QStringList filters;
    QFileDialog::FileMode mode{};
    QFileDialog::AcceptMode acceptMode{};
    bool isModal = false;
};

/// Queues the cancelling of a target dialog, after recording its settings.
void recordAndCancel(testsupport::Fixture& fixture, DialogSettings& settings) {
    fixture.dialogs.expect("Select a target sound file", [&settings](QWidget* widget) {
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

} // namespace

void TestTargetSelection::dialogAsksForOneSoundFileOnTheDesktop_data() {
    addBothSessions();
}

void TestTargetSelection::dialogAsksForOneSoundFileOnTheDesktop() {
    QFETCH(Session, session);
    // "Experiment" is locked until a session has ended.
    fixture->window().pushButtonExperiment->setEnabled(true);
    DialogSettings settings;
    recordAndCancel(*fixture, settings);
    click(fixture->window(), buttonOf(session));
    QCOMPARE(fixture->takePrinted(), QStringList("Unable to open WAV file: /"));
    QCOMPARE(settings.parent, &fixture->window());
    QCOMPARE(settings.title, QString("Select a target sound file"));
    QCOMPARE(settings.folder, desktop());
    QCOMPARE(settings.filters, QStringList("Sound files (*.wav)"));
    QCOMPARE(settings.mode, QFileDialog::ExistingFile);
    QCOMPARE(settings.acceptMode, QFileDialog::AcceptOpen);
    QVERIFY(settings.isModal);
}

void TestTargetSelection::dialogOpensOnTheDesktopEveryTime() {
    fixture->prepare(fixture->write("target.wav", unevenCodes(40)));
    QCOMPARE(fixture->window().data.wavFolder, desktop());
    fixture->window().data.wavFolder = fixture->folder.path();
    DialogSettings settings;
    recordAndCancel(*fixture, settings);
    fixture->window().selectWavFile();
    QCOMPARE(settings.folder, desktop());
    QCOMPARE(fixture->window().data.wavFolder, desktop());
}

void TestTargetSelection::chosenFileBecomesTheOnlyRecord() {
    fixture->write("another.wav", unevenCodes(40));
    const QString path = fixture->write("target.wav", unevenCodes(40));
    fixture->window().data.records = {Record(), Record(), Record()};
    fixture->dialogs.chooseTarget(path);
    fixture->window().selectWavFile();
    QCOMPARE(fixture->window().data.wavFilePath, fixture->folder.path());
    QCOMPARE(fixture->window().data.wavFileName, QString("target.wav"));
    QCOMPARE(fixture->window().data.records.size(), 1);
    const Record& record = fixture->window().data.records.first();
    QCOMPARE(record.filePath, fixture->folder.path());
    QCOMPARE(record.fileName, QString("target.wav"));
    QVERIFY(record.frequencyMatched == 0.0);
    QCOMPARE(record.reserved1, 0);
    QCOMPARE(record.reserved2, 0);
    QCOMPARE(fixture->window().nFiles, 1);
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
    QVERIFY(QDir(fixture->folder.path()).mkdir(folderName));
    const QVector<int> codes = unevenCodes(40);
    const QString path = fixture->write(folderName + '/' + name, codes);
    fixture->prepare(path);
    QCOMPARE(fixture->window().lineEditWavFilePath->text(), fixture->pathOf(folderName));
    QCOMPARE(fixture->window().lineEditWavFileName->text(), name);
    QCOMPARE(fixture->window().currentTargetPath, path);
    QVERIFY(fixture->window().targetSamples == scaledFrom16Bits(codes));
    QVERIFY(fixture->window().pushButtonGo->isEnabled());
}

void TestTargetSelection::selectWavFileStoresACancelledDialogLikeAnyChoice() {
    fixture->dialogs.cancelTarget();
    fixture->window().selectWavFile();
    QCOMPARE(fixture->window().data.wavFilePath, QString());
    QCOMPARE(fixture->window().data.wavFileName, QString());
    QCOMPARE(fixture->window().data.records.size(), 1);
    QCOMPARE(fixture->window().data.records.first().filePath, QString());
    QCOMPARE(fixture->window().data.records.first().fileName, QString());
    QCOMPARE(fixture->window().nFiles, 1);
}

void TestTargetSelection::updateWavTextFieldsShowsFolderAndCurrentRecord() {
    Record first;
    first.fileName = "first.wav";
    Record second;
    second.fileName = "second.wav";
    fixture->window().data.records = {first, second};
    fixture->window().data.wavFilePath = "/some/folder";
    fixture->window().data.wavFileName = "neither.wav";
    fixture->window().currentFileIndex = 1;
    fixture->window().updateWavTextFields();
    QCOMPARE(fixture->window().lineEditWavFilePath->text(), QString("/some/folder"));
    QCOMPARE(fixture->window().lineEditWavFileName->text(), QString("second.wav"));
    fixture->window().currentFileIndex = 0;
    fixture->window().updateWavTextFields();
    QCOMPARE(fixture->window().lineEditWavFileName->text(), QString("first.wav"));
}

void TestTargetSelection::updateWavTextFieldsKeepsTheNameWithoutRecords() {
    fixture->window().data.records.clear();
    fixture->window().data.wavFilePath = "/some/folder";
    fixture->window().updateWavTextFields();
    QCOMPARE(fixture->window().lineEditWavFilePath->text(), QString("/some/folder"));
    QCOMPARE(fixture->window().lineEditWavFileName->text(), QString("File001.wav"));
}

void TestTargetSelection::cancellingWithoutAnEarlierTargetDisablesGo_data() {
    addBothSessions();
}

void TestTargetSelection::cancellingWithoutAnEarlierTargetDisablesGo() {
    QFETCH(Session, session);
    // "Experiment" is locked until a session has ended.
    fixture->window().pushButtonExperiment->setEnabled(true);
    const QStringList before = preparedState();
    QCOMPARE(prepareCancelled(session), QStringList("Unable to open WAV file: /"));
    QCOMPARE(preparedState(), before);
    QCOMPARE(fixture->window().lineEditWavFileName->text(), QString("File001.wav"));
    QCOMPARE(fixture->window().lineEditWavFilePath->text(), desktop());
    QCOMPARE(fixture->window().nFiles, 0);
    QCOMPARE(fixture->window().trialSequence, QVector<int>());
    QCOMPARE(fixture->window().data.records.size(), 1);
    QCOMPARE(fixture->window().data.records.first().fileName, QString());
    QVERIFY(fixture->window().pushButtonPractice->isEnabled());
    QCOMPARE(fixture->window().pushButtonExperiment->isEnabled(), session == Session::Experiment);
    QVERIFY(!fixture->window().pushButtonGo->isEnabled());
    QVERIFY(fixture->window().isEnabled());
}

void TestTargetSelection::cancellingKeepsTheEarlierCharts_data() {
    addBothSessions();
}

void TestTargetSelection::cancellingKeepsTheEarlierCharts() {
    QFETCH(Session, session);
    const QString path = fixture->write("earlier.wav", unevenCodes(400));
    fixture->prepare(path);
    // "Experiment" is locked until a session has ended.
    fixture->window().pushButtonExperiment->setEnabled(true);
    answerOnce();
    const QStringList before = preparedState();
    QCOMPARE(prepareCancelled(session), QStringList("Unable to open WAV file: /"));
    QCOMPARE(preparedState(), before);
    QCOMPARE(fixture->window().lineEditWavFileName->text(), QString("earlier.wav"));
    QCOMPARE(fixture->window().lineEditFrequencyMatched->text(), QString("612"));
    QCOMPARE(fixture->window().nFiles, 0);
    QCOMPARE(fixture->window().trialSequence, QVector<int>());
    QCOMPARE(fixture->window().data.records.size(), 1);
    QCOMPARE(fixture->window().data.records.first().fileName, QString());
    QVERIFY(!fixture->window().pushButtonGo->isEnabled());
}

void TestTargetSelection::preparationAfterACancelledOneSucceeds() {
    prepareCancelled();
    fixture->prepare(fixture->write("target.wav", unevenCodes(40)));
    QCOMPARE(fixture->window().nFiles, 1);
    QCOMPARE(fixture->window().trialSequence, QVector<int>{0});
    QCOMPARE(fixture->window().lineEditWavFileName->text(), QString("target.wav"));
    QCOMPARE(fixture->window().lineEditFrequencyMatched->text(), QString("not started yet"));
    QVERIFY(fixture->window().pushButtonGo->isEnabled());
}
