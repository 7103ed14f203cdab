// The listener's window: placement, meta-object and destruction.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_subject.h"

#include "support/LogLines.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMetaMethod>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>
#include <QtTest>

#include <cmath>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace {

QSize availableSize() {
    return QGuiApplication::primaryScreen()->availableSize();
}

/// Fractions that are within 0..1, at the middle of the screen.
QRect centred(double widthFraction, double heightFraction) {
    const QSize available = availableSize();
    const int width = int(std::trunc(available.width() * widthFraction));
    const int height = int(std::trunc(available.height() * heightFraction));
    return {(available.width() - width) / 2, (available.height() - height) / 2, width, height};
}

/// The members that the window deletes, in the order of their declaration.
std::vector<std::pair<QString, QObject*>> ownedObjects(const OpenSubjectWindow& window) {
    return {{"pushButtonPlayTarget", window.pushButtonPlayTarget},
            {"labelCurrentValue", window.labelCurrentValue},
            {"spinBoxFrequency", window.spinBoxFrequency},
            {"pushButtonPlaySinusoid", window.pushButtonPlaySinusoid},
            {"sliderFrequency", window.sliderFrequency},
            {"pushButtonIAmReady", window.pushButtonIAmReady},
            {"pushButtonDone", window.pushButtonDone},
            {"layoutFrequency", window.layoutFrequency},
            {"layoutUnused", window.layoutUnused},
            {"layoutWindow", window.layoutWindow},
            {"widgetCentral", window.widgetCentral}};
}

} // namespace

void TestSubjectWindowLife::newWindowCovers70By80PercentOfTheScreenInItsMiddle() {
    OpenSubjectWindow window;
    const QRect expected = centred(0.7, 0.8);
    QCOMPARE(window.geometry(), expected);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_COMPARE(window.geometry(), expected);
}

void TestSubjectWindowLife::fractionsOfTheScreen_data() {
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("height");
    QTest::addColumn<QRect>("geometry");
    QTest::newRow("70 % by 80 %") << 0.7 << 0.8 << centred(0.7, 0.8);
    QTest::newRow("all of it") << 1.0 << 1.0 << centred(1, 1);
    QTest::newRow("150 % is all of it") << 1.5 << 1.5 << centred(1, 1);
    QTest::newRow("too wide") << 1e300 << 0.5 << centred(1, 0.5);
    QTest::newRow("too high") << 0.5 << 1.0001 << centred(0.5, 1);
    QTest::newRow("nothing") << 0.0 << 0.0 << centred(0, 0);
    QTest::newRow("negative is nothing") << -0.5 << -1e300 << centred(0, 0);
    QTest::newRow("negative width") << -0.001 << 0.8 << centred(0, 0.8);
    QTest::newRow("odd numbers of pixels") << 0.333 << 0.777 << centred(0.333, 0.777);
    QTest::newRow("less than a pixel") << 1e-9 << 0.8 << centred(0, 0.8);
}

void TestSubjectWindowLife::fractionsOfTheScreen() {
    QFETCH(double, width);
    QFETCH(double, height);
    OpenSubjectWindow window;
    window.centerAndResizeSubjectWindow(true, width, height);
    QTEST(window.geometry(), "geometry");
    // The arguments do not become the members.
    QCOMPARE(window.widthRatio, 0.7);
    QCOMPARE(window.heightRatio, 0.8);
}

void TestSubjectWindowLife::windowThatIsNotCentredStaysButKeepsItsFrameOnTheScreen_data() {
    QTest::addColumn<QPoint>("before");
    QTest::addColumn<QPoint>("after");
    QTest::newRow("stays") << QPoint(100, 200) << QPoint(100, 200);
    QTest::newRow("at the limits") << QPoint(5, 40) << QPoint(5, 40);
    QTest::newRow("one inside") << QPoint(6, 41) << QPoint(6, 41);
    QTest::newRow("one outside") << QPoint(4, 39) << QPoint(5, 40);
    QTest::newRow("corner") << QPoint(0, 0) << QPoint(5, 40);
    QTest::newRow("off the screen") << QPoint(-300, -300) << QPoint(5, 40);
    QTest::newRow("left only") << QPoint(-300, 300) << QPoint(5, 300);
    QTest::newRow("top only") << QPoint(300, -300) << QPoint(300, 40);
}

void TestSubjectWindowLife::windowThatIsNotCentredStaysButKeepsItsFrameOnTheScreen() {
    QFETCH(QPoint, before);
    QFETCH(QPoint, after);
    OpenSubjectWindow window;
    window.move(before);
    window.centerAndResizeSubjectWindow(false, 0.5, 0.25);
    QCOMPARE(window.geometry(), QRect(after, centred(0.5, 0.25).size()));
}

void TestSubjectWindowLife::metaObjectNumbersItsMethods_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("isSignal");
    QTest::addColumn<QByteArray>("signature");
    QTest::addColumn<QByteArrayList>("parameterNames");
    const auto row = [](int index, bool isSignal, const char* signature,
                        const QByteArrayList& parameterNames = {}) {
        QTest::newRow(signature) << index << isSignal << QByteArray(signature) << parameterNames;
    };
    row(0, true, "subjectResponded(int,int)", {"response", "frequency"});
    row(1, true, "subjectWindowClosed()");
    row(2, false, "on_pushButtonIAmReady_clicked()");
    row(3, false, "enableAllChoiceButtons()");
    row(4, false, "receiveParameters(int,int,int,int)",
        {"frequencyMin", "frequencyMax", "frequencyCurrent", "frequencyStepSize"});
    row(5, false, "updateSubjectWindow(int)", {"index"});
    row(6, false, "on_pushButtonPlayTarget_clicked()");
    row(7, false, "on_pushButtonPlaySinusoid_clicked()");
}

