// The listener's window: visible and enabled controls at each stage, and the effects of actions.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_subject.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QTest>

#include <QLabel>

#include <functional>

namespace {

/// Letters for the widgets in the order of their creation: play Target, Label, spin Box,
/// play Sinusoid, sliDer, i am Ready, dOne.
const QString letters = QStringLiteral("TLBSDRO");

struct StageRow {
    const char* title = nullptr;
    Stage stage{};
    const char* visible = nullptr;
    bool isWindowEnabled = false;
    const char* enabled = nullptr; ///< Apart from the window, which disables them all.
};

// "I am ready" and "Done" are hidden, never disabled.
constexpr StageRow stageRows[] = {
    {"waiting for the listener", Stage::Waiting, "R", true, "TLBSDRO"},
    {"target required", Stage::TargetRequired, "TLBSD", true, "TRO"},
    {"target requested", Stage::TargetRequested, "TLBSD", false, "TRO"},
    {"target playing", Stage::TargetPlaying, "TLBSD", false, "RO"},
    {"adjusting", Stage::Adjusting, "TLBSD", true, "TBSDRO"},
    {"sinusoid requested", Stage::SinusoidRequested, "TLBSDO", false, "TBSDRO"},
    {"sinusoid playing", Stage::SinusoidPlaying, "TLBSDO", false, "BDRO"},
    {"adjusting with Done", Stage::AdjustingWithDone, "TLBSDO", true, "TBSDRO"},
};

/// A widget's name and style sheet as one text.
QString styled(const char* name, const QString& styleSheet) {
    return QLatin1String(name) + QStringLiteral(" styled ") + styleSheet;
}

void click(QWidget* button) {
    QTest::mouseClick(button, Qt::LeftButton);
}

} // namespace

Q_DECLARE_METATYPE(StageRow)

void TestSubjectWindowStages::visibleAndEnabledAtEachStage_data() {
    QTest::addColumn<StageRow>("row");
    for (const StageRow& row : stageRows)
        QTest::newRow(row.title) << row;
}

void TestSubjectWindowStages::visibleAndEnabledAtEachStage() {
    QFETCH(StageRow, row);
    OpenSubjectWindow window;
    bringTo(window, row.stage);
    QString visible;
    QString enabled;
    QString enabledApartFromTheWindow;
    for (int i = 0; i < letters.size(); ++i) {
        const QWidget* widget = window.widgets().at(i);
        visible += widget->isVisible() ? letters.mid(i, 1) : QString();
        enabled += widget->isEnabled() ? letters.mid(i, 1) : QString();
        enabledApartFromTheWindow += widget->isEnabledTo(&window) ? letters.mid(i, 1) : QString();
    }
    QCOMPARE(visible, QString(row.visible));
    QCOMPARE(enabledApartFromTheWindow, QString(row.enabled));
    QCOMPARE(enabled, QString(row.isWindowEnabled ? row.enabled : ""));
    QCOMPARE(window.isEnabled(), row.isWindowEnabled);
    QVERIFY(window.isVisible());
}

