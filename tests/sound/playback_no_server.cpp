// Sessions where there is no sound server.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback_failures.h"

#include <QAudioOutput>
#include <QPushButton>
#include <QTimer>

/// The order matters: the last test starts a server.
class TestPlaybackWithoutServer : public SoundFailureTest {
    Q_OBJECT

private slots:
    void unsupportedFormatIsLoggedOnceAtTheStart();
    void soundIsAttemptedAndNeverEnds();
    void sessionEndsAndSaves();
    void nextSessionRunsLikeTheFirst();
    void mainWindowIsDestroyedWithAnOutputThatNeverEnds();
    void laterServerIsNotFound();
    void cleanupTestCase();

private:
    void setUp() override {
        // Once for each main window.
        fixture->log.expect("Raw audio format not supported by backend, cannot play audio.");
        fixture->log.allow("using null output device, none available");
        fixture->log.allow("PulseAudioService: pa_context_connect() failed");
    }
};

void TestPlaybackWithoutServer::unsupportedFormatIsLoggedOnceAtTheStart() {
    const auto& window = fixture->window();
    const QString line = "Raw audio format not supported by backend, cannot play audio.";
    QCOMPARE(fixture->log.warnings().count(line), 1);
    // No control is disabled because of it.
    QVERIFY(window.isEnabled());
    QVERIFY(window.pushButtonPractice->isEnabled());
}

void TestPlaybackWithoutServer::soundIsAttemptedAndNeverEnds() {
    QVERIFY(prepareAndStart());
    testsupport::click(*fixture->session().listener(), "pushButtonPlayTarget");
    QTRY_COMPARE(fixture->soundSignals, SoundSignals{1});
    QVERIFY(fixture->window().audioOutput != nullptr);
    QCOMPARE(outputState(), QAudio::StoppedState);
    // Longer than the sound of 10 ms would take.
    bool isOver = false;
    QTimer::singleShot(200, Qt::PreciseTimer, this, [&] { isOver = true; });
    QTRY_VERIFY(isOver);
    QCOMPARE(fixture->soundSignals, SoundSignals{1});
    QVERIFY(fixture->window().audioOutput != nullptr);
    QVERIFY(isListenerLocked());
    QVERIFY(!fixture->log.all().contains("Audio stopped unexpectedly"));
    endAndVerify({});
}

void TestPlaybackWithoutServer::sessionEndsAndSaves() {
    QVERIFY(prepareAndStart());
    // Without a sound the window stays locked, so the request is sent directly.
    for (const int frequency : {640, 441}) {
        fixture->soundSignals.clear();
        emit fixture->session().listener()->subjectResponded(4, frequency);
        QTRY_COMPARE(fixture->soundSignals, SoundSignals{1});
        // Only one output exists at a time, although none of them ends.
        QTRY_COMPARE(fixture->window().findChildren<QAudioOutput*>().size(), 1);
    }
    QCOMPARE(fixture->textOf("lineEditFrequencyMatched"), QString("441"));
    verifyAtRest();
    verifyJournal({640, 441});
    endAndVerify({640, 441});
}

void TestPlaybackWithoutServer::nextSessionRunsLikeTheFirst() {
    for (const int frequency : {300, 400}) {
        fixture->soundSignals.clear();
        QVERIFY(prepareAndStart());
        emit fixture->session().listener()->subjectResponded(4, frequency);
        QTRY_COMPARE(fixture->soundSignals, SoundSignals{1});
        verifyJournal({frequency});
        endAndVerify({frequency});
    }
}

void TestPlaybackWithoutServer::mainWindowIsDestroyedWithAnOutputThatNeverEnds() {
    QVERIFY(prepareAndStart());
    testsupport::click(*fixture->session().listener(), "pushButtonPlayTarget");
    QTRY_COMPARE(fixture->soundSignals, SoundSignals{1});
    fixture->destroyWindow();
    QCOMPARE(fixture->soundSignals, SoundSignals{1});
}

void TestPlaybackWithoutServer::laterServerIsNotFound() {
    QVERIFY(server().start());
    // Qt reconnects three seconds after it loses a server, but it was never connected to this one.
    constexpr int beyondReconnectionMs = 3500;
    QTest::qWait(beyondReconnectionMs);
    QVERIFY(QAudioDeviceInfo::defaultOutputDevice().isNull());
    QVERIFY(prepareAndStart());
    request(640);
    QCOMPARE(outputState(), QAudio::StoppedState);
    verifyAtRest();
    QCOMPARE(fixture->soundSignals, SoundSignals{1});
    QVERIFY(isListenerLocked());
    verifyJournal({640});
    endAndVerify({640});
}

void TestPlaybackWithoutServer::cleanupTestCase() {
    server().kill();
}

int main(int argc, char** argv) {
    return runWithSoundServer<TestPlaybackWithoutServer>(argc, argv);
}

#include "playback_no_server.moc"
