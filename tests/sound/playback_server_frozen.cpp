// Sessions whose sound server stands still for a while.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback_failures.h"

#include "support/ProcessorTime.h"
#include "support/TestMain.h"

#include <QAudioOutput>
#include <QElapsedTimer>

class TestPlaybackServerFrozen : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void soundWaitsForAServerThatStandsStill();
    void sessionCanBeEndedWhileTheServerStandsStillInMidSound();
    void cleanupTestCase();
};

void TestPlaybackServerFrozen::initTestCase() {
    QVERIFY(server().start());
}

void TestPlaybackServerFrozen::cleanupTestCase() {
    server().kill();
}

void TestPlaybackServerFrozen::soundWaitsForAServerThatStandsStill() {
    constexpr int frozenMs = 5000;
    FailureBench bench;
    QVERIFY(bench.prepareAndGo());
    QVERIFY(bench.session.playTarget());
    QVERIFY(bench.session.playSinusoid(300));
    QElapsedTimer clock;
    clock.start();
    const qint64 busyBefore = testsupport::processorTimeMs(QCoreApplication::applicationPid());
    server().freeze();
    server().thawAfter(frozenMs);
    // Nothing of the program runs meanwhile, so that it cannot be asked for its journal: see the
    // sessions that never get on.
    QVERIFY(bench.session.playSinusoid(400));
    QVERIFY(clock.elapsed() >= frozenMs);
    const qint64 busyMs =
        testsupport::processorTimeMs(QCoreApplication::applicationPid()) - busyBefore;
    QVERIFY2(busyMs < frozenMs / 4, qPrintable(QString::number(busyMs)));
    // The session goes on as if nothing had been.
    QVERIFY(bench.session.listener()->isEnabled());
    QVERIFY(bench.session.playSinusoid(500));
    QCOMPARE(bench.log.warnings(), QStringList());
    bench.verifyJournal({300, 400, 500});
    bench.sounds.clear();
    bench.endAndVerify({300, 400, 500});
}

void TestPlaybackServerFrozen::sessionCanBeEndedWhileTheServerStandsStillInMidSound() {
    FailureBench bench;
    QVERIFY(bench.prepareAndGo(200000));
    bench.request(640);
    QTRY_COMPARE(bench.window.audioOutput->state(), QAudio::ActiveState);
    server().freeze();
    QVERIFY(bench.isAtRest());
    QVERIFY(!bench.session.listener()->isEnabled());
    bench.verifyJournal({640});
    bench.endAndVerify({640});
    server().thaw();
    QVERIFY(bench.prepareAndGo());
    QVERIFY(bench.session.playTarget());
    bench.sounds.clear();
    bench.endAndVerify({});
}

int main(int argc, char** argv) {
    qputenv("PULSE_SERVER", server().address());
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellion"));
    return testsupport::runAll<TestPlaybackServerFrozen>(argc, argv);
}

#include "playback_server_frozen.moc"
