// The test classes of playing sounds, by subject; each is defined in the file that its comment
// names.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/HeardSounds.h"
#include "support/InspectedWindows.h"
#include "support/LogLines.h"
#include "support/SessionDriver.h"
#include "support/SoundRecorder.h"
#include "support/WavBytes.h"

#include <QObject>
#include <QTemporaryDir>

using testsupport::heardFrom;
using testsupport::heardSinusoid;
using testsupport::unevenCodes;

/// A main window on the screen, its listener, what it tells and logs, and a recorder.
class PlaybackBench {
public:
    PlaybackBench();

    /// Prepares a practice session with a file of these bytes, or of these 16-bit samples.
    void prepare(const QByteArray& wavFile);
    void prepare(const QVector<int>& codes);

    /// Sets the silent interval so that this pause (ms) follows each request. It is negative for
    /// long sounds, whose own length is part of the pause.
    void setPause(double milliseconds);

    /// "Go" and "I am ready"; returns whether the listener's window came.
    bool go();

    /// Ends the session at the listener's window, where nothing is to be saved.
    void finish();

    /// The arguments of soundPlaying so far.
    QVector<int> soundsTold() const;

    /// What is wrong with everything recorded until silence follows; empty when it is these
    /// sounds and nothing else.
    QString wrongInRecording(const QVector<QVector<float>>& soundsExpected) const;

    /// Unexpected dialogs, dialogs that did not come, and warnings on the log.
    QString complaints();

    QTemporaryDir folder;
    testsupport::LogLines log;
    std::unique_ptr<testsupport::InspectedMainWindow> windowOwner =
        std::make_unique<testsupport::InspectedMainWindow>();
    testsupport::InspectedMainWindow& window = *windowOwner;
    testsupport::SessionDriver session{window};
    testsupport::SoundRecorder recorder;
    QSignalSpy sounds{&window, &MainWindow::soundPlaying};
};

/// The computations that need no window (test_playback.cpp).
class TestPlaybackFunctions : public QObject {
    Q_OBJECT

private slots:
    void pauses_data();
    void pauses();
    void sinusoidsFollowTheFormula_data();
    void sinusoidsFollowTheFormula();
    void sinusoidAt1000HertzPeaksAtSample10();
    void sinusoidStaysInItsBounds_data();
    void sinusoidStaysInItsBounds();
    void bytesAreLittleEndianFloats_data();
    void bytesAreLittleEndianFloats();
    void bytesOfHalfASecond();
    void silenceFollowsTheBytes_data();
    void silenceFollowsTheBytes();
    void soundsAreHeardWhole_data();
    void soundsAreHeardWhole();
};

/// Members before, while and after a sound (playback_members.cpp).
class TestPlaybackMembers : public QObject {
    Q_OBJECT

private slots:
    void audioFormat_data();
    void audioFormat();
    void nothingIsThereBeforeASound();
    void genSinusoidSizesOnlyBeforeTheFirstSound_data();
    void genSinusoidSizesOnlyBeforeTheFirstSound();
    void genSinusoidTakesTheSettings();
    void outputLivesFromStartToIdle_data();
    void outputLivesFromStartToIdle();
    void sizeOfTheBytesFollowsTheSamples();
    void bytesAreTheSoundThatIsDue_data();
    void bytesAreTheSoundThatIsDue();
    void shorterBuffersArePaddedWithZeros_data();
    void shorterBuffersArePaddedWithZeros();
    void sinusoidsShowTheMatchAndCount();
    void silenceFollowsASound_data();
    void silenceFollowsASound();
    void secondSoundOfARequestIsEmptyAndCountsTwo();
    void stateThatChangesNothing_data();
    void stateThatChangesNothing();
    void idleReleasesAndTellsTheEndOfTheLastSoundOnly_data();
    void idleReleasesAndTellsTheEndOfTheLastSoundOnly();
    void stoppedWithoutAnErrorLogsNothing();
    void requestsAreScheduled_data();
    void requestsAreScheduled();
    void playWavSchedulesWhileTrialsAreLeft();
    void playWavPlays();
};

/// What the sound device receives (playback_heard.cpp).
class TestPlaybackHeard : public QObject {
    Q_OBJECT

private slots:
    void targets_data();
    void targets();
    void lengths_data();
    void lengths();
    void sinusoids();
    void fullScaleIsNotClipped();
    void emptySecondSoundCutsTheFirst();
    void soundOutOfTurnReplacesTheOneThatPlays();
    void programThatStopsFeedingReportsAnEarlyEnd();
};

/// The order of what is told, and when (playback_times.cpp).
class TestPlaybackTimes : public QObject {
    Q_OBJECT

private slots:
    void soundStartsExactlyAfterThePause_data();
    void soundStartsExactlyAfterThePause();
    void pauseIsHeardBetweenTheSounds();
    void startAndEndAreToldAroundTheSound();
    void matchedFrequencyChangesWhenTheSinusoidStarts();
    void listenersWindowIsLockedFromRequestToEnd();
};

/// Sessions and windows that end before their sound (playback_cancelled.cpp).
class TestPlaybackCancelled : public QObject {
    Q_OBJECT

private slots:
    void listenersWindowClosedWhileASoundIsPending_data();
    void listenersWindowClosedWhileASoundIsPending();
    void listenersWindowClosedWhileASoundPlays_data();
    void listenersWindowClosedWhileASoundPlays();
    void closingThatIsNotConfirmedCancelsNothing();
    void mainWindowDestroyedWhileASoundIsPending();
    void mainWindowDestroyedWhileASoundPlays();
    void mainWindowDestroyedRightAfterACancelledSession();

private:
    static void waysToClose();
};
