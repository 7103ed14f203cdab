// The listener's window: the close question and its answers.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_subject.h"

#include "support/CloseButton.h"
#include "support/ManagedWindows.h"
#include "support/OneTranslation.h"

#include <QApplication>
#include <QBackingStore>
#include <QCoreApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

#include <algorithm>
#include <functional>
#include <memory>

using testsupport::DialogDriver;

namespace {

using Answer = std::function<void(QMessageBox&)>;

/// Clicks a button. A question that cannot be answered is closed, so that the test continues.
Answer press(QMessageBox::StandardButton which) {
    return [which](QMessageBox& question) {
        QAbstractButton* button = question.button(which);
        // A new box may get its size, and with it a button to click, a moment later.
        if (button != nullptr && button->isEnabled() &&
            QTest::qWaitFor([&] { return !button->rect().isEmpty(); }))
            QTest::mouseClick(button, Qt::LeftButton);
        if (question.isVisible()) {
            QTest::qFail("the question took no click", __FILE__, __LINE__);
            question.done(QMessageBox::NoButton);
        }
    };
}

/// Types a key into the widget that has the focus in the question's window.
Answer type(Qt::Key key) {
    return [key](QMessageBox& question) {
        if (QTest::qWaitForWindowActive(&question))
            QTest::keyClick(question.windowHandle(), key);
        if (!QTest::qWaitFor([&] { return !question.isVisible(); })) {
            QTest::qFail("the question took no key", __FILE__, __LINE__);
            question.done(QMessageBox::NoButton);
        }
    };
}

/// Closes the question itself by its frame.
void dismiss(QMessageBox& question) {
    if (!QTest::qWaitForWindowExposed(&question) || !testsupport::pressCloseButton(question))
        question.done(QMessageBox::NoButton);
}

/// Queues an answer for the next question.
void queueAnswer(DialogDriver& dialogs, const Answer& answer) {
    dialogs.expectClosing(
        [answer](QWidget* dialog) { answer(*qobject_cast<QMessageBox*>(dialog)); });
}

/// Closes the window and waits until the question has been asked, answered and closed.
bool closeAndWait(OpenSubjectWindow& window, const WindowAction& way, const DialogDriver& dialogs) {
    const int asked = dialogs.seen().size();
    way(window);
    return QTest::qWaitFor([&] {
        return dialogs.seen().size() > asked && QApplication::activeModalWidget() == nullptr;
    });
}

void closeByCall(OpenSubjectWindow& window) {
    window.close();
}

void closeByFrame(OpenSubjectWindow& window) {
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(testsupport::pressCloseButton(window));
}

void closeByDone(OpenSubjectWindow& window) {
    QTest::mouseClick(window.pushButtonDone, Qt::LeftButton);
}

struct StageName {
    const char* name;
    Stage stage;
};
constexpr StageName stages[] = {{"waiting", Stage::Waiting},
                                {"target required", Stage::TargetRequired},
                                {"target requested", Stage::TargetRequested},
                                {"target playing", Stage::TargetPlaying},
                                {"adjusting", Stage::Adjusting},
                                {"sinusoid requested", Stage::SinusoidRequested},
                                {"sinusoid playing", Stage::SinusoidPlaying},
                                {"adjusting with Done", Stage::AdjustingWithDone}};

void addStages() {
    QTest::addColumn<Stage>("stage");
    for (const StageName& row : stages)
        QTest::newRow(row.name) << row.stage;
}

/// Everything that is visible or enabled in the window.
QStringList lookOf(const OpenSubjectWindow& window) {
    const auto look = [](const QWidget& widget, bool isEnabled) {
        return widget.objectName() + (widget.isVisible() ? " shown" : " hidden") +
               (isEnabled ? " enabled " : " disabled ") + widget.styleSheet();
    };
    QStringList looks = {look(window, window.isEnabled())};
    for (const QWidget* widget : window.widgets())
        looks.append(look(*widget, widget->isEnabledTo(&window)));
    return looks;
}

} // namespace

Q_DECLARE_METATYPE(Answer)

void TestSubjectWindowClosing::questionHasItsProperties() {
    OpenSubjectWindow window;
    bringTo(window, Stage::AdjustingWithDone);
    QVariantList facts;
    queueAnswer(fixture->dialogs, [&](QMessageBox& question) {
        facts = {question.text(),
                 question.informativeText(),
                 question.icon(),
                 int(question.standardButtons()),
                 question.buttons().size(),
                 question.defaultButton() == question.button(QMessageBox::Yes),
                 question.parentWidget() == &window,
                 question.isModal()};
        question.close();
    });
    window.close();
    QCOMPARE(facts, QVariantList({"Do you want to close this window?\n", "", QMessageBox::Question,
                                  int(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel), 3,
                                  true, true, true}));
    QVERIFY(window.isVisible());
    QCOMPARE(fixture->log.all(), QStringList());
}

