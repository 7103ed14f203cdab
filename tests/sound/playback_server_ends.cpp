// Sessions whose sound server ends, and may come back.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback_failures.h"

#include "support/TestMain.h"

#include <QAudioOutput>
#include <QBuffer>

namespace {

constexpr int sinusoidsPerSession = 2;

QString failureLine() {
    return QStringLiteral("Audio stopped unexpectedly");
}

/// Whether the toolkit has a connection to the server at this moment.
bool isConnected() {
    QByteArray silence(4, '\0');
    QBuffer buffer(&silence);
    buffer.open(QIODevice::ReadOnly);
    QAudioOutput output(QAudioDeviceInfo::defaultOutputDevice().preferredFormat());
    output.start(&buffer);
    return output.error() == QAudio::NoError;
}

} // namespace

/// In this order: the toolkit finds a server again once, and then no more.
class TestPlaybackServerEnds : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void soundIsPlayedWhileTheServerIsThere();
    void serverThatEndsBetweenSoundsAndIsBackAtOnceIsFoundAgain();
    void serverThatEndsInMidSoundIsLoggedAndTheSessionEnds();
    void serverThatIsBackTooLateIsNotFoundAgain();
    void cleanupTestCase();
};

void TestPlaybackServerEnds::initTestCase() {
    QVERIFY(server().start());
}

void TestPlaybackServerEnds::cleanupTestCase() {
    server().kill();
}

void TestPlaybackServerEnds::soundIsPlayedWhileTheServerIsThere() {
    FailureBench bench;
    QVERIFY(bench.prepareAndGo());
    QVERIFY(bench.session.playTarget());
    QCOMPARE(bench.log.warnings(), QStringList());
    bench.sounds.clear();
    bench.endAndVerify({});
}

void TestPlaybackServerEnds::serverThatEndsBetweenSoundsAndIsBackAtOnceIsFoundAgain() {
    FailureBench bench;
    QVERIFY(bench.prepareAndGo());
    QVERIFY(bench.session.playTarget());
    QVERIFY(bench.session.playSinusoid(300));
    server().kill();
    QVERIFY(server().start());
    // Nobody has asked for a sound since: there is nothing to complain about yet.
    QVERIFY(!bench.log.all().contains(failureLine()));
    bench.request(400);
    QTRY_COMPARE(bench.log.warnings().count(failureLine()), 1);
    QCOMPARE(bench.soundsTold(), QVector<int>{1});
    QVERIFY(!bench.session.listener()->isEnabled());
    QVERIFY(bench.isAtRest());
    bench.verifyJournal({300, 400});
    bench.endAndVerify({300, 400});
    // The toolkit looks for the server again three seconds after it has lost it.
    constexpr int patienceMs = 20000;
    QTRY_VERIFY_WITH_TIMEOUT(isConnected(), patienceMs);
    QVERIFY(bench.prepareAndGo());
    QVERIFY(bench.session.playTarget());
    QVERIFY(bench.session.playSinusoid(500));
    bench.sounds.clear();
    bench.endAndVerify({500});
    QCOMPARE(bench.log.warnings().count(failureLine()), 1);
}

void TestPlaybackServerEnds::serverThatEndsInMidSoundIsLoggedAndTheSessionEnds() {
    FailureBench bench;
    QVERIFY(bench.prepareAndGo(200000));
    bench.request(640);
    QTRY_COMPARE(bench.window.audioOutput->state(), QAudio::ActiveState);
    QVERIFY(!bench.log.all().contains(failureLine()));
    server().kill();
    QTRY_COMPARE(bench.log.warnings().count(failureLine()), 1);
    // Nothing is released, and nothing unlocks the listener's window.
    QVERIFY(bench.window.audioOutput != nullptr);
    QVERIFY(bench.window.audioOutput->error() != QAudio::NoError);
    QCOMPARE(bench.window.audioBytes->size(), 800000);
    QCOMPARE(bench.soundsTold(), QVector<int>{1});
    QVERIFY(!bench.session.listener()->isEnabled());
    QVERIFY(bench.isAtRest());
    bench.verifyJournal({640});
    bench.endAndVerify({640});
    // The next session goes without sound.
    QVERIFY(bench.prepareAndGo());
    bench.request(321);
    QTRY_COMPARE(bench.log.warnings().count(failureLine()), 2);
    bench.verifyJournal({321});
    bench.endAndVerify({321});
}

void TestPlaybackServerEnds::serverThatIsBackTooLateIsNotFoundAgain() {
    FailureBench bench;
    // Still without the server that ended before, the toolkit gives up.
    constexpr int patienceMs = 20000;
    QTRY_VERIFY_WITH_TIMEOUT(!bench.log.warnings().filter("pa_context_connect() failed").isEmpty(),
                             patienceMs);
    QVERIFY(server().start());
    QVERIFY(bench.prepareAndGo());
    for (int frequency = 1; frequency <= sinusoidsPerSession; ++frequency) {
        bench.request(frequency);
        QTRY_COMPARE(bench.log.warnings().count(failureLine()), frequency);
        QCOMPARE(bench.soundsTold(), QVector<int>{1});
    }
    QVERIFY(bench.isAtRest());
    bench.verifyJournal({1, 2});
    bench.endAndVerify({1, 2});
}

int main(int argc, char** argv) {
    qputenv("PULSE_SERVER", server().address());
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellion"));
    return testsupport::runAll<TestPlaybackServerEnds>(argc, argv);
}

#include "playback_server_ends.moc"
