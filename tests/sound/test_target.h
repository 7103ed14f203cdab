// The test classes of choosing and loading a target, by subject; each is defined in the file that
// its comment names.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Fixture.h"

using testsupport::unevenCodes;

/// Returns 16-bit samples on the scale of a target.
QVector<double> scaledFrom16Bits(const QVector<int>& codes);

/// Tests of a main window and the files that are chosen in it.
class TargetTest : public testsupport::FixtureTest {
protected:
    using Session = testsupport::Fixture::Session;

    /// Clicks a session button and cancels the dialog; returns what that printed.
    QStringList prepareCancelled(Session kind = Session::Practice);

    /// Shows a match in its field and in the trend.
    void answerOnce();

    /// The state that preparing a target changes, one line an item.
    QStringList preparedState();
};

/// The computations that need no window (test_target.cpp).
class TestTargetFunctions : public QObject {
    Q_OBJECT

private slots:
    void samplesPerChannelAreWhole_data();
    void samplesPerChannelAreWhole();
    void durationFollowsTheRateOfTheFile_data();
    void durationFollowsTheRateOfTheFile();
    void usableTargets_data();
    void usableTargets();
    void longestSoundThatAVectorHoldsIsUsable();
    void lackOfMemoryMakesATargetUnusable();
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
    void selectWavFileStoresACancelledDialogLikeAnyChoice();
    void updateWavTextFieldsShowsFolderAndCurrentRecord();
    void updateWavTextFieldsKeepsTheNameWithoutRecords();
    void cancellingWithoutAnEarlierTargetDisablesGo_data();
    void cancellingWithoutAnEarlierTargetDisablesGo();
    void cancellingKeepsTheEarlierCharts_data();
    void cancellingKeepsTheEarlierCharts();
    void preparationAfterACancelledOneSucceeds();
};

/// Loading valid files (target_loading.cpp).
class TestTargetLoading : public TargetTest {
    Q_OBJECT

private slots:
    void countsDurationsAndSizes_data();
    void countsDurationsAndSizes();
    void longerPlotIsCutToTheTarget();
    void spectrumIsDrawnUpToHalfItsLength();
    void timeAxisFollowsTheRateOfTheSettings();
    void threeChannelsGiveSilence();
    void shorterSecondTargetLeavesNoTail();
    void preparingCountsNoSoundsPlayed();
    void laterTrialKeepsTheSizeOfTheTarget_data();
    void laterTrialKeepsTheSizeOfTheTarget();
    void laterTrialOfALongerFileGrowsTheTarget();
    void loadUsesTheRecordOfTheSequence();
    void missingRecordsAreRefused_data();
    void missingRecordsAreRefused();
    void fileChangedAfterPreparationDoesNotChangeTheTarget_data();
    void fileChangedAfterPreparationDoesNotChangeTheTarget();
};

/// Files that cannot be loaded or cannot be a target (target_refusals.cpp).
class TestTargetRefusals : public TargetTest {
    Q_OBJECT

private slots:
    void refusedFileWithoutAnEarlierTargetChangesNothing_data();
    void refusedFileWithoutAnEarlierTargetChangesNothing();
    void refusedFileKeepsTheEarlierTarget_data();
    void refusedFileKeepsTheEarlierTarget();
    void missingFileIsAFailedLoad();
    void failedLoadKeepsTheLastAcceptedTarget();
    void resultsNameTheTargetThatWasPlayed();
    void samplingRateWithoutAValidCountRefuses_data();
    void samplingRateWithoutAValidCountRefuses();
    void earlierTargetIsCheckedAgainBeforeItIsKept_data();
    void earlierTargetIsCheckedAgainBeforeItIsKept();
    void lackOfMemoryKeepsTheEarlierTarget();
    void earlierTargetMayUseTheMemoryOfTheUnusableOne();

private:
    static void refusedFiles();

    QStringList prepareEarlierTarget();
    QString writeTarget(const QByteArray& bytes, qint64 size) const;
    void verifyEarlierKept(const QStringList& before);
    void verifyRefused(const QStringList& before);
};

/// The wait cursor, and clicks made meanwhile (target_waiting.cpp).
class TestTargetWaiting : public TargetTest {
    Q_OBJECT

private slots:
    void waitCursorIsShownWhileTheChartsAreDrawn();
    void waitCursorEndsAfterEveryPreparation_data();
    void waitCursorEndsAfterEveryPreparation();
    void clickOnGreyGoIsNotDeliveredLater();
};

/// The memory of long sounds (target_huge_pages.cpp).
class TestTargetHugePages : public TargetTest {
    Q_OBJECT

private slots:
    void initTestCase();
    void onlyWholeHugePagesAreRequested();
    void shortMemoryGetsNoHugePages();
    void reservedVectorIsEmpty();
    void longTargetUsesHugePages();
};
