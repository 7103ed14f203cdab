// The listener's window: members, texts, sizes and layout of a new one.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_subject.h"

#include "support/GridCell.h"
#include "support/TestMain.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>

#include <array>
#include <tuple>

QWidgetList OpenSubjectWindow::widgets() const {
    return {pushButtonPlayTarget, labelCurrentValue,  spinBoxFrequency, pushButtonPlaySinusoid,
            sliderFrequency,      pushButtonIAmReady, pushButtonDone};
}

void bringTo(OpenSubjectWindow& window, Stage stage) {
    const auto press = [](QPushButton* button) { QTest::mouseClick(button, Qt::LeftButton); };
    constexpr int lastSoundHasEnded = -1;
    window.show();
    if (stage >= Stage::TargetRequired)
        press(window.pushButtonIAmReady);
    if (stage >= Stage::TargetRequested)
        press(window.pushButtonPlayTarget);
    if (stage >= Stage::TargetPlaying)
        window.updateSubjectWindow(1);
    if (stage >= Stage::Adjusting)
        window.updateSubjectWindow(lastSoundHasEnded);
    if (stage >= Stage::SinusoidRequested)
        press(window.pushButtonPlaySinusoid);
    if (stage >= Stage::SinusoidPlaying)
        window.updateSubjectWindow(1);
    if (stage >= Stage::AdjustingWithDone)
        window.updateSubjectWindow(lastSoundHasEnded);
}

QString expectedHoverStyle() {
    return QStringLiteral(
        "QPushButton:hover {background-color: rgb(0, 255, 255); border: 1px solid blue;}");
}

QString expectedGreyStyle() {
    return QStringLiteral("QPushButton {background-color: rgb(190, 190, 190); border: none;} ");
}

WindowLog::WindowLog(OpenSubjectWindow& window) {
    window.installEventFilter(this);
    for (QWidget* widget : window.widgets())
        widget->installEventFilter(this);
    connect(&window, &SubjectWindow::subjectResponded, this, [this](int response, int frequency) {
        lines.append(QStringLiteral("subjectResponded %1 %2").arg(response).arg(frequency));
    });
    connect(&window, &SubjectWindow::subjectWindowClosed, this,
            [this] { lines.append(QStringLiteral("subjectWindowClosed")); });
}

bool WindowLog::eventFilter(QObject* watched, QEvent* event) {
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (event->type() == QEvent::EnabledChange && widget->isWindow())
        lines.append(widget->objectName() + (widget->isEnabled() ? " enabled" : " disabled"));
    else if (event->type() == QEvent::ShowToParent && !widget->isWindow())
        lines.append(widget->objectName() + " shown");
    else if (event->type() == QEvent::HideToParent && !widget->isWindow())
        lines.append(widget->objectName() + " hidden");
    else if (event->type() == QEvent::StyleChange && qobject_cast<const QPushButton*>(widget))
        lines.append(widget->objectName() + " styled " + widget->styleSheet());
    return false;
}

void TestSubjectWindowLook::membersStartWithTheirDefaults() {
    const OpenSubjectWindow window;
    QCOMPARE(window.reserved, 0);
    QCOMPARE(window.frequencyMin, 10);
    QCOMPARE(window.frequencyMax, 1000);
    QCOMPARE(window.frequencyCurrent, 500);
    QCOMPARE(window.frequencyStepSize, 1);
    QCOMPARE(window.colourMinimum, 0);
    QCOMPARE(window.colourMaximum, 255);
    QVERIFY((window.colourGrey == std::array<int, 3>{240, 240, 240}));
    QVERIFY((window.colourWhite == std::array<int, 3>{255, 255, 255}));
    QVERIFY(window.isCentered);
    QVERIFY(window.widthRatio == 0.7);
    QVERIFY(window.heightRatio == 0.8);
    QCOMPARE(window.windowTitle(), QStringLiteral("Vantaro Lab | Pellion (v014) | Subject Window"));
}

void TestSubjectWindowLook::widgetsHaveTheirNamesAndTexts() {
    const OpenSubjectWindow window;
    QStringList widgets;
    for (const QWidget* widget : window.widgets()) {
        widgets.append(widget->objectName() + ": " + widget->property("text").toString());
        QCOMPARE(window.findChildren<QWidget*>(widget->objectName()).size(), 1);
    }
    QCOMPARE(widgets, QStringList({"pushButtonPlayTarget: Play target",
                                   "labelCurrentValue: Current Value", "spinBoxFrequency: 500",
                                   "pushButtonPlaySinusoid: Play sinusoid", "sliderFrequency: ",
                                   "pushButtonIAmReady: I am ready", "pushButtonDone: Done"}));
    for (const QObject* control : {static_cast<QObject*>(window.spinBoxFrequency),
                                   static_cast<QObject*>(window.sliderFrequency)}) {
        QCOMPARE(control->property("minimum").toInt(), 10);
        QCOMPARE(control->property("maximum").toInt(), 1000);
        QCOMPARE(control->property("value").toInt(), 500);
        QCOMPARE(control->property("singleStep").toInt(), 1);
    }
    QCOMPARE(window.sliderFrequency->orientation(), Qt::Vertical);
    QCOMPARE(window.labelCurrentValue->alignment(), Qt::AlignRight | Qt::AlignVCenter);
}

