// The listener's window: placement, meta-object and destruction.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_subject.h"

#include "support/MethodNames.h"
#include "window/TopLevelWindow.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QTest>
#include <QVBoxLayout>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace {

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
    const QSize screen = QGuiApplication::primaryScreen()->availableSize();
    const QRect expected = windowPlacement(screen, QPoint(), true, 0.7, 0.8);
    QCOMPARE(window.geometry(), expected);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_COMPARE(window.geometry(), expected);
}

void TestSubjectWindowLife::methodsHaveTheirIndices() {
    const QMetaObject& metaObject = SubjectWindow::staticMetaObject;
    QCOMPARE(QByteArray(metaObject.className()), QByteArray("SubjectWindow"));
    QCOMPARE(QByteArray(metaObject.superClass()->className()), QByteArray("QMainWindow"));
    const QString receiveParameters = "slot receiveParameters(int frequencyMin, "
                                      "int frequencyMax, int frequencyCurrent, "
                                      "int frequencyStepSize)";
    QCOMPARE(testsupport::methodsOf(metaObject).mid(0, 8),
             QStringList({"signal subjectResponded(int response, int frequency)",
                          "signal subjectWindowClosed()", "slot on_pushButtonIAmReady_clicked()",
                          "slot enableAllChoiceButtons()", receiveParameters,
                          "slot updateSubjectWindow(int index)",
                          "slot on_pushButtonPlayTarget_clicked()",
                          "slot on_pushButtonPlaySinusoid_clicked()"}));
}

void TestSubjectWindowLife::slotsAreNotConnectedByName() {
    OpenSubjectWindow window;
    const QSignalSpy responses(&window, &SubjectWindow::subjectResponded);
    // An emitted signal reaches a slot once for each connection, regardless of the button's state.
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

void TestSubjectWindowLife::destructorSetsDeletedMembersToNull() {
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
    // While an object is deleted, the pointers to the earlier ones are null.
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

void TestSubjectWindowLife::destructorDeletesEverythingAtAnyStage_data() {
    QTest::addColumn<Stage>("stage");
    QTest::newRow("waiting") << Stage::Waiting;
    QTest::newRow("target playing") << Stage::TargetPlaying;
    QTest::newRow("adjusting with Done") << Stage::AdjustingWithDone;
}

void TestSubjectWindowLife::destructorDeletesEverythingAtAnyStage() {
    QFETCH(Stage, stage);
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
    QCOMPARE(fixture->log.all(), QStringList());
}
