// Loading a target: samples, counts, durations and the sizes of the charts' buffers.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target.h"

#include "support/HeardSounds.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QtCharts/QValueAxis>

#include <algorithm>
#include <cstring>

void TestTargetLoading::countsDurationsAndSizes_data() {
    QTest::addColumn<quint32>("samplingRate");
    QTest::addColumn<quint16>("channels");
    QTest::addColumn<int>("samples"); // of each channel
    QTest::addColumn<QString>("duration");
    QTest::addColumn<int>("fftLength");
    QTest::addColumn<int>("samplesPlayed");
    const auto row = [](const char* name, quint32 samplingRate, quint16 channels, int samples,
                        const char* duration, int fftLength, int samplesPlayed) {
        QTest::newRow(name) << samplingRate << channels << samples << duration << fftLength
                            << samplesPlayed;
    };
    row("half a second", 40000, 1, 20000, "500.00", 32768, 20000);
    row("half a second, stereo", 40000, 2, 20000, "500.00", 32768, 20000);
    row("half a second, three channels", 40000, 3, 20000, "500.00", 32768, 20000);
    row("half a second at 44.1 kHz", 44100, 1, 22050, "500.00", 32768, 20000);
    row("half a second at 8 kHz", 8000, 1, 4000, "500.00", 4096, 20000);
    row("a last sample lost", 40000, 1, 1720, "43.00", 2048, 1719);
    row("a power of two", 40000, 1, 16384, "409.60", 16384, 16384);
    row("a power of two and 16", 40000, 1, 16400, "410.00", 32768, 16400);
    row("another last sample lost", 40000, 1, 16380, "409.50", 16384, 16379);
    row("1 ms", 40000, 1, 40, "1.00", 64, 40);
    row("one sample", 40000, 1, 1, "0.03", 1, 1);
    row("two samples at 44.1 kHz", 44100, 1, 2, "0.05", 2, 2);
    row("100 samples at 1 Hz", 1, 1, 100, "100000.00", 128, 4000000);
}

void TestTargetLoading::countsDurationsAndSizes() {
    QFETCH(quint32, samplingRate);
    QFETCH(quint16, channels);
    QFETCH(int, samples);
    QFETCH(QString, duration);
    QFETCH(int, fftLength);
    QFETCH(int, samplesPlayed);
    const int samplesDrawn = samplingRate == 40000 ? samplesPlayed : samples;
    fixture->prepare(fixture->write("target.wav", unevenCodes(samples * channels),
                                    {samplingRate, channels, 16}));
    const Data& data = fixture->window().data;
    QCOMPARE(data.nSamples, samples);
    QVERIFY(data.soundDuration == double(samples) / samplingRate);
    QCOMPARE(fixture->window().lineEditSoundDuration->text(), duration);
    QCOMPARE(fixture->window().targetSamples.size(), samples);
    // The settings' 250 ms at 40000 Hz, or all of a shorter target.
    QVERIFY(data.plotDuration == std::min(samples, 10000) / 40000.0);
    QCOMPARE(fixture->window().timeAxisMs.size(), std::min(samples, 10000));
    // Drawing rounds the count of the shortened duration down again.
    QCOMPARE(data.nPointsToPlot, std::min(samplesDrawn, 10000));
    QCOMPARE(fixture->window().fftLength, qint64(fftLength));
    QVERIFY(fixture->window().fftFrameDuration == fftLength / 40000.0);
    for (const auto* bins : {&fixture->window().fftFrequencies, &fixture->window().fftAmplitudes,
                             &fixture->window().fftPhases})
        QCOMPARE(bins->size(), fftLength / 2);
    QCOMPARE(data.nFFTPointsToPlot, fftLength * 2000 / 40000);
    QCOMPARE(fixture->window().pointsFFT.size(), data.nFFTPointsToPlot);
    QVERIFY(fixture->window().pushButtonGo->isEnabled());
    // The text that "Go" reads determines the length played.
    fixture->window().getParameters();
    QCOMPARE(data.nSamples, samplesPlayed);
}

