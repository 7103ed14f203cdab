// Sessions whose sound device is removed while the sound server stays.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback_failures.h"

#include <QAudioOutput>

namespace {

bool hasDevice() {
    return !QAudioDeviceInfo::defaultOutputDevice().isNull();
}

} // namespace

class TestPlaybackSinkEnds : public SoundFailureTest {
    Q_OBJECT

private slots:
    void initTestCase();
    void sinkRemovedInMidSoundLeavesTheOutputActiveForEver();
    void sinkRemovedBetweenSoundsLeavesNoDevice();
    void nextSessionPlaysOnceTheSinkIsBack();
    void cleanupTestCase();

private:
    void setUp() override;
};

void TestPlaybackSinkEnds::initTestCase() {
    QVERIFY(server().start());
}

/// Each test begins with a device, which Qt discovers in the background.
void TestPlaybackSinkEnds::setUp() {
    if (!hasDevice())
        QVERIFY(server().addSink());
    QTRY_VERIFY(hasDevice());
}

void TestPlaybackSinkEnds::cleanupTestCase() {
    server().kill();
}

void TestPlaybackSinkEnds::sinkRemovedInMidSoundLeavesTheOutputActiveForEver() {
    QVERIFY(prepareAndStart(4000));
    QVERIFY(fixture->session().playTarget());
    request(640);
    QTRY_COMPARE(outputState(), QAudio::ActiveState);
    QVERIFY(server().removeSink());
    fixture->log.expect("\"Stream error: Entity killed\"");
    // Much longer than the sound of 100 ms.
    verifyAtRest();
    QCOMPARE(outputState(), QAudio::ActiveState);
    QCOMPARE(fixture->soundSignals, SoundSignals{1});
    QVERIFY(!fixture->log.all().contains("Audio stopped unexpectedly"));
    QVERIFY(isListenerLocked());
    verifyJournal({640});
    endAndVerify({640});
}

void TestPlaybackSinkEnds::sinkRemovedBetweenSoundsLeavesNoDevice() {
    QVERIFY(prepareAndStart());
    QVERIFY(fixture->session().playTarget());
    QVERIFY(fixture->session().playSinusoid(300));
    QVERIFY(server().removeSink());
    QTRY_VERIFY(!hasDevice());
    request(400);
    fixture->log.expect("using null output device, none available");
    verifyAtRest();
    QCOMPARE(outputState(), QAudio::StoppedState);
    QCOMPARE(fixture->soundSignals, SoundSignals{1});
    verifyJournal({300, 400});
    endAndVerify({300, 400});
}

void TestPlaybackSinkEnds::nextSessionPlaysOnceTheSinkIsBack() {
    for (const int frequency : {300, 400}) {
        QVERIFY(prepareAndStart());
        QVERIFY(fixture->session().playTarget());
        QVERIFY(fixture->session().playSinusoid(frequency));
        request(frequency + 1);
        QTRY_COMPARE(fixture->soundSignals, (SoundSignals{1, -1}));
        fixture->soundSignals.clear();
        endAndVerify({frequency, frequency + 1});
        if (frequency == 400)
            break;
        QVERIFY(server().removeSink());
        QTRY_VERIFY(!hasDevice());
        QVERIFY(server().addSink());
        QTRY_VERIFY(hasDevice());
    }
}

int main(int argc, char** argv) {
    return runWithSoundServer<TestPlaybackSinkEnds>(argc, argv);
}

#include "playback_sink_ends.moc"
