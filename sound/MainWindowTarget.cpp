// The main window: choosing and loading the target sound.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "base/HugePages.h"
#include "base/NumberTexts.h"
#include "base/Sampling.h"
#include "sound/TargetSamples.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <utility>

namespace {
QString pathOf(const Record& record) {
    return record.filePath + u'/' + record.fileName;
}

void report(const char* message, const Record& record) {
    std::cerr << message << pathOf(record).toStdString() << std::endl;
}
} // namespace

void MainWindow::selectWavFile() {
    bool isAskingAgain = true;
    while (isAskingAgain) {
        data.wavFolder = desktopFolder();
        // A cancelled dialog is stored like any choice: an empty name, which then fails to load.
        chooseTarget(QFileInfo(
            QFileDialog::getOpenFileName(this, QStringLiteral("Select a target sound file"),
                                         data.wavFolder, QStringLiteral("Sound files (*.wav)"))));
        // The dialog returns one file or an empty name, and both become a record. So the question
        // below is never asked; it is kept for a dialog that returns the files of a folder.
        isAskingAgain =
            data.records.isEmpty() &&
            QMessageBox::question(this, QStringLiteral("Question"),
                                  QStringLiteral("This folder contains no .wav files.\n"
                                                 "Do you want to select another folder?"),
                                  QMessageBox::Yes | QMessageBox::No,
                                  QMessageBox::Yes) == QMessageBox::Yes;
    }
}

/// Makes a file the only record and names it in the settings.
void MainWindow::chooseTarget(const QFileInfo& file) {
    data.wavFilePath = file.path();
    data.wavFileName = file.fileName();
    Record record;
    record.filePath = data.wavFilePath;
    record.fileName = data.wavFileName;
    data.records = {record};
    nFiles = data.records.size();
}

void MainWindow::genWav() {
    currentFileIndex = trialSequence.value(sequencePosition);
    if (currentFileIndex >= data.records.size()) {
        refuseTarget();
        return;
    }
    Record& record = data.records[currentFileIndex];
    if (!loadTarget(record)) {
        refuseTarget();
        return;
    }
    // Set again: an earlier target that is kept has another name than the chosen one.
    data.wavFilePath = record.filePath;
    data.wavFileName = record.fileName;
    currentTargetPath = pathOf(record);

    data.nSamples = static_cast<int>(samplesPerChannel(wav));
    data.soundDuration = durationSeconds(wav);
    lineEditSoundDuration->setText(millisecondsText(data.soundDuration));
    updateNPointsToPlot();
    sizeSpectrum();

    const bool isFirstPresentation = sequencePosition == 0 && soundsPlayed == 0;
    if (isFirstPresentation) {
        reserveOnHugePages(targetSamples, static_cast<std::size_t>(data.nSamples));
        targetSamples.resize(data.nSamples);
    }
    copyFirstChannel(wav, data.nSamples, targetSamples);
    if (!isFirstPresentation)
        return;
    timeAxisMs.resize(std::max(data.nPointsToPlot, 0));
    for (int i = 0; i < data.nPointsToPlot; ++i)
        timeAxisMs[i] = i / data.samplingRate * millisecondsPerSecond;
}

/// Loads the file of a record into `wav`. A file that fails to load or cannot be a target leaves
/// the earlier target in use, if there is one that suits the settings, and the record then names
/// that one, so that nothing shown or saved is mislabelled. Returns false, with `wav` and the
/// record unchanged, if there is nothing to play, and always after a cancelled dialog.
bool MainWindow::loadTarget(Record& record) {
    CWav loaded;
    loaded.maximumSamplesPerChannel = maximumSampleCount;
    const bool isLoaded = loaded.LoadWav(pathOf(record).toStdString());
    const bool isCancelled = record.fileName.isEmpty();
    if (isCancelled)
        return false;
    if (isLoaded && isUsableTarget(loaded, data.samplingRate)) {
        wav = std::move(loaded);
        targetInUse = record;
        return true;
    }
    // CWav reports a file that fails to load, but neither one that cannot be a target nor that
    // there is no earlier one.
    if (isLoaded || !targetInUse.has_value())
        report("Unusable WAV file: ", record);
    // The earlier target may need the memory.
    loaded = CWav();
    return keepEarlierTarget(record);
}

/// Makes a record name the target in use. Returns false, with the record as it was, if there is no
/// such target or it does not suit the settings.
bool MainWindow::keepEarlierTarget(Record& record) {
    if (!targetInUse.has_value())
        return false;
    if (!isUsableTarget(wav, data.samplingRate)) {
        report("Unusable WAV file: ", *targetInUse);
        return false;
    }
    record = *targetInUse;
    report("Keeping the earlier target: ", record);
    return true;
}

/// Ends a preparation without target, so that no session can be started.
void MainWindow::refuseTarget() {
    nFiles = 0;
    trialSequence.clear();
    currentFileIndex = 0;
}

void MainWindow::updateWavTextFields() {
    lineEditWavFilePath->setText(data.wavFilePath);
    if (currentFileIndex < data.records.size())
        lineEditWavFileName->setText(data.records[currentFileIndex].fileName);
}
