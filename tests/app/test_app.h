// The test classes of the settings and the main window's assembly; each is defined in the file
// that its comment names.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Fixture.h"

#include <QVariant>

/// Tests that a field or member has its type and value.
void compare(const char* field, const QVariant& actual, const QVariant& expected);

/// The settings and the records (test_app.cpp).
class TestSettings : public QObject {
    Q_OBJECT

private slots:
    void everySettingHasItsDefault();
    void everyFieldOfARecordHasItsDefault();
    void settingsKeepTheirOrder();
    void fieldsOfARecordKeepTheirOrder();
    void foldersFollowTheUserConfiguration();
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
    void textsKeepTheDecimalPointInEveryLocale();
    void conversionsToIntAreLimited_data();
    void conversionsToIntAreLimited();
    void samplesOfADurationAreRoundedDown_data();
    void samplesOfADurationAreRoundedDown();
    void windowIsPlacedOnTheAvailableScreen_data();
    void windowIsPlacedOnTheAvailableScreen();
};

/// The main window as it opens (window.cpp).
class TestMainWindowStart : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void everyWidgetHasTheNameOfItsMember();
    void labelsHaveTheirTexts();
    void fieldsShowTheSettings();
    void buttonsHaveTheirTextsAndStates();
    void saveDataBoxIsCheckedAndEnabled();
    void hiddenSelectionsAreFilledAndOutOfTheWindow();
    void hiddenLabelsAreOutOfTheWindow();
    void fileNumberRangesFromOneToMaximumIntMinusOne();

private:
    void setUp() override;

    testsupport::InspectedMainWindow* window = nullptr; ///< The fixture's.
};

/// How the main window is laid out (layout.cpp).
class TestMainWindowLayout : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void titleIsExact();
    void placementIsFourFifthsByNineTenthsCentered();
    void controlsAreInTheirRows();
    void controlsAndChartsAreSideBySide();
    void elevenRowsAndThreeGridsAreAllInUse();
    void headingIsCenteredWithFixedHeightAndMinimumWidth100();
    void fileNumberTakesTheRemainingWidth();
    void bothWindowsArePlacedTheSameWay_data();
    void bothWindowsArePlacedTheSameWay();

private:
    void setUp() override;

    testsupport::InspectedMainWindow* window = nullptr; ///< The fixture's.
};

/// The members that no widget shows, as they start (members.cpp).
class TestMainWindowMembers : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void membersHaveTheirInitialValues();
    void vectorsAreSizedForTheSettings();
    void fontsAreNormalAndInPixels();
    void audioFormatIsOneChannelOfFloats();
    void initialPlotIsNotLimitedToTheSound();
    void vectorsFollowOtherSettings();
    void shortSoundShortensThePlot();

private:
    void setUp() override;

    testsupport::InspectedMainWindow* window = nullptr; ///< The fixture's.
};

/// Signals, slots and connections of the main window (meta.cpp).
class TestMainWindowConnections : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void methodsHaveTheirIndices();
    void audioStateIsRegisteredForArguments();
    void everySignalIsConnectedOnce_data();
    void everySignalIsConnectedOnce();
    void oneClickOpensOneDialog();

private:
    void setUp() override;

    testsupport::InspectedMainWindow* window = nullptr; ///< The fixture's.
};

/// Opening, closing and destroying the main window, and the program itself (life.cpp).
class TestMainWindowLife : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void openingAndDestroyingWritesNothingOnTheLog();
    void destructorDeletesEverything();
    void destructorDeletesOutputsAndChartsInTheirOrder();
    void openGlDriverIsLoadedOnlyOnRequest_data();
    void openGlDriverIsLoadedOnlyOnRequest();
    void quitClosesTheWindow();
    void windowManagerClosesOnlyTheEnabledWindow();
    void programOpensTheWindowAndEndsWithIt();
    void programReportsAMissingSoundDevice();
    void programReportsLeftoverJournals();
};

/// Use by the keyboard or with a screen reader (access.cpp).
class TestAccess : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void controlsOfTheMainWindowHaveNamesAndDescriptions();
    void labelsOfTheMainWindowNameTheirFields();
    void tabOrderOfTheMainWindowFollowsTheLayout();
    void controlsOfTheSubjectWindowHaveNamesAndDescriptions();
    void tabOrderOfTheSubjectWindowFollowsTheLayout();
    void textsFitAtEveryTextSize_data();
    void textsFitAtEveryTextSize();
};
