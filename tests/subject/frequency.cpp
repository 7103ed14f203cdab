// The listener's window: spin box, slider and the frequencies received.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_subject.h"

#include <QApplication>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QStyleOptionSlider>
#include <QTest>
#include <QWheelEvent>

#include <array>
#include <functional>

namespace {

WindowAction keyOnSpinBox(Qt::Key key) {
    return [key](auto& window) { QTest::keyClick(window.spinBoxFrequency, key); };
}

WindowAction keyOnSlider(Qt::Key key) {
    return [key](auto& window) { QTest::keyClick(window.sliderFrequency, key); };
}

WindowAction typed(const QString& text) {
    return [text](auto& window) {
        window.spinBoxFrequency->selectAll();
        QTest::keyClicks(window.spinBoxFrequency, text);
    };
}

WindowAction typedAndEntered(const QString& text) {
    return [text](auto& window) {
        typed(text)(window);
        QTest::keyClick(window.spinBoxFrequency, Qt::Key_Return);
    };
}

/// Clicks one of the large buttons, 60 pixels wide and 100 high, at the right edge.
WindowAction clickOnSpinBox(bool isUp) {
    return [isUp](auto& window) {
        QSpinBox* box = window.spinBoxFrequency;
        const int halfHeight = 50;
        const QPoint middle(box->width() - 30, isUp ? halfHeight : box->height() - halfHeight);
        QTest::mouseClick(box, Qt::LeftButton, {}, middle);
    };
}

QPoint handleOf(const QSlider& slider) {
    QStyleOptionSlider option;
    option.initFrom(&slider);
    option.subControls = QStyle::SC_All;
    option.orientation = slider.orientation();
    option.minimum = slider.minimum();
    option.maximum = slider.maximum();
    option.sliderPosition = slider.sliderPosition();
    option.sliderValue = slider.value();
    option.upsideDown = true; // The largest value is at the top.
    return slider.style()
        ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &slider)
        .center();
}