void TestSubjectWindowClosing::questionIsTranslated() {
    const testsupport::OneTranslation german("SubjectWindow", "Do you want to close this window?\n",
                                             "Fenster schließen?");
    OpenSubjectWindow window;
    window.show();
    fixture->dialogs.answerClosing(QMessageBox::Cancel, QStringLiteral("Fenster schließen?"));
    window.close();
}

void TestSubjectWindowClosing::answersByEachWayOfClosing_data() {
    QTest::addColumn<WindowAction>("way");
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<bool>("isClosed");
    const std::pair<const char*, WindowAction> ways[] = {
        {"Done", closeByDone}, {"close()", closeByCall}, {"window manager", closeByFrame}};
    struct AnswerRow {
        const char* name;
        Answer answer;
        bool isClosed;
    };
    const AnswerRow answers[] = {
        {"Yes", press(QMessageBox::Yes), true},        {"No", press(QMessageBox::No), false},
        {"Cancel", press(QMessageBox::Cancel), false}, {"Return", type(Qt::Key_Return), true},
        {"Escape", type(Qt::Key_Escape), false},       {"question's own frame", dismiss, false}};
    for (const auto& [wayName, way] : ways)
        for (const AnswerRow& row : answers)
            QTest::addRow("%s, %s", wayName, row.name) << way << row.answer << row.isClosed;
}

void TestSubjectWindowClosing::answersByEachWayOfClosing() {
    QFETCH(WindowAction, way);
    QFETCH(Answer, answer);
    QFETCH(bool, isClosed);
    OpenSubjectWindow window;
    bringTo(window, Stage::AdjustingWithDone);
    const QSignalSpy closed(&window, &SubjectWindow::subjectWindowClosed);
    const QSignalSpy responses(&window, &SubjectWindow::subjectResponded);
    queueAnswer(fixture->dialogs, answer);
    QVERIFY(closeAndWait(window, way, fixture->dialogs));
    QCOMPARE(closed.count(), isClosed ? 1 : 0);
    QCOMPARE(window.isVisible(), !isClosed);
    QCOMPARE(responses.count(), 0);
    QCOMPARE(fixture->dialogs.seen().size(), 1);
}

void TestSubjectWindowClosing::windowManagerClosesAtEveryStage_data() {
    addStages();
}

void TestSubjectWindowClosing::windowManagerClosesAtEveryStage() {
    QFETCH(Stage, stage);
    OpenSubjectWindow window;
    bringTo(window, stage);
    const QSignalSpy closed(&window, &SubjectWindow::subjectWindowClosed);
    queueAnswer(fixture->dialogs, press(QMessageBox::Yes));
    QVERIFY(closeAndWait(window, closeByFrame, fixture->dialogs));
    QCOMPARE(closed.count(), 1);
    QVERIFY(!window.isVisible());
}

void TestSubjectWindowClosing::refusedClosingLeavesTheStageAsItWas_data() {
    addStages();
}

void TestSubjectWindowClosing::refusedClosingLeavesTheStageAsItWas() {
    QFETCH(Stage, stage);
    OpenSubjectWindow window;
    bringTo(window, stage);
    const QStringList before = lookOf(window);
    const WindowLog log(window);
    queueAnswer(fixture->dialogs, press(QMessageBox::No));
    QVERIFY(closeAndWait(window, closeByFrame, fixture->dialogs));
    QCOMPARE(lookOf(window), before);
    QCOMPARE(log.lines, QStringList());
}

void TestSubjectWindowClosing::windowIsStillShownWhenItsClosingIsSignalled() {
    OpenSubjectWindow window;
    bringTo(window, Stage::AdjustingWithDone);
    int signalled = 0;
    connect(&window, &SubjectWindow::subjectWindowClosed, this, [&] {
        ++signalled;
        QVERIFY(window.isVisible());
        QVERIFY(QApplication::activeModalWidget() == nullptr);
    });
    queueAnswer(fixture->dialogs, press(QMessageBox::Yes));
    QVERIFY(window.close());
    QCOMPARE(signalled, 1);
    QVERIFY(!window.isVisible());
}

void TestSubjectWindowClosing::hiddenWindowHasNoPlatformWindow_data() {
    QTest::addColumn<WindowAction>("way");
    QTest::addColumn<bool>("isAsked");
    QTest::newRow("Done") << WindowAction(closeByDone) << true;
    QTest::newRow("close()") << WindowAction(closeByCall) << true;
    QTest::newRow("window manager") << WindowAction(closeByFrame) << true;
    QTest::newRow("hide()") << WindowAction([](auto& window) { window.hide(); }) << false;
}

