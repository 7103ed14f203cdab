// What the sound device receives, sample by sample.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_playback.h"

#include <QTest>
#include <QThread>

namespace {

/// Sample codes of a bit depth, none of them silent, the extremes included.
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
    // 20 ms in each file, played at 40000 Hz at every file rate.
    const int samples = int(samplingRate / 50);
    constexpr int samplesPlayed = 800;
    const QVector<int> codes = fileCodes(bits, samples * channels);
    fixture->record();
    fixture->prepare(
        fixture->write("target.wav", codes, {samplingRate, quint16(channels), quint16(bits)}));
    QVERIFY(fixture->start());
    QVERIFY(fixture->session().playTarget());
    // Cut or padded with silence; three channels give silence only.
    QVector<float> heard = heardFrom(leftChannel(codes, channels), bits);
    heard.resize(samplesPlayed);
    if (channels < 3)
        fixture->expectSound(heard);
    QCOMPARE(fixture->window().data.nSamples, samplesPlayed);
    QCOMPARE(fixture->differenceHeard(), QString());
    QCOMPARE(fixture->soundSignals, (SoundSignals{1, -1}));
    fixture->finish();
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
    fixture->record();
    prepare(unevenCodes(samples));
    QVERIFY(fixture->start());
    QVERIFY(fixture->playTarget());
    if (withSinusoid) {
        QVERIFY(fixture->playSinusoid(640));
        QVERIFY(fixture->playTarget());
    }
    QCOMPARE(fixture->differenceHeard(), QString());
    fixture->finish();
}

void TestPlaybackHeard::sinusoids() {
    fixture->record();
    prepare(unevenCodes(10000));
    QVERIFY(fixture->start());
    QVERIFY(fixture->playTarget());
    for (const int frequency : {10, 440, 1000, 10})
        QVERIFY(fixture->playSinusoid(frequency));
    QCOMPARE(fixture->differenceHeard(), QString());
    QCOMPARE(fixture->soundSignals, (SoundSignals{1, -1, 1, -1, 1, -1, 1, -1, 1, -1}));
    fixture->finish();
}

void TestPlaybackHeard::fullScaleIsNotClipped() {
    fixture->record();
    const QVector<int> codes = unevenCodes(400);
    prepare(codes);
    QVector<float> sound = heardFrom(codes);
    fixture->window().targetSamples[3] = 1.5;
    sound[3] = 1.5F;
    fixture->window().targetSamples[4] = -2.75;
    sound[4] = -2.75F;
    fixture->window().playOneSound();
    QTRY_COMPARE(fixture->soundSignals, (SoundSignals{1, -1}));
    fixture->expectSound(sound);
    QCOMPARE(fixture->differenceHeard(), QString());
}

void TestPlaybackHeard::emptySecondSoundCutsTheFirst() {
    fixture->record();
    const QVector<int> codes = unevenCodes(80000);
    prepare(codes);
    fixture->window().playOneSound();
    QTRY_VERIFY(isAudible(fixture->recorder().samples()));
    fixture->window().playOneSound();
    QCOMPARE(fixture->soundSignals, (SoundSignals{1, 2}));
    QVERIFY(fixture->recorder().waitForSilence());
    const CutSound cut = findCutSound(fixture->recorder().samples(), heardFrom(codes));
    QVERIFY(cut.length > 0 && cut.length < codes.size());
    QVERIFY(!isAudible(cut.rest));
    QCOMPARE(fixture->soundSignals, (SoundSignals{1, 2}));
}

void TestPlaybackHeard::unexpectedSoundReplacesThePlayingOne() {
    fixture->record();
    const QVector<int> codes = unevenCodes(80000);
    const QVector<int> later = unevenCodes(400, 4321);
    prepare(codes);
    fixture->window().playOneSound();
    QTRY_VERIFY(isAudible(fixture->recorder().samples()));
    fixture->window().soundsPlayed = 0;
    fixture->window().data.nSamples = later.size();
    for (int i = 0; i < later.size(); ++i)
        fixture->window().targetSamples[i] = later[i] / 32768.0;
    fixture->window().playOneSound();
    QTRY_COMPARE(fixture->soundSignals, (SoundSignals{1, 1, -1}));
    QVERIFY(fixture->recorder().waitForSilence());
    const CutSound cut = findCutSound(fixture->recorder().samples(), heardFrom(codes));
    QVERIFY(cut.length > 0 && cut.length < codes.size());
    QCOMPARE(testsupport::findSounds(cut.rest, {heardFrom(later)}).difference, QString());
}

void TestPlaybackHeard::stalledProgramReportsAnEarlyEnd() {
    fixture->record();
    const QVector<int> codes = unevenCodes(120000);
    prepare(codes);
    fixture->window().playOneSound();
    QTRY_VERIFY(isAudible(fixture->recorder().samples()));
    // Twice the length of the output's buffer.
    constexpr unsigned long stallMs = 500;
    QThread::msleep(stallMs);
    QTRY_COMPARE(fixture->soundSignals, (SoundSignals{1, -1}));
    QVERIFY(fixture->recorder().waitForSilence());
    QVERIFY(findCutSound(fixture->recorder().samples(), heardFrom(codes)).length < codes.size());
    fixture->log.expect("Audio ended early");
}
