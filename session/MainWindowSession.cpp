// The main window: preparing, starting and ending a session.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "session/TrialSequence.h"
#include "subject/SubjectWindow.h"
#include "window/BusyMouse.h"

#include <QComboBox>
#include <QDateTime>
#include <QPushButton>
#include <QSpinBox>

#include <algorithm>

namespace {
/// Entries of Data::sessionTypes.
enum SessionType : int { Practice = 0, Experiment = 1 };
} // namespace

void MainWindow::on_pushButtonPractice_clicked() {
    prepareSession(nRepetitionsPractice, Practice);
    // A prepared practice disables "Experiment" until it is over; a prepared experiment does not
    // disable "Practice": deliberate.
    pushButtonPractice->setEnabled(true);
    pushButtonExperiment->setEnabled(false);
    pushButtonGo->setEnabled(nFiles >= 1);
}

void MainWindow::on_pushButtonExperiment_clicked() {
    prepareSession(nRepetitionsExperiment, Experiment);
    pushButtonPractice->setEnabled(true);
    pushButtonExperiment->setEnabled(true);
    pushButtonGo->setEnabled(nFiles >= 1);
}

void MainWindow::prepareSession(int repetitions, int sessionTypeIndex) {
    nRepetitions = repetitions;
    comboBoxSesType->setCurrentIndex(sessionTypeIndex);
    // A click on the grey "Go" must not start the session once "Go" is enabled.
    staleClicksOnGo->begin();
    getReadyToGo();
    staleClicksOnGo->end();
}

void MainWindow::getReadyToGo() {
    data.records.clear();
    trialSequence.clear();
    currentTargetPath.clear();
    sequencePosition = 0;
    currentFileIndex = 0;
    nFiles = 0;
    // Otherwise the end of an earlier, longer target would follow the one that is loaded now.
    soundsPlayed = 0;
    data.sessionTypeIndex = comboBoxSesType->currentIndex();
    data.frequencyCurrent = data.frequencyStart;
    getParameters();
    selectWavFile();
    if (nFiles <= 0)
        return;
    prepareTarget();
}

void MainWindow::prepareTarget() {
    const WaitCursor waitCursor;
    genRandomSequence();
    genWav();
    if (nFiles <= 0)
        return;
    displayWav();
    genFFT();
    displayFFT();
    resetTrend();
    updateWavTextFields();
    showNoMatchYet();
}

void MainWindow::genRandomSequence() {
    trialSequence = randomTrials(nRepetitions, nFiles);
}

void MainWindow::on_pushButtonGo_clicked() {
    setEnabled(false);
    getParameters();
    if (data.saveDataToFile)
        journal.begin(data.outputFileName, QDateTime::currentDateTime());
    // An earlier window stays a hidden child until the program ends.
    subjectWindow = new SubjectWindow(this);
    connect(subjectWindow, SIGNAL(subjectResponded(qint32, qint32)), this,
            SLOT(updateMainwindow(qint32, qint32)));
    connect(subjectWindow, SIGNAL(subjectWindowClosed()), this, SLOT(refreshMainWindow()));
    connect(this, SIGNAL(transferParameters(qint32, qint32, qint32, qint32)), subjectWindow,
            SLOT(receiveParameters(qint32, qint32, qint32, qint32)));
    connect(this, SIGNAL(soundPlaying(int)), subjectWindow, SLOT(updateSubjectWindow(int)));
    subjectWindow->show();
    emit transferParameters(data.frequencyMin, data.frequencyMax, data.frequencyCurrent,
                            data.frequencyStepSize);
}

void MainWindow::refreshMainWindow() {
    // The listener may have closed the window while a sound was pending or playing: no sound may
    // follow the session, and no stale event may reach the next.
    cancelPresentation();
    saveResultsAndAdvanceFileNumber();
    setEnabled(true);
    pushButtonPractice->setEnabled(true);
    pushButtonExperiment->setEnabled(true);
    pushButtonGo->setEnabled(false);
}

void MainWindow::finishIt() {
    saveResultsAndAdvanceFileNumber();
}

void MainWindow::saveResultsAndAdvanceFileNumber() {
    if (data.saveDataToFile)
        writeDataToTxt();
    data.fileNumber = std::min(data.fileNumber, spinBoxFileNumber->maximum()) + 1;
    spinBoxFileNumber->setValue(data.fileNumber);
}

void MainWindow::disableAllComponents() {
    setEnabled(false);
}

void MainWindow::doNothing() {}

void MainWindow::on_comboBoxSesType_currentIndexChanged(int index) {
    data.sessionTypeIndex = index;
    updateOutputFileName();
}

void MainWindow::on_comboBoxSoundType_currentIndexChanged(int index) {
    data.soundTypeIndex = index;
    updateOutputFileName();
}

void MainWindow::on_comboBoxMainParameter_currentIndexChanged(int index) {
    data.mainParameterIndex = index;
    updateOutputFileName();
}

void MainWindow::on_lineEditSubCode_textChanged(const QString& arg1) {
    data.subjectCode = arg1;
    updateOutputFileName();
}

void MainWindow::on_spinBoxFileNumber_valueChanged(int newFileNumber) {
    data.fileNumber = newFileNumber;
    updateOutputFileName();
}