void TestTargetLoading::longerPlotIsCutToTheTarget() {
    fixture->window().data.plotDuration = 1.0;
    // Otherwise reading the controls would first cut it to 250 ms.
    fixture->window().lineEditSoundDuration->setText("2000.00");
    fixture->prepare(fixture->write("target.wav", unevenCodes(20000)));
    QCOMPARE(fixture->window().data.nPointsToPlot, 20000);
    QVERIFY(fixture->window().data.plotDuration == 0.5);
    QCOMPARE(fixture->window().timeAxisMs.size(), 20000);
}

void TestTargetLoading::spectrumIsDrawnUpToHalfItsLength() {
    fixture->window().data.fftMaxFrequency = 25000;
    fixture->prepare(fixture->write("target.wav", unevenCodes(1000)));
    QCOMPARE(fixture->window().data.nFFTPointsToPlot, 512);
    QCOMPARE(fixture->window().pointsFFT.size(), 512);
    fixture->window().data.fftMaxFrequency = 20000;
    fixture->prepare(fixture->write("target.wav", unevenCodes(1000)));
    QCOMPARE(fixture->window().data.nFFTPointsToPlot, 512);
    fixture->window().data.fftMaxFrequency = 19999;
    fixture->prepare(fixture->write("target.wav", unevenCodes(1000)));
    QCOMPARE(fixture->window().data.nFFTPointsToPlot, 511);
}

void TestTargetLoading::timeAxisFollowsTheRateOfTheSettings() {
    fixture->prepare(fixture->write("target.wav", unevenCodes(22050), {44100, 1, 16}));
    QCOMPARE(fixture->window().timeAxisMs.size(), 10000);
    for (int i = 0; i < 10000; ++i)
        QVERIFY(fixture->window().timeAxisMs[i] == i / 40000.0 * 1000);
    QVERIFY(fixture->window().axisXWav->max() == 250.0);
}

void TestTargetLoading::threeChannelsGiveSilence() {
    fixture->prepare(fixture->write("loud.wav", unevenCodes(600)));
    fixture->prepare(fixture->write("three.wav", unevenCodes(1200), {40000, 3, 16}));
    QVERIFY(fixture->window().targetSamples == QVector<double>(400, 0.0));
    QVERIFY(fixture->window().pushButtonGo->isEnabled());
}

void TestTargetLoading::shorterSecondTargetLeavesNoTail() {
    const QVector<int> quiet = unevenCodes(1000);
    const QString path = fixture->write("short.wav", quiet);
    fixture->prepare(path);
    const QStringList asTheFirstTarget = preparedState();
    fixture->destroyWindow();
    QVector<int> loudAtTheEnd(2000, 100);
    loudAtTheEnd.last() = 30000;
    loudAtTheEnd[1998] = -30000;
    fixture->prepare(fixture->write("long.wav", loudAtTheEnd));
    // As it is after a session in which a sound was played.
    fixture->window().soundsPlayed = 1;
    fixture->prepare(path);
    QVERIFY(fixture->window().targetSamples == scaledFrom16Bits(quiet));
    QCOMPARE(preparedState(), asTheFirstTarget);
}

void TestTargetLoading::preparingCountsNoSoundsPlayed() {
    fixture->window().soundsPlayed = 1;
    fixture->prepare(fixture->write("target.wav", unevenCodes(40)));
    QCOMPARE(fixture->window().soundsPlayed, 0);
    fixture->window().soundsPlayed = 1;
    prepareCancelled();
    QCOMPARE(fixture->window().soundsPlayed, 0);
}

void TestTargetLoading::laterTrialKeepsTheSizeOfTheTarget_data() {
    QTest::addColumn<int>("sequencePosition");
    QTest::addColumn<int>("soundsPlayed");
    QTest::newRow("second trial") << 1 << 0;
    QTest::newRow("a sound was played") << 0 << 1;
    QTest::newRow("both") << 1 << 1;
}

void TestTargetLoading::laterTrialKeepsTheSizeOfTheTarget() {
    QFETCH(int, sequencePosition);
    QFETCH(int, soundsPlayed);
    const QVector<int> earlier = unevenCodes(1000);
    const QVector<int> later = unevenCodes(400, 77);
    fixture->prepare(fixture->write("target.wav", earlier));
    fixture->write("target.wav", later);
    fixture->window().trialSequence = {0, 0};
    fixture->window().sequencePosition = 1;
    fixture->window().sequencePosition = sequencePosition;
    fixture->window().soundsPlayed = soundsPlayed;
    fixture->window().genWav();
    QVERIFY(fixture->window().targetSamples ==
            scaledFrom16Bits(later) + scaledFrom16Bits(earlier).mid(400));
    QCOMPARE(fixture->window().data.nSamples, 400);
    QCOMPARE(fixture->window().lineEditSoundDuration->text(), QString("10.00"));
    QCOMPARE(fixture->window().data.nPointsToPlot, 400);
    QCOMPARE(fixture->window().timeAxisMs.size(), 1000);
}

