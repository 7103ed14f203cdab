// Both windows closed by the window manager, in every state of a session.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/CloseButton.h"
#include "support/ExpectedResults.h"
#include "support/FileBytes.h"
#include "support/Fixture.h"
#include "support/TestMain.h"

#include <QPushButton>
#include <QSpinBox>
#include <QTest>

using testsupport::CloseEvents;
using testsupport::pressCloseButton;

namespace {

/// The states that a session passes through, in their order.
enum class State { Idle, Prepared, Waiting, TargetRequired, Pausing, Playing, Adjusting, Matched };

/// Presses the close button and waits until the window has handled it.
bool closeAndWait(QWidget& window) {
    const CloseEvents events(window);
    return pressCloseButton(window) && QTest::qWaitFor([&] { return events.count() == 1; });
}

} // namespace

Q_DECLARE_METATYPE(State)

/// Both windows closed by their frame's button. The answers of the question are tested with the
/// listener's window, and cancelled sounds with playing.
class TestCloseButtons : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void theMainWindowCloses_data();
    void theMainWindowCloses();
    void theMainWindowStaysDuringASession_data();
    void theMainWindowStaysDuringASession();
    void theMainWindowStaysWhileTheListenerIsAsked();
    void theSubjectWindowClosesWithYes_data();
    void theSubjectWindowClosesWithYes();

private:
    void setUp() override { fixture->record(); }
    bool reach(State state);
    void endByCloseButton(State state);
};

/// Brings a session into a state.
bool TestCloseButtons::reach(State state) {
    if (state == State::Idle)
        return fixture->session().listener() == nullptr;
    // Long enough to press a close button within a pause or a sound.
    constexpr int longMs = 500;
    const bool isLong = state == State::Pausing || state == State::Playing;
    fixture->prepare(fixture->writeTone("tone.wav", isLong ? longMs : 50));
    if (isLong)
        fixture->session().setPause(longMs);
    if (state == State::Prepared)
        return fixture->window().pushButtonGo->isEnabled();
    if (fixture->session().go() == nullptr)
        return false;
    if (state == State::Waiting)
        return true;
    fixture->session().beReady();
    if (state == State::TargetRequired)
        return true;
    if (!isLong)
        return fixture->playTarget() && (state == State::Adjusting || fixture->playSinusoid(640));
    testsupport::click(*fixture->session().listener(), "pushButtonPlayTarget");
    return state == State::Pausing ||
           QTest::qWaitFor([this] { return fixture->soundSignals == QVector<int>{1}; });
}

/// Ends a session; tests that its only file on the disk holds one match or none.
void TestCloseButtons::endByCloseButton(State state) {
    const auto& window = fixture->window();
    fixture->dialogs.answerClosing(QMessageBox::Yes);
    fixture->dialogs.saveAsProposed();
    SubjectWindow& listener = *fixture->session().listener();
    QVERIFY(closeAndWait(listener));
    QVERIFY(!listener.isVisible());
    QVERIFY(window.isEnabled() && window.isVisible());
    QVERIFY(window.pushButtonPractice->isEnabled() && window.pushButtonExperiment->isEnabled());
    QVERIFY(!window.pushButtonGo->isEnabled());
    QCOMPARE(fixture->fileNumber(), 2);
    const QVector<int> matches = state == State::Matched ? QVector<int>{640} : QVector<int>{};
    QCOMPARE(testsupport::readBytes(fixture->pathOf("SUB001_practice001.txt")),
             testsupport::expectedResults("tone.wav", matches));
    QCOMPARE(fixture->differenceHeard(), QString());
}

void TestCloseButtons::theMainWindowCloses_data() {
    QTest::addColumn<State>("state");
    QTest::newRow("idle") << State::Idle;
    QTest::newRow("prepared") << State::Prepared;
}

void TestCloseButtons::theMainWindowCloses() {
    QFETCH(State, state);
    QVERIFY(reach(state));
    QVERIFY(pressCloseButton(fixture->window()));
    QTRY_VERIFY(!fixture->window().isVisible());
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
    QVERIFY(reach(state));
    QVERIFY(closeAndWait(fixture->window()));
    QVERIFY(fixture->window().isVisible() && !fixture->window().isEnabled());
    QVERIFY(fixture->session().listener()->isVisible());
    // The sound plays to its end.
    if (state == State::Pausing || state == State::Playing) {
        QTRY_COMPARE(fixture->soundSignals, (QVector<int>{1, -1}));
        fixture->expectSound(fixture->expectedTarget());
    }
    endByCloseButton(state);
    QVERIFY(closeAndWait(fixture->window()));
    QVERIFY(!fixture->window().isVisible());
}

void TestCloseButtons::theMainWindowStaysWhileTheListenerIsAsked() {
    QVERIFY(reach(State::Adjusting));
    bool isRequested = false;
    bool wasVisible = false;
    fixture->dialogs.expectClosing([&](QWidget* dialog) {
        isRequested = pressCloseButton(fixture->window());
        // The question blocks the window, so no event reports that the request has arrived.
        constexpr int enoughMs = 200;
        QTest::qWait(enoughMs);
        wasVisible = fixture->window().isVisible();
        QTest::mouseClick(qobject_cast<QMessageBox*>(dialog)->button(QMessageBox::No),
                          Qt::LeftButton);
    });
    QVERIFY(closeAndWait(*fixture->session().listener()));
    QVERIFY(isRequested && wasVisible);
    QVERIFY(fixture->window().isVisible() && fixture->session().listener()->isVisible());
    endByCloseButton(State::Adjusting);
}

void TestCloseButtons::theSubjectWindowClosesWithYes_data() {
    QTest::addColumn<State>("state");
    QTest::newRow("waiting for the listener") << State::Waiting;
    QTest::newRow("target required") << State::TargetRequired;
    QTest::newRow("adjusting") << State::Adjusting;
    QTest::newRow("adjusting, done shown") << State::Matched;
}

void TestCloseButtons::theSubjectWindowClosesWithYes() {
    QFETCH(State, state);
    QVERIFY(reach(state));
    endByCloseButton(state);
}

int main(int argc, char** argv) {
    return testsupport::runWithWindows<TestCloseButtons>(argc, argv);
}

#include "end_to_end_closing.moc"
