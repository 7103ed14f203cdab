// The test classes of choosing and loading a target, by subject; each is defined in the file that
// its comment names.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/InspectedWindows.h"
#include "support/LogLines.h"
#include "support/SessionDriver.h"
#include "support/StreamCapture.h"
#include "support/WavBytes.h"

#include <QObject>
#include <QTemporaryDir>

#include <iostream>
#include <string>

using testsupport::errorsOf;
using testsupport::unevenCodes;

/// Returns what 16-bit samples are on the scale of a target.
QVector<double> scaledFrom16Bits(const QVector<int>& codes);

/// A main window on the screen, somebody who chooses files, and a folder for these.
class TargetBench {
public:
    using Session = testsupport::SessionDriver::Session;

    TargetBench();

    /// Writes a file and returns its path.
    QString write(const QString& name, const QByteArray& bytes) const;

    /// Writes a mono file of 16 bits and returns its path.
    QString write(const QString& name, const QVector<int>& codes, quint32 samplingRate = 40000,
                  quint16 channelCount = 1) const;

    /// Clicks a session button and chooses the file, or cancels the dialog; returns what standard
    /// error was given.
    std::string prepare(const QString& path, Session kind = Session::Practice);
    std::string prepareCancelled(Session kind = Session::Practice);

    QString text(const char* lineEditName);
    bool isEnabled(const char* buttonName);

    /// What preparing a target draws, sizes and shows, one line an item.
    QStringList preparedState() const;

    /// Unexpected dialogs, dialogs that did not come, and warnings on the log.
    QString complaints();

    QTemporaryDir folder;
    testsupport::LogLines log;
    testsupport::InspectedMainWindow window;
    testsupport::SessionDriver session{window};
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
class TestTargetSelection : public QObject {
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
class TestTargetLoading : public QObject {
    Q_OBJECT

private slots:
    void countsDurationsAndSizes_data();
    void countsDurationsAndSizes();
    void longerPlotIsCutToTheTarget();
    void spectrumIsDrawnToHalfItsLengthAtMost();
    void timeAxisFollowsTheSettingsRate();
    void bothChannelsGiveTheLeftOne();
    void threeChannelsGiveSilence();
    void bitDepthsAreScaled_data();
    void bitDepthsAreScaled();
    void filesOfOtherPrograms_data();
    void filesOfOtherPrograms();
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
class TestTargetRefusals : public QObject {
    Q_OBJECT

private slots:
    void failedLoadWithoutAnEarlierTargetIsRefused_data();
    void failedLoadWithoutAnEarlierTargetIsRefused();
    void failedLoadGoesOnWithTheEarlierTarget_data();
    void failedLoadGoesOnWithTheEarlierTarget();
    void fileThatHasVanishedIsAFailedLoad();
    void failedLoadAfterRefusedAndCancelledOnesGoesOnWithTheLastAccepted();
    void resultsNameTheTargetThatWasPlayed();
    void unusableTargetChangesNothing_data();
    void unusableTargetChangesNothing();
    void unusableTargetGoesOnWithTheEarlierTarget_data();
    void unusableTargetGoesOnWithTheEarlierTarget();
    void rateOfTheSettingsThatGivesNoCountRefuses_data();
    void rateOfTheSettingsThatGivesNoCountRefuses();
    void earlierTargetIsJudgedAgainBeforeItIsKept_data();
    void earlierTargetIsJudgedAgainBeforeItIsKept();
    void memoryThatCannotBeHadKeepsTheEarlierTarget();
    void earlierTargetMayTakeTheMemoryOfTheUnusableOne();

private:
    static void unusableTargets();
    static void failingFiles();
};

/// The wait cursor (target_waiting.cpp).
class TestTargetWaiting : public QObject {
    Q_OBJECT

private slots:
    void cursorStillWaitsWhenTheChartsAreDrawn();
    void cursorComesBackOnEveryRoad_data();
    void cursorComesBackOnEveryRoad();
};

/// The pages of memory behind long sounds (target_large_pages.cpp).
class TestTargetLargePages : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void wholeLargePagesAreAskedForAndNoOthers();
    void shortMemoryIsLeftAlone();
    void reservedVectorIsEmpty();
    void longTargetLiesOnLargePages();
};
