// The main window: answering the listener.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "base/NumberTexts.h"
#include "subject/ResponseCode.h"
#include "window/WarningBox.h"

#include <QDebug>
#include <QLineEdit>

void MainWindow::updateMainwindow(int response, int frequency) {
    soundsPlayed = 0;
    switch (response) {
    case PlaySinusoid:
        qDebug("response: %d", response);
        playSinusoidNext = true;
        data.frequencyCurrent = frequency;
        // The session's match lives in the first record, whichever target is played.
        if (Record* record = firstRecord())
            record->frequencyMatched = frequency;
        genSinusoid();
        schedulePresentation();
        // The position counts this trial while the trend is updated, as code that is connected to
        // the trend's axes sees. Then back to 0, so that there is always a trial left to present.
        ++sequencePosition;
        updateTrend();
        sequencePosition = 0;
        // Last, so that the pause before the sound has begun already.
        journalResponses();
        break;
    case PlayTarget:
        qDebug("response: %d", response);
        playSinusoidNext = false;
        schedulePresentation();
        sequencePosition = 0;
        break;
    case SessionStarted:
        qDebug("Test just started");
        break;
    default:
        showWarning(nullptr, QStringLiteral("Invalid response"));
    }
}

/// The record that holds the session's match, or null before a target has been chosen.
Record* MainWindow::firstRecord() {
    return data.records.isEmpty() ? nullptr : data.records.data();
}

/// Appends the match to the data of the trend, the journal and the results file.
void MainWindow::recordResponse(double frequencyMatched) {
    trendTrials.append(data.nResponses);
    trendFrequencies.append(frequencyMatched);
}

void MainWindow::journalResponses() {
    if (const Record* record = firstRecord())
        journal.record(record->fileName, trendFrequencies);
}

void MainWindow::showNoMatchYet() {
    lineEditFrequencyMatched->setText(QStringLiteral("not started yet"));
}

void MainWindow::updateFrequencyMatched() {
    if (const Record* record = firstRecord())
        lineEditFrequencyMatched->setText(hertzText(record->frequencyMatched));
}
