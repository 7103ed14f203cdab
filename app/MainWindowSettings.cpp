// The main window: copies the settings into the widgets and back.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "base/NumberTexts.h"
#include "base/Sampling.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

void MainWindow::initParameters() {
    showSelections();
    showSettings();
    pushButtonPractice->setEnabled(true);
    pushButtonExperiment->setEnabled(false);
    pushButtonGo->setEnabled(false);
    showNoMatchYet();
    sizeBuffers();
    setUpFonts();
    setUpAudioFormat();
}

void MainWindow::showSelections() {
    comboBoxSesType->addItems(data.sessionTypes);
    comboBoxSoundType->addItems(data.soundTypes);
    comboBoxMainParameter->addItems(data.mainParameters);
    data.sessionTypeIndex = data.soundTypeIndex = data.mainParameterIndex = 0;
    for (QComboBox* selection :
         {comboBoxSesType.get(), comboBoxSoundType.get(), comboBoxMainParameter.get()})
        selection->setCurrentIndex(0);
}

void MainWindow::showSettings() {
    const auto showReadOnly = [](QLineEdit* field, const QString& text) {
        field->setText(text);
        field->setEnabled(false);
    };
    showReadOnly(lineEditSoundDuration, millisecondsText(data.soundDuration));
    checkBoxSaveData->setChecked(data.saveDataToFile);
    showReadOnly(lineEditSilentInterval, millisecondsText(data.silentInterval));
    showReadOnly(lineEditWavFilePath, data.wavFilePath);
    showReadOnly(lineEditWavFileName, data.wavFileName);
    showReadOnly(lineEditOutputFilePath, data.outputFilePath);
    updateOutputFileName();
    lineEditOutputFileName->setEnabled(false);
    lineEditFrequencyMatched->setEnabled(false);
    spinBoxFileNumber->setValue(data.fileNumber);
    spinBoxFileNumber->setMinimum(1);
    lineEditSubCode->setText(data.subjectCode);
    showReadOnly(lineEditSamplingRate, hertzText(data.samplingRate));
}

void MainWindow::sizeBuffers() {
    soundsPerPresentation = 1;
    // By the count that the settings start with, deliberately, and not by the one computed below.
    targetSamples.resize(data.nPointsToPlot);
    trendTrials.clear();
    trendFrequencies.clear();
    data.nPointsToPlot = sampleCount(data.plotDuration, data.samplingRate);
    pointsWav.resize(data.nPointsToPlot);
    for (QVector<double>* range : {&rangeWav, &rangeFFT, &rangeTrend})
        range->resize(2);
    sizeSpectrum();
}

void MainWindow::getParameters() {
    data.sessionTypeIndex = comboBoxSesType->currentIndex();
    data.soundTypeIndex = comboBoxSoundType->currentIndex();
    data.mainParameterIndex = comboBoxMainParameter->currentIndex();
    data.samplingRate = lineEditSamplingRate->text().toDouble();
    data.soundDuration = secondsFromMillisecondsText(lineEditSoundDuration->text());
    data.silentInterval = secondsFromMillisecondsText(lineEditSilentInterval->text());
    data.saveDataToFile = checkBoxSaveData->isChecked();
    data.wavFilePath = lineEditWavFilePath->text();
    data.wavFileName = lineEditWavFileName->text();
    data.subjectCode = lineEditSubCode->text();
    data.fileNumber = spinBoxFileNumber->value();
    data.outputFilePath = lineEditOutputFilePath->text();
    data.outputFileName = lineEditOutputFileName->text();
    data.nSamples = sampleCount(data.soundDuration, data.samplingRate);
    updateNPointsToPlot();
}
