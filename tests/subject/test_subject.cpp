// The listener's window: members, texts, sizes and layout of a new one.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_subject.h"

#include "support/LogLines.h"
#include "support/TestMain.h"

#include <QApplication>
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

void TestSubjectWindowLook::membersStartWithTheirDefaults_data() {
    const OpenSubjectWindow window;
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("expected");
    QTest::newRow("unread int") << double(window.reserved) << 0.0;
    QTest::newRow("frequencyMin") << double(window.frequencyMin) << 10.0;
    QTest::newRow("frequencyMax") << double(window.frequencyMax) << 1000.0;
    QTest::newRow("frequencyCurrent") << double(window.frequencyCurrent) << 500.0;
    QTest::newRow("frequencyStepSize") << double(window.frequencyStepSize) << 1.0;
    QTest::newRow("colour value 1") << double(window.colourLeast) << 0.0;
    QTest::newRow("colour value 2") << double(window.colourMost) << 255.0;
    QTest::newRow("isCentered") << double(window.isCentered) << 1.0;
    QTest::newRow("widthRatio") << window.widthRatio << 0.7;
    QTest::newRow("heightRatio") << window.heightRatio << 0.8;
}

void TestSubjectWindowLook::membersStartWithTheirDefaults() {
    QFETCH(double, value);
    QFETCH(double, expected);
    QVERIFY2(value == expected, qPrintable(QString::number(value)));
}

void TestSubjectWindowLook::coloursAreDeclared() {
    const OpenSubjectWindow window;
    QVERIFY((window.colourGrey == std::array<int, 3>{240, 240, 240}));
    QVERIFY((window.colourWhite == std::array<int, 3>{255, 255, 255}));
}

void TestSubjectWindowLook::titleIsSet() {
    const OpenSubjectWindow window;
    QCOMPARE(window.windowTitle(), QStringLiteral("Vantaro Lab | Pellion (v014) | Subject Window"));
}

void TestSubjectWindowLook::textsOfButtonsAndLabel_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::newRow("play target") << "pushButtonPlayTarget"
                                 << "Play target";
    QTest::newRow("label") << "labelCurrentValue"
                           << "Current Value";
    QTest::newRow("play sinusoid") << "pushButtonPlaySinusoid"
                                   << "Play sinusoid";
    QTest::newRow("I am ready") << "pushButtonIAmReady"
                                << "I am ready";
    QTest::newRow("done") << "pushButtonDone"
                          << "Done";
}

void TestSubjectWindowLook::textsOfButtonsAndLabel() {
    QFETCH(QString, name);
    QFETCH(QString, text);
    const OpenSubjectWindow window;
    const auto* widget = window.findChild<QWidget*>(name);
    QVERIFY(widget != nullptr);
    QCOMPARE(widget->property("text").toString(), text);
}

void TestSubjectWindowLook::widgetsCarryTheirMembersNames_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("name");
    const std::array names = {"pushButtonPlayTarget",   "labelCurrentValue", "spinBoxFrequency",
                              "pushButtonPlaySinusoid", "sliderFrequency",   "pushButtonIAmReady",
                              "pushButtonDone"};
    int index = 0;
    for (const char* name : names)
        QTest::newRow(name) << index++ << QString(name);
}

void TestSubjectWindowLook::widgetsCarryTheirMembersNames() {
    QFETCH(int, index);
    QFETCH(QString, name);
    const OpenSubjectWindow window;
    QCOMPARE(window.widgets().at(index)->objectName(), name);
    QCOMPARE(window.findChildren<QWidget*>(name).size(), 1);
}

void TestSubjectWindowLook::spinBoxAndSliderStartAt500From10To1000InStepsOf1() {
    const OpenSubjectWindow window;
    for (QObject* control : {static_cast<QObject*>(window.spinBoxFrequency),
                             static_cast<QObject*>(window.sliderFrequency)}) {
        QCOMPARE(control->property("minimum").toInt(), 10);
        QCOMPARE(control->property("maximum").toInt(), 1000);
        QCOMPARE(control->property("value").toInt(), 500);
        QCOMPARE(control->property("singleStep").toInt(), 1);
    }
}

