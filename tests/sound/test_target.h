// The test classes of choosing and loading a target, by subject; each is defined in the file that
// its comment names.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Fixture.h"

using testsupport::unevenCodes;

/// Returns what 16-bit samples are on the scale of a target.
QVector<double> scaledFrom16Bits(const QVector<int>& codes);

/// Tests of a main window and the files that are chosen in it.
class TargetTest : public testsupport::FixtureTest {
protected:
    using Session = testsupport::Fixture::Session;

    /// Clicks a session button and cancels the dialog; returns what that printed.
    QStringList prepareCancelled(Session kind = Session::Practice);

    /// Shows a match in its field and in the trend.
    void answerOnce();

    /// What preparing a target draws, sizes and shows, one line an item.
    QStringList preparedState();
};

/// The computations that need no window (test_target.cpp).
class TestTargetFunctions : public QObject {
    Q_OBJECT

private slots:
    void samplesPerChannelAreWhole_data();
    void samplesPerChannelAreWhole();
    void durationFollowsTheFilesOwnRate_data();
    void durationFollowsTheFilesOwnRate();
    void usableTargets_data();
    void usableTargets();
    void longestSoundThatAVectorHoldsIsUsable();
    void memoryThatCannotBeHadMakesATargetUnusable();
    void firstChannelIsCopied_data();
    void firstChannelIsCopied();
};

/// The file dialog and the text fields (target_selection.cpp).
class TestTargetSelection : public TargetTest {
    Q_OBJECT

private slots:
    void dialogAsksForOneSoundFileOnTheDesktop_data();
    void dialogAsksForOneSoundFileOnTheDesktop();
    void dialogOpensOnTheDesktopEveryTime();
    void chosenFileBecomesTheOnlyRecord();
    void namesWithBlanksAndUmlautsAreFound_data();
    void namesWithBlanksAndUmlautsAreFound();
    void selectionAloneStoresACancelledDialogLikeAnyChoice();
    void updateWavTextFieldsShowsFolderAndCurrentRecord();
    void updateWavTextFieldsKeepsTheNameWithoutRecords();
    void cancellingWithoutAnEarlierTargetDisablesGo_data();
    void cancellingWithoutAnEarlierTargetDisablesGo();
    void cancellingKeepsWhatAnEarlierTargetHasDrawn_data();
    void cancellingKeepsWhatAnEarlierTargetHasDrawn();
    void preparationAfterACancelledOneSucceeds();
};

/// What a load makes of a good file (target_loading.cpp).
class TestTargetLoading : public TargetTest {
    Q_OBJECT

private slots:
    void countsDurationsAndSizes_data();
    void countsDurationsAndSizes();
    void longerPlotIsCutToTheTarget();
    void spectrumIsDrawnToHalfItsLengthAtMost();
    void timeAxisFollowsTheSettingsRate();
    void threeChannelsGiveSilence();
    void shorterSecondTargetLeavesNoTail();
    void preparingCountsNoSoundsPlayed();
    void laterTrialKeepsTheSizeOfTheTarget_data();
    void laterTrialKeepsTheSizeOfTheTarget();
    void laterTrialOfALongerFileGrowsTheTarget();
    void loadTakesTheRecordThatTheSequenceNames();
    void recordsThatAreNotThereAreRefused_data();
    void recordsThatAreNotThereAreRefused();
    void targetThatChangesAfterItsPreparationIsPlayedAsItWasShown_data();
    void targetThatChangesAfterItsPreparationIsPlayedAsItWasShown();
};

/// Files that cannot be loaded or cannot be a target (target_refusals.cpp).
class TestTargetRefusals : public TargetTest {
    Q_OBJECT

private slots:
    void refusedFileWithoutAnEarlierTargetChangesNothing_data();
    void refusedFileWithoutAnEarlierTargetChangesNothing();
    void refusedFileGoesOnWithTheEarlierTarget_data();
    void refusedFileGoesOnWithTheEarlierTarget();
    void fileThatHasVanishedIsAFailedLoad();
    void failedLoadAfterRefusedAndCancelledOnesGoesOnWithTheLastAccepted();
    void resultsNameTheTargetThatWasPlayed();
    void rateOfTheSettingsThatGivesNoCountRefuses_data();
    void rateOfTheSettingsThatGivesNoCountRefuses();
    void earlierTargetIsJudgedAgainBeforeItIsKept_data();
    void earlierTargetIsJudgedAgainBeforeItIsKept();
    void memoryThatCannotBeHadKeepsTheEarlierTarget();
    void earlierTargetMayTakeTheMemoryOfTheUnusableOne();

private:
    static void refusedFiles();

    QStringList prepareEarlierTarget();
    QString writeTarget(const QByteArray& bytes, qint64 size) const;
    void verifyEarlierKept(const QStringList& before);
    void verifyRefused(const QStringList& before);
};

/// The wait cursor (target_waiting.cpp).
class TestTargetWaiting : public TargetTest {
    Q_OBJECT

private slots:
    void cursorStillWaitsWhenTheChartsAreDrawn();
    void cursorComesBackAfterEveryPreparation_data();
    void cursorComesBackAfterEveryPreparation();
};

/// The pages of memory behind long sounds (target_large_pages.cpp).
class TestTargetLargePages : public TargetTest {
    Q_OBJECT

private slots:
    void initTestCase();
    void wholeLargePagesAreAskedForAndNoOthers();
    void shortMemoryIsLeftAlone();
    void reservedVectorIsEmpty();
    void longTargetLiesOnLargePages();
};
