// What the tests of sound that fails share. Each of them is a program of its own, because a program
// looks for its sound server once.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "subject/SubjectWindow.h"
#include "support/InspectedWindows.h"
#include "support/LogLines.h"
#include "support/SessionDriver.h"
#include "support/SoundServer.h"

#include <QTemporaryDir>

#include <memory>

/// The sound server of the program, not yet started.
testsupport::SoundServer& server();

/// A main window on the screen, its listener, and what it tells and logs.
class FailureBench {
public:
    FailureBench();

    /// Prepares a practice session with a target of that many samples, and starts it. A pause of
    /// 10 ms follows each request. Returns whether the listener's window came.
    bool prepareAndGo(int samples = 400);

    /// The listener asks for a sinusoid; tests that it is told to have started. The listener's
    /// window may be locked for a sound that never ended: what no sound unlocks is asked for as
    /// the window would.
    void request(int frequency);

    /// Tests that these responses are on the disk, though the session goes on.
    void verifyJournal(const QVector<int>& frequencies) const;

    /// Closes the listener's window by its frame, which works in a locked window too, and tests
    /// that the session has ended as ever: these frequencies saved and no longer in a journal, the
    /// output released, the file number advanced, nothing told of a sound's end since the last
    /// request, the main window ready for the next session.
    void endAndVerify(const QVector<int>& frequencies);

    /// Whether the program only waits. A busy loop would take the whole of a processor.
    bool isAtRest() const;

    /// The arguments of soundPlaying so far.
    QVector<int> soundsTold() const;

    QString text(const char* lineEditName);

    QTemporaryDir folder;
    /// The journals' place, so that no other program's are among them.
    const bool hasOwnData = qputenv("XDG_DATA_HOME", folder.path().toUtf8());
    testsupport::LogLines log;
    std::unique_ptr<testsupport::InspectedMainWindow> windowOwner =
        std::make_unique<testsupport::InspectedMainWindow>();
    testsupport::InspectedMainWindow& window = *windowOwner;
    testsupport::SessionDriver session{window};
    QSignalSpy sounds{&window, &MainWindow::soundPlaying};
};