/// Drags the handle with the mouse to the end of the slider.
WindowAction dragToEnd(bool isUp) {
    return [isUp](auto& window) {
        QSlider* slider = window.sliderFrequency;
        const QPoint start = handleOf(*slider);
        const QPoint end(start.x(), isUp ? 0 : slider->height() - 1);
        QTest::mousePress(slider, Qt::LeftButton, {}, start);
        QMouseEvent move(QEvent::MouseMove, end, slider->mapToGlobal(end), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(slider, &move);
        QTest::mouseRelease(slider, Qt::LeftButton, {}, end);
    };
}

WindowAction wheelOnSpinBox(int notches) {
    return [notches](auto& window) {
        QSpinBox* box = window.spinBoxFrequency;
        const QPoint middle = box->rect().center();
        constexpr int eighthsOfADegree = 120;
        QWheelEvent event(middle, box->mapToGlobal(middle), QPoint(),
                          QPoint(0, notches * eighthsOfADegree), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(box, &event);
    };
}

struct Parameters {
    int minimum;
    int maximum;
    int current;
    int step;
};

} // namespace

Q_DECLARE_METATYPE(Parameters)

void TestSubjectWindowFrequency::inputMovesBothControls_data() {
    QTest::addColumn<WindowAction>("input");
    QTest::addColumn<int>("frequency"); // From 500.
    QTest::newRow("spin box, arrow up") << keyOnSpinBox(Qt::Key_Up) << 501;
    QTest::newRow("spin box, arrow down") << keyOnSpinBox(Qt::Key_Down) << 499;
    QTest::newRow("spin box, page up") << keyOnSpinBox(Qt::Key_PageUp) << 510;
    QTest::newRow("spin box, page down") << keyOnSpinBox(Qt::Key_PageDown) << 490;
    QTest::newRow("spin box, typed") << typed("640") << 640;
    QTest::newRow("spin box, typed and entered") << typedAndEntered("77") << 77;
    QTest::newRow("spin box, minimum") << typed("10") << 10;
    QTest::newRow("spin box, maximum") << typed("1000") << 1000;
    QTest::newRow("spin box, click up") << clickOnSpinBox(true) << 501;
    QTest::newRow("spin box, click down") << clickOnSpinBox(false) << 499;
    QTest::newRow("spin box, wheel up") << wheelOnSpinBox(1) << 501;
    QTest::newRow("spin box, wheel down") << wheelOnSpinBox(-1) << 499;
    QTest::newRow("slider, arrow up") << keyOnSlider(Qt::Key_Up) << 501;
    QTest::newRow("slider, arrow down") << keyOnSlider(Qt::Key_Down) << 499;
    QTest::newRow("slider, page up") << keyOnSlider(Qt::Key_PageUp) << 510;
    QTest::newRow("slider, page down") << keyOnSlider(Qt::Key_PageDown) << 490;
    QTest::newRow("slider, home") << keyOnSlider(Qt::Key_Home) << 10;
    QTest::newRow("slider, end") << keyOnSlider(Qt::Key_End) << 1000;
    QTest::newRow("slider, dragged to the top") << dragToEnd(true) << 1000;
    QTest::newRow("slider, dragged to the bottom") << dragToEnd(false) << 10;
}

void TestSubjectWindowFrequency::inputMovesBothControls() {
    QFETCH(WindowAction, input);
    QFETCH(int, frequency);
    OpenSubjectWindow window;
    bringTo(window, Stage::Adjusting);
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    input(window);
    QCOMPARE(window.spinBoxFrequency->value(), frequency);
    QCOMPARE(window.sliderFrequency->value(), frequency);
    QCOMPARE(window.sliderFrequency->sliderPosition(), frequency);
    QCOMPARE(window.spinBoxFrequency->text(), QString::number(frequency));
}

void TestSubjectWindowFrequency::setValueMovesBothControls_data() {
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("frequency");
    QTest::newRow("minimum") << 10 << 10;
    QTest::newRow("maximum") << 1000 << 1000;
    QTest::newRow("between") << 640 << 640;
    QTest::newRow("below the range") << 9 << 10;
    QTest::newRow("above the range") << 1001 << 1000;
    QTest::newRow("negative") << -440 << 10;
}

void TestSubjectWindowFrequency::setValueMovesBothControls() {
    QFETCH(int, value);
    QFETCH(int, frequency);
    for (const bool isBySlider : {false, true}) {
        const OpenSubjectWindow window;
        if (isBySlider)
            window.sliderFrequency->setValue(value);
        else
            window.spinBoxFrequency->setValue(value);
        QCOMPARE(window.spinBoxFrequency->value(), frequency);
        QCOMPARE(window.sliderFrequency->value(), frequency);
    }
}

void TestSubjectWindowFrequency::eachChangeIsSignalledOnce() {
    const OpenSubjectWindow window;
    const QSignalSpy spinBox(window.spinBoxFrequency, SIGNAL(valueChanged(int)));
    const QSignalSpy slider(window.sliderFrequency, SIGNAL(valueChanged(int)));
    window.spinBoxFrequency->setValue(640);
    QCOMPARE(spinBox.count(), 1);
    QCOMPARE(slider.count(), 1);
    window.sliderFrequency->setValue(300);
    QCOMPARE(spinBox.count(), 2);
    QCOMPARE(slider.count(), 2);
    window.sliderFrequency->setValue(300);
    QCOMPARE(spinBox.count(), 2);
    QCOMPARE(slider.count(), 2);
}

void TestSubjectWindowFrequency::playSinusoidSendsWhatBothControlsShow_data() {
    QTest::addColumn<WindowAction>("input");
    QTest::addColumn<int>("frequency");
    QTest::newRow("untouched") << WindowAction([](auto&) {}) << 500;
    QTest::newRow("typed, not entered") << typed("640") << 640;
    QTest::newRow("slider") << keyOnSlider(Qt::Key_End) << 1000;
    QTest::newRow("spin box after slider") << WindowAction([](auto& window) {
        keyOnSlider(Qt::Key_Home)(window);
        keyOnSpinBox(Qt::Key_Up)(window);
    }) << 11;
}

void TestSubjectWindowFrequency::playSinusoidSendsWhatBothControlsShow() {
    QFETCH(WindowAction, input);
    QFETCH(int, frequency);
    OpenSubjectWindow window;
    bringTo(window, Stage::Adjusting);
    const QSignalSpy responses(&window, &SubjectWindow::subjectResponded);
    input(window);
    QTest::mouseClick(window.pushButtonPlaySinusoid, Qt::LeftButton);
    QCOMPARE(responses.count(), 1);
    QCOMPARE(responses.at(0), QVariantList({4, frequency}));
    QCOMPARE(window.spinBoxFrequency->value(), frequency);
    QCOMPARE(window.sliderFrequency->value(), frequency);
}

void TestSubjectWindowFrequency::typedValuesAreLimitedToTheRange_data() {
    QTest::addColumn<WindowAction>("input");
    QTest::addColumn<int>("frequency");
    QTest::newRow("fourth digit too many") << typedAndEntered("5000") << 500;
    QTest::newRow("one above the range") << typedAndEntered("1001") << 100;
    QTest::newRow("one below the range") << typedAndEntered("9") << 500;
    QTest::newRow("no number") << typedAndEntered("abc") << 500;
    QTest::newRow("negative") << typedAndEntered("-20") << 20;
    QTest::newRow("fraction") << typedAndEntered("44.5") << 445;
}

void TestSubjectWindowFrequency::typedValuesAreLimitedToTheRange() {
    QFETCH(WindowAction, input);
    QFETCH(int, frequency);
    OpenSubjectWindow window;
    bringTo(window, Stage::Adjusting);
    input(window);
    QCOMPARE(window.spinBoxFrequency->value(), frequency);
    QCOMPARE(window.sliderFrequency->value(), frequency);
}

void TestSubjectWindowFrequency::receivedParametersReachMembersAndControls_data() {
    QTest::addColumn<Parameters>("received");
    QTest::newRow("defaults") << Parameters{10, 1000, 500, 1};
    QTest::newRow("wider") << Parameters{1, 20000, 440, 10};
    QTest::newRow("narrower") << Parameters{400, 600, 450, 5};
    QTest::newRow("above everything before") << Parameters{2000, 3000, 2500, 25};
    QTest::newRow("below everything before") << Parameters{1, 5, 3, 1};
    QTest::newRow("at the lower end") << Parameters{100, 200, 100, 2};
    QTest::newRow("at the upper end") << Parameters{100, 200, 200, 2};
    QTest::newRow("a single frequency") << Parameters{440, 440, 440, 1};
    QTest::newRow("negative") << Parameters{-100, -10, -50, 3};
    QTest::newRow("no step") << Parameters{10, 1000, 500, 0};
}

void TestSubjectWindowFrequency::receivedParametersReachMembersAndControls() {
    QFETCH(Parameters, received);
    OpenSubjectWindow window;
    window.receiveParameters(received.minimum, received.maximum, received.current, received.step);
    QCOMPARE(window.frequencyMin, received.minimum);
    QCOMPARE(window.frequencyMax, received.maximum);
    QCOMPARE(window.frequencyCurrent, received.current);
    QCOMPARE(window.frequencyStepSize, received.step);
    for (QObject* control : {static_cast<QObject*>(window.spinBoxFrequency),
                             static_cast<QObject*>(window.sliderFrequency)}) {
        QCOMPARE(control->property("minimum").toInt(), received.minimum);
        QCOMPARE(control->property("maximum").toInt(), received.maximum);
        QCOMPARE(control->property("value").toInt(), received.current);
        QCOMPARE(control->property("singleStep").toInt(), received.step);
    }
}

void TestSubjectWindowFrequency::receivedParametersReachTheSpinBoxBeforeTheSlider() {
    OpenSubjectWindow window;
    QStringList changes;
    connect(window.spinBoxFrequency, QOverload<int>::of(&QSpinBox::valueChanged), this,
            [&](int value) { changes.append(QStringLiteral("spin box %1").arg(value)); });
    connect(window.sliderFrequency, &QSlider::valueChanged, this,
            [&](int value) { changes.append(QStringLiteral("slider %1").arg(value)); });
    connect(window.sliderFrequency, &QSlider::rangeChanged, this, [&](int minimum, int maximum) {
        changes.append(QStringLiteral("slider from %1 to %2").arg(minimum).arg(maximum));
    });
    window.receiveParameters(600, 900, 700, 5);
    // The spin box's new range changes its value and with it the slider's, before the value is set.
    QCOMPARE(changes, QStringList({"slider 600", "spin box 600", "slider 700", "spin box 700",
                                   "slider from 600 to 900"}));
}

void TestSubjectWindowFrequency::receivedValueOutsideTheRangeIsLimitedByTheControlsOnly_data() {
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("shown");
    QTest::newRow("below") << 99 << 100;
    QTest::newRow("above") << 201 << 200;
    QTest::newRow("far above") << std::numeric_limits<int>::max() << 200;
}

void TestSubjectWindowFrequency::receivedValueOutsideTheRangeIsLimitedByTheControlsOnly() {
    QFETCH(int, current);
    QFETCH(int, shown);
    OpenSubjectWindow window;
    window.receiveParameters(100, 200, current, 1);
    QCOMPARE(window.frequencyCurrent, current);
    QCOMPARE(window.spinBoxFrequency->value(), shown);
    QCOMPARE(window.sliderFrequency->value(), shown);
}

void TestSubjectWindowFrequency::reversedReceivedRangeCollapses() {
    OpenSubjectWindow window;
    window.receiveParameters(900, 100, 500, 1);
    QCOMPARE(window.frequencyMin, 900);
    QCOMPARE(window.frequencyMax, 100);
    QCOMPARE(window.frequencyCurrent, 500);
    for (const QObject* control : {static_cast<QObject*>(window.spinBoxFrequency),
                                   static_cast<QObject*>(window.sliderFrequency)})
        for (const char* property : {"minimum", "maximum", "value"})
            QCOMPARE(control->property(property).toInt(), 900);
}

void TestSubjectWindowFrequency::setSliderParametersAppliesTheMembers() {
    OpenSubjectWindow window;
    bringTo(window, Stage::Adjusting);
    window.frequencyMin = 200;
    window.frequencyMax = 900;
    window.frequencyCurrent = 440;
    window.frequencyStepSize = 7;
    QCOMPARE(window.spinBoxFrequency->value(), 500);
    window.setSliderParameters();
    QCOMPARE(window.spinBoxFrequency->value(), 440);
    keyOnSlider(Qt::Key_Up)(window);
    QCOMPARE(window.spinBoxFrequency->value(), 447);
    keyOnSpinBox(Qt::Key_Up)(window);
    QCOMPARE(window.sliderFrequency->value(), 454);
    window.sliderFrequency->setValue(0);
    QCOMPARE(window.spinBoxFrequency->value(), 200);
    window.spinBoxFrequency->setValue(901);
    QCOMPARE(window.sliderFrequency->value(), 900);
}

void TestSubjectWindowFrequency::pressingPlaySinusoidOverwritesTheReceivedFrequency() {
    OpenSubjectWindow window;
    bringTo(window, Stage::Adjusting);
    window.receiveParameters(100, 900, 440, 2);
    window.sliderFrequency->setValue(301);
    QCOMPARE(window.frequencyCurrent, 440);
    QTest::mouseClick(window.pushButtonPlaySinusoid, Qt::LeftButton);
    QCOMPARE(window.frequencyCurrent, 301);
    QCOMPARE(window.frequencyMin, 100);
    QCOMPARE(window.frequencyMax, 900);
    QCOMPARE(window.frequencyStepSize, 2);
}
