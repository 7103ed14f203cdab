// What the tests of sound that fails share. Each of them is a program of its own, because a program
// looks for its sound server once.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "subject/SubjectWindow.h"
#include "support/InspectedWindows.h"
#include "support/LogLines.h"
#include "support/SessionDriver.h"

#include <QTemporaryDir>

#include <memory>

/// A main window on the screen, its listener, and what it tells and logs.
class FailureBench {
public:
    FailureBench();

    /// Prepares a practice session with a target of that many samples, and starts it. A pause of
    /// 10 ms follows each request.
    void prepareAndGo(int samples = 400);

    /// Closes the listener's window and tests that the session has ended as ever: these frequencies
    /// saved, the output released, the file number advanced, nothing told of a sound's end, the
    /// main window ready for the next session.
    void endAndVerify(const QVector<int>& frequencies);

    /// The arguments of soundPlaying so far.
    QVector<int> soundsTold() const;

    QString text(const char* lineEditName);

    QTemporaryDir folder;
    testsupport::LogLines log;
    std::unique_ptr<testsupport::InspectedMainWindow> windowOwner =
        std::make_unique<testsupport::InspectedMainWindow>();
    testsupport::InspectedMainWindow& window = *windowOwner;
    testsupport::SessionDriver session{window};
    QSignalSpy sounds{&window, &MainWindow::soundPlaying};
};
