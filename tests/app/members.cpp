// The members of the main window that no widget shows, as they start.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_app.h"

#include "support/SessionDriver.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QtTest>

using testsupport::find;
using testsupport::InspectedMainWindow;

void TestMainWindowMembers::initTestCase() {
    window = std::make_unique<InspectedMainWindow>();
}

void TestMainWindowMembers::cleanupTestCase() {
    window.reset();
}

void TestMainWindowMembers::membersStartAsTheyShould_data() {
    QTest::addColumn<QVariant>("actual");
    QTest::addColumn<QVariant>("expected");
    addRow("currentTargetPath", window->currentTargetPath, "");
    addRow("sequencePosition", window->sequencePosition, 0);
    addRow("currentFileIndex", window->currentFileIndex, 0);
    addRow("nRepetitions", window->nRepetitions, 0);
    addRow("nRepetitionsPractice", window->nRepetitionsPractice, 1);
    addRow("nRepetitionsExperiment", window->nRepetitionsExperiment, 1);
    addRow("nFiles", window->nFiles, 0);
    addRow("playSinusoidNext", window->playSinusoidNext, false);
    addRow("soundsPerPresentation", window->soundsPerPresentation, 1);
    addRow("soundsPlayed", window->soundsPlayed, 0);
    addRow("windowType", window->windowType, 0);
    addRow("audioOutput", window->audioOutput == nullptr, true);
    addRow("subjectWindow", window->subjectWindow == nullptr, true);
    // From here on as the settings have it: 2^14 is the least power of two for 10000 samples.
    addRow("fftLength", window->fftLength, qint64(16384));
    addRow("fftFrameDuration", window->fftFrameDuration, 0.4096);
    addRow("frequencyResolution", window->frequencyResolution, 1.6666666666666667);
    addRow("data.nPointsToPlot", window->data.nPointsToPlot, 10000);
    addRow("data.nFFTPointsToPlot", window->data.nFFTPointsToPlot, 819);
    addRow("data.nSamples", window->data.nSamples, 10000);
    addRow("data.plotDuration", window->data.plotDuration, 0.25);
    addRow("data.outputFileName", window->data.outputFileName, "SUB001_practice001.txt");
    addRow("data.records", window->data.records.size(), 0);
    addRow("data.nResponses", window->data.nResponses, 0);
    addRow("data.reserved", window->data.reserved, qint64(0));
}

void TestMainWindowMembers::membersStartAsTheyShould() {
    compareValueAndType();
}

void TestMainWindowMembers::vectorsAreSizedForTheSettings_data() {
    QTest::addColumn<int>("actual");
    QTest::addColumn<int>("expected");
    QTest::newRow("targetSamples") << window->targetSamples.size() << 10000;
    QTest::newRow("pointsWav") << window->pointsWav.size() << 10000;
    QTest::newRow("sinusoidSamples") << window->sinusoidSamples.size() << 0;
    QTest::newRow("timeAxisMs") << window->timeAxisMs.size() << 0;
    QTest::newRow("trendTrials") << window->trendTrials.size() << 0;
    QTest::newRow("trendFrequencies") << window->trendFrequencies.size() << 0;
    QTest::newRow("trialSequence") << window->trialSequence.size() << 0;
    QTest::newRow("rangeWav") << window->rangeWav.size() << 2;
    QTest::newRow("rangeFFT") << window->rangeFFT.size() << 2;
    QTest::newRow("rangeTrend") << window->rangeTrend.size() << 2;
    QTest::newRow("fftFrequencies") << window->fftFrequencies.size() << 8192;
    QTest::newRow("fftAmplitudes") << window->fftAmplitudes.size() << 8192;
    QTest::newRow("fftPhases") << window->fftPhases.size() << 8192;
    QTest::newRow("pointsFFT") << window->pointsFFT.size() << 819;
}

void TestMainWindowMembers::vectorsAreSizedForTheSettings() {
    QFETCH(int, actual);
    QFETCH(int, expected);
    QCOMPARE(actual, expected);
}

void TestMainWindowMembers::fontsAreNormalAndInPixels_data() {
    QTest::addColumn<QFont>("font");
    QTest::addColumn<int>("pixelSize");
    QTest::newRow("fontAxisLabels") << window->fontAxisLabels << 10;
    QTest::newRow("fontAxisTitles") << window->fontAxisTitles << 10;
    QTest::newRow("fontChartTitle") << window->fontChartTitle << 12;
}