void TestSubjectWindowStages::stepsOfEachAction_data() {
    QTest::addColumn<Stage>("stage");
    QTest::addColumn<WindowAction>("action");
    QTest::addColumn<QStringList>("steps");
    const QString disabled = QStringLiteral("SubjectWindow disabled");
    const QString enabled = QStringLiteral("SubjectWindow enabled");
    const WindowAction playTarget = [](auto& window) { click(window.pushButtonPlayTarget); };
    const WindowAction playSinusoid = [](auto& window) { click(window.pushButtonPlaySinusoid); };
    const WindowAction soundStarts = [](auto& window) { window.updateSubjectWindow(1); };
    const WindowAction soundEnds = [](auto& window) { window.updateSubjectWindow(-1); };
    const QStringList unlocking = {styled("pushButtonPlaySinusoid", expectedGreyStyle()),
                                   styled("pushButtonPlayTarget", expectedHoverStyle()),
                                   styled("pushButtonPlaySinusoid", expectedHoverStyle()), enabled};

    QTest::newRow("I am ready") << Stage::Waiting << WindowAction([](auto& window) {
        click(window.pushButtonIAmReady);
    })
                                << QStringList{disabled,
                                               "pushButtonPlayTarget shown",
                                               "labelCurrentValue shown",
                                               "spinBoxFrequency shown",
                                               "pushButtonPlaySinusoid shown",
                                               "sliderFrequency shown",
                                               "pushButtonIAmReady hidden",
                                               styled("pushButtonPlayTarget", expectedHoverStyle()),
                                               enabled};
    QTest::newRow("play target") << Stage::TargetRequired << playTarget
                                 << QStringList{disabled, "subjectResponded 2 0"};
    QTest::newRow("play target again")
        << Stage::AdjustingWithDone << playTarget << QStringList{disabled, "subjectResponded 2 0"};
    QTest::newRow("first sinusoid")
        << Stage::Adjusting << playSinusoid
        << QStringList{disabled, "pushButtonDone shown",
                       styled("pushButtonDone", expectedHoverStyle()), "subjectResponded 4 500"};
    QTest::newRow("further sinusoid")
        << Stage::AdjustingWithDone << playSinusoid
        << QStringList{disabled, styled("pushButtonDone", expectedHoverStyle()),
                       "subjectResponded 4 500"};
    QTest::newRow("sound starts") << Stage::TargetRequested << soundStarts << QStringList();
    QTest::newRow("sound ends") << Stage::TargetPlaying << soundEnds << unlocking;
    QTest::newRow("sound starts unasked")
        << Stage::Adjusting << soundStarts << QStringList{disabled};
    QTest::newRow("sound ends in an unlocked window")
        << Stage::Adjusting << soundEnds << (QStringList(disabled) + unlocking);
}

void TestSubjectWindowStages::stepsOfEachAction() {
    QFETCH(Stage, stage);
    QFETCH(WindowAction, action);
    QFETCH(QStringList, steps);
    OpenSubjectWindow window;
    bringTo(window, stage);
    const WindowLog log(window);
    action(window);
    QCOMPARE(log.lines, steps);
}

void TestSubjectWindowStages::playSinusoidShowsDoneAndStoresTheFrequencyBeforeItResponds() {
    OpenSubjectWindow window;
    bringTo(window, Stage::Adjusting);
    window.spinBoxFrequency->setValue(640);
    QCOMPARE(window.frequencyCurrent, 500);
    int responses = 0;
    connect(&window, &SubjectWindow::subjectResponded, this, [&](int response, int frequency) {
        ++responses;
        QCOMPARE(response, 4);
        QCOMPARE(frequency, 640);
        QCOMPARE(window.frequencyCurrent, 640);
        QVERIFY(window.pushButtonDone->isVisible());
        QVERIFY(window.pushButtonDone->isEnabledTo(&window));
        QVERIFY(!window.isEnabled());
    });
    click(window.pushButtonPlaySinusoid);
    QCOMPARE(responses, 1);
}

void TestSubjectWindowStages::iAmReadySetsButtonsBeforeTheyAreShown() {
    OpenSubjectWindow window;
    window.disableAllChoiceButtons();
    bringTo(window, Stage::TargetRequired);
    QVERIFY(window.pushButtonPlayTarget->isEnabled());
    QVERIFY(!window.pushButtonPlaySinusoid->isEnabled());
}

void TestSubjectWindowStages::disabledButtonsTakeNoClick_data() {
    visibleAndEnabledAtEachStage_data();
}

void TestSubjectWindowStages::disabledButtonsTakeNoClick() {
    QFETCH(StageRow, row);
    OpenSubjectWindow window;
    bringTo(window, row.stage);
    const WindowLog log(window);
    for (int i = 0; i < letters.size(); ++i) {
        if (row.isWindowEnabled && QString(row.enabled).contains(letters[i]))
            continue;
        QWidget* widget = window.widgets().at(i);
        click(widget);
        QTest::keyClick(widget, Qt::Key_Space);
        QTest::keyClick(widget, Qt::Key_Up);
        QVERIFY2(log.lines.isEmpty(), qPrintable(widget->objectName() + log.lines.join(u' ')));
    }
    QCOMPARE(window.spinBoxFrequency->value(), 500);
    QCOMPARE(window.sliderFrequency->value(), 500);
}

