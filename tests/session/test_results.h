// The test classes of the results file, by subject.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/DialogDriver.h"
#include "support/InspectedWindows.h"

#include <QObject>
#include <QTemporaryDir>
#include <QTimer>

#include <memory>

/// The main window with the widgets that name and place the results file open as well.
class ResultsWindow : public testsupport::InspectedMainWindow {
public:
    using InspectedMainWindow::InspectedMainWindow;

    using MainWindow::checkBoxSaveData;
    using MainWindow::lineEditOutputFileName;
    using MainWindow::lineEditOutputFilePath;
    using MainWindow::lineEditSubCode;
    using MainWindow::spinBoxFileNumber;
};

/// A main window on the screen, in a session whose results belong into a folder of its own. The
/// session's target is File001.wav.
class SavingWindow {
public:
    explicit SavingWindow(const QVector<double>& frequenciesMatched = {});

    QString folder() const { return temporaryFolder.path(); }
    QString path(const QString& name) const { return temporaryFolder.filePath(name); }

    /// What the experimenter sees as the path and name of the results file.
    QString shownPath() const;
    QString shownName() const;

    ResultsWindow window;
    testsupport::DialogDriver dialogs;

private:
    /// Closes a dialog that has stood open for so long that nothing will answer it, and fails the
    /// test.
    static void closeForgottenDialog();

    QTimer forgottenDialogs;
    QTemporaryDir temporaryFolder;
};

/// Returns what a file with these lines of fields holds, its header line included.
QByteArray expectedResults(const QString& targetFileName, const QStringList& frequencyTexts);

/// The name proposed and the text, without a window (test_results.cpp).
class TestResultsText : public QObject {
    Q_OBJECT

private slots:
    void proposedName_data();
    void proposedName();
    void frequencyIsWrittenWithSixSignificantDigits_data();
    void frequencyIsWrittenWithSixSignificantDigits();
    void everyFrequencyReadsAsInTheGeneralFormat();
    void noRequestGivesTheHeaderAlone();
    void requestsAreCountedFromOneInTheirOrder();
    void requestsBeyondNineAndNinetyNineAreCountedOn();
    void targetNameStandsOnEachLineAsItIs_data();
    void targetNameStandsOnEachLineAsItIs();
    void localeWithADecimalCommaKeepsThePoint();
};

/// The name in the main window (results_naming.cpp).
class TestResultsNaming : public QObject {
    Q_OBJECT

private slots:
    void nameAtTheStart();
    void eachInputRenamesTheFile_data();
    void eachInputRenamesTheFile();
    void eachSlotStoresItsValueAndRenamesTheFile_data();
    void eachSlotStoresItsValueAndRenamesTheFile();
    void nameFollowsSessionTypeNumberAndCodeTogether();
    void fileNumberGoesFrom1To2147483646();
    void numberAfterASession_data();
    void numberAfterASession();
    void numberAfterTheLastOneStillFits();
};

/// Saving through the real dialog (results_saving.cpp).
class TestResultsSaving : public QObject {
    Q_OBJECT

private slots:
    void dialogAsksAsLaidDown();
    void dialogIsTranslated();
    void proposalIsFolderSlashName_data();
    void proposalIsFolderSlashName();
    void fileHoldsHeaderAndOneLineForEachRequest();
    void firstRecordNamesTheTarget();
    void noRequestGivesTheHeaderLineOnly();
    void noRecordGivesAnEmptyFile();
    void pathAndNameOfTheChosenFileAreStoredAndNoFieldIsWritten();
    void existingFileIsOverwrittenWithoutAQuestion();
    void namesBeyondAsciiFollowTheLocalesEncoding();
    void localeWithADecimalCommaKeepsThePoint();
};

/// Writing whole files on disks that fail (results_replacement.cpp).
class TestFileReplacement : public QObject {
    Q_OBJECT

private slots:
    void newFileHoldsTheBytes();
    void existingFileIsReplacedWithItsPermissions_data();
    void existingFileIsReplacedWithItsPermissions();
    void nothingToWriteGivesAnEmptyFile();
    void fileThatCannotGrowKeepsTheEarlierOne();
    void newFileThatCannotGrowLeavesNothing();
    void fullDiskKeepsTheEarlierFile();
    void diskWithoutRoomForAFurtherFileKeepsTheEarlierOne();
    void readOnlyDiskIsNotOpened();
    void folderThatTakesNoFileHasItsFileWrittenInPlace();
    void somebodyElsesFileInASharedFolderIsWrittenInPlace();
    void fileWithoutPermissionIsNotOpened();
    void linkIsFollowed_data();
    void linkIsFollowed();
    void folderOfTheFileItselfIsSynced();
    void deviceStaysADevice();
    void fifoIsNotOpened_data();
    void fifoIsNotOpened();
    void bytesAndNameAreSynced();
    void diskThatFailsWhenItIsSyncedKeepsTheEarlierFile();
    void pathThatCannotBeAFileIsNotOpened_data();
    void pathThatCannotBeAFileIsNotOpened();
    void longestNamesAreWritten_data();
    void longestNamesAreWritten();
};

