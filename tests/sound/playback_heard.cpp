// What the sound device receives, sample by sample.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_playback.h"

#include <QThread>
#include <QtTest>

#include <algorithm>

namespace {

using Told = QVector<int>;

/// Samples as a file of that depth holds them, none of them silent, the extremes among them.
QVector<int> fileCodes(int bits, int count) {
    const qint64 fullScale = qint64(1) << (bits - 1);
    QVector<int> codes(count);
    for (int i = 0; i < count; ++i) {
        const qint64 value = (qint64(i) + 3) * 1048583 % (2 * fullScale) - fullScale;
        codes[i] = int(value == 0 ? 1 : value);
    }
    codes[count / 3] = int(-fullScale);
    codes[count / 2] = int(fullScale - 1);
    if (bits == 8)
        for (int& code : codes)
            code += int(fullScale);
    return codes;
}

QVector<int> leftChannel(const QVector<int>& codes, int channels) {
    QVector<int> left;
    for (int i = 0; i < codes.size(); i += channels)
        left.append(codes[i]);
    return left;
}

/// Returns how many samples of a sound without silent samples a recording begins with, from its
/// first that is not silent, which is returned as well.
struct Beginning {
    int onset;
    int length;
};
Beginning beginningOf(const QVector<float>& sound, const QVector<float>& recording) {
    const auto* const onset = std::find_if(recording.cbegin(), recording.cend(),
                                           [](float sample) { return sample != 0.0F; });
    const auto end = std::mismatch(onset, recording.cend(), sound.cbegin(), sound.cend());
    return {int(onset - recording.cbegin()), int(end.second - sound.cbegin())};
}

} // namespace

void TestPlaybackHeard::targets_data() {
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("channels");
    QTest::addColumn<quint32>("samplingRate");
    for (const int bits : {8, 16, 24})
        for (const int channels : {1, 2, 3})
            for (const quint32 samplingRate : {8000U, 40000U, 44100U})
                QTest::addRow("%d bits, %d channels, %u Hz", bits, channels, samplingRate)
                    << bits << channels << samplingRate;
}