void TestSubjectWindowLook::sizePoliciesAndMinimumSizes() {
    const OpenSubjectWindow window;
    const auto expanding = QSizePolicy::Expanding;
    const auto fixed = QSizePolicy::Fixed;
    const std::tuple<QWidget*, QSizePolicy, QSize> expected[] = {
        {window.pushButtonPlayTarget, {expanding, expanding}, {0, 0}},
        {window.pushButtonPlaySinusoid, {expanding, expanding}, {0, 0}},
        {window.pushButtonIAmReady, {expanding, expanding}, {0, 0}},
        {window.spinBoxFrequency, {expanding, fixed}, {0, 200}},
        {window.sliderFrequency, {fixed, expanding}, {100, 0}},
        {window.pushButtonDone, {expanding, fixed}, {0, 100}}};
    for (const auto& [widget, policy, minimumSize] : expected) {
        QCOMPARE(widget->sizePolicy().horizontalPolicy(), policy.horizontalPolicy());
        QCOMPARE(widget->sizePolicy().verticalPolicy(), policy.verticalPolicy());
        QCOMPARE(widget->minimumSize(), minimumSize);
    }
}

void TestSubjectWindowLook::spinBoxStyleSheetIsVerbatim() {
    // Each direction: the arrow and the arrow under the mouse, then its button in the same way.
    const QString arrow = QStringLiteral("QSpinBox::%1-arrow%2 { border-left: 17px solid none; "
                                         "border-right: 17px solid none; border-%3: 17px solid "
                                         "black; width: 0px; height: 0px; }");
    const QString button = QStringLiteral("QSpinBox::%1-button%2 { width: 60px; height: 100px; "
                                          "background-color: rgb(%3); }");
    QString expected;
    for (const auto& [direction, edge] : {std::tuple("up", "bottom"), std::tuple("down", "top")}) {
        expected += arrow.arg(direction, "", edge) + arrow.arg(direction, ":hover", edge);
        expected += button.arg(direction, "", "190, 190, 190") +
                    button.arg(direction, ":hover", "0, 255, 255");
    }
    constexpr int lengthOfTheEightRules = 141 + 147 + 89 + 93 + 140 + 146 + 91 + 95;
    QCOMPARE(expected.size(), lengthOfTheEightRules);
    const OpenSubjectWindow window;
    QCOMPARE(window.spinBoxFrequency->styleSheet(), expected);
}

void TestSubjectWindowLook::onlyTheSpinBoxStartsWithAStyleSheet() {
    const OpenSubjectWindow window;
    for (const QWidget* widget : window.widgets())
        QCOMPARE(widget->styleSheet().isEmpty(), widget != window.spinBoxFrequency);
    QCOMPARE(window.styleSheet(), QString());
}

void TestSubjectWindowLook::gridCells() {
    using testsupport::cellOf;
    const OpenSubjectWindow window;
    const QGridLayout& grid = *window.layoutWindow;
    QCOMPARE(cellOf(grid, window.pushButtonPlayTarget), QRect(0, 0, 1, 2));
    QCOMPARE(cellOf(grid, window.layoutFrequency), QRect(1, 0, 1, 1));
    QCOMPARE(cellOf(grid, window.pushButtonPlaySinusoid), QRect(1, 1, 1, 1));
    QCOMPARE(cellOf(grid, window.sliderFrequency), QRect(2, 0, 1, 2));
    QCOMPARE(cellOf(grid, window.pushButtonIAmReady), QRect(1, 0, 2, 1));
    QCOMPARE(cellOf(grid, window.pushButtonDone), QRect(0, 2, 4, 1));
}

void TestSubjectWindowLook::gridHoldsNothingElse() {
    const OpenSubjectWindow window;
    QCOMPARE(window.centralWidget(), window.widgetCentral);
    QCOMPARE(window.widgetCentral->layout(), window.layoutWindow);
    QCOMPARE(window.layoutWindow->count(), 6);
    QCOMPARE(window.layoutWindow->rowCount(), 3);
    QCOMPARE(window.layoutWindow->columnCount(), 4);
}

void TestSubjectWindowLook::labelAndSpinBoxShareARow() {
    const OpenSubjectWindow window;
    QCOMPARE(window.layoutFrequency->count(), 2);
    QCOMPARE(window.layoutFrequency->itemAt(0)->widget(), window.labelCurrentValue);
    QCOMPARE(window.layoutFrequency->itemAt(1)->widget(), window.spinBoxFrequency);
}

void TestSubjectWindowLook::verticalLayoutIsUnused() {
    const OpenSubjectWindow window;
    QVERIFY(window.layoutUnused != nullptr);
    QCOMPARE(window.layoutUnused->count(), 0);
    QVERIFY(window.layoutUnused->parent() == nullptr);
}

void TestSubjectWindowLook::windowIsATopLevelWindowEvenWithAParent() {
    QWidget parent;
    const OpenSubjectWindow window(&parent);
    QCOMPARE(window.parentWidget(), &parent);
    QVERIFY(window.isWindow());
    QCOMPARE(window.windowModality(), Qt::NonModal);
    QVERIFY(window.isHidden());
}

void TestSubjectWindowLook::windowIsUsableWhileItsParentIsDisabled() {
    QWidget parent;
    parent.show();
    parent.setEnabled(false);
    OpenSubjectWindow window(&parent);
    bringTo(window, Stage::AdjustingWithDone);
    QVERIFY(window.pushButtonDone->isVisible());
    QVERIFY(window.pushButtonDone->isEnabled());
}

int main(int argc, char** argv) {
    return testsupport::runWithWindows<TestSubjectWindowLook, TestSubjectWindowStages,
                                       TestSubjectWindowFrequency, TestSubjectWindowClosing,
                                       TestSubjectWindowKeyboard, TestSubjectWindowLife>(argc,
                                                                                         argv);
}
