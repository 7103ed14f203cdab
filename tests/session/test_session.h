// The test classes of session control, by subject.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Fixture.h"

/// Tests that call the main window's slots, without showing it.
class SessionTest : public testsupport::FixtureTest {
protected:
    /// Prepares a practice on a target of 20 ms, with a pause of 40 ms.
    void preparePractice();

    /// Presses "Go". Returns the listener's window.
    SubjectWindow* go();

    /// Returns everything that a session could change in the main window, one line a value.
    QStringList state();
};

/// The order of presentation (session_sequence.cpp).
class TestTrialSequence : public QObject {
    Q_OBJECT

private slots:
    void filesInOrderOncePerRepetition_data();
    void filesInOrderOncePerRepetition();
    void shuffleFollowsThePlainProcedure_data();
    void shuffleFollowsThePlainProcedure();
    void oneEntryOrNoneDrawsNothing_data();
    void oneEntryOrNoneDrawsNothing();
    void everyOrderOfAShuffleIsEquallyLikely();
    void everyOrderOfRandomTrialsIsEquallyLikely();
    void randomTrialsHoldEveryFileOncePerRepetition_data();
    void randomTrialsHoldEveryFileOncePerRepetition();
    void twoRandomSequencesDiffer();
    void missingRandomDeviceIsReplacedByTheClockAndLogged();
};

/// The settings as "Practice", "Experiment" and "Go" read them (session_settings.cpp).
class TestSessionSettings : public SessionTest {
    Q_OBJECT

private slots:
    void selectionsAreRead();
    void textsAreRead_data();
    void textsAreRead();
    void fileNumberAndSavingAreRead();
    void countsFollowFromDurationAndRate_data();
    void countsFollowFromDurationAndRate();
};

/// "Practice" and "Experiment" (session_preparation.cpp).
class TestSessionPreparation : public SessionTest {
    Q_OBJECT

private slots:
    void buttonsAfterPreparing_data();
    void buttonsAfterPreparing();
    void everythingIsResetBeforeTheTargetIsChosen();
    void theControlsAreReadBeforeTheTargetIsChosen();
    void theSequenceHoldsEveryFileOncePerRepetition();
};

/// "Go" (session_start.cpp).
class TestSessionStart : public SessionTest {
    Q_OBJECT

private slots:
    void theMainWindowIsDisabledAndTheSubjectWindowShown();
    void theControlsAreReadAgain();
    void theFourConnectionsAreMadeOnceAndInOrder();
    void eachConnectionWorks();
    void theFrequenciesAreSentOnceToTheShownWindow();
    void anEarlierWindowStaysHiddenAndConnected();
};

/// The listener's requests (session_responses.cpp).
class TestSessionResponses : public SessionTest {
    Q_OBJECT

private slots:
    void aSinusoidIsMatchedGeneratedAndScheduled();
    void theTargetIsScheduledAndNothingMatched();
    void aSinusoidCountsAsATrialWhileTheTrendIsUpdated();
    void theStartIsOnlyLogged();
    void anInvalidResponseIsReportedAndChangesNothing_data();
    void anInvalidResponseIsReportedAndChangesNothing();
    void soundsPlayedIsResetByEveryResponse_data();
    void soundsPlayedIsResetByEveryResponse();
    void theMatchIsAlwaysInTheFirstRecord();
    void withoutARecordThereIsNoMatch();
    void requestAtALaterPositionIsAnswered();
};

/// The end of a session (session_end.cpp).
class TestSessionEnd : public SessionTest {
    Q_OBJECT

private slots:
    void theMainWindowIsFreedWithoutGo();
    void finishItSavesAndAdvancesOnly();
    void resultsAreSavedBeforeTheNumberAdvances();
    void disableAllComponentsDisablesTheWindow();
    void doNothingDoesNothing();
};
