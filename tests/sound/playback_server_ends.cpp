// Sessions whose sound server ends, and may come back.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback_failures.h"

#include <QAudioOutput>
#include <QBuffer>

namespace {

constexpr int sinusoidsPerSession = 2;

QString failureLine() {
    return QStringLiteral("Audio stopped unexpectedly");
}

/// Whether Qt has a connection to the server at this moment.
bool isConnected() {
    QByteArray silence(4, '\0');
    QBuffer buffer(&silence);
    buffer.open(QIODevice::ReadOnly);
    QAudioOutput output(QAudioDeviceInfo::defaultOutputDevice().preferredFormat());
    output.start(&buffer);
    return output.error() == QAudio::NoError;
}

} // namespace

/// The order matters: Qt reconnects to a server once only.
class TestPlaybackServerEnds : public SoundFailureTest {
    Q_OBJECT

private slots:
    void initTestCase();
    void soundIsPlayedWhileTheServerIsThere();
    void serverRestartedBetweenSoundsIsFoundAgain();
    void serverEndInMidSoundIsLoggedAndTheSessionCanEnd();
    void serverRestartedTooLateIsNotFoundAgain();
    void cleanupTestCase();
};

void TestPlaybackServerEnds::initTestCase() {
    QVERIFY(server().start());
}

void TestPlaybackServerEnds::cleanupTestCase() {
    server().kill();
}

void TestPlaybackServerEnds::soundIsPlayedWhileTheServerIsThere() {
    QVERIFY(prepareAndStart());
    QVERIFY(fixture->session().playTarget());
    endAndVerify({});
}

void TestPlaybackServerEnds::serverRestartedBetweenSoundsIsFoundAgain() {
    QVERIFY(prepareAndStart());
    QVERIFY(fixture->session().playTarget());
    QVERIFY(fixture->session().playSinusoid(300));
    server().kill();
    QVERIFY(server().start());
    // No sound has been requested since, so nothing is reported yet.
    QVERIFY(!fixture->log.all().contains(failureLine()));
    request(400);
    fixture->log.expect(failureLine());
    QTRY_COMPARE(fixture->log.warnings().count(failureLine()), 1);
    QCOMPARE(fixture->soundSignals, SoundSignals{1});
    QVERIFY(isListenerLocked());
    verifyAtRest();
    verifyJournal({300, 400});
    endAndVerify({300, 400});
    // Qt reconnects three seconds after it loses the server.
    constexpr int timeoutMs = 20000;
    QTRY_VERIFY_WITH_TIMEOUT(isConnected(), timeoutMs);
    QVERIFY(prepareAndStart());
    QVERIFY(fixture->session().playTarget());
    QVERIFY(fixture->session().playSinusoid(500));
    endAndVerify({500});
}

void TestPlaybackServerEnds::serverEndInMidSoundIsLoggedAndTheSessionCanEnd() {
    QVERIFY(prepareAndStart(200000));
    request(640);
    QTRY_COMPARE(outputState(), QAudio::ActiveState);
    QVERIFY(!fixture->log.all().contains(failureLine()));
    server().kill();
    fixture->log.expect("\"Stream error: Connection terminated\"");
    fixture->log.expect(failureLine());
    QTRY_COMPARE(fixture->log.warnings().count(failureLine()), 1);
    // Nothing is released, and nothing unlocks the listener's window.
    QVERIFY(fixture->window().audioOutput != nullptr);
    QVERIFY(fixture->window().audioOutput->error() != QAudio::NoError);
    QCOMPARE(fixture->window().audioBytes->size(), 800000);
    QCOMPARE(fixture->soundSignals, SoundSignals{1});
    QVERIFY(isListenerLocked());
    verifyAtRest();
    verifyJournal({640});
    endAndVerify({640});
    // The next session has no sound.
    QVERIFY(prepareAndStart());
    request(321);
    fixture->log.expect(failureLine());
    QTRY_COMPARE(fixture->log.warnings().count(failureLine()), 2);
    verifyJournal({321});
    endAndVerify({321});
}

void TestPlaybackServerEnds::serverRestartedTooLateIsNotFoundAgain() {
    // Qt gives up while the server is still missing.
    constexpr int timeoutMs = 20000;
    const QString givenUp = "PulseAudioService: pa_context_connect() failed";
    fixture->log.expect(givenUp);
    QTRY_VERIFY_WITH_TIMEOUT(fixture->log.warnings().contains(givenUp), timeoutMs);
    QVERIFY(server().start());
    QVERIFY(prepareAndStart());
    for (int frequency = 1; frequency <= sinusoidsPerSession; ++frequency) {
        request(frequency);
        fixture->log.expect(failureLine());
        QTRY_COMPARE(fixture->log.warnings().count(failureLine()), frequency);
        QCOMPARE(fixture->soundSignals, SoundSignals{1});
    }
    verifyAtRest();
    verifyJournal({1, 2});
    endAndVerify({1, 2});
}

int main(int argc, char** argv) {
    return runWithSoundServer<TestPlaybackServerEnds>(argc, argv);
}

#include "playback_server_ends.moc"
