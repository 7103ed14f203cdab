// Targets without a window, what all target tests share, and their main function.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target.h"

#include "sound/TargetSamples.h"
#include "support/AddressSpaceLimit.h"
#include "support/FileBytes.h"
#include "support/TestMain.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>

#include <algorithm>
#include <limits>

namespace {

/// A file in memory after loading.
CWav loadedWav(int channels, quint32 samplingRate, quint32 numberOfSamples, int samplesHeld) {
    CWav wav;
    wav.header.numberOfChannels = static_cast<quint16>(channels);
    wav.header.samplingRate = samplingRate;
    wav.header.bitsPerSample = 8;
    wav.numberOfSamples = numberOfSamples;
    for (int i = 0; i < samplesHeld; ++i)
        wav.samples.push_back(i + 1);
    return wav;
}

QString line(const char* name, const QVector<double>& values) {
    QString text;
    QDebug(&text) << name << qSetRealNumberPrecision(17) << values;
    return text;
}

QString line(const char* name, const QVector<QPointF>& points) {
    QVector<double> values;
    for (const QPointF& point : points)
        values << point.x() << point.y();
    return line(name, values);
}

QString line(const char* name, const QtCharts::QValueAxis* axis) {
    return line(name, QVector<double>{axis->min(), axis->max()});
}

} // namespace

QVector<double> scaledFrom16Bits(const QVector<int>& codes) {
    QVector<double> samples;
    for (const int code : codes)
        samples.append(code / 32768.0);
    return samples;
}

QStringList TargetTest::prepareCancelled(Session kind) {
    fixture->dialogs.cancelTarget();
    testsupport::click(fixture->window(),
                       kind == Session::Practice ? "pushButtonPractice" : "pushButtonExperiment");
    return fixture->takePrinted();
}

void TargetTest::answerOnce() {
    fixture->window().data.nResponses = 1;
    fixture->window().data.records[0].frequencyMatched = 612;
    fixture->window().updateTrend();
    fixture->window().updateFrequencyMatched();
}

QStringList TargetTest::preparedState() {
    const testsupport::InspectedMainWindow& window = fixture->window();
    return {window.lineEditSoundDuration->text(),
            window.lineEditWavFilePath->text(),
            window.lineEditWavFileName->text(),
            window.lineEditFrequencyMatched->text(),
            line("counts", QVector<double>{double(window.fftLength), window.fftFrameDuration,
                                           window.frequencyResolution, window.data.soundDuration,
                                           window.data.plotDuration, double(window.data.nSamples),
                                           double(window.data.nPointsToPlot),
                                           double(window.data.nFFTPointsToPlot),
                                           double(window.data.nResponses)}),
            line("file", QVector<double>{double(window.wav.header.samplingRate),
                                         double(window.wav.numberOfSamples),
                                         double(window.wav.samples.size())}),
            line("targetSamples", window.targetSamples),
            line("timeAxisMs", window.timeAxisMs),
            line("fftFrequencies", window.fftFrequencies),
            line("fftAmplitudes", window.fftAmplitudes),
            line("fftPhases", window.fftPhases),
            line("pointsWav", window.pointsWav),
            line("pointsFFT", window.pointsFFT),
            line("trendTrials", window.trendTrials),
            line("trendFrequencies", window.trendFrequencies),
            line("rangeWav", window.rangeWav),
            line("rangeFFT", window.rangeFFT),
            line("rangeTrend", window.rangeTrend),
            line("seriesWav", window.seriesWav->pointsVector()),
            line("seriesFFT", window.seriesFFT->pointsVector()),
            line("seriesTrend", window.seriesTrend->pointsVector()),
            line("axisXWav", window.axisXWav),
            line("axisYWav", window.axisYWav),
            line("axisXFFT", window.axisXFFT),
            line("axisYFFT", window.axisYFFT),
            line("axisXTrend", window.axisXTrend),
            line("axisYTrend", window.axisYTrend)};
}

void TestTargetFunctions::samplesPerChannelAreWhole_data() {
    QTest::addColumn<int>("channels");
    QTest::addColumn<quint32>("numberOfSamples");
    QTest::addColumn<qint64>("expected");
    QTest::newRow("mono") << 1 << 20000U << qint64(20000);
    QTest::newRow("stereo") << 2 << 40000U << qint64(20000);
    QTest::newRow("a sample without its partner") << 2 << 40001U << qint64(20000);
    QTest::newRow("fewer samples than channels") << 3 << 2U << qint64(0);
    QTest::newRow("no sample") << 1 << 0U << qint64(0);
    QTest::newRow("no channel") << 0 << 20000U << qint64(0);
    QTest::newRow("beyond an int") << 1 << 4294967295U << qint64(4294967295);
    QTest::newRow("maximum number of channels") << 65535 << 4294967295U << qint64(65537);
}