void TestSubjectWindowStages::onlyMinusOneUnlocks_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("isUnlocked");
    QTest::newRow("-1") << -1 << true;
    for (const int index :
         {0, 1, 2, 3, -2, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        QTest::addRow("%d", index) << index << false;
}

void TestSubjectWindowStages::onlyMinusOneUnlocks() {
    QFETCH(int, index);
    QFETCH(bool, isUnlocked);
    OpenSubjectWindow window;
    bringTo(window, Stage::AdjustingWithDone);
    window.updateSubjectWindow(index);
    QCOMPARE(window.isEnabled(), isUnlocked);
    QCOMPARE(window.pushButtonPlayTarget->isEnabledTo(&window), isUnlocked);
    QCOMPARE(window.pushButtonPlaySinusoid->isEnabledTo(&window), isUnlocked);
    // These two are locked by the window alone.
    QVERIFY(window.spinBoxFrequency->isEnabledTo(&window));
    QVERIFY(window.sliderFrequency->isEnabledTo(&window));
    QCOMPARE(window.pushButtonDone->isEnabled(), isUnlocked);
}

void TestSubjectWindowStages::minusOneUnlocksEvenBeforeIAmReady() {
    OpenSubjectWindow window;
    bringTo(window, Stage::Waiting);
    window.updateSubjectWindow(1);
    QVERIFY(!window.isEnabled());
    window.updateSubjectWindow(-1);
    QVERIFY(window.isEnabled());
    QVERIFY(window.pushButtonIAmReady->isVisible());
    QVERIFY(!window.pushButtonPlayTarget->isVisible());
}

void TestSubjectWindowStages::styleSheetsAtEachStage_data() {
    QTest::addColumn<Stage>("stage");
    QTest::addColumn<QString>("ofPlayTarget");
    QTest::addColumn<QString>("ofPlaySinusoid");
    QTest::addColumn<QString>("ofDone");
    const QString hover = expectedHoverStyle();
    const QString none;
    QTest::newRow("waiting") << Stage::Waiting << none << none << none;
    QTest::newRow("target required") << Stage::TargetRequired << hover << none << none;
    QTest::newRow("target playing") << Stage::TargetPlaying << hover << none << none;
    QTest::newRow("adjusting") << Stage::Adjusting << hover << hover << none;
    QTest::newRow("sinusoid requested") << Stage::SinusoidRequested << hover << hover << hover;
    QTest::newRow("sinusoid playing") << Stage::SinusoidPlaying << hover << hover << hover;
    QTest::newRow("adjusting with Done") << Stage::AdjustingWithDone << hover << hover << hover;
}

void TestSubjectWindowStages::styleSheetsAtEachStage() {
    QFETCH(Stage, stage);
    OpenSubjectWindow window;
    bringTo(window, stage);
    QTEST(window.pushButtonPlayTarget->styleSheet(), "ofPlayTarget");
    QTEST(window.pushButtonPlaySinusoid->styleSheet(), "ofPlaySinusoid");
    QTEST(window.pushButtonDone->styleSheet(), "ofDone");
    QCOMPARE(window.pushButtonIAmReady->styleSheet(), QString());
}

void TestSubjectWindowStages::labelStaysGrey() {
    OpenSubjectWindow window;
    bringTo(window, Stage::AdjustingWithDone);
    window.enableAllChoiceButtons();
    QVERIFY(window.labelCurrentValue->isVisible());
    QVERIFY(!window.labelCurrentValue->isEnabled());
}

void TestSubjectWindowStages::choiceButtonsAreEnabledTogether() {
    OpenSubjectWindow window;
    bringTo(window, Stage::TargetPlaying);
    window.enableAllChoiceButtons();
    QVERIFY(window.pushButtonPlayTarget->isEnabledTo(&window));
    QVERIFY(window.pushButtonPlaySinusoid->isEnabledTo(&window));
    QVERIFY(!window.spinBoxFrequency->isEnabledTo(&window));
    QVERIFY(!window.sliderFrequency->isEnabledTo(&window));
    QVERIFY(!window.isEnabled());
}

void TestSubjectWindowStages::choiceButtonsAreDisabledTogether() {
    OpenSubjectWindow window;
    bringTo(window, Stage::AdjustingWithDone);
    window.disableAllChoiceButtons();
    QVERIFY(!window.pushButtonPlayTarget->isEnabled());
    QVERIFY(!window.pushButtonPlaySinusoid->isEnabled());
    QVERIFY(window.spinBoxFrequency->isEnabled());
    QVERIFY(window.sliderFrequency->isEnabled());
    QVERIFY(window.pushButtonDone->isEnabled());
    QVERIFY(window.isEnabled());
}
