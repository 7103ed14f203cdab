// Both windows closed by the window manager, in every state that they can be in.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "end_to_end_room.h"
#include "subject/SubjectWindow.h"
#include "support/CloseButton.h"
#include "support/FileBytes.h"
#include "support/TestMain.h"

#include <QApplication>
#include <QPushButton>
#include <QTimer>

#include <algorithm>

using testsupport::CloseEvents;
using testsupport::find;
using testsupport::pressCloseButton;

namespace {

constexpr auto practice = SessionRoom::Session::Practice;

/// Where a session stands when a close button is pressed, in the order of a session.
enum class State { Idle, Prepared, Waiting, TargetRequired, Pausing, Playing, Adjusting, Matched };

/// Sounds are so long that a close button is pressed well within their pause and their length.
constexpr int soundMs = 500;

QString question() {
    return QStringLiteral("Confirmation MessageBox");
}

QString resultsName() {
    return QStringLiteral("SUB001_practice001.txt");
}

/// Brings a session into a state. The sounds on the way there are short ones where they can be.
bool reach(SessionRoom& room, State state) {
    if (state == State::Idle)
        return true;
    const bool isLong = state == State::Pausing || state == State::Playing;
    room.prepare(practice, room.tone(QStringLiteral("tone.wav"), isLong ? soundMs : 50));
    if (state == State::Prepared)
        return room.isEnabled("pushButtonGo");
    if (room.driver.go() == nullptr)
        return false;
    if (state == State::Waiting)
        return true;
    room.driver.beReady();
    if (state == State::TargetRequired)
        return true;
    if (!isLong)
        return room.playTarget() && (state == State::Adjusting || room.playSinusoid(640));
    QSignalSpy sounds(&room.window, &MainWindow::soundPlaying);
    testsupport::click(*room.driver.listener(), "pushButtonPlayTarget");
    return state == State::Pausing || (sounds.wait() && sounds.count() == 1);
}

/// What the listener can press and see: the same before and after a question answered by No.
QString lookOf(SubjectWindow& listener) {
    QString look = listener.isEnabled() ? QStringLiteral("enabled") : QStringLiteral("disabled");
    for (const auto* button : listener.findChildren<QPushButton*>())
        look += QStringLiteral(" %1:%2%3")
                    .arg(button->objectName())
                    .arg(static_cast<int>(button->isVisible()))
                    .arg(static_cast<int>(button->isEnabled()));
    return look;
}

/// Presses the close button and waits until the window has dealt with it.
bool closeAndWait(QWidget& window) {
    const CloseEvents events(window);
    return pressCloseButton(window) && QTest::qWaitFor([&] { return events.count() == 1; });
}

/// Ends a session that has one match or none, from wherever it stands.
void endByCloseButton(SessionRoom& room) {
    room.driver.dialogs.click(question(), QMessageBox::Yes);
    room.driver.dialogs.saveAsProposed();
    QVERIFY(closeAndWait(*room.driver.listener()));
}

QVector<int> matchesOf(State state) {
    return state == State::Matched ? QVector<int>{640} : QVector<int>{};
}

/// Idle again, with the results on the disk and nothing left of the session.
void checkEnded(SessionRoom& room, const QVector<int>& matches) {
    QVERIFY(!room.driver.listener()->isVisible());
    QVERIFY(room.window.isEnabled() && room.window.isVisible());
    QVERIFY(room.isEnabled("pushButtonPractice") && room.isEnabled("pushButtonExperiment"));
    QVERIFY(!room.isEnabled("pushButtonGo"));
    QCOMPARE(room.fileNumber(), 2);
    QCOMPARE(testsupport::readBytes(room.pathOf(resultsName())), resultsOf("tone.wav", matches));
}

/// The session is cut short: of the sound only a beginning is heard, or nothing.
void checkCutShort(SessionRoom& room, State state) {
    using Position = QVector<float>::const_iterator;
    const QVector<float> heard = room.heard();
    const auto isSound = [](float sample) { return sample != 0; };
    const Position end = std::find_if(heard.crbegin(), heard.crend(), isSound).base();
    const Position start = std::find_if(heard.cbegin(), end, isSound);
    if (state == State::Pausing) {
        QVERIFY(start == end);
        return;
    }
    const QVector<float>& whole = room.target.played;
    const Position wholeStart = std::find_if(whole.cbegin(), whole.cend(), isSound);
    const auto length = end - start;
    QVERIFY2(length < whole.cend() - wholeStart, qPrintable(QString::number(length)));
    QVERIFY(std::equal(start, end, wholeStart));
}

/// Answers the next question only when soundPlaying has sent `index`, by a click on a button that
/// has to be enabled for that.
void answerOnSound(SessionRoom& room, int index, QMessageBox::StandardButton button,
                   bool& isAnswered) {
    room.driver.dialogs.expect(question(), [&room, index, button, &isAnswered](QWidget* dialog) {
        QAbstractButton* answer = qobject_cast<QMessageBox*>(dialog)->button(button);
        QObject::connect(answer, &QAbstractButton::clicked, dialog,
                         [&isAnswered] { isAnswered = true; });
        QObject::connect(&room.window, &MainWindow::soundPlaying, dialog, [=](int sent) {
            if (sent == index)
                QTimer::singleShot(0, dialog, [=] { QTest::mouseClick(answer, Qt::LeftButton); });
        });
        // A question that takes no answer must not hold the test up.
        constexpr int patienceMs = 4000;
        QTimer::singleShot(patienceMs, dialog, [dialog] { dialog->close(); });
    });
}

} // namespace

