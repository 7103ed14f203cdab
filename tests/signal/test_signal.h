// The test class of the signal library's warning boxes.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/DialogDriver.h"

#include <QMessageBox>
#include <QObject>

#include <memory>

/// The boxes that the library shows in a program with widgets.
class TestSignalBoxes : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aWarningIsOneBox_data();
    void aWarningIsOneBox();
    void nothingToWarnOfShowsNoBox_data();
    void nothingToWarnOfShowsNoBox();
    void theRampWaitsForTheBoxAndGoesOn_data();
    void theRampWaitsForTheBoxAndGoesOn();
    void aBoxClosedByItsFrameGoesOnAsWell();
    void oneNumberIsDrawnAfterTheBox();
    void manyNumbersAreSeededAfterTheBox();
    void outsideTheWindowsThreadAWarningIsALine();

private:
    std::unique_ptr<testsupport::DialogDriver> dialogs;
};