void TestTargetFunctions::samplesPerChannelAreWhole() {
    QFETCH(int, channels);
    QFETCH(quint32, numberOfSamples);
    QTEST(samplesPerChannel(loadedWav(channels, 40000, numberOfSamples, 0)), "expected");
}

void TestTargetFunctions::durationFollowsTheRateOfTheFile_data() {
    QTest::addColumn<int>("channels");
    QTest::addColumn<quint32>("samplingRate");
    QTest::addColumn<quint32>("numberOfSamples");
    QTest::addColumn<double>("expected");
    QTest::newRow("40 kHz") << 1 << 40000U << 20000U << 0.5;
    QTest::newRow("44.1 kHz") << 1 << 44100U << 22050U << 0.5;
    QTest::newRow("8 kHz, stereo") << 2 << 8000U << 4000U << 0.25;
    QTest::newRow("1 Hz") << 1 << 1U << 4294967295U << 4294967295.0;
    QTest::newRow("no channel") << 0 << 40000U << 20000U << 0.0;
    QTest::newRow("a third of a second") << 1 << 3U << 1U << 1.0 / 3.0;
}

void TestTargetFunctions::durationFollowsTheRateOfTheFile() {
    QFETCH(int, channels);
    QFETCH(quint32, samplingRate);
    QFETCH(quint32, numberOfSamples);
    QFETCH(double, expected);
    // Not QCOMPARE: for doubles that allows a difference.
    QVERIFY(durationSeconds(loadedWav(channels, samplingRate, numberOfSamples, 0)) == expected);
}

void TestTargetFunctions::usableTargets_data() {
    QTest::addColumn<int>("channels");
    QTest::addColumn<quint32>("samplingRate");
    QTest::addColumn<quint32>("numberOfSamples");
    QTest::addColumn<int>("samplesHeld");
    QTest::addColumn<double>("settingsRate");
    QTest::addColumn<bool>("isUsable");
    const double rate = 40000.0;
    QTest::newRow("mono") << 1 << 40000U << 400U << 400 << rate << true;
    QTest::newRow("stereo") << 2 << 40000U << 400U << 400 << rate << true;
    QTest::newRow("three channels, which are silent") << 3 << 40000U << 300U << 300 << rate << true;
    QTest::newRow("no channel") << 0 << 40000U << 400U << 400 << rate << false;
    QTest::newRow("no rate") << 1 << 0U << 400U << 400 << rate << false;
    QTest::newRow("no channel, no rate") << 0 << 0U << 400U << 400 << rate << false;
    QTest::newRow("no samples loaded") << 1 << 40000U << 400U << 0 << rate << false;
    QTest::newRow("half a stereo sample") << 2 << 40000U << 1U << 1 << rate << false;
    // 0.025 ms is shown as 0.03 ms, which is 1.2 samples.
    QTest::newRow("one sample at 40 kHz") << 1 << 40000U << 1U << 1 << rate << true;
    // 0.0227 ms is shown as 0.02 ms, which is 0.8 of a sample.
    QTest::newRow("one sample at 44.1 kHz") << 1 << 44100U << 1U << 1 << rate << false;
    QTest::newRow("two samples at 44.1 kHz") << 1 << 44100U << 2U << 2 << rate << true;
    QTest::newRow("one sample at 40 kHz, played at 20 kHz")
        << 1 << 40000U << 1U << 1 << 20000.0 << false;
    QTest::newRow("maximum rate") << 1 << 4294967295U << 400U << 400 << rate << false;
    // A second of the file is 40000 samples played; an array of doubles ends at 268435452.
    QTest::newRow("played: as many as 500 s") << 1 << 1U << 500U << 500 << rate << true;
    QTest::newRow("played: beyond a vector") << 1 << 1U << 6711U << 6711 << rate << false;
    QTest::newRow("played: beyond an int") << 1 << 1U << 60000U << 60000 << rate << false;
    QTest::newRow("loaded: beyond a vector")
        << 1 << 4000000000U << 268435453U << 1 << rate << false;
    QTest::newRow("loaded: beyond an int") << 1 << 4000000000U << 4294967295U << 1 << rate << false;
    const double infinity = std::numeric_limits<double>::infinity();
    QTest::newRow("settings: 0 Hz") << 1 << 40000U << 400U << 400 << 0.0 << false;
    QTest::newRow("settings: negative rate") << 1 << 40000U << 400U << 400 << -rate << false;
    QTest::newRow("settings: infinite rate") << 1 << 40000U << 400U << 400 << infinity << false;
    QTest::newRow("settings: rate is no number")
        << 1 << 40000U << 400U << 400 << std::numeric_limits<double>::quiet_NaN() << false;
}

