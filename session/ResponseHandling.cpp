// The main window: answering the listener.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "app/SettingsText.h"
#include "subject/ResponseCode.h"

#include <QDebug>
#include <QLineEdit>
#include <QMessageBox>

void MainWindow::updateMainwindow(int response, int frequency) {
    soundsPlayed = 0;
    switch (response) {
    case PlaySinusoid:
        qDebug("response: %d", response);
        playSinusoidNext = true;
        data.frequencyCurrent = frequency;
        // The session's match lives in the first record, whichever target is played.
        if (!data.records.isEmpty())
            data.records[0].frequencyMatched = frequency;
        genSinusoid();
        schedulePresentation();
        // A request counts as a trial while the trend is updated; then the first trial is the next
        // one again, so that there is always one left to present.
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
        QMessageBox::warning(nullptr, QStringLiteral("Warning"), QStringLiteral("Invalid response"),
                             QMessageBox::Ok);
    }
}

void MainWindow::journalResponses() {
    if (!data.records.isEmpty())
        journal.record(data.records.constFirst().fileName, trendFrequencies);
}

void MainWindow::showThatNothingIsMatchedYet() {
    lineEditFrequencyMatched->setText(QStringLiteral("not started yet"));
}

void MainWindow::updateFrequencyMatched() {
    if (!data.records.isEmpty())
        lineEditFrequencyMatched->setText(hertzText(data.records.constFirst().frequencyMatched));
}
