// "Practice" and "Experiment": the choice of a target, and what it resets, shows and enables.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/SessionDriver.h"
#include "support/StreamCapture.h"
#include "test_session.h"

#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QtCharts/QLineSeries>
#include <QtTest>

#include <algorithm>
#include <iostream>

using testsupport::find;
using testsupport::StreamCapture;

namespace {

using Slot = void (MainWindow::*)();

constexpr Slot practice = &MainWindow::on_pushButtonPractice_clicked;
constexpr Slot experiment = &MainWindow::on_pushButtonExperiment_clicked;

bool isEnabled(MainWindow& window, const char* buttonName) {
    return find<QPushButton>(window, buttonName)->isEnabled();
}

QString textOf(MainWindow& window, const char* fieldName) {
    return find<QLineEdit>(window, fieldName)->text();
}

/// Looks at the window while the dialog for the target is open, then cancels the dialog.
void lookWhileChoosing(SessionBench& bench, const std::function<void()>& look) {
    bench.dialogs.expect(QStringLiteral("Select a target sound file"), [look](QWidget* dialog) {
        look();
        qobject_cast<QFileDialog*>(dialog)->reject();
    });
}

/// Prepares by cancelling and returns what that put on standard error.
std::string errorsOfCancelling(SessionBench& bench, Slot slot) {
    const StreamCapture errors(std::cerr);
    bench.dialogs.cancelTarget();
    (bench.window.*slot)();
    return errors.text();
}

} // namespace

Q_DECLARE_METATYPE(Slot)

void TestSessionPreparation::buttonsAfterPreparing_data() {
    QTest::addColumn<Slot>("slot");
    QTest::addColumn<bool>("isChosen");
    QTest::addColumn<bool>("isExperimentEnabled");
    QTest::addColumn<int>("sessionTypeIndex");
    QTest::addColumn<int>("nRepetitions");
    QTest::addColumn<QString>("fileName");
    const QString practiceName = QStringLiteral("SUB001_practice001.txt");
    const QString experimentName = QStringLiteral("SUB001_experiment001.txt");
    QTest::newRow("practice") << practice << true << false << 0 << 3 << practiceName;
    QTest::newRow("practice cancelled") << practice << false << false << 0 << 3 << practiceName;
    QTest::newRow("experiment") << experiment << true << true << 1 << 2 << experimentName;
    QTest::newRow("experiment cancelled")
        << experiment << false << true << 1 << 2 << experimentName;
}

void TestSessionPreparation::buttonsAfterPreparing() {
    QFETCH(Slot, slot);
    QFETCH(bool, isChosen);
    QFETCH(int, sessionTypeIndex);
    ObservedMainWindow& window = bench->window;
    window.nRepetitionsPractice = 3;
    window.nRepetitionsExperiment = 2;
    window.comboBoxSesType->setCurrentIndex(1 - sessionTypeIndex);
    // Each button gets its state, whatever it had.
    find<QPushButton>(window, "pushButtonPractice")->setEnabled(false);
    find<QPushButton>(window, "pushButtonExperiment")->setEnabled(sessionTypeIndex == 0);
    find<QPushButton>(window, "pushButtonGo")->setEnabled(!isChosen);
    if (isChosen) {
        bench->dialogs.chooseTarget(bench->target(QStringLiteral("target.wav")));
        (window.*slot)();
    } else {
        errorsOfCancelling(*bench, slot);
    }
    QVERIFY(isEnabled(window, "pushButtonPractice"));
    QTEST(isEnabled(window, "pushButtonExperiment"), "isExperimentEnabled");
    QCOMPARE(isEnabled(window, "pushButtonGo"), isChosen);
    QCOMPARE(window.nFiles, isChosen ? 1 : 0);
    QTEST(window.nRepetitions, "nRepetitions");
    QCOMPARE(window.trialSequence.size(), isChosen ? window.nRepetitions : 0);
    QCOMPARE(window.comboBoxSesType->currentIndex(), sessionTypeIndex);
    QCOMPARE(window.data.sessionTypeIndex, sessionTypeIndex);
    QTEST(window.data.outputFileName, "fileName");
    QCOMPARE(textOf(window, "lineEditOutputFileName"), window.data.outputFileName);
}

void TestSessionPreparation::aPreparedExperimentCanBecomeAPractice() {
    ObservedMainWindow& window = bench->window;
    bench->dialogs.chooseTarget(bench->target(QStringLiteral("experiment.wav")));
    window.on_pushButtonExperiment_clicked();
    QVERIFY(isEnabled(window, "pushButtonPractice") && isEnabled(window, "pushButtonGo"));
    bench->dialogs.chooseTarget(bench->target(QStringLiteral("practice.wav")));
    find<QPushButton>(window, "pushButtonPractice")->click();
    QCOMPARE(textOf(window, "lineEditOutputFileName"), QStringLiteral("SUB001_practice001.txt"));
    QCOMPARE(textOf(window, "lineEditWavFileName"), QStringLiteral("practice.wav"));
    QVERIFY(!isEnabled(window, "pushButtonExperiment"));
    QVERIFY(isEnabled(window, "pushButtonGo"));
}