Q_DECLARE_METATYPE(State)
Q_DECLARE_METATYPE(QMessageBox::StandardButton)

/// Both windows closed by their frame's button in every state.
class TestCloseButtons : public RoomTest {
    Q_OBJECT

private slots:
    void theMainWindowCloses_data();
    void theMainWindowCloses();
    void theMainWindowStaysDuringASession_data();
    void theMainWindowStaysDuringASession();
    void theMainWindowStaysWhileTheListenerIsAsked();
    void theListenersWindowClosesWithYes_data();
    void theListenersWindowClosesWithYes();
    void theListenersWindowStaysOtherwise_data();
    void theListenersWindowStaysOtherwise();
    void theQuestionStaysAnswerable_data();
    void theQuestionStaysAnswerable();
};

void TestCloseButtons::theMainWindowCloses_data() {
    QTest::addColumn<State>("state");
    QTest::newRow("idle") << State::Idle;
    QTest::newRow("prepared") << State::Prepared;
}

void TestCloseButtons::theMainWindowCloses() {
    QFETCH(State, state);
    QVERIFY(reach(*room, state));
    QVERIFY(pressCloseButton(room->window));
    QTRY_VERIFY(!room->window.isVisible());
}

void TestCloseButtons::theMainWindowStaysDuringASession_data() {
    QTest::addColumn<State>("state");
    QTest::newRow("waiting for the listener") << State::Waiting;
    QTest::newRow("waiting for the target's request") << State::TargetRequired;
    QTest::newRow("pausing") << State::Pausing;
    QTest::newRow("playing") << State::Playing;
    QTest::newRow("waiting for the next request") << State::Matched;
}

void TestCloseButtons::theMainWindowStaysDuringASession() {
    QFETCH(State, state);
    QVERIFY(reach(*room, state));
    QSignalSpy sounds(&room->window, &MainWindow::soundPlaying);
    QVERIFY(closeAndWait(room->window));
    QVERIFY(room->window.isVisible() && !room->window.isEnabled());
    QVERIFY(room->driver.listener()->isVisible());
    // The sound plays to its end as if nothing had happened.
    if (state == State::Pausing || state == State::Playing) {
        QTRY_VERIFY(!sounds.isEmpty() && sounds.last().at(0).toInt() == -1);
        room->expectSound(room->target.played);
    }
    endByCloseButton(*room);
    checkEnded(*room, matchesOf(state));
    QCOMPARE(room->differenceHeard(), QString());
    QVERIFY(closeAndWait(room->window));
    QVERIFY(!room->window.isVisible());
}

void TestCloseButtons::theMainWindowStaysWhileTheListenerIsAsked() {
    QVERIFY(reach(*room, State::Adjusting));
    bool isRequested = false;
    bool wasVisible = false;
    room->driver.dialogs.expect(question(), [&](QWidget* dialog) {
        isRequested = pressCloseButton(room->window);
        // The question blocks the window, so no event of it tells that the request has come.
        constexpr int enoughMs = 200;
        QTimer::singleShot(enoughMs, dialog, [&, dialog] {
            wasVisible = room->window.isVisible();
            QTest::mouseClick(qobject_cast<QMessageBox*>(dialog)->button(QMessageBox::No),
                              Qt::LeftButton);
        });
    });
    QVERIFY(closeAndWait(*room->driver.listener()));
    QVERIFY(isRequested && wasVisible);
    QVERIFY(room->window.isVisible() && room->driver.listener()->isVisible());
    endByCloseButton(*room);
    checkEnded(*room, {});
}

void TestCloseButtons::theListenersWindowClosesWithYes_data() {
    QTest::addColumn<State>("state");
    QTest::newRow("waiting for the listener") << State::Waiting;
    QTest::newRow("target required") << State::TargetRequired;
    QTest::newRow("playing, in the pause") << State::Pausing;
    QTest::newRow("playing") << State::Playing;
    QTest::newRow("adjusting") << State::Adjusting;
    QTest::newRow("adjusting, done shown") << State::Matched;
}