void TestTargetLoading::laterTrialOfALongerFileGrowsTheTarget() {
    fixture->prepare(fixture->write("target.wav", unevenCodes(400)));
    const QVector<int> longer = unevenCodes(1000, 77);
    fixture->write("target.wav", longer);
    fixture->window().trialSequence = {0, 0};
    fixture->window().sequencePosition = 1;
    fixture->window().genWav();
    QVERIFY(fixture->window().targetSamples == scaledFrom16Bits(longer));
}

void TestTargetLoading::loadUsesTheRecordOfTheSequence() {
    fixture->prepare(fixture->write("first.wav", unevenCodes(40)));
    const QVector<int> codes = unevenCodes(60, 5);
    const QString path = fixture->write("second.wav", codes);
    Record second;
    second.filePath = fixture->folder.path();
    second.fileName = "second.wav";
    fixture->window().data.records.append(second);
    fixture->window().trialSequence = {1, 0};
    fixture->window().genWav();
    QCOMPARE(fixture->window().currentFileIndex, 1);
    QCOMPARE(fixture->window().currentTargetPath, path);
    QCOMPARE(fixture->window().data.wavFilePath, fixture->folder.path());
    QCOMPARE(fixture->window().data.wavFileName, QString("second.wav"));
    QVERIFY(fixture->window().targetSamples == scaledFrom16Bits(codes));
    fixture->window().sequencePosition = 1;
    fixture->window().genWav();
    QCOMPARE(fixture->window().currentFileIndex, 0);
    QCOMPARE(fixture->window().data.wavFileName, QString("first.wav"));
}

void TestTargetLoading::missingRecordsAreRefused_data() {
    QTest::addColumn<QVector<int>>("sequence");
    QTest::newRow("no records") << QVector<int>{0};
    QTest::newRow("no sequence") << QVector<int>{};
    QTest::newRow("an index beyond the records") << QVector<int>{3};
}

void TestTargetLoading::missingRecordsAreRefused() {
    QFETCH(QVector<int>, sequence);
    fixture->prepare(fixture->write("target.wav", unevenCodes(40)));
    const QStringList before = preparedState();
    fixture->window().data.records.clear();
    fixture->window().trialSequence = sequence;
    fixture->window().genWav();
    QCOMPARE(preparedState(), before);
    QCOMPARE(fixture->window().nFiles, 0);
    QCOMPARE(fixture->window().trialSequence, QVector<int>());
    QCOMPARE(fixture->window().currentFileIndex, 0);
}

void TestTargetLoading::fileChangedAfterPreparationDoesNotChangeTheTarget_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("deleted") << QByteArray();
    QTest::newRow("shrunk") << testsupport::wavWithSamples({}, unevenCodes(400)).left(100);
    QTest::newRow("replaced") << testsupport::wavWithSamples({}, unevenCodes(800, 7));
}

void TestTargetLoading::fileChangedAfterPreparationDoesNotChangeTheTarget() {
    QFETCH(QByteArray, bytes);
    const QVector<int> codes = unevenCodes(400);
    const QString path = fixture->write("target.wav", codes);
    fixture->prepare(path);
    const QStringList prepared = preparedState();
    QVERIFY(QFile::remove(path));
    if (!bytes.isEmpty())
        fixture->write("target.wav", bytes);
    QVERIFY(fixture->session().go() != nullptr);
    QCOMPARE(preparedState(), prepared);
    fixture->window().playOneSound();
    const QVector<float> samples = testsupport::heardFrom(codes);
    QCOMPARE(fixture->window().audioBytes->size(), samples.size() * int(sizeof(float)));
    QCOMPARE(std::memcmp(fixture->window().audioBytes->constData(), samples.constData(),
                         std::size_t(samples.size()) * sizeof(float)),
             0);
}