void TestSessionPreparation::aPreparedPracticeLocksTheExperimentUntilTheSessionEnds() {
    bench->preparePractice();
    QVERIFY(!isEnabled(bench->window, "pushButtonExperiment"));
    SubjectWindow* listener = bench->go();
    bench->dialogs.cancelSaving();
    bench->dialogs.click(QStringLiteral("Warning"), QMessageBox::Ok);
    emit listener->subjectWindowClosed();
    QVERIFY(isEnabled(bench->window, "pushButtonExperiment"));
}

void TestSessionPreparation::everythingIsResetBeforeTheTargetIsChosen() {
    ObservedMainWindow& window = bench->window;
    window.data.records.resize(3);
    window.trialSequence = {2, 1, 0};
    window.currentTargetPath = QStringLiteral("/somewhere/else.wav");
    window.sequencePosition = 3;
    window.currentFileIndex = 2;
    window.nFiles = 3;
    window.soundsPlayed = 1;
    window.data.frequencyStart = 321;
    window.data.frequencyCurrent = 640;
    QVariantList seen;
    lookWhileChoosing(*bench, [&] {
        seen = {window.data.records.size(), window.trialSequence.size(), window.currentTargetPath,
                window.sequencePosition,    window.currentFileIndex,     window.nFiles,
                window.soundsPlayed,        window.data.frequencyCurrent};
    });
    const StreamCapture errors(std::cerr);
    window.getReadyToGo();
    QCOMPARE(seen, (QVariantList{0, 0, QString(), 0, 0, 0, 0, 321}));
}

void TestSessionPreparation::theControlsAreReadBeforeTheTargetIsChosen() {
    ObservedMainWindow& window = bench->window;
    find<QLineEdit>(window, "lineEditSilentInterval")->setText(QStringLiteral("75.00"));
    find<QLineEdit>(window, "lineEditOutputFilePath")->setText(QStringLiteral("/results"));
    window.comboBoxSesType->blockSignals(true);
    window.comboBoxSesType->setCurrentIndex(1);
    QVariantList seen;
    lookWhileChoosing(*bench, [&] {
        seen = {window.data.silentInterval, window.data.outputFilePath,
                window.data.sessionTypeIndex};
    });
    const StreamCapture errors(std::cerr);
    window.getReadyToGo();
    QCOMPARE(seen, (QVariantList{0.075, QStringLiteral("/results"), 1}));
}

void TestSessionPreparation::aChosenTargetIsDrawnAndNamed() {
    ObservedMainWindow& window = bench->window;
    const QString path = bench->target(QStringLiteral("target.wav"), 800);
    find<QLineEdit>(window, "lineEditFrequencyMatched")->setText(QStringLiteral("640"));
    bench->dialogs.chooseTarget(path);
    window.on_pushButtonPractice_clicked();
    QCOMPARE(window.trialSequence, QVector<int>{0});
    QCOMPARE(window.currentTargetPath, path);
    QCOMPARE(window.data.records.size(), 1);
    QCOMPARE(window.data.records[0].fileName, QStringLiteral("target.wav"));
    QCOMPARE(window.data.records[0].frequencyMatched, 0.0);
    QCOMPARE(window.targetSamples.size(), 800);
    QCOMPARE(window.targetSamples.last(), 800 / 32768.0);
    QCOMPARE(window.seriesWav->count(), 800);
    // 1024 values are transformed: 51 of their 512 bins lie below 2000 Hz.
    QCOMPARE(window.seriesFFT->count(), 51);
    QCOMPARE(textOf(window, "lineEditWavFilePath"), bench->folder.path());
    QCOMPARE(textOf(window, "lineEditWavFileName"), QStringLiteral("target.wav"));
    QCOMPARE(textOf(window, "lineEditSoundDuration"), QStringLiteral("20.00"));
    QCOMPARE(textOf(window, "lineEditFrequencyMatched"), QStringLiteral("not started yet"));
}

void TestSessionPreparation::preparingAgainEmptiesTheTrend() {
    bench->preparePractice();
    ObservedMainWindow& window = bench->window;
    window.data.records[0].frequencyMatched = 640;
    window.updateTrend();
    window.data.nResponses = 1;
    bench->preparePractice();
    QVERIFY(window.trendTrials.isEmpty() && window.trendFrequencies.isEmpty());
    QCOMPARE(window.seriesTrend->count(), 0);
    QCOMPARE(window.data.nResponses, 0);
    QCOMPARE(window.data.records[0].frequencyMatched, 0.0);
}

