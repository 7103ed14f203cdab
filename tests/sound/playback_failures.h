// Shared by the tests of failing sounds. Each is a separate program, because a program looks for
// its sound server only once.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Fixture.h"
#include "support/SoundServer.h"
#include "support/TestMain.h"

using SoundSignals = QVector<int>;

/// The sound server of the program, not yet started.
testsupport::SoundServer& server();

/// Runs a test class in a program that uses this sound server only.
template <typename TestClass> int runWithSoundServer(int argc, char** argv) {
    qputenv("PULSE_SERVER", server().address());
    return testsupport::runWithWindows<TestClass>(argc, argv);
}

/// Tests whose sounds fail.
class SoundFailureTest : public testsupport::FixtureTest {
protected:
    /// Prepares and starts a practice session with a target of that many samples; returns
    /// whether the listener's window came.
    bool prepareAndStart(int samples = 400);

    /// The listener asks for a sinusoid; tests that its start is signalled. If the listener's
    /// window is still locked by a sound that never ended, the request is sent by its signal.
    void request(int frequency);

    /// Tests that these responses are on the disk while the session continues.
    void verifyJournal(const QVector<int>& frequencies);

    /// Closes the listener's window by its frame, which works in a locked window too, and tests
    /// that the session has ended normally: these frequencies saved and no longer in a journal, the
    /// output released, no sound's end signalled, the file number advanced, the main window ready
    /// for the next session.
    void endAndVerify(const QVector<int>& frequencies);

    /// Tests that the program only waits. A busy loop would take a whole processor.
    static void verifyAtRest();

    /// Returns whether the listener's window is locked.
    bool isListenerLocked();

    QAudio::State outputState();
};
