// The test classes of the results file, by subject.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/ExpectedResults.h"
#include "support/FileBytes.h"
#include "support/Fixture.h"

using testsupport::expectedResults;
using testsupport::readBytes;
using testsupport::writeBytes;

/// Tests of a visible main window whose results go to the fixture's folder. The session's target is
/// File001.wav.
class SavingTest : public testsupport::FixtureTest {
protected:
    void setUp() override;

    /// Saves these matches (Hz), as at the end of a session.
    void save(const QVector<double>& frequenciesMatched);
    void saveAgain() { fixture->window().writeDataToTxt(); }

    /// The name that is proposed for the first results.
    QString proposedPath() const { return fixture->pathOf("SUB001_practice001.txt"); }
};

/// The name proposed and the text, without a window (test_results.cpp).
class TestResultsFile : public QObject {
    Q_OBJECT

private slots:
    void proposedName_data();
    void proposedName();
    void frequencyIsWrittenWithSixSignificantDigits_data();
    void frequencyIsWrittenWithSixSignificantDigits();
    void everyFrequencyReadsAsInTheGeneralFormat();
    void noRequestGivesTheHeaderAlone();
    void requestsAreCountedFromOneInTheirOrder();
    void requestNumbersMayHaveSeveralDigits();
    void targetNameIsUnchangedOnEachLine_data();
    void targetNameIsUnchangedOnEachLine();
    void localeWithADecimalCommaKeepsThePoint();
};

/// The name in the main window (results_naming.cpp).
class TestResultsNaming : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void eachInputRenamesTheFile_data();
    void eachInputRenamesTheFile();
    void numberAfterASession_data();
    void numberAfterASession();
    void numberAfterTheMaximumStillFits();
};

/// Saving through the real dialog, and saving that fails (results_saving.cpp).
class TestResultsSaving : public SavingTest {
    Q_OBJECT

private slots:
    void dialogHasItsProperties();
    void dialogIsTranslated();
    void proposalIsFolderAndName_data();
    void proposalIsFolderAndName();
    void fileHoldsHeaderAndOneLineForEachRequest();
    void firstRecordNamesTheTarget();
    void noRecordGivesAnEmptyFile();
    void pathAndNameOfTheChosenFileAreStoredAndNoFieldIsWritten();
    void existingFileIsOverwrittenWithoutAQuestion();
    void namesBeyondAsciiFollowTheLocaleEncoding();
    void missingFolderBecomesADirectoryAtTheFilePath_data();
    void missingFolderBecomesADirectoryAtTheFilePath();
    void cancelledDialogEmptiesPathAndNameAndWarns();
    void warningHasItsProperties();
    void failedSavingKeepsTheDataAndDoesNotAskAgain();
    void secondSavingProposesTheDoubledPath();
    void secondSavingAfterACancelledOneProposesNothing();
    void nameIsReplacedWhenTheNumberAdvances();
    void sessionWithoutASinusoidSavesTheHeaderOnly();
    void nextSessionStartsInTheFolderShown();
};

/// Writing whole files on disks that fail (results_replacement.cpp).
class TestFileReplacement : public QObject {
    Q_OBJECT

private slots:
    void newFileHoldsTheBytes();
    void existingFileIsReplacedWithItsPermissions_data();
    void existingFileIsReplacedWithItsPermissions();
    void emptyContentGivesAnEmptyFile();
    void fileSizeLimitKeepsTheEarlierFile();
    void fileSizeLimitLeavesNoNewFile();
    void fullDiskKeepsTheEarlierFile();
    void diskWithoutRoomForANewFileKeepsTheEarlierOne();
    void readOnlyDiskIsNotOpened();
    void fileInAReadOnlyFolderIsWrittenInPlace();
    void fileOfAnotherUserInASharedFolderIsWrittenInPlace();
    void fileWithoutPermissionIsNotOpened();
    void linkIsFollowed_data();
    void linkIsFollowed();
    void folderOfTheFileItselfIsSynced();
    void deviceStaysADevice();
    void fifoIsNotOpened_data();
    void fifoIsNotOpened();
    void bytesAndNameAreSynced();
    void failedSyncKeepsTheEarlierFile();
    void pathThatCannotBeAFileIsNotOpened_data();
    void pathThatCannotBeAFileIsNotOpened();
    void longestNamesAreWritten_data();
    void longestNamesAreWritten();
};

/// The journal of responses, without a window (results_journal.cpp).
class TestResponseJournal : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void nameComesFromTheResultsFileAndTheStart_data();
    void nameComesFromTheResultsFileAndTheStart();
    void namesFitIntoAnyFolder();
    void folderIsInTheApplicationData();
    void thereIsNoFileBeforeTheFirstResponse();
    void eachResponseIsInTheFileAtOnce();
    void eachResponseIsSynced();
    void onlyTheOwnerMayReadIt();
    void nothingIsRecordedOutsideOfASession();
    void savedResponsesLeaveNoJournal();
    void resultsSavedOverTheJournalAreKept_data();
    void resultsSavedOverTheJournalAreKept();
    void savingOverAHardLinkRemovesTheJournal();
    void fileThatReplacesTheJournalIsKept();
    void journalThatCannotBeRemovedIsReported();
    void keptJournalIsReported();
    void destructorKeepsTheJournal();
    void responsesOfAnEarlierSessionAreKept();
    void sessionsInTheSameSecondHaveSeparateJournals();
    void fullDiskIsReportedOnceAndResponsesAreWrittenLater();
    void lineIsWrittenWholeOrNotAtAll();
    void tornLineThatCannotBeTruncatedIsNoResponse();
    void folderThatCannotBeCreatedIsReportedOnce();
    void failedSyncIsReportedOnceAndRepeatsNothing();
    void leftoverJournalsAreReportedOldestFirst();
    void journalOfARunningSessionIsNotReported();
    void newFoldersAreSynced();

private:
    void setUp() override { folder = &fixture->folder; }

    QTemporaryDir* folder = nullptr; ///< The fixture's.
};

/// Sessions whose results are not saved (results_nothing_lost.cpp).
class TestResultsNothingLost : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void initTestCase();
    void journalHoldsEveryResponseOfTheSession();
    void savedSessionLeavesNoJournal();
    void resultsSavedOverTheirJournalAreKept();
    void unsavedSessionLeavesItsJournal_data();
    void unsavedSessionLeavesItsJournal();
    void destroyedWindowLeavesItsJournal();
    void sessionWithoutSavingHasNoJournal();
    void sessionWithoutAResponseHasNoJournal();
    void nextSessionHasASeparateJournal();
    void targetRequestsAreNotRecorded();
    void slowDiskDoesNotLengthenThePause();
    void journalThatCannotBeWrittenChangesNothing();

private:
    bool start(int pauseMs = 10);
    void respond(int frequency);

    std::unique_ptr<QTemporaryDir> devices; ///< Devices that the tests may damage.
};