void TestSessionPreparation::cancellingLeavesOneNamelessRecordAndOneFile() {
    bench->dialogs.cancelTarget();
    bench->window.selectWavFile();
    QCOMPARE(bench->window.nFiles, 1);
    QCOMPARE(bench->window.data.records.size(), 1);
    QCOMPARE(bench->window.data.records[0].fileName, QString());
    QCOMPARE(bench->window.data.wavFileName, QString());
}

void TestSessionPreparation::aCancelledPreparationChangesNothingThatIsShown() {
    bench->preparePractice();
    ObservedMainWindow& window = bench->window;
    window.data.records[0].frequencyMatched = 640;
    window.updateTrend();
    window.data.nResponses = 1;
    window.updateFrequencyMatched();
    const auto shown = [this] {
        // What a preparation resets even when nothing is chosen.
        QStringList lines = bench->state();
        for (const char* name : {"match", "trial", "files", "pushButtonGo"})
            lines = lines.filter(QRegularExpression(QStringLiteral("^(?!%1:)").arg(name)));
        return lines;
    };
    const QStringList before = shown();
    const std::string errors = errorsOfCancelling(*bench, practice);
    QCOMPARE(shown(), before);
    QCOMPARE(window.data.records.size(), 1);
    QCOMPARE(window.data.records[0].fileName, QString());
    QVERIFY(window.trialSequence.isEmpty());
    QCOMPARE(QString::fromStdString(errors).left(25), QStringLiteral("Unable to open WAV file: "));
    QCOMPARE(std::count(errors.begin(), errors.end(), '\n'), 1);
}

void TestSessionPreparation::aCancelledPreparationDisablesGo() {
    bench->preparePractice();
    QVERIFY(isEnabled(bench->window, "pushButtonGo"));
    errorsOfCancelling(*bench, practice);
    QVERIFY(!isEnabled(bench->window, "pushButtonGo"));
    QCOMPARE(bench->window.nFiles, 0);
}

void TestSessionPreparation::aShorterTargetLeavesNothingOfTheLonger() {
    ObservedMainWindow& window = bench->window;
    bench->dialogs.chooseTarget(bench->target(QStringLiteral("longer.wav"), 2000));
    window.on_pushButtonPractice_clicked();
    // As after a session: the last request's sound has been counted.
    window.soundsPlayed = 1;
    bench->dialogs.chooseTarget(bench->target(QStringLiteral("shorter.wav"), 500));
    window.on_pushButtonPractice_clicked();
    QCOMPARE(window.targetSamples.size(), 500);
    QCOMPARE(window.seriesWav->count(), 500);
    QCOMPARE(window.rangeWav, (QVector<double>{1 / 32768.0, 500 / 32768.0}));
}

void TestSessionPreparation::theSequenceHoldsEveryFileOncePerRepetition_data() {
    QTest::addColumn<int>("nRepetitions");
    QTest::addColumn<int>("nFiles");
    for (const int nRepetitions : {0, 1, 3})
        for (const int nFiles : {1, 4})
            QTest::addRow("%d x %d", nRepetitions, nFiles) << nRepetitions << nFiles;
}

void TestSessionPreparation::theSequenceHoldsEveryFileOncePerRepetition() {
    QFETCH(int, nRepetitions);
    QFETCH(int, nFiles);
    ObservedMainWindow& window = bench->window;
    window.trialSequence = {9, 9};
    window.nRepetitions = nRepetitions;
    window.nFiles = nFiles;
    window.genRandomSequence();
    QCOMPARE(window.trialSequence.size(), nRepetitions * nFiles);
    for (int file = 0; file < nFiles; ++file)
        QCOMPARE(window.trialSequence.count(file), nRepetitions);
}

void TestSessionPreparation::membersStartAsLaidDown() {
    const ObservedMainWindow& window = bench->window;
    QVERIFY(window.subjectWindow == nullptr);
    QCOMPARE(window.soundsPerPresentation, 1);
    QCOMPARE(window.soundsPlayed, 0);
    QVERIFY(window.trialSequence.isEmpty());
    QVERIFY(window.currentTargetPath.isEmpty());
    QCOMPARE(window.sequencePosition, 0);
    QCOMPARE(window.currentFileIndex, 0);
    QCOMPARE(window.nRepetitions, 0);
    QCOMPARE(window.nRepetitionsPractice, 1);
    QCOMPARE(window.nRepetitionsExperiment, 1);
    QCOMPARE(window.nFiles, 0);
    QVERIFY(!window.playSinusoidNext);
}
