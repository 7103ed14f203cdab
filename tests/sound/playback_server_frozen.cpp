// Sessions whose sound server is frozen for a while.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback_failures.h"

#include "support/ProcessorTime.h"
#include <QAudioOutput>
#include <QElapsedTimer>

class TestPlaybackServerFrozen : public SoundFailureTest {
    Q_OBJECT

private slots:
    void initTestCase();
    void soundWaitsForAFrozenServer();
    void sessionCanEndWhileTheServerIsFrozenInMidSound();
    void cleanupTestCase();
};

void TestPlaybackServerFrozen::initTestCase() {
    QVERIFY(server().start());
}

void TestPlaybackServerFrozen::cleanupTestCase() {
    server().kill();
}

void TestPlaybackServerFrozen::soundWaitsForAFrozenServer() {
    constexpr int frozenMs = 5000;
    QVERIFY(prepareAndStart());
    QVERIFY(fixture->session().playTarget());
    QVERIFY(fixture->session().playSinusoid(300));
    QElapsedTimer clock;
    clock.start();
    const qint64 busyBefore = testsupport::processorTimeMs(QCoreApplication::applicationPid());
    server().freeze();
    server().thawAfter(frozenMs);
    // The program is blocked meanwhile, so its journal cannot be checked here:
    // playback_never_starts.cpp does.
    QVERIFY(fixture->session().playSinusoid(400));
    QVERIFY(clock.elapsed() >= frozenMs);
    const qint64 busyMs =
        testsupport::processorTimeMs(QCoreApplication::applicationPid()) - busyBefore;
    QVERIFY2(busyMs < frozenMs / 4, qPrintable(QString::number(busyMs)));
    // The session continues normally.
    QVERIFY(!isListenerLocked());
    QVERIFY(fixture->session().playSinusoid(500));
    verifyJournal({300, 400, 500});
    endAndVerify({300, 400, 500});
}

void TestPlaybackServerFrozen::sessionCanEndWhileTheServerIsFrozenInMidSound() {
    QVERIFY(prepareAndStart(200000));
    request(640);
    QTRY_COMPARE(outputState(), QAudio::ActiveState);
    server().freeze();
    verifyAtRest();
    QVERIFY(isListenerLocked());
    verifyJournal({640});
    endAndVerify({640});
    server().thaw();
    QVERIFY(prepareAndStart());
    QVERIFY(fixture->session().playTarget());
    endAndVerify({});
}

int main(int argc, char** argv) {
    return runWithSoundServer<TestPlaybackServerFrozen>(argc, argv);
}

#include "playback_server_frozen.moc"