void TestCloseButtons::theListenersWindowClosesWithYes() {
    QFETCH(State, state);
    QVERIFY(reach(*room, state));
    QSignalSpy sounds(&room->window, &MainWindow::soundPlaying);
    endByCloseButton(*room);
    checkEnded(*room, matchesOf(state));
    if (state == State::Pausing || state == State::Playing)
        checkCutShort(*room, state);
    else
        QCOMPARE(room->differenceHeard(), QString());
    // Longer than what was pending would have lasted.
    QVERIFY(!sounds.wait(state == State::Pausing ? 2 * soundMs : 1));
    QVERIFY(sounds.isEmpty());
}

void TestCloseButtons::theListenersWindowStaysOtherwise_data() {
    QTest::addColumn<State>("state");
    QTest::addColumn<QMessageBox::StandardButton>("answer");
    QTest::newRow("waiting for the listener, no") << State::Waiting << QMessageBox::No;
    QTest::newRow("target required, no") << State::TargetRequired << QMessageBox::No;
    QTest::newRow("playing, in the pause, no") << State::Pausing << QMessageBox::No;
    QTest::newRow("playing, no") << State::Playing << QMessageBox::No;
    QTest::newRow("adjusting, no") << State::Adjusting << QMessageBox::No;
    QTest::newRow("adjusting, done shown, no") << State::Matched << QMessageBox::No;
    QTest::newRow("waiting for the listener, cancel") << State::Waiting << QMessageBox::Cancel;
    QTest::newRow("playing, cancel") << State::Playing << QMessageBox::Cancel;
    QTest::newRow("adjusting, cancel") << State::Adjusting << QMessageBox::Cancel;
}

void TestCloseButtons::theListenersWindowStaysOtherwise() {
    QFETCH(State, state);
    QFETCH(QMessageBox::StandardButton, answer);
    QVERIFY(reach(*room, state));
    SubjectWindow& listener = *room->driver.listener();
    QSignalSpy sounds(&room->window, &MainWindow::soundPlaying);
    const QSignalSpy closed(&listener, &SubjectWindow::subjectWindowClosed);
    const QString look = lookOf(listener);
    room->driver.dialogs.click(question(), answer);
    QVERIFY(closeAndWait(listener));
    QVERIFY(listener.isVisible());
    QCOMPARE(lookOf(listener), look);
    QVERIFY(closed.isEmpty() && !room->window.isEnabled());
    QCOMPARE(room->fileNumber(), 1);
    if (state == State::Pausing || state == State::Playing) {
        QTRY_VERIFY(!sounds.isEmpty() && sounds.last().at(0).toInt() == -1);
        QVERIFY(listener.isEnabled());
        room->expectSound(room->target.played);
    }
    endByCloseButton(*room);
    checkEnded(*room, matchesOf(state));
    QCOMPARE(closed.count(), 1);
    QCOMPARE(room->differenceHeard(), QString());
}

void TestCloseButtons::theQuestionStaysAnswerable_data() {
    QTest::addColumn<State>("asked");
    QTest::addColumn<int>("answeredAt");
    QTest::addColumn<QMessageBox::StandardButton>("answer");
    const auto yes = QMessageBox::Yes;
    const auto no = QMessageBox::No;
    QTest::newRow("when the sound starts, yes") << State::Pausing << 1 << yes;
    QTest::newRow("when the sound starts, no") << State::Pausing << 1 << no;
    QTest::newRow("when the sound has ended, yes") << State::Playing << -1 << yes;
    QTest::newRow("when the sound has ended, no") << State::Playing << -1 << no;
}

void TestCloseButtons::theQuestionStaysAnswerable() {
    QFETCH(State, asked);
    QFETCH(int, answeredAt);
    QFETCH(QMessageBox::StandardButton, answer);
    QVERIFY(reach(*room, asked));
    SubjectWindow& listener = *room->driver.listener();
    QSignalSpy sounds(&room->window, &MainWindow::soundPlaying);
    bool isAnswered = false;
    answerOnSound(*room, answeredAt, answer, isAnswered);
    if (answer == QMessageBox::Yes)
        room->driver.dialogs.saveAsProposed();
    QVERIFY(closeAndWait(listener));
    QVERIFY(isAnswered);
    if (answer == QMessageBox::No) {
        QVERIFY(listener.isVisible());
        QTRY_VERIFY(!sounds.isEmpty() && sounds.last().at(0).toInt() == -1);
        QVERIFY(listener.isEnabled());
        endByCloseButton(*room);
    }
    checkEnded(*room, {});
    if (answer == QMessageBox::Yes && answeredAt == 1) {
        checkCutShort(*room, State::Playing);
        return;
    }
    room->expectSound(room->target.played);
    QCOMPARE(room->differenceHeard(), QString());
}

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellion"));
    // Main windows come and go here; none of them ends the program.
    QApplication::setQuitOnLastWindowClosed(false);
    return testsupport::runAll<TestCloseButtons>(argc, argv);
}

#include "end_to_end_closing.moc"
