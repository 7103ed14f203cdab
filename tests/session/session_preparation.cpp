// "Practice" and "Experiment": the choice of a target, and the resets, texts and buttons after it.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_session.h"

#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace {

using Slot = void (MainWindow::*)();

constexpr Slot practice = &MainWindow::on_pushButtonPractice_clicked;
constexpr Slot experiment = &MainWindow::on_pushButtonExperiment_clicked;

/// Calls `look` while the dialog for the target is open, then cancels the dialog.
QStringList lookWhileChoosing(testsupport::Fixture& fixture, const std::function<void()>& look) {
    fixture.dialogs.expect(QStringLiteral("Select a target sound file"), [look](QWidget* dialog) {
        look();
        qobject_cast<QFileDialog*>(dialog)->reject();
    });
    fixture.window().getReadyToGo();
    return fixture.takePrinted();
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
    testsupport::InspectedMainWindow& window = fixture->window();
    window.nRepetitionsPractice = 3;
    window.nRepetitionsExperiment = 2;
    window.comboBoxSesType->setCurrentIndex(1 - sessionTypeIndex);
    // Each button gets its state regardless of the earlier one.
    window.pushButtonPractice->setEnabled(false);
    window.pushButtonExperiment->setEnabled(sessionTypeIndex == 0);
    window.pushButtonGo->setEnabled(!isChosen);
    if (isChosen)
        fixture->dialogs.chooseTarget(fixture->write("target.wav", QVector<int>(40, 99)));
    else
        fixture->dialogs.cancelTarget();
    (window.*slot)();
    QCOMPARE(fixture->takePrinted().isEmpty(), isChosen);
    QVERIFY(window.pushButtonPractice->isEnabled());
    QTEST(window.pushButtonExperiment->isEnabled(), "isExperimentEnabled");
    QCOMPARE(window.pushButtonGo->isEnabled(), isChosen);
    QCOMPARE(window.nFiles, isChosen ? 1 : 0);
    QTEST(window.nRepetitions, "nRepetitions");
    QCOMPARE(window.trialSequence.size(), isChosen ? window.nRepetitions : 0);
    QCOMPARE(window.comboBoxSesType->currentIndex(), sessionTypeIndex);
    QCOMPARE(window.data.sessionTypeIndex, sessionTypeIndex);
    QTEST(window.data.outputFileName, "fileName");
    QCOMPARE(window.lineEditOutputFileName->text(), window.data.outputFileName);
}

void TestSessionPreparation::everythingIsResetBeforeTheTargetIsChosen() {
    testsupport::InspectedMainWindow& window = fixture->window();
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
    const QStringList printed = lookWhileChoosing(*fixture, [&] {
        seen = {window.data.records.size(), window.trialSequence.size(), window.currentTargetPath,
                window.sequencePosition,    window.currentFileIndex,     window.nFiles,
                window.soundsPlayed,        window.data.frequencyCurrent};
    });
    QCOMPARE(printed, QStringList("Unable to open WAV file: /"));
    QCOMPARE(seen, (QVariantList{0, 0, QString(), 0, 0, 0, 0, 321}));
}

void TestSessionPreparation::theControlsAreReadBeforeTheTargetIsChosen() {
    testsupport::InspectedMainWindow& window = fixture->window();
    window.lineEditSilentInterval->setText(QStringLiteral("75.00"));
    window.lineEditOutputFilePath->setText(QStringLiteral("/results"));
    window.comboBoxSesType->blockSignals(true);
    window.comboBoxSesType->setCurrentIndex(1);
    QVariantList seen;
    const QStringList printed = lookWhileChoosing(*fixture, [&] {
        seen = {window.data.silentInterval, window.data.outputFilePath,
                window.data.sessionTypeIndex};
    });
    QCOMPARE(printed, QStringList("Unable to open WAV file: /"));
    QCOMPARE(seen, (QVariantList{0.075, QStringLiteral("/results"), 1}));
}

void TestSessionPreparation::theSequenceHoldsEveryFileOncePerRepetition() {
    testsupport::InspectedMainWindow& window = fixture->window();
    window.trialSequence = {9, 9};
    window.nRepetitions = 3;
    window.nFiles = 4;
    window.genRandomSequence();
    QCOMPARE(window.trialSequence.size(), 12);
    for (int file = 0; file < 4; ++file)
        QCOMPARE(window.trialSequence.count(file), 3);
}
