// The test classes of session control, by subject, and the window that they work on.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/DialogDriver.h"
#include "support/InspectedWindows.h"
#include "support/LogLines.h"

#include <QTemporaryDir>

#include <memory>

/// A main window that notes which of its own signals get connected.
class ObservedMainWindow : public testsupport::InspectedMainWindow {
public:
    using QObject::receivers;

    QStringList connectedSignals; ///< In the order of connection, since construction.

protected:
    void connectNotify(const QMetaMethod& signal) override;
};

/// A main window, what it logs, and somebody who answers its dialogs.
struct SessionBench {
    /// Writes a mono 16-bit target whose samples are 1, 2, 3 ...; returns its path.
    QString target(const QString& fileName, int sampleCount = 800,
                   quint32 samplingRate = 40000) const;

    /// Prepares a practice on a target of 20 ms and shortens the silence, for quick sounds.
    void preparePractice();

    /// Presses "Go". Returns the listener's window.
    SubjectWindow* go();

    /// Everything that a session could change in the main window, one line a value.
    QStringList state();

    /// What the program has put on the log, without what the X server had to say.
    QStringList logged() const;

    /// What went wrong with dialogs and connections. Empties it.
    QStringList complaints();

    QTemporaryDir folder;
    testsupport::LogLines log;
    ObservedMainWindow window;
    testsupport::DialogDriver dialogs;
};

/// A fresh bench for each test, and a look at its complaints afterwards.
class SessionTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

protected:
    std::unique_ptr<SessionBench> bench;
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
    void withoutARandomDeviceTheClockServesAndTheLogTells();
};

/// The settings as "Practice", "Experiment" and "Go" read them (session_settings.cpp).
class TestSessionSettings : public SessionTest {
    Q_OBJECT

private slots:
    void selectionsAreRead_data();
    void selectionsAreRead();
    void textsAreRead_data();
    void textsAreRead();
    void fileNumberAndSavingAreRead();
    void countsFollowFromDurationAndRate_data();
    void countsFollowFromDurationAndRate();
    void inputsAreStoredAndRenameTheFile_data();
    void inputsAreStoredAndRenameTheFile();
    void theSubjectCodeNamesTheFile();
    void theFileNumberNamesTheFile_data();
    void theFileNumberNamesTheFile();
};

/// "Practice" and "Experiment" (session_preparation.cpp).
class TestSessionPreparation : public SessionTest {
    Q_OBJECT

private slots:
    void buttonsAfterPreparing_data();
    void buttonsAfterPreparing();
    void aPreparedExperimentCanBecomeAPractice();
    void aPreparedPracticeLocksTheExperimentUntilTheSessionEnds();
    void everythingIsResetBeforeTheTargetIsChosen();
    void theControlsAreReadBeforeTheTargetIsChosen();
    void aChosenTargetIsDrawnAndNamed();
    void preparingAgainEmptiesTheTrend();
    void cancellingLeavesOneNamelessRecordAndOneFile();
    void aCancelledPreparationChangesNothingThatIsShown();
    void aCancelledPreparationDisablesGo();
    void aShorterTargetLeavesNothingOfTheLonger();
    void theSequenceHoldsEveryFileOncePerRepetition_data();
    void theSequenceHoldsEveryFileOncePerRepetition();
    void membersStartAsLaidDown();
};

/// "Go" (session_start.cpp).
class TestSessionStart : public SessionTest {
    Q_OBJECT

private slots:
    void theMainWindowIsDisabledAndTheListenersShown();
    void theControlsAreReadAgain();
    void theDurationTextDecidesHowMuchIsPlayed_data();
    void theDurationTextDecidesHowMuchIsPlayed();
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
    void thePauseIsSoundAndSilence_data();
    void thePauseIsSoundAndSilence();
    void theMatchIsAlwaysInTheFirstRecord();
    void noRecordNoMatch();
    void noTrialsNoPresentation_data();
    void noTrialsNoPresentation();
    void aLaterPositionIsAnsweredToo();
    void theFieldShowsSixDigits_data();
    void theFieldShowsSixDigits();
    void theFieldChangesWhenTheSoundStarts();
};

/// The end of a session (session_end.cpp).
class TestSessionEnd : public SessionTest {
    Q_OBJECT

private slots:
    void theFileNumberAdvances_data();
    void theFileNumberAdvances();
    void theMainWindowIsFreedWithoutGo();
    void finishItSavesAndAdvancesOnly();
    void resultsAreSavedBeforeTheNumberAdvances();
    void session99IsFollowedBySession100();
    void theLargestFileNumberStillHasANext();
    void aPendingPresentationIsCancelled_data();
    void aPendingPresentationIsCancelled();
    void aPlayingSoundIsReleasedSilently();
    void theMainWindowStaysOpenDuringASession();
    void disableAllComponentsDisablesTheWindow();
    void doNothingDoesNothing();
};