void TestPlaybackHeard::targets() {
    QFETCH(int, bits);
    QFETCH(int, channels);
    QFETCH(quint32, samplingRate);
    // 20 ms in each of the files; played at 40000 Hz whatever their rate.
    const int samples = int(samplingRate / 50);
    constexpr int samplesPlayed = 800;
    const QVector<int> codes = fileCodes(bits, samples * channels);
    PlaybackBench bench;
    QVERIFY(bench.recorder.start());
    bench.prepare(
        testsupport::wavWithSamples({samplingRate, quint16(channels), quint16(bits)}, codes));
    bench.setPause(10);
    QVERIFY(bench.go());
    QVERIFY(bench.session.playTarget());
    QVector<float> heard = heardFrom(leftChannel(codes, channels), bits);
    // Cut or padded with silence; with three channels there is nothing but silence.
    heard.resize(samplesPlayed);
    QCOMPARE(bench.window.data.nSamples, samplesPlayed);
    using Sounds = QVector<QVector<float>>;
    QCOMPARE(bench.wrongInRecording(channels == 3 ? Sounds{} : Sounds{heard}), QString());
    QCOMPARE(bench.soundsTold(), (Told{1, -1}));
    bench.finish();
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackHeard::lengths_data() {
    QTest::addColumn<int>("samples");
    QTest::addColumn<bool>("withSinusoid");
    QTest::newRow("1 sample") << 1 << true;
    QTest::newRow("1 ms") << 40 << true;
    QTest::newRow("250 ms") << 10000 << true;
    QTest::newRow("5 s") << 200000 << false;
}

void TestPlaybackHeard::lengths() {
    QFETCH(int, samples);
    QFETCH(bool, withSinusoid);
    const QVector<int> codes = unevenCodes(samples);
    PlaybackBench bench;
    QVERIFY(bench.recorder.start());
    bench.prepare(codes);
    bench.setPause(10);
    QVERIFY(bench.go());
    QVERIFY(bench.session.playTarget());
    QVector<QVector<float>> sounds{heardFrom(codes)};
    if (withSinusoid) {
        QVERIFY(bench.session.playSinusoid(640));
        // Its first sample is 0: a sinusoid of one sample is silent.
        if (samples > 1)
            sounds.append(heardSinusoid(640, samples));
        QVERIFY(bench.session.playTarget());
        sounds.append(heardFrom(codes));
    }
    QCOMPARE(bench.wrongInRecording(sounds), QString());
    bench.finish();
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackHeard::sinusoids() {
    PlaybackBench bench;
    QVERIFY(bench.recorder.start());
    const QVector<int> codes = unevenCodes(10000);
    bench.prepare(codes);
    bench.setPause(10);
    QVERIFY(bench.go());
    QVERIFY(bench.session.playTarget());
    QVector<QVector<float>> sounds{heardFrom(codes)};
    for (const int frequency : {10, 440, 1000, 10}) {
        QVERIFY(bench.session.playSinusoid(frequency));
        sounds.append(heardSinusoid(frequency, 10000));
    }
    QCOMPARE(bench.wrongInRecording(sounds), QString());
    QCOMPARE(bench.soundsTold(), (Told{1, -1, 1, -1, 1, -1, 1, -1, 1, -1}));
    bench.finish();
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackHeard::fullScaleIsNotClipped() {
    PlaybackBench bench;
    QVERIFY(bench.recorder.start());
    const QVector<int> codes = unevenCodes(400);
    bench.prepare(codes);
    QVector<float> sound = heardFrom(codes);
    bench.window.targetSamples[3] = 1.5;
    sound[3] = 1.5F;
    bench.window.targetSamples[4] = -2.75;
    sound[4] = -2.75F;
    bench.window.playOneSound();
    QTRY_COMPARE(bench.soundsTold(), (Told{1, -1}));
    QCOMPARE(bench.wrongInRecording({sound}), QString());
}

void TestPlaybackHeard::emptySecondSoundCutsTheFirst() {
    PlaybackBench bench;
    QVERIFY(bench.recorder.start());
    const QVector<int> codes = unevenCodes(80000);
    bench.prepare(codes);
    bench.window.playOneSound();
    QTRY_VERIFY(beginningOf(heardFrom(codes), bench.recorder.samples()).length > 0);
    bench.window.playOneSound();
    QCOMPARE(bench.soundsTold(), (Told{1, 2}));
    QVERIFY(bench.recorder.waitForSilence());
    const QVector<float> recording = bench.recorder.samples();
    const Beginning beginning = beginningOf(heardFrom(codes), recording);
    QVERIFY(beginning.length < codes.size());
    QVERIFY(recording.mid(beginning.onset + beginning.length).count(0.0F) ==
            recording.size() - beginning.onset - beginning.length);
    QCOMPARE(bench.soundsTold(), (Told{1, 2}));
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackHeard::soundOutOfTurnReplacesTheOneThatPlays() {
    PlaybackBench bench;
    QVERIFY(bench.recorder.start());
    const QVector<int> codes = unevenCodes(80000);
    const QVector<int> later = unevenCodes(400, 4321);
    bench.prepare(codes);
    bench.window.playOneSound();
    QTRY_VERIFY(beginningOf(heardFrom(codes), bench.recorder.samples()).length > 0);
    bench.window.soundsPlayed = 0;
    bench.window.data.nSamples = later.size();
    for (int i = 0; i < later.size(); ++i)
        bench.window.targetSamples[i] = later[i] / 32768.0;
    bench.window.playOneSound();
    QTRY_COMPARE(bench.soundsTold(), (Told{1, 1, -1}));
    QVERIFY(bench.recorder.waitForSilence());
    const QVector<float> recording = bench.recorder.samples();
    const Beginning beginning = beginningOf(heardFrom(codes), recording);
    QVERIFY(beginning.length < codes.size());
    const QVector<float> rest = recording.mid(beginning.onset + beginning.length);
    QCOMPARE(testsupport::findSounds(rest, {heardFrom(later)}).difference, QString());
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackHeard::programThatStopsFeedingReportsAnEarlyEnd() {
    PlaybackBench bench;
    QVERIFY(bench.recorder.start());
    const QVector<int> codes = unevenCodes(120000);
    bench.prepare(codes);
    bench.window.playOneSound();
    QTRY_VERIFY(beginningOf(heardFrom(codes), bench.recorder.samples()).length > 0);
    // Twice what the output buffers.
    constexpr unsigned long standstillMs = 500;
    QThread::msleep(standstillMs);
    QTRY_COMPARE(bench.soundsTold(), (Told{1, -1}));
    QVERIFY(bench.recorder.waitForSilence());
    QVERIFY(beginningOf(heardFrom(codes), bench.recorder.samples()).length < codes.size());
    QCOMPARE(bench.complaints(), QString("Audio ended early"));
}