void TestMainWindowMembers::fontsAreNormalAndInPixels() {
    QFETCH(QFont, font);
    QTEST(font.pixelSize(), "pixelSize");
    QCOMPARE(font.weight(), 50);
}

void TestMainWindowMembers::audioFormatIsOneChannelOfFloats_data() {
    QTest::addColumn<QVariant>("actual");
    QTest::addColumn<QVariant>("expected");
    const QAudioFormat& format = window->audioFormat;
    addRow("rate", format.sampleRate(), 40000);
    addRow("channels", format.channelCount(), 1);
    addRow("bits", format.sampleSize(), 32);
    addRow("codec", format.codec(), "audio/pcm");
    addRow("byte order", format.byteOrder() == QAudioFormat::LittleEndian, true);
    addRow("sample type", format.sampleType() == QAudioFormat::Float, true);
}

void TestMainWindowMembers::audioFormatIsOneChannelOfFloats() {
    compareValueAndType();
}

void TestMainWindowMembers::initialPlotIsNotLimitedToTheSound() {
    InspectedMainWindow other;
    other.data.plotDuration = 0.5;
    other.initParameters();
    QCOMPARE(other.data.nSamples, 10000);
    QCOMPARE(other.data.nPointsToPlot, 20000);
    QVERIFY(other.data.plotDuration == 0.5);
    QCOMPARE(other.pointsWav.size(), 20000);
    // Sized before the count is computed anew.
    QCOMPARE(other.targetSamples.size(), 10000);
}

void TestMainWindowMembers::vectorsFollowOtherSettings() {
    InspectedMainWindow other;
    other.data.samplingRate = 8000.9;
    other.data.nSamples = 1025;
    other.data.soundDuration = 0.125;
    other.data.silentInterval = 0.02;
    other.data.saveDataToFile = false;
    other.data.fftMaxFrequency = 8000;
    other.data.fileNumber = 1234;
    other.data.subjectCode = QStringLiteral("S7");
    other.trendTrials = {1};
    other.trendFrequencies = {640};
    other.initParameters();
    QCOMPARE(other.fftLength, qint64(2048));
    QVERIFY(other.fftFrameDuration == 2048 / 8000.9);
    // 2048 / 8000.9 x 8000 is above half the length.
    QCOMPARE(other.data.nFFTPointsToPlot, 1024);
    QCOMPARE(other.fftAmplitudes.size(), 1024);
    QCOMPARE(other.pointsFFT.size(), 1024);
    QVERIFY(other.trendTrials.isEmpty());
    QVERIFY(other.trendFrequencies.isEmpty());
    QCOMPARE(other.audioFormat.sampleRate(), 8000);
    QCOMPARE(find<QLineEdit>(other, "lineEditSamplingRate")->text(), QStringLiteral("8000.9"));
    QCOMPARE(find<QLineEdit>(other, "lineEditSoundDuration")->text(), QStringLiteral("125.00"));
    QCOMPARE(find<QLineEdit>(other, "lineEditSilentInterval")->text(), QStringLiteral("20.00"));
    QCOMPARE(find<QLineEdit>(other, "lineEditSubCode")->text(), QStringLiteral("S7"));
    QVERIFY(!find<QCheckBox>(other, "checkBoxSaveData")->isChecked());
    QCOMPARE(find<QLineEdit>(other, "lineEditOutputFileName")->text(),
             QStringLiteral("S7_practice1234.txt"));
}

void TestMainWindowMembers::shortSoundShortensThePlot() {
    InspectedMainWindow other;
    find<QLineEdit>(other, "lineEditSoundDuration")->setText(QStringLiteral("100.00"));
    other.getParameters();
    QCOMPARE(other.data.nSamples, 4000);
    QCOMPARE(other.data.nPointsToPlot, 4000);
    QVERIFY(other.data.plotDuration == 0.1);

    // The shorter stretch stays for sounds that would fill the longer one.
    find<QLineEdit>(other, "lineEditSoundDuration")->setText(QStringLiteral("250.00"));
    other.getParameters();
    QCOMPARE(other.data.nSamples, 10000);
    QCOMPARE(other.data.nPointsToPlot, 4000);
}
