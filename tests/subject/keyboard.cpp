// The listener's window: the keyboard focus before and after each sound and each question.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_subject.h"

#include "support/CloseButton.h"

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QTest>
#include <QWindow>

#include <functional>
#include <memory>

namespace {

constexpr int manyRequests = 20;

/// Waits until the keyboard reaches a window. QTest::qWaitForWindowActive is also satisfied when
/// the window's parent is the active one.
bool awaitActive(const QWidget& window) {
    return QTest::qWaitFor([&] { return QApplication::activeWindow() == &window; });
}

/// The experimenter's window while a session is held.
QWidget* shownAndDisabled(QWidget& window) {
    window.show();
    window.setEnabled(false);
    return &window;
}

/// The listener's window above the experimenter's, as in a session.
struct Desk {
    /// Brings the window to a stage; returns whether it has the keyboard.
    bool open(Stage stage) {
        bringTo(window, stage);
        return awaitActive(window);
    }

    void playSound() {
        window.updateSubjectWindow(1);
        window.updateSubjectWindow(-1);
    }

    /// Types into the widget that has the focus, if any.
    void type(Qt::Key key) { QTest::keyClick(window.windowHandle(), key); }
    void type(const QString& text) {
        for (const QChar character : text)
            QTest::keyClick(window.windowHandle(), character.toLatin1());
    }

    QLineEdit& frequencyText() { return *window.spinBoxFrequency->findChild<QLineEdit*>(); }

    QWidget experimenters;
    OpenSubjectWindow window{shownAndDisabled(experimenters)};
};

/// The name of the widget that has the focus; empty if none has it.
QString focused() {
    const QWidget* widget = QApplication::focusWidget();
    return widget == nullptr ? QString() : widget->objectName();
}

/// Asks for a sinusoid as a screen reader does, which leaves the focus where it is.
void requestWithoutFocus(Desk& desk) {
    desk.window.pushButtonPlaySinusoid->click();
}

using Answer = std::function<void(QMessageBox&)>;

/// Closes the window by its frame and answers the question when it has the keyboard.
bool closeAndAnswer(testsupport::DialogDriver& dialogs, Desk& desk, const Answer& answer) {
    dialogs.expectClosing([answer](QWidget* dialog) {
        auto& question = *qobject_cast<QMessageBox*>(dialog);
        if (awaitActive(question))
            answer(question);
        if (!QTest::qWaitFor([&] { return !question.isVisible(); }))
            question.done(QMessageBox::NoButton);
    });
    const testsupport::CloseEvents events(desk.window);
    return testsupport::pressCloseButton(desk.window) &&
           QTest::qWaitFor([&] { return events.count() == 1; });
}

} // namespace

Q_DECLARE_METATYPE(QMessageBox::StandardButton)

void TestSubjectWindowKeyboard::sessionNeedsTheTabKeyForChangesOnly() {
    Desk desk;
    QVERIFY(desk.open(Stage::Waiting));
    const QSignalSpy responses(&desk.window, &SubjectWindow::subjectResponded);
    QCOMPARE(focused(), QStringLiteral("pushButtonIAmReady"));
    desk.type(Qt::Key_Space);
    for (int i = 1; i <= manyRequests; ++i) {
        QCOMPARE(focused(), QStringLiteral("pushButtonPlayTarget"));
        desk.type(Qt::Key_Space);
        QCOMPARE(responses.count(), i);
        desk.playSound();
    }
    desk.type(Qt::Key_Tab);
    desk.type(Qt::Key_Up);
    desk.type(Qt::Key_Tab);
    for (int i = 1; i <= manyRequests; ++i) {
        QCOMPARE(focused(), QStringLiteral("pushButtonPlaySinusoid"));
        desk.type(Qt::Key_Space);
        QCOMPARE(responses.count(), manyRequests + i);
        QCOMPARE(responses.last(), QVariantList({4, 501}));
        desk.playSound();
    }
}

void TestSubjectWindowKeyboard::frequencyControlsKeepTheFocus_data() {
    QTest::addColumn<QString>("control");
    QTest::newRow("spin box") << "spinBoxFrequency";
    QTest::newRow("slider") << "sliderFrequency";
}