void TestSubjectWindowLook::sliderIsVertical() {
    const OpenSubjectWindow window;
    QCOMPARE(window.sliderFrequency->orientation(), Qt::Vertical);
}

void TestSubjectWindowLook::labelIsAlignedRightAndVerticallyCentred() {
    const OpenSubjectWindow window;
    QCOMPARE(window.labelCurrentValue->alignment(), Qt::AlignRight | Qt::AlignVCenter);
}

void TestSubjectWindowLook::sizePoliciesAndMinimumSizes_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("horizontal");
    QTest::addColumn<int>("vertical");
    QTest::addColumn<QSize>("minimumSize");
    const int expanding = QSizePolicy::Expanding;
    const int fixed = QSizePolicy::Fixed;
    for (const char* name :
         {"pushButtonPlayTarget", "pushButtonPlaySinusoid", "pushButtonIAmReady"})
        QTest::newRow(name) << QString(name) << expanding << expanding << QSize(0, 0);
    QTest::newRow("spin box") << "spinBoxFrequency" << expanding << fixed << QSize(0, 200);
    QTest::newRow("slider") << "sliderFrequency" << fixed << expanding << QSize(100, 0);
    QTest::newRow("done") << "pushButtonDone" << expanding << fixed << QSize(0, 100);
}

void TestSubjectWindowLook::sizePoliciesAndMinimumSizes() {
    QFETCH(QString, name);
    QFETCH(int, horizontal);
    QFETCH(int, vertical);
    QFETCH(QSize, minimumSize);
    const OpenSubjectWindow window;
    const auto* widget = window.findChild<QWidget*>(name);
    QVERIFY(widget != nullptr);
    QCOMPARE(int(widget->sizePolicy().horizontalPolicy()), horizontal);
    QCOMPARE(int(widget->sizePolicy().verticalPolicy()), vertical);
    QCOMPARE(widget->minimumSize(), minimumSize);
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

void TestSubjectWindowLook::gridCells_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QRect>("cell"); // x is the column, y the row.
    const auto cell = [](int row, int column, int rows, int columns) {
        return QRect(column, row, columns, rows);
    };
    QTest::newRow("play target") << "pushButtonPlayTarget" << cell(0, 0, 2, 1);
    QTest::newRow("label and spin box") << "" << cell(0, 1, 1, 1);
    QTest::newRow("play sinusoid") << "pushButtonPlaySinusoid" << cell(1, 1, 1, 1);
    QTest::newRow("slider") << "sliderFrequency" << cell(0, 2, 2, 1);
    QTest::newRow("I am ready") << "pushButtonIAmReady" << cell(0, 1, 1, 2);
    QTest::newRow("done") << "pushButtonDone" << cell(2, 0, 1, 4);
}

void TestSubjectWindowLook::gridCells() {
    QFETCH(QString, name);
    QFETCH(QRect, cell);
    const OpenSubjectWindow window;
    auto* const grid = qobject_cast<QGridLayout*>(window.centralWidget()->layout());
    QVERIFY(grid != nullptr);
    int index = 0;
    for (; index < grid->count(); ++index)
        if (name.isEmpty() ? grid->itemAt(index)->layout() == window.layoutFrequency
                           : grid->itemAt(index)->widget() == window.findChild<QWidget*>(name))
            break;
    QVERIFY(index < grid->count());
    int row = 0;
    int column = 0;
    int rowSpan = 0;
    int columnSpan = 0;
    grid->getItemPosition(index, &row, &column, &rowSpan, &columnSpan);
    QCOMPARE(QRect(column, row, columnSpan, rowSpan), cell);
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

void TestSubjectWindowLook::nothingReachesTheLog() {
    const testsupport::LogLines log;
    {
        OpenSubjectWindow window;
        bringTo(window, Stage::AdjustingWithDone);
        QVERIFY(QTest::qWaitForWindowExposed(&window));
    }
    QCOMPARE(log.all(), QStringList());
}

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    return testsupport::runAll<TestSubjectWindowLook, TestSubjectWindowStages,
                               TestSubjectWindowFrequency, TestSubjectWindowClosing,
                               TestSubjectWindowKeyboard, TestSubjectWindowLife>(argc, argv);
}