/// The journal of responses, without a window (results_journal.cpp).
class TestResponseJournal : public QObject {
    Q_OBJECT

private slots:
    void init();
    void nameComesFromTheResultsFileAndTheStart_data();
    void nameComesFromTheResultsFileAndTheStart();
    void namesFitIntoAnyFolder();
    void folderLiesInTheApplicationsData();
    void thereIsNoFileBeforeTheFirstResponse();
    void eachResponseIsInTheFileAtOnce();
    void eachResponseIsSynced();
    void onlyTheOwnerMayReadIt();
    void nothingIsRecordedOutsideOfASession();
    void savedResponsesLeaveNoJournal();
    void resultsInTheJournalsPlaceStay_data();
    void resultsInTheJournalsPlaceStay();
    void savingOverAHardLinkRemovesTheJournal();
    void fileThatHasTakenTheJournalsPlaceStays();
    void journalThatCannotBeRemovedIsNamed();
    void keptResponsesAreNamed();
    void responsesAreKeptWhenTheJournalGoes();
    void responsesOfAnEarlierSessionAreKept();
    void sessionsOfTheSameSecondHaveTheirOwn();
    void fullDiskCostsOneLineAndIsMadeUpFor();
    void lineIsWrittenWholeOrNotAtAll();
    void tornLineThatCannotBeTakenBackIsNoResponse();
    void folderThatCannotBeMadeCostsOneLine();
    void failedSyncCostsOneLineAndRepeatsNothing();
    void keptJournalsAreNamedOldestFirst();
    void journalOfARunningSessionIsNotNamed();
    void newFoldersAreSynced();

private:
    std::unique_ptr<QTemporaryDir> folder;
};

/// Sessions whose results are not saved (results_nothing_lost.cpp).
class TestResultsNothingLost : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void journalHoldsEveryResponseOfTheSession();
    void savedSessionLeavesNoJournal();
    void resultsSavedOnTheirJournalStay();
    void unsavedSessionLeavesItsJournal_data();
    void unsavedSessionLeavesItsJournal();
    void windowThatGoesLeavesItsJournal();
    void sessionThatIsNotToBeSavedHasNoJournal();
    void sessionWithoutAResponseHasNoJournal();
    void nextSessionHasAJournalOfItsOwn();
    void subjectCodeMayBeAnything_data();
    void subjectCodeMayBeAnything();
    void targetRequestsAreNotRecorded();
    void slowDiskTakesNothingFromThePause();
    void journalThatCannotBeWrittenChangesNothing();
    void fullDiskKeepsTheEarlierResultsAndTheJournal();

private:
    std::unique_ptr<QTemporaryDir> devices; ///< That the tests may break.
};

/// Saving that fails, saving twice, and whole sessions (results_road.cpp).
class TestResultsRoad : public QObject {
    Q_OBJECT

private slots:
    void missingFolderBecomesADirectoryOfTheFilesOwnPath_data();
    void missingFolderBecomesADirectoryOfTheFilesOwnPath();
    void cancelledDialogEmptiesPathAndNameAndWarns();
    void unwritableLocationWarnsWithTheNameTwice_data();
    void unwritableLocationWarnsWithTheNameTwice();
    void warningIsAsLaidDown();
    void fullDiskIsReported();
    void failedSavingKeepsTheDataAndDoesNotAskAgain();
    void secondSavingProposesTheDoubledPath();
    void secondSavingAfterACancelledOneProposesNothing();
    void goReadsTheFolderFromItsFieldAgain();
    void nameIsReplacedWhenTheNumberAdvances();
    void numberAdvancesWhenSavingFails();
    void sessionWithoutASinusoidSavesTheHeaderOnly();
    void nextSessionStartsInTheFolderShown();
};