void TestSubjectWindowKeyboard::frequencyControlsKeepTheFocus() {
    QFETCH(QString, control);
    Desk desk;
    QVERIFY(desk.open(Stage::Adjusting));
    const QSignalSpy responses(&desk.window, &SubjectWindow::subjectResponded);
    desk.window.findChild<QWidget*>(control)->setFocus();
    for (int i = 1; i <= manyRequests; ++i) {
        QCOMPARE(focused(), control);
        desk.type(Qt::Key_Up);
        requestWithoutFocus(desk);
        QCOMPARE(responses.last(), QVariantList({4, 500 + i}));
        QCOMPARE(focused(), QString());
        desk.playSound();
    }
}

void TestSubjectWindowKeyboard::halfTypedFrequency_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("sent");
    QTest::addColumn<QString>("typedOn");
    QTest::addColumn<QString>("text");
    QTest::newRow("begun") << "64" << 64 << "0"
                           << "640";
    QTest::newRow("in the middle") << "300" << 300 << ""
                                   << "300";
    // Below the range: the last frequency is restored, and the caret stays after the first digit.
    QTest::newRow("one digit") << "9" << 500 << ""
                               << "500";
    QTest::newRow("one digit, then another") << "1" << 500 << "1"
                                             << "500";
    QTest::newRow("nothing") << "\b" << 500 << ""
                             << "500";
    QTest::newRow("nothing, then a frequency") << "\b" << 500 << "640"
                                               << "640";
    QTest::newRow("leading zeros") << "0064" << 64 << ""
                                   << "64";
}

void TestSubjectWindowKeyboard::halfTypedFrequency() {
    QFETCH(QString, typed);
    QFETCH(int, sent);
    QFETCH(QString, typedOn);
    QFETCH(QString, text);
    Desk desk;
    QVERIFY(desk.open(Stage::Adjusting));
    const QSignalSpy responses(&desk.window, &SubjectWindow::subjectResponded);
    desk.window.spinBoxFrequency->setFocus();
    desk.window.spinBoxFrequency->selectAll();
    if (typed == QLatin1String("\b"))
        desk.type(Qt::Key_Backspace);
    else
        desk.type(typed);
    requestWithoutFocus(desk);
    QCOMPARE(responses.last(), QVariantList({4, sent}));
    QCOMPARE(desk.window.spinBoxFrequency->text(), QString::number(sent));
    desk.playSound();
    QCOMPARE(desk.window.spinBoxFrequency->text(), QString::number(sent));
    QCOMPARE(desk.window.spinBoxFrequency->value(), sent);
    desk.type(typedOn);
    QCOMPARE(desk.window.spinBoxFrequency->text(), text);
    QCOMPARE(desk.window.spinBoxFrequency->value(), text.toInt());
    QCOMPARE(desk.window.sliderFrequency->value(), text.toInt());
}

void TestSubjectWindowKeyboard::selectedFrequencyIsStillReplacedByTyping() {
    Desk desk;
    QVERIFY(desk.open(Stage::Adjusting));
    desk.window.pushButtonPlayTarget->setFocus();
    desk.type(Qt::Key_Tab);
    QCOMPARE(desk.frequencyText().selectedText(), QStringLiteral("500"));
    requestWithoutFocus(desk);
    desk.playSound();
    QCOMPARE(desk.frequencyText().selectedText(), QStringLiteral("500"));
    desk.type(QStringLiteral("640"));
    QCOMPARE(desk.window.spinBoxFrequency->value(), 640);
    // A frequency that is partly typed is not replaced.
    requestWithoutFocus(desk);
    desk.playSound();
    QCOMPARE(desk.frequencyText().selectedText(), QString());
    QCOMPARE(desk.frequencyText().cursorPosition(), 3);
}

void TestSubjectWindowKeyboard::unrequestedSoundKeepsTheFocus() {
    Desk desk;
    QVERIFY(desk.open(Stage::AdjustingWithDone));
    desk.window.pushButtonDone->setFocus();
    desk.window.updateSubjectWindow(1);
    desk.window.updateSubjectWindow(2);
    QCOMPARE(focused(), QString());
    desk.window.updateSubjectWindow(-1);
    QCOMPARE(focused(), QStringLiteral("pushButtonDone"));
    // The signal of an end locks and unlocks too.
    desk.window.updateSubjectWindow(-1);
    QCOMPARE(focused(), QStringLiteral("pushButtonDone"));
}

void TestSubjectWindowKeyboard::unusableControlGetsNoFocus_data() {
    QTest::addColumn<bool>("isHidden");
    QTest::newRow("hidden") << true;
    QTest::newRow("disabled") << false;
}