void TestSubjectWindowLife::metaObjectNumbersItsMethods() {
    QFETCH(int, index);
    QFETCH(bool, isSignal);
    const QMetaObject& metaObject = SubjectWindow::staticMetaObject;
    QCOMPARE(QByteArray(metaObject.className()), QByteArray("SubjectWindow"));
    QCOMPARE(QByteArray(metaObject.superClass()->className()), QByteArray("QMainWindow"));
    const QMetaMethod method = metaObject.method(metaObject.methodOffset() + index);
    QTEST(method.methodSignature(), "signature");
    QTEST(method.parameterNames(), "parameterNames");
    QCOMPARE(method.methodType(), isSignal ? QMetaMethod::Signal : QMetaMethod::Slot);
    QCOMPARE(method.access(), QMetaMethod::Public);
    QCOMPARE(method.returnType(), int(QMetaType::Void));
}

void TestSubjectWindowLife::slotsAreNotConnectedByName() {
    OpenSubjectWindow window;
    const QSignalSpy responses(&window, &SubjectWindow::subjectResponded);
    // A signal emitted reaches a slot once for each connection, whatever the button's state.
    emit window.pushButtonPlayTarget->clicked(false);
    QCOMPARE(responses.count(), 1);
    emit window.pushButtonPlaySinusoid->clicked(false);
    QCOMPARE(responses.count(), 2);
}

void TestSubjectWindowLife::destructorDeletesTheMembersInOrder() {
    auto window = std::make_unique<OpenSubjectWindow>();
    QStringList expected;
    QStringList deleted;
    for (const auto& [name, object] : ownedObjects(*window)) {
        expected.append(name);
        connect(object, &QObject::destroyed, this,
                [&deleted, memberName = name] { deleted.append(memberName); });
    }
    connect(window.get(), &QObject::destroyed, this, [&] { deleted.append("SubjectWindow"); });
    expected.append("SubjectWindow");
    QCOMPARE(expected.size(), 12);
    window.reset();
    QCOMPARE(deleted, expected);
}

void TestSubjectWindowLife::destructorForgetsWhatItHasDeleted() {
    auto window = std::make_unique<OpenSubjectWindow>();
    const std::vector<std::function<bool()>> isForgotten = {
        [&member = window->pushButtonPlayTarget] { return member == nullptr; },
        [&member = window->labelCurrentValue] { return member == nullptr; },
        [&member = window->spinBoxFrequency] { return member == nullptr; },
        [&member = window->pushButtonPlaySinusoid] { return member == nullptr; },
        [&member = window->sliderFrequency] { return member == nullptr; },
        [&member = window->pushButtonIAmReady] { return member == nullptr; },
        [&member = window->pushButtonDone] { return member == nullptr; },
        [&member = window->layoutFrequency] { return member == nullptr; },
        [&member = window->layoutUnused] { return member == nullptr; },
        [&member = window->layoutWindow] { return member == nullptr; }};
    // While each object goes, all those before it are forgotten.
    const auto owned = ownedObjects(*window);
    std::size_t checked = 0;
    for (std::size_t i = 1; i < owned.size(); ++i)
        connect(owned[i].second, &QObject::destroyed, this, [&, i] {
            for (std::size_t earlier = 0; earlier < i; ++earlier)
                QVERIFY2(isForgotten[earlier](), qPrintable(owned[earlier].first));
            ++checked;
        });
    window.reset();
    QCOMPARE(checked, std::size_t(10));
}

void TestSubjectWindowLife::destructorLeavesNothingAtAnyStage_data() {
    QTest::addColumn<Stage>("stage");
    QTest::newRow("waiting") << Stage::Waiting;
    QTest::newRow("target playing") << Stage::TargetPlaying;
    QTest::newRow("adjusting with Done") << Stage::AdjustingWithDone;
}

void TestSubjectWindowLife::destructorLeavesNothingAtAnyStage() {
    QFETCH(Stage, stage);
    const testsupport::LogLines log;
    const QWidgetList before = QApplication::allWidgets();
    auto window = std::make_unique<OpenSubjectWindow>();
    bringTo(*window, stage);
    std::vector<QPointer<QObject>> owned;
    for (const auto& entry : ownedObjects(*window))
        owned.emplace_back(entry.second);
    window.reset();
    for (const QPointer<QObject>& object : owned)
        QVERIFY(object.isNull());
    QCOMPARE(QApplication::allWidgets().size(), before.size());
    QCOMPARE(log.all(), QStringList());
}

void TestSubjectWindowLife::windowGoesWithItsParent() {
    auto parent = std::make_unique<QWidget>();
    const QPointer<SubjectWindow> window(new OpenSubjectWindow(parent.get()));
    parent.reset();
    QVERIFY(window.isNull());
}
