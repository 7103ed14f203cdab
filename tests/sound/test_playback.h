// The test classes of playing sounds, by subject; each is defined in the file that its comment
// names.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Fixture.h"
#include "support/HeardSounds.h"

using testsupport::CutSound;
using testsupport::findCutSound;
using testsupport::heardFrom;
using testsupport::heardSinusoid;
using testsupport::isAudible;
using testsupport::unevenCodes;

using SoundSignals = QVector<int>;
Q_DECLARE_METATYPE(Qt::TimerType)

/// Tests of sounds, in sessions whose results are not saved.
class PlaybackTest : public testsupport::FixtureTest {
protected:
    void setUp() override;

    /// Prepares a practice session with a target of these 16-bit samples.
    void prepare(const QVector<int>& codes);
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
    void silenceFollowsTheBytes_data();
    void silenceFollowsTheBytes();
    void soundsAreHeardCompletely_data();
    void soundsAreHeardCompletely();
};

/// Members before, while and after a sound (playback_members.cpp).
class TestPlaybackMembers : public PlaybackTest {
    Q_OBJECT

private slots:
    void genSinusoidResizesOnlyBeforeTheFirstSound_data();
    void genSinusoidResizesOnlyBeforeTheFirstSound();
    void genSinusoidTakesTheSettings();
    void outputExistsFromStartToIdle_data();
    void outputExistsFromStartToIdle();
    void bytesHoldTheDueSound_data();
    void bytesHoldTheDueSound();
    void shorterBuffersArePaddedWithZeros_data();
    void shorterBuffersArePaddedWithZeros();
    void sinusoidsShowTheMatchAndCount();
    void silenceFollowsASound_data();
    void silenceFollowsASound();
    void secondSoundOfARequestIsEmptyAndCountsTwo();
    void otherStatesChangeNothing_data();
    void otherStatesChangeNothing();
    void idleReleasesAndSignalsTheEndOfTheLastSoundOnly_data();
    void idleReleasesAndSignalsTheEndOfTheLastSoundOnly();
    void stoppedWithoutAnErrorLogsNothing();
    void requestsAreScheduled_data();
    void requestsAreScheduled();
    void playWavSchedulesWhileTrialsAreLeft();

private:
    void prepareSamples(int samples = 400);
    bool isAnythingHeld() const;
    bool isEverythingHeld() const;
};

/// What the sound device receives (playback_heard.cpp).
class TestPlaybackHeard : public PlaybackTest {
    Q_OBJECT

private slots:
    void targets_data();
    void targets();
    void lengths_data();
    void lengths();
    void sinusoids();
    void fullScaleIsNotClipped();
    void emptySecondSoundCutsTheFirst();
    void unexpectedSoundReplacesThePlayingOne();
    void stalledProgramReportsAnEarlyEnd();
};

/// The order and times of signals and sounds (playback_times.cpp).
class TestPlaybackTimes : public PlaybackTest {
    Q_OBJECT

private slots:
    void soundStartsExactlyAfterThePause_data();
    void soundStartsExactlyAfterThePause();
    void pauseIsHeardBetweenTheSounds();
    void startAndEndAreSignalledAroundTheSound();
    void matchedFrequencyChangesWhenTheSinusoidStarts();
};

/// Sessions and windows that end before their sound (playback_cancelled.cpp).
class TestPlaybackCancelled : public PlaybackTest {
    Q_OBJECT

private slots:
    void subjectWindowClosedWhileASoundIsPending_data();
    void subjectWindowClosedWhileASoundIsPending();
    void subjectWindowClosedWhileASoundPlays_data();
    void subjectWindowClosedWhileASoundPlays();
    void unconfirmedClosingCancelsNothing();
    void mainWindowDestroyedWhileASoundIsPending();
    void mainWindowDestroyedWhileASoundPlays();
    void mainWindowDestroyedRightAfterACancelledSession();

private:
    static void waysToClose();

    bool startWith(int samples);
    void closeListener(bool byItsButton, const QStringList& matches);
    void verifyCut();
    void verifyNextSession();
};