void TestSubjectWindowKeyboard::unusableControlGetsNoFocus() {
    QFETCH(bool, isHidden);
    Desk desk;
    QVERIFY(desk.open(Stage::AdjustingWithDone));
    desk.window.pushButtonDone->setFocus();
    desk.window.updateSubjectWindow(1);
    if (isHidden)
        desk.window.pushButtonDone->hide();
    else
        desk.window.pushButtonDone->setEnabled(false);
    desk.window.updateSubjectWindow(-1);
    QCOMPARE(focused(), QString());
    // Nor does the control of an earlier sound: none had the focus when this sound began.
    desk.window.pushButtonDone->setEnabled(true);
    desk.window.pushButtonDone->show();
    desk.playSound();
    QCOMPARE(focused(), QString());
}

void TestSubjectWindowKeyboard::inactiveWindowTakesNoFocus() {
    Desk desk;
    QVERIFY(desk.open(Stage::Adjusting));
    desk.window.sliderFrequency->setFocus();
    requestWithoutFocus(desk);
    QLineEdit other;
    other.setObjectName(QStringLiteral("other"));
    other.show();
    other.activateWindow();
    QVERIFY(awaitActive(other));
    desk.playSound();
    QCOMPARE(focused(), QStringLiteral("other"));
    other.hide();
    desk.window.activateWindow();
    QVERIFY(awaitActive(desk.window));
    QCOMPARE(focused(), QStringLiteral("sliderFrequency"));
}

void TestSubjectWindowKeyboard::refusedQuestionRestoresTheFocus_data() {
    QTest::addColumn<QString>("control");
    QTest::addColumn<QMessageBox::StandardButton>("answer");
    for (const char* control : {"pushButtonPlayTarget", "spinBoxFrequency",
                                "pushButtonPlaySinusoid", "sliderFrequency", "pushButtonDone"}) {
        QTest::addRow("%s, No", control) << QString(control) << QMessageBox::No;
        QTest::addRow("%s, Cancel", control) << QString(control) << QMessageBox::Cancel;
    }
}

void TestSubjectWindowKeyboard::refusedQuestionRestoresTheFocus() {
    QFETCH(QString, control);
    QFETCH(QMessageBox::StandardButton, answer);
    Desk desk;
    QVERIFY(desk.open(Stage::AdjustingWithDone));
    desk.window.findChild<QWidget*>(control)->setFocus();
    QVERIFY(closeAndAnswer(fixture->dialogs, desk, [&](QMessageBox& question) {
        question.button(answer)->setFocus();
        QTest::keyClick(question.windowHandle(), Qt::Key_Space);
    }));
    QVERIFY(awaitActive(desk.window));
    QCOMPARE(focused(), control);
}

void TestSubjectWindowKeyboard::questionKeepsTheFocusDuringSounds_data() {
    QTest::addColumn<Stage>("stage");
    QTest::addColumn<QVector<int>>("sounds");
    using Sounds = QVector<int>;
    QTest::newRow("sound starts unasked") << Stage::AdjustingWithDone << Sounds{1};
    QTest::newRow("whole sound unasked") << Stage::AdjustingWithDone << Sounds{1, -1};
    QTest::newRow("sound starts") << Stage::SinusoidRequested << Sounds{1};
    QTest::newRow("whole sound") << Stage::SinusoidRequested << Sounds{1, -1};
    QTest::newRow("sound ends") << Stage::SinusoidPlaying << Sounds{-1};
    QTest::newRow("sound ends, another starts") << Stage::SinusoidPlaying << Sounds{-1, 1};
}

void TestSubjectWindowKeyboard::questionKeepsTheFocusDuringSounds() {
    QFETCH(Stage, stage);
    QFETCH(QVector<int>, sounds);
    Desk desk;
    QVERIFY(desk.open(stage));
    const QSignalSpy closed(&desk.window, &SubjectWindow::subjectWindowClosed);
    QVERIFY(closeAndAnswer(fixture->dialogs, desk, [&](QMessageBox& question) {
        question.button(QMessageBox::No)->setFocus();
        for (const int index : sounds)
            desk.window.updateSubjectWindow(index);
        QCOMPARE(QApplication::focusWidget(), question.button(QMessageBox::No));
        // The focused button, not the default one, which would close the window.
        QTest::keyClick(question.windowHandle(), Qt::Key_Return);
    }));
    QCOMPARE(closed.count(), 0);
    QVERIFY(desk.window.isVisible());
    QVERIFY(awaitActive(desk.window));
    desk.window.updateSubjectWindow(-1);
    QCOMPARE(focused(), QStringLiteral("pushButtonPlaySinusoid"));
}
