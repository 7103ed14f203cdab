// Loading a target: samples, counts, durations and the sizes of the charts' buffers.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target.h"

#include "support/FileBytes.h"

#include <QLineEdit>
#include <QProcess>
#include <QtCharts/QValueAxis>
#include <QtTest>

#include <algorithm>
#include <cstring>

using testsupport::wavWithSamples;

namespace {

/// Runs a command line, split at blanks, and returns what it wrote; a null array when it failed.
QByteArray outputOf(const QString& commandLine, const QString& folder) {
    QStringList arguments = commandLine.split(' ');
    const QString program = arguments.takeFirst();
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        return {};
    const QByteArray output = process.readAllStandardOutput();
    return output.isNull() ? QByteArray("") : output;
}

/// The samples of one channel of a file, as sox reads it.
QVector<double> channelBySox(const QString& path, int channelFrom1) {
    const QByteArray bytes =
        outputOf(QStringLiteral("sox -D %1 -t f64 - remix %2").arg(path).arg(channelFrom1), "/");
    QVector<double> samples(bytes.size() / int(sizeof(double)));
    std::memcpy(samples.data(), bytes.constData(), std::size_t(bytes.size()));
    return samples;
}

/// Prepares a target of two repetitions and goes on to the second.
void goOnToTheSecondTrial(TargetBench& bench) {
    bench.window.trialSequence = {0, 0};
    bench.window.sequencePosition = 1;
}

} // namespace

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
    TargetBench bench;
    const QString path =
        bench.write("target.wav", unevenCodes(samples * channels), samplingRate, channels);
    QCOMPARE(bench.prepare(path), std::string());
    const Data& data = bench.window.data;
    QCOMPARE(data.nSamples, samples);
    QVERIFY(data.soundDuration == double(samples) / samplingRate);
    QCOMPARE(bench.text("lineEditSoundDuration"), duration);
    QCOMPARE(bench.window.targetSamples.size(), samples);
    // The settings' 250 ms at 40000 Hz, or all of a shorter target.
    QVERIFY(data.plotDuration == std::min(samples, 10000) / 40000.0);
    QCOMPARE(bench.window.timeAxisMs.size(), std::min(samples, 10000));
    // Drawing takes the floor of the shortened duration once more.
    QCOMPARE(data.nPointsToPlot, std::min(samplesDrawn, 10000));
    QCOMPARE(bench.window.fftLength, qint64(fftLength));
    QVERIFY(bench.window.fftFrameDuration == fftLength / 40000.0);
    for (const auto* bins :
         {&bench.window.fftFrequencies, &bench.window.fftAmplitudes, &bench.window.fftPhases})
        QCOMPARE(bins->size(), fftLength / 2);
    QCOMPARE(data.nFFTPointsToPlot, fftLength * 2000 / 40000);
    QCOMPARE(bench.window.pointsFFT.size(), data.nFFTPointsToPlot);
    QVERIFY(bench.isEnabled("pushButtonGo"));
    // What "Go" reads from the text decides on how much is played.
    bench.window.getParameters();
    QCOMPARE(data.nSamples, samplesPlayed);
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetLoading::longerPlotIsCutToTheTarget() {
    TargetBench bench;
    bench.window.data.plotDuration = 1.0;
    // Else reading the controls would cut it to their 250 ms first.
    testsupport::find<QLineEdit>(bench.window, "lineEditSoundDuration")->setText("2000.00");
    QCOMPARE(bench.prepare(bench.write("target.wav", unevenCodes(20000))), std::string());
    QCOMPARE(bench.window.data.nPointsToPlot, 20000);
    QVERIFY(bench.window.data.plotDuration == 0.5);
    QCOMPARE(bench.window.timeAxisMs.size(), 20000);
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetLoading::spectrumIsDrawnToHalfItsLengthAtMost() {
    TargetBench bench;
    bench.window.data.fftMaxFrequency = 25000;
    QCOMPARE(bench.prepare(bench.write("target.wav", unevenCodes(1000))), std::string());
    QCOMPARE(bench.window.data.nFFTPointsToPlot, 512);
    QCOMPARE(bench.window.pointsFFT.size(), 512);
    bench.window.data.fftMaxFrequency = 20000;
    QCOMPARE(bench.prepare(bench.write("target.wav", unevenCodes(1000))), std::string());
    QCOMPARE(bench.window.data.nFFTPointsToPlot, 512);
    bench.window.data.fftMaxFrequency = 19999;
    QCOMPARE(bench.prepare(bench.write("target.wav", unevenCodes(1000))), std::string());
    QCOMPARE(bench.window.data.nFFTPointsToPlot, 511);
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetLoading::timeAxisFollowsTheSettingsRate() {
    TargetBench bench;
    QCOMPARE(bench.prepare(bench.write("target.wav", unevenCodes(22050), 44100)), std::string());
    QCOMPARE(bench.window.timeAxisMs.size(), 10000);
    for (int i = 0; i < 10000; ++i)
        QVERIFY(bench.window.timeAxisMs[i] == i / 40000.0 * 1000);
    QVERIFY(bench.window.axisXWav->max() == 250.0);
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetLoading::bothChannelsGiveTheLeftOne() {
    TargetBench bench;
    const QVector<int> codes = unevenCodes(40000);
    QCOMPARE(bench.prepare(bench.write("target.wav", codes, 40000, 2)), std::string());
    const QVector<double> samples = scaledFrom16Bits(codes);
    QCOMPARE(bench.window.targetSamples.size(), 20000);
    for (int i = 0; i < 20000; ++i)
        QVERIFY(bench.window.targetSamples[i] == samples[2 * i]);
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetLoading::threeChannelsGiveSilence() {
    TargetBench bench;
    QCOMPARE(bench.prepare(bench.write("loud.wav", unevenCodes(600))), std::string());
    QCOMPARE(bench.prepare(bench.write("three.wav", unevenCodes(1200), 40000, 3)), std::string());
    QVERIFY(bench.window.targetSamples == QVector<double>(400, 0.0));
    QVERIFY(bench.isEnabled("pushButtonGo"));
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetLoading::bitDepthsAreScaled_data() {
    QTest::addColumn<quint16>("bits");
    QTest::addColumn<QVector<int>>("codes");
    QTest::addColumn<QVector<double>>("samples");
    QTest::newRow("8 bits") << quint16(8) << QVector<int>{0, 1, 127, 128, 129, 255}
                            << QVector<double>{-1, -127 / 128., -1 / 128., 0, 1 / 128., 127 / 128.};
    QTest::newRow("16 bits") << quint16(16) << QVector<int>{-32768, -1, 0, 1, 16384, 32767}
                             << QVector<double>{-1,         -1 / 32768., 0,
                                                1 / 32768., 0.5,         32767 / 32768.};
    // The lowest code of 24 bits is +1, not -1.
    QTest::newRow("24 bits") << quint16(24) << QVector<int>{-8388608, -8388607, -1, 0, 1, 8388607}
                             << QVector<double>{1, -8388607 / 8388608., -1 / 8388608.,
                                                0, 1 / 8388608.,        8388607 / 8388608.};
}

void TestTargetLoading::bitDepthsAreScaled() {
    QFETCH(quint16, bits);
    QFETCH(QVector<int>, codes);
    QFETCH(QVector<double>, samples);
    TargetBench bench;
    const QString path = bench.write("target.wav", wavWithSamples({40000, 1, bits}, codes));
    QCOMPARE(bench.prepare(path), std::string());
    QVERIFY(bench.window.targetSamples == samples);
    QVERIFY(bench.window.axisYWav->min() == *std::min_element(samples.cbegin(), samples.cend()));
    QVERIFY(bench.window.axisYWav->max() == *std::max_element(samples.cbegin(), samples.cend()));
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetLoading::filesOfOtherPrograms_data() {
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("samples");
    const auto row = [](const char* name, const char* command, int samples) {
        QTest::newRow(name) << QString(command) << samples;
    };
    row("sox, 16 bits", "sox -n -r 40000 -b 16 -c 1 t.wav synth 0.05 sine 440", 2000);
    row("sox, 16 bits, stereo", "sox -n -r 40000 -b 16 -c 2 t.wav synth 0.05 sine 440 saw 300",
        2000);
    row("sox, 8 bits", "sox -n -r 40000 -b 8 -e unsigned -c 1 t.wav synth 0.05 sine 440", 2000);
    row("sox, 44.1 kHz", "sox -n -r 44100 -b 16 -c 1 t.wav synth 0.05 pluck", 2205);
    row("ffmpeg, 16 bits",
        "ffmpeg -loglevel error -f lavfi -i sine=440:sample_rate=40000:duration=0.05 -bitexact "
        "-c:a pcm_s16le t.wav",
        2000);
    row("ffmpeg, 16 bits, stereo",
        "ffmpeg -loglevel error -f lavfi -i "
        "aevalsrc=sin(2000*t)|cos(3000*t):s=40000:d=0.05:c=stereo -bitexact -c:a pcm_s16le t.wav",
        2000);
    row("ffmpeg, 8 bits, 8 kHz",
        "ffmpeg -loglevel error -f lavfi -i sine=440:sample_rate=8000:duration=0.05 -bitexact "
        "-c:a pcm_u8 t.wav",
        400);
}

void TestTargetLoading::filesOfOtherPrograms() {
    QFETCH(QString, command);
    QFETCH(int, samples);
    TargetBench bench;
    QVERIFY(!outputOf(command, bench.folder.path()).isNull());
    const QString path = bench.folder.filePath("t.wav");
    QCOMPARE(bench.prepare(path), std::string());
    QCOMPARE(bench.window.targetSamples.size(), samples);
    QVERIFY(bench.window.targetSamples == channelBySox(path, 1));
    QVERIFY(std::count(bench.window.targetSamples.cbegin(), bench.window.targetSamples.cend(),
                       0.0) < samples / 4);
    QCOMPARE(bench.text("lineEditSoundDuration"), QString("50.00"));
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetLoading::shorterSecondTargetLeavesNoTail() {
    const QVector<int> quiet = unevenCodes(1000);
    const QByteArray shortFile = wavWithSamples({}, quiet);
    QTemporaryDir folder;
    const QString path = folder.filePath("short.wav");
    QVERIFY(testsupport::writeBytes(path, shortFile));
    QStringList asTheFirstTarget;
    {
        TargetBench bench;
        QCOMPARE(bench.prepare(path), std::string());
        asTheFirstTarget = bench.preparedState();
    }
    TargetBench bench;
    QVector<int> loudAtTheEnd(2000, 100);
    loudAtTheEnd.last() = 30000;
    loudAtTheEnd[1998] = -30000;
    QCOMPARE(bench.prepare(bench.write("long.wav", loudAtTheEnd)), std::string());
    // As it is after a session in which a sound was played.
    bench.window.soundsPlayed = 1;
    QCOMPARE(bench.prepare(path), std::string());
    QVERIFY(bench.window.targetSamples == scaledFrom16Bits(quiet));
    QCOMPARE(bench.preparedState(), asTheFirstTarget);
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetLoading::preparingCountsNoSoundsPlayed() {
    TargetBench bench;
    bench.window.soundsPlayed = 1;
    QCOMPARE(bench.prepare(bench.write("target.wav", unevenCodes(40))), std::string());
    QCOMPARE(bench.window.soundsPlayed, 0);
    bench.window.soundsPlayed = 1;
    bench.prepareCancelled();
    QCOMPARE(bench.window.soundsPlayed, 0);
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
    TargetBench bench;
    const QVector<int> earlier = unevenCodes(1000);
    const QVector<int> later = unevenCodes(400, 77);
    QCOMPARE(bench.prepare(bench.write("target.wav", earlier)), std::string());
    bench.write("target.wav", later);
    goOnToTheSecondTrial(bench);
    bench.window.sequencePosition = sequencePosition;
    bench.window.soundsPlayed = soundsPlayed;
    bench.window.genWav();
    QVERIFY(bench.window.targetSamples ==
            scaledFrom16Bits(later) + scaledFrom16Bits(earlier).mid(400));
    QCOMPARE(bench.window.data.nSamples, 400);
    QCOMPARE(bench.text("lineEditSoundDuration"), QString("10.00"));
    QCOMPARE(bench.window.data.nPointsToPlot, 400);
    QCOMPARE(bench.window.timeAxisMs.size(), 1000);
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetLoading::laterTrialOfALongerFileGrowsTheTarget() {
    TargetBench bench;
    QCOMPARE(bench.prepare(bench.write("target.wav", unevenCodes(400))), std::string());
    const QVector<int> longer = unevenCodes(1000, 77);
    bench.write("target.wav", longer);
    goOnToTheSecondTrial(bench);
    bench.window.genWav();
    QVERIFY(bench.window.targetSamples == scaledFrom16Bits(longer));
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetLoading::loadTakesTheRecordThatTheSequenceNames() {
    TargetBench bench;
    QCOMPARE(bench.prepare(bench.write("first.wav", unevenCodes(40))), std::string());
    const QVector<int> codes = unevenCodes(60, 5);
    const QString path = bench.write("second.wav", codes);
    Record second;
    second.filePath = bench.folder.path();
    second.fileName = "second.wav";
    bench.window.data.records.append(second);
    bench.window.trialSequence = {1, 0};
    bench.window.genWav();
    QCOMPARE(bench.window.currentFileIndex, 1);
    QCOMPARE(bench.window.currentTargetPath, path);
    QCOMPARE(bench.window.data.wavFilePath, bench.folder.path());
    QCOMPARE(bench.window.data.wavFileName, QString("second.wav"));
    QVERIFY(bench.window.targetSamples == scaledFrom16Bits(codes));
    bench.window.sequencePosition = 1;
    bench.window.genWav();
    QCOMPARE(bench.window.currentFileIndex, 0);
    QCOMPARE(bench.window.data.wavFileName, QString("first.wav"));
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetLoading::recordsThatAreNotThereAreRefused_data() {
    QTest::addColumn<QVector<int>>("sequence");
    QTest::newRow("no records") << QVector<int>{0};
    QTest::newRow("no sequence") << QVector<int>{};
    QTest::newRow("an index beyond the records") << QVector<int>{3};
}

void TestTargetLoading::recordsThatAreNotThereAreRefused() {
    QFETCH(QVector<int>, sequence);
    TargetBench bench;
    QCOMPARE(bench.prepare(bench.write("target.wav", unevenCodes(40))), std::string());
    const QStringList before = bench.preparedState();
    bench.window.data.records.clear();
    bench.window.trialSequence = sequence;
    QCOMPARE(errorsOf([&] { bench.window.genWav(); }), std::string());
    QCOMPARE(bench.preparedState(), before);
    QCOMPARE(bench.window.nFiles, 0);
    QCOMPARE(bench.window.trialSequence, QVector<int>());
    QCOMPARE(bench.window.currentFileIndex, 0);
}

void TestTargetLoading::targetThatChangesAfterItsPreparationIsPlayedAsItWasShown_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("deleted") << QByteArray();
    QTest::newRow("shrunk") << testsupport::wavWithSamples({}, unevenCodes(400)).left(100);
    QTest::newRow("replaced") << testsupport::wavWithSamples({}, unevenCodes(800, 7));
}

void TestTargetLoading::targetThatChangesAfterItsPreparationIsPlayedAsItWasShown() {
    QFETCH(QByteArray, bytes);
    TargetBench bench;
    const QVector<int> codes = unevenCodes(400);
    const QString path = bench.write("target.wav", codes);
    bench.prepare(path);
    const QStringList prepared = bench.preparedState();
    QVERIFY(QFile::remove(path));
    if (!bytes.isEmpty())
        bench.write("target.wav", bytes);
    QVERIFY(bench.session.go() != nullptr);
    QCOMPARE(bench.preparedState(), prepared);
    bench.window.playOneSound();
    const QVector<double> samples = scaledFrom16Bits(codes);
    QCOMPARE(bench.window.audioBytes->size(), samples.size() * int(sizeof(float)));
    for (int i = 0; i < samples.size(); ++i) {
        float sample = 0;
        std::memcpy(&sample,
                    bench.window.audioBytes->constData() + qint64(i) * qint64(sizeof sample),
                    sizeof sample);
        QCOMPARE(sample, static_cast<float>(samples[i]));
    }
    QCOMPARE(bench.complaints(), QString());
}