void TestSubjectWindowClosing::hiddenWindowHasNoPlatformWindow() {
    QFETCH(WindowAction, way);
    QFETCH(bool, isAsked);
    OpenSubjectWindow window;
    bringTo(window, Stage::AdjustingWithDone);
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QPointer<QWindow> handle(window.windowHandle());
    QVERIFY(window.backingStore() != nullptr);
    if (isAsked)
        queueAnswer(fixture->dialogs, press(QMessageBox::Yes));
    way(window);
    QTRY_VERIFY(handle.isNull());
    QVERIFY(window.isHidden());
    QVERIFY(window.windowHandle() == nullptr && window.backingStore() == nullptr);
    // Signals of later sessions reach the window too, and must not create a platform window.
    window.receiveParameters(10, 1000, 440, 1);
    window.updateSubjectWindow(1);
    window.updateSubjectWindow(-1);
    QCoreApplication::processEvents();
    QVERIFY(window.internalWinId() == 0 && window.backingStore() == nullptr);
}

void TestSubjectWindowClosing::dialogsCanBeShownAfterAWindowIsReleased() {
    // The enter event of the mouse comes at an undefined time.
    for (int session = 0; session < 8; ++session) {
        OpenSubjectWindow window;
        bringTo(window, Stage::AdjustingWithDone);
        queueAnswer(fixture->dialogs, press(QMessageBox::Yes));
        QVERIFY(closeAndWait(window, closeByFrame, fixture->dialogs));
        QTRY_VERIFY(window.windowHandle() == nullptr);
        const QString title = QStringLiteral("Next");
        fixture->dialogs.expect(title, [](QWidget* dialog) { dialog->close(); });
        QMessageBox::information(nullptr, title, QStringLiteral("Still there"));
    }
}

void TestSubjectWindowClosing::closedWindowCanBeShownAgain() {
    OpenSubjectWindow window;
    bringTo(window, Stage::AdjustingWithDone);
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.resize(900, 600);
    window.move(120, 80);
    QTRY_COMPARE(window.pos(), QPoint(120, 80));
    const QRect geometry = window.geometry();
    const QStringList look = lookOf(window);
    queueAnswer(fixture->dialogs, press(QMessageBox::Yes));
    QVERIFY(closeAndWait(window, closeByFrame, fixture->dialogs));
    QTRY_VERIFY(window.windowHandle() == nullptr);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_VERIFY(QApplication::activeWindow() == &window);
    QTRY_COMPARE(window.geometry(), geometry);
    QCOMPARE(lookOf(window), look);
    const QVector<testsupport::ManagedWindow> managed = testsupport::managedWindows();
    QVERIFY(std::any_of(managed.cbegin(), managed.cend(), [&](const auto& one) {
        return one.id == window.winId() && one.title == window.windowTitle();
    }));
    const QSignalSpy responses(&window, &SubjectWindow::subjectResponded);
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {},
                      window.pushButtonPlaySinusoid->mapTo(&window, QPoint(20, 20)));
    QCOMPARE(responses.count(), 1);
    queueAnswer(fixture->dialogs, press(QMessageBox::Yes));
    QVERIFY(closeAndWait(window, closeByFrame, fixture->dialogs));
    QVERIFY(window.isHidden());
}

void TestSubjectWindowClosing::minimisedOrReshownWindowIsNotReleased_data() {
    QTest::addColumn<WindowAction>("way");
    QTest::newRow("shown again at once") << WindowAction([](auto& window) {
        window.hide();
        window.show();
    });
    QTest::newRow("minimised") << WindowAction([](auto& window) {
        window.showMinimized();
        QTRY_VERIFY(window.isMinimized() && !window.windowHandle()->isExposed());
    });
}

void TestSubjectWindowClosing::minimisedOrReshownWindowIsNotReleased() {
    QFETCH(WindowAction, way);
    OpenSubjectWindow window;
    bringTo(window, Stage::Waiting);
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QPointer<QWindow> handle(window.windowHandle());
    way(window);
    QCoreApplication::sendPostedEvents(&window);
    QVERIFY(!handle.isNull() && window.windowHandle() == handle);
}

void TestSubjectWindowClosing::secondCloseRequestAsksNoSecondQuestion() {
    OpenSubjectWindow window;
    bringTo(window, Stage::AdjustingWithDone);
    // The manager forwards requests in order: once the question has closed, the earlier request for
    // the window has arrived.
    queueAnswer(fixture->dialogs, [&](QMessageBox& question) {
        QVERIFY(testsupport::pressCloseButton(window));
        dismiss(question);
    });
    QVERIFY(closeAndWait(window, closeByFrame, fixture->dialogs));
    QCOMPARE(fixture->dialogs.seen().size(), 1);
    QVERIFY(window.isVisible());
}

