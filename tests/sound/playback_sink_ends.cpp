// Sessions whose sound device is taken away while the sound server stays.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback_failures.h"

#include "support/TestMain.h"

#include <QAudioOutput>

namespace {

bool isThereADevice() {
    return !QAudioDeviceInfo::defaultOutputDevice().isNull();
}

} // namespace

class TestPlaybackSinkEnds : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void sinkRemovedInMidSoundLeavesTheOutputActiveForEver();
    void sinkRemovedBetweenSoundsLeavesNoDevice();
    void nextSessionPlaysOnceTheSinkIsBack();
    void cleanupTestCase();
};

void TestPlaybackSinkEnds::initTestCase() {
    QVERIFY(server().start());
}

/// Each test begins with a device, which the toolkit learns of in the background.
void TestPlaybackSinkEnds::init() {
    if (!isThereADevice())
        QVERIFY(server().addSink());
    QTRY_VERIFY(isThereADevice());
}

void TestPlaybackSinkEnds::cleanupTestCase() {
    server().kill();
}

void TestPlaybackSinkEnds::sinkRemovedInMidSoundLeavesTheOutputActiveForEver() {
    FailureBench bench;
    QVERIFY(bench.prepareAndGo(4000));
    QVERIFY(bench.session.playTarget());
    bench.request(640);
    QTRY_COMPARE(bench.window.audioOutput->state(), QAudio::ActiveState);
    QVERIFY(server().removeSink());
    // Much longer than the sound of 100 ms.
    QVERIFY(bench.isAtRest());
    QCOMPARE(bench.window.audioOutput->state(), QAudio::ActiveState);
    QCOMPARE(bench.soundsTold(), QVector<int>{1});
    QVERIFY(!bench.log.all().contains("Audio stopped unexpectedly"));
    QVERIFY(!bench.session.listener()->isEnabled());
    bench.verifyJournal({640});
    bench.endAndVerify({640});
}

void TestPlaybackSinkEnds::sinkRemovedBetweenSoundsLeavesNoDevice() {
    FailureBench bench;
    QVERIFY(bench.prepareAndGo());
    QVERIFY(bench.session.playTarget());
    QVERIFY(bench.session.playSinusoid(300));
    QVERIFY(server().removeSink());
    QTRY_VERIFY(!isThereADevice());
    bench.request(400);
    QVERIFY(bench.isAtRest());
    QCOMPARE(bench.window.audioOutput->state(), QAudio::StoppedState);
    QCOMPARE(bench.soundsTold(), QVector<int>{1});
    bench.verifyJournal({300, 400});
    bench.endAndVerify({300, 400});
}

void TestPlaybackSinkEnds::nextSessionPlaysOnceTheSinkIsBack() {
    FailureBench bench;
    for (const int frequency : {300, 400}) {
        QVERIFY(bench.prepareAndGo());
        QVERIFY(bench.session.playTarget());
        QVERIFY(bench.session.playSinusoid(frequency));
        bench.request(frequency + 1);
        QTRY_COMPARE(bench.soundsTold(), (QVector<int>{1, -1}));
        bench.sounds.clear();
        bench.endAndVerify({frequency, frequency + 1});
        if (frequency == 400)
            break;
        QVERIFY(server().removeSink());
        QTRY_VERIFY(!isThereADevice());
        QVERIFY(server().addSink());
        QTRY_VERIFY(isThereADevice());
    }
    QCOMPARE(bench.log.warnings(), QStringList());
}

int main(int argc, char** argv) {
    qputenv("PULSE_SERVER", server().address());
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellion"));
    return testsupport::runAll<TestPlaybackSinkEnds>(argc, argv);
}

#include "playback_sink_ends.moc"
