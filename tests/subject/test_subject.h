// The test classes of the listener's window, by subject.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Fixture.h"

#include <functional>

/// The listener's window with every member open.
class OpenSubjectWindow : public testsupport::InspectedSubjectWindow {
public:
    using InspectedSubjectWindow::InspectedSubjectWindow;

    /// The widgets that the listener sees, in the order of their creation.
    QWidgetList widgets() const;
};

/// What a listener, a driver or the main window does to the window.
using WindowAction = std::function<void(OpenSubjectWindow&)>;
Q_DECLARE_METATYPE(WindowAction)

/// Where a listener can be; each stage is reached from the one before.
enum class Stage {
    Waiting,           ///< A new window.
    TargetRequired,    ///< "I am ready" has been pressed.
    TargetRequested,   ///< "Play target" has been pressed.
    TargetPlaying,     ///< The target has started.
    Adjusting,         ///< The target has ended.
    SinusoidRequested, ///< "Play sinusoid" has been pressed.
    SinusoidPlaying,   ///< The sinusoid has started.
    AdjustingWithDone, ///< The sinusoid has ended.
};
Q_DECLARE_METATYPE(Stage)

/// Shows a new window and brings it to a stage by clicks and by the main window's calls.
void bringTo(OpenSubjectWindow& window, Stage stage);

/// The style of a button under the mouse, and of a grey one.
QString expectedHoverStyle();
QString expectedGreyStyle();

/// Collects in order a window's signals and the changes of its widgets: "subjectResponded 4 500",
/// "SubjectWindow disabled", "pushButtonDone shown", ...
class WindowLog : public QObject {
public:
    explicit WindowLog(OpenSubjectWindow& window);

    QStringList lines;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

/// Members, texts, sizes and layout of a new window (test_subject.cpp).
class TestSubjectWindowLook : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void membersStartWithTheirDefaults();
    void widgetsHaveTheirNamesAndTexts();
    void sizePoliciesAndMinimumSizes();
    void spinBoxStyleSheetIsVerbatim();
    void onlyTheSpinBoxStartsWithAStyleSheet();
    void gridCells();
    void gridHoldsNothingElse();
    void labelAndSpinBoxShareARow();
    void verticalLayoutIsUnused();
    void windowIsATopLevelWindowEvenWithAParent();
    void windowIsUsableWhileItsParentIsDisabled();
};

/// Visible and enabled controls at each stage, and the effects of actions (stages.cpp).
class TestSubjectWindowStages : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void visibleAndEnabledAtEachStage_data();
    void visibleAndEnabledAtEachStage();
    void stepsOfEachAction_data();
    void stepsOfEachAction();
    void playSinusoidShowsDoneAndStoresTheFrequencyBeforeItResponds();
    void iAmReadySetsButtonsBeforeTheyAreShown();
    void disabledButtonsTakeNoClick_data();
    void disabledButtonsTakeNoClick();
    void onlyMinusOneUnlocks_data();
    void onlyMinusOneUnlocks();
    void minusOneUnlocksEvenBeforeIAmReady();
    void styleSheetsAtEachStage_data();
    void styleSheetsAtEachStage();
    void labelStaysGrey();
    void choiceButtonsAreEnabledTogether();
    void choiceButtonsAreDisabledTogether();
};

/// Spin box, slider and the frequencies received (frequency.cpp).
class TestSubjectWindowFrequency : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void inputMovesBothControls_data();
    void inputMovesBothControls();
    void setValueMovesBothControls_data();
    void setValueMovesBothControls();
    void eachChangeIsSignalledOnce();
    void playSinusoidSendsWhatBothControlsShow_data();
    void playSinusoidSendsWhatBothControlsShow();
    void typedValuesAreLimitedToTheRange_data();
    void typedValuesAreLimitedToTheRange();
    void receivedParametersReachMembersAndControls_data();
    void receivedParametersReachMembersAndControls();
    void receivedParametersReachTheSpinBoxBeforeTheSlider();
    void receivedValueOutsideTheRangeIsLimitedByTheControlsOnly_data();
    void receivedValueOutsideTheRangeIsLimitedByTheControlsOnly();
    void reversedReceivedRangeCollapses();
    void setSliderParametersAppliesTheMembers();
    void pressingPlaySinusoidOverwritesTheReceivedFrequency();
};

/// The close question and its answers (closing.cpp).
class TestSubjectWindowClosing : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void questionHasItsProperties();
    void questionIsTranslated();
    void answersByEachWayOfClosing_data();
    void answersByEachWayOfClosing();
    void windowManagerClosesAtEveryStage_data();
    void windowManagerClosesAtEveryStage();
    void refusedClosingLeavesTheStageAsItWas_data();
    void refusedClosingLeavesTheStageAsItWas();
    void windowIsStillShownWhenItsClosingIsSignalled();
    void hiddenWindowHasNoPlatformWindow_data();
    void hiddenWindowHasNoPlatformWindow();
    void closedWindowCanBeShownAgain();
    void dialogsCanBeShownAfterAWindowIsReleased();
    void minimisedOrReshownWindowIsNotReleased_data();
    void minimisedOrReshownWindowIsNotReleased();
    void secondCloseRequestAsksNoSecondQuestion();
    void questionCanBeAnsweredDuringASound_data();
    void questionCanBeAnsweredDuringASound();
    void questionCanBeAskedAgain();
    void windowCanBeDestroyedWhileTheQuestionIsOpen();
};

/// The keyboard focus around sounds and questions (keyboard.cpp).
class TestSubjectWindowKeyboard : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void sessionNeedsTheTabKeyForChangesOnly();
    void frequencyControlsKeepTheFocus_data();
    void frequencyControlsKeepTheFocus();
    void halfTypedFrequency_data();
    void halfTypedFrequency();
    void selectedFrequencyIsStillReplacedByTyping();
    void unrequestedSoundKeepsTheFocus();
    void unusableControlGetsNoFocus_data();
    void unusableControlGetsNoFocus();
    void inactiveWindowTakesNoFocus();
    void refusedQuestionRestoresTheFocus_data();
    void refusedQuestionRestoresTheFocus();
    void questionKeepsTheFocusDuringSounds_data();
    void questionKeepsTheFocusDuringSounds();
};

/// Placement, meta-object and destruction (life.cpp).
class TestSubjectWindowLife : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void newWindowCovers70By80PercentOfTheScreenInItsMiddle();
    void methodsHaveTheirIndices();
    void slotsAreNotConnectedByName();
    void destructorDeletesTheMembersInOrder();
    void destructorSetsDeletedMembersToNull();
    void destructorDeletesEverythingAtAnyStage_data();
    void destructorDeletesEverythingAtAnyStage();
};