void TestSubjectWindowClosing::questionCanBeAnsweredDuringASound_data() {
    QTest::addColumn<Stage>("stage");
    QTest::addColumn<QVector<int>>("sounds");
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<bool>("isClosed");
    const auto row = [](const char* name, Stage stage, const QVector<int>& sounds,
                        const Answer& answer, bool isClosed) {
        QTest::newRow(name) << stage << sounds << answer << isClosed;
    };
    // Disabling a window also disables its question.
    const Stage enabled = Stage::AdjustingWithDone;
    row("Yes", enabled, {1}, press(QMessageBox::Yes), true);
    row("No", enabled, {1}, press(QMessageBox::No), false);
    row("Cancel", enabled, {1}, press(QMessageBox::Cancel), false);
    row("Return", enabled, {1}, type(Qt::Key_Return), true);
    row("Escape", enabled, {1}, type(Qt::Key_Escape), false);
    row("frame", enabled, {1}, dismiss, false);
    row("Yes after the sound", enabled, {1, -1}, press(QMessageBox::Yes), true);
    row("No in a second sound", enabled, {1, 2}, press(QMessageBox::No), false);
    const Stage requested = Stage::SinusoidRequested;
    row("requested, Yes", requested, {1}, press(QMessageBox::Yes), true);
    row("requested, No", requested, {1}, press(QMessageBox::No), false);
    row("requested, Return", requested, {1}, type(Qt::Key_Return), true);
    row("requested, No after the sound", requested, {1, -1}, press(QMessageBox::No), false);
    row("playing, Yes in a further sound", Stage::TargetPlaying, {-1, 1}, press(QMessageBox::Yes),
        true);
}

void TestSubjectWindowClosing::questionCanBeAnsweredDuringASound() {
    QFETCH(Stage, stage);
    QFETCH(QVector<int>, sounds);
    QFETCH(Answer, answer);
    QFETCH(bool, isClosed);
    // As in a session: the experimenter's window is disabled.
    QWidget parent;
    parent.show();
    parent.setEnabled(false);
    OpenSubjectWindow window(&parent);
    bringTo(window, stage);
    const QSignalSpy closed(&window, &SubjectWindow::subjectWindowClosed);
    queueAnswer(fixture->dialogs, [&](QMessageBox& question) {
        for (const int index : sounds)
            window.updateSubjectWindow(index);
        for (const QAbstractButton* button : question.buttons())
            if (!button->isEnabled())
                QTest::qFail("a button of the question is disabled", __FILE__, __LINE__);
        answer(question);
    });
    QVERIFY(closeAndWait(window, closeByFrame, fixture->dialogs));
    QCOMPARE(closed.count(), isClosed ? 1 : 0);
    QCOMPARE(window.isVisible(), !isClosed);
    QCOMPARE(window.isEnabled(), sounds.last() == -1);
}

void TestSubjectWindowClosing::questionCanBeAskedAgain() {
    OpenSubjectWindow window;
    bringTo(window, Stage::AdjustingWithDone);
    const QSignalSpy closed(&window, &SubjectWindow::subjectWindowClosed);
    for (const auto button : {QMessageBox::No, QMessageBox::Cancel, QMessageBox::Yes}) {
        QCOMPARE(closed.count(), 0);
        queueAnswer(fixture->dialogs, press(button));
        QVERIFY(closeAndWait(window, closeByDone, fixture->dialogs));
        // No state of the earlier question may remain.
        QCOMPARE(window.findChildren<QMessageBox*>().size(), 0);
        window.updateSubjectWindow(1);
        window.updateSubjectWindow(-1);
    }
    QCOMPARE(closed.count(), 1);
    QCOMPARE(fixture->dialogs.seen().size(), 3);
}

void TestSubjectWindowClosing::windowCanBeDestroyedWhileTheQuestionIsOpen() {
    auto parent = std::make_unique<QWidget>();
    const QPointer<OpenSubjectWindow> window(new OpenSubjectWindow(parent.get()));
    bringTo(*window, Stage::SinusoidPlaying);
    const QSignalSpy closed(window, &SubjectWindow::subjectWindowClosed);
    queueAnswer(fixture->dialogs, [&](QMessageBox& box) {
        const QPointer<QMessageBox> question(&box);
        parent.reset();
        if (question) // Otherwise the test would wait for its answer.
            question->close();
    });
    window->close();
    QVERIFY(window.isNull());
    QCOMPARE(closed.count(), 0);
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}