void TestTargetFunctions::usableTargets() {
    QFETCH(int, channels);
    QFETCH(quint32, samplingRate);
    QFETCH(quint32, numberOfSamples);
    QFETCH(int, samplesHeld);
    QFETCH(double, settingsRate);
    const CWav wav = loadedWav(channels, samplingRate, numberOfSamples, samplesHeld);
    QTEST(isUsableTarget(wav, settingsRate), "isUsable");
}

void TestTargetFunctions::longestSoundThatAVectorHoldsIsUsable() {
    // Playing takes two doubles and a float for each sample. The memory is requested and never
    // touched, but must exist: 5 GiB.
    const auto lines = testsupport::readBytes(QStringLiteral("/proc/meminfo")).split('\n');
    qint64 unusedKibibytes = 0;
    for (const QByteArray& line : lines)
        if (line.startsWith("MemAvailable:") || line.startsWith("SwapFree:"))
            unusedKibibytes += line.simplified().split(' ').value(1).toLongLong();
    constexpr qint64 sixGibibytes = qint64(6) << 20; // in KiB
    if (unusedKibibytes < sixGibibytes)
        QSKIP("too little memory for the longest sound");
    const CWav oneSecond = loadedWav(1, 1, 1, 1);
    QVERIFY(isUsableTarget(oneSecond, 268435452.0));
    QVERIFY(!isUsableTarget(oneSecond, 268435453.0));
}

void TestTargetFunctions::lackOfMemoryMakesATargetUnusable() {
    if (!testsupport::AddressSpaceLimit::isPossible())
        QSKIP("a limit of the address space leaves the sanitizer none");
    // The transform alone takes 4 + 4 / 2 arrays of 2^23 doubles: 384 MiB.
    const CWav wav = loadedWav(1, 40000, 5000000, 1);
    QVERIFY(isUsableTarget(wav, 40000));
    {
        const testsupport::AddressSpaceLimit limit(380);
        QVERIFY(!isUsableTarget(wav, 40000));
        QVERIFY(isUsableTarget(loadedWav(1, 40000, 50000, 1), 40000));
    }
    QVERIFY(isUsableTarget(wav, 40000));
}

void TestTargetFunctions::firstChannelIsCopied_data() {
    QTest::addColumn<int>("channels");
    QTest::addColumn<int>("samplesHeld"); // 1, 2, 3 ...
    QTest::addColumn<int>("count");
    QTest::addColumn<QVector<double>>("before");
    QTest::addColumn<QVector<double>>("after");
    using Samples = QVector<double>;
    const Samples nines{9, 9, 9, 9};
    QTest::newRow("mono") << 1 << 4 << 4 << nines << Samples{1, 2, 3, 4};
    QTest::newRow("the left of two") << 2 << 8 << 4 << nines << Samples{1, 3, 5, 7};
    QTest::newRow("nothing of three") << 3 << 12 << 4 << nines << nines;
    QTest::newRow("nothing of three, nothing grown") << 3 << 12 << 4 << Samples{} << Samples{};
    QTest::newRow("no channel") << 0 << 4 << 4 << nines << nines;
    QTest::newRow("count below the file's") << 1 << 4 << 2 << nines << Samples{1, 2, 9, 9};
    QTest::newRow("grown") << 1 << 4 << 4 << Samples{9} << Samples{1, 2, 3, 4};
    QTest::newRow("padded, mono") << 1 << 2 << 3 << nines << Samples{1, 2, 0, 9};
    QTest::newRow("padded, half a sample of two") << 2 << 3 << 2 << nines << Samples{1, 0, 9, 9};
    QTest::newRow("grown and padded") << 2 << 4 << 3 << Samples{} << Samples{1, 3, 0};
    QTest::newRow("nothing held") << 1 << 0 << 2 << nines << Samples{0, 0, 9, 9};
    QTest::newRow("count 0") << 1 << 4 << 0 << nines << nines;
    QTest::newRow("negative count") << 1 << 4 << -2 << nines << nines;
}

void TestTargetFunctions::firstChannelIsCopied() {
    QFETCH(int, channels);
    QFETCH(int, samplesHeld);
    QFETCH(int, count);
    QFETCH(QVector<double>, before);
    QFETCH(QVector<double>, after);
    const CWav wav = loadedWav(channels, 40000, static_cast<quint32>(samplesHeld), samplesHeld);
    QVector<double> target = before;
    copyFirstChannel(wav, count, target);
    QVERIFY(target == after);
}

int main(int argc, char** argv) {
    return testsupport::runWithWindows<TestTargetFunctions, TestTargetSelection, TestTargetLoading,
                                       TestTargetRefusals, TestTargetWaiting, TestTargetHugePages>(
        argc, argv);
}
