// The test classes of the settings and the main window's assembly; each is defined in the file
// that its comment names.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/InspectedWindows.h"

#include <QObject>
#include <QVariant>

#include <memory>

/// Adds a row of the columns "actual" and "expected", named after a field or member.
void addRow(const char* field, const QVariant& actual, const QVariant& expected);

/// Tests that both columns of the row have the same type and value.
void compareValueAndType();

/// The settings and the records (test_app.cpp).
class TestSettings : public QObject {
    Q_OBJECT

private slots:
    void everySettingHasItsDefault_data();
    void everySettingHasItsDefault();
    void everyFieldOfARecordHasItsDefault_data();
    void everyFieldOfARecordHasItsDefault();
    void settingsLieInTheirOrder();
    void fieldsOfARecordLieInTheirOrder();
    void foldersAreThoseThatTheUserHasSet();
    void sessionTypesArePracticeAndExperiment();
    void writingToCopiedRecordsLeavesTheOriginals();
};

/// Texts, counts and places that are computed without a window (functions.cpp).
class TestAppFunctions : public QObject {
    Q_OBJECT

private slots:
    void millisecondsHaveTwoDecimals_data();
    void millisecondsHaveTwoDecimals();
    void millisecondsAreReadAsSeconds_data();
    void millisecondsAreReadAsSeconds();
    void hertzHaveSixSignificantDigits_data();
    void hertzHaveSixSignificantDigits();
    void textsKeepThePointWhereOthersWriteAComma();
    void conversionsToIntAreLimited_data();
    void conversionsToIntAreLimited();
    void samplesOfADurationAreRoundedDown_data();
    void samplesOfADurationAreRoundedDown();
    void windowIsPlacedOnTheAvailableScreen_data();
    void windowIsPlacedOnTheAvailableScreen();
    void bothWindowsArePlacedTheSameWay_data();
    void bothWindowsArePlacedTheSameWay();
};

/// What the main window is when it opens (window.cpp).
class TestMainWindowStart : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void everyWidgetCarriesItsMembersName_data();
    void everyWidgetCarriesItsMembersName();
    void labelsHaveTheirTexts_data();
    void labelsHaveTheirTexts();
    void fieldsShowTheSettings_data();
    void fieldsShowTheSettings();
    void buttonsAreAsTheyShouldBe_data();
    void buttonsAreAsTheyShouldBe();
    void onlyPracticeAndQuitAreEnabledButtons();
    void saveDataBoxIsCheckedAndEnabled();
    void hiddenSelectionsAreFilledAndOutOfTheWindow_data();
    void hiddenSelectionsAreFilledAndOutOfTheWindow();
    void hiddenLabelsAreOutOfTheWindow();
    void fileNumberRunsFromOneToTheLastButOneInt();

private:
    std::unique_ptr<testsupport::InspectedMainWindow> window;
};

/// How the main window is laid out (layout.cpp).
class TestMainWindowLayout : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void titleIsExact();
    void placementIsFourFifthsByNineTenthsCentered();
    void controlsLieInTheirRows_data();
    void controlsLieInTheirRows();
    void controlsAndChartsStandSideBySide();
    void elevenRowsAndThreeGridsAreAllInUse();
    void headingIsCenteredLowAndAtLeast100Wide();
    void fileNumberTakesTheWidthThatIsLeft();

private:
    std::unique_ptr<testsupport::InspectedMainWindow> window;
};

/// The members that no widget shows, as they start (members.cpp).
class TestMainWindowMembers : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void membersStartAsTheyShould_data();
    void membersStartAsTheyShould();
    void vectorsAreSizedForTheSettings_data();
    void vectorsAreSizedForTheSettings();
    void fontsAreNormalAndInPixels_data();
    void fontsAreNormalAndInPixels();
    void audioFormatIsOneChannelOfFloats_data();
    void audioFormatIsOneChannelOfFloats();
    void initialPlotIsNotLimitedToTheSound();
    void vectorsFollowOtherSettings();
    void shortSoundShortensThePlot();

private:
    std::unique_ptr<testsupport::InspectedMainWindow> window;
};

/// Signals, slots and connections of the main window (meta.cpp).
class TestMainWindowConnections : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void methodsHaveTheirIndices_data();
    void methodsHaveTheirIndices();
    void audioStateIsRegisteredForArguments_data();
    void audioStateIsRegisteredForArguments();
    void everySignalIsConnectedOnce_data();
    void everySignalIsConnectedOnce();
    void oneClickOpensOneDialog_data();
    void oneClickOpensOneDialog();
    void everyInputRenamesTheOutputFile();
    void doNothingDoesNothing();

private:
    std::unique_ptr<testsupport::InspectedMainWindow> window;
};

/// Opening, closing and destroying the main window, and the program itself (life.cpp).
class TestMainWindowLife : public QObject {
    Q_OBJECT

private slots:
    void openingAndDestroyingWritesNothingOnTheLog();
    void destructorLeavesNothingBehind();
    void destructorDeletesTheChartsInTheirOrder();
    void programLoadsNoDriverThatItDoesNotDrawWith_data();
    void programLoadsNoDriverThatItDoesNotDrawWith();
    void quitClosesTheWindow();
    void closingIsIgnoredWhileTheWindowIsDisabled();
    void windowManagerClosesOnlyTheEnabledWindow();
    void sessionAfter99IsNumbered100();
    void lastFileNumberIsNotLost();
    void programOpensTheWindowAndEndsWithIt();
    void programOpensWithoutASoundDeviceAndSaysSo();
    void programNamesTheResponsesThatWereNotSaved();
};

/// Use without a mouse or without eyes (access.cpp).
class TestAccess : public QObject {
    Q_OBJECT

private slots:
    void mainWindowsControlsHaveNamesAndDescriptions();
    void mainWindowsLabelsNameTheirFields();
    void tabKeyGoesThroughTheMainWindowAsTheEyeDoes();
    void subjectWindowsControlsHaveNamesAndDescriptions();
    void tabKeyGoesThroughTheSubjectWindowAsTheEyeDoes();
    void textsHaveTheRoomTheyTake_data();
    void textsHaveTheRoomTheyTake();
};
