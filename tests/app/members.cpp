// The members of the main window that no widget shows, as they start.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_app.h"

#include <QBuffer>
#include <QCheckBox>
#include <QLineEdit>
#include <QTest>

void TestMainWindowMembers::setUp() {
    window = &fixture->window();
}

void TestMainWindowMembers::membersHaveTheirInitialValues() {
    compare("currentTargetPath", window->currentTargetPath, "");
    compare("sequencePosition", window->sequencePosition, 0);
    compare("currentFileIndex", window->currentFileIndex, 0);
    compare("nRepetitions", window->nRepetitions, 0);
    compare("nRepetitionsPractice", window->nRepetitionsPractice, 1);
    compare("nRepetitionsExperiment", window->nRepetitionsExperiment, 1);
    compare("nFiles", window->nFiles, 0);
    compare("playSinusoidNext", window->playSinusoidNext, false);
    compare("soundsPerPresentation", window->soundsPerPresentation, 1);
    compare("soundsPlayed", window->soundsPlayed, 0);
    compare("windowType", window->windowType, 0);
    compare("audioOutput", window->audioOutput == nullptr, true);
    compare("audioBuffer", window->audioBuffer == nullptr, true);
    compare("audioBytes", window->audioBytes == nullptr, true);
    compare("subjectWindow", window->subjectWindow == nullptr, true);
    // From here on by the settings: 2^14 is the smallest power of two for 10000 samples.
    compare("fftLength", window->fftLength, qint64(16384));
    compare("fftFrameDuration", window->fftFrameDuration, 0.4096);
    compare("frequencyResolution", window->frequencyResolution, 1.6666666666666667);
    compare("data.nPointsToPlot", window->data.nPointsToPlot, 10000);
    compare("data.nFFTPointsToPlot", window->data.nFFTPointsToPlot, 819);
    compare("data.nSamples", window->data.nSamples, 10000);
    compare("data.plotDuration", window->data.plotDuration, 0.25);
    compare("data.outputFileName", window->data.outputFileName, "SUB001_practice001.txt");
    compare("data.records", window->data.records.size(), 0);
    compare("data.nResponses", window->data.nResponses, 0);
    compare("data.reserved", window->data.reserved, qint64(0));
}

void TestMainWindowMembers::vectorsAreSizedForTheSettings() {
    compare("targetSamples", window->targetSamples.size(), 10000);
    compare("pointsWav", window->pointsWav.size(), 10000);
    compare("sinusoidSamples", window->sinusoidSamples.size(), 0);
    compare("timeAxisMs", window->timeAxisMs.size(), 0);
    compare("trendTrials", window->trendTrials.size(), 0);
    compare("trendFrequencies", window->trendFrequencies.size(), 0);
    compare("trialSequence", window->trialSequence.size(), 0);
    compare("rangeWav", window->rangeWav.size(), 2);
    compare("rangeFFT", window->rangeFFT.size(), 2);
    compare("rangeTrend", window->rangeTrend.size(), 2);
    compare("fftFrequencies", window->fftFrequencies.size(), 8192);
    compare("fftAmplitudes", window->fftAmplitudes.size(), 8192);
    compare("fftPhases", window->fftPhases.size(), 8192);
    compare("pointsFFT", window->pointsFFT.size(), 819);
}

void TestMainWindowMembers::fontsAreNormalAndInPixels() {
    compare("fontAxisLabels", window->fontAxisLabels.pixelSize(), 10);
    compare("fontAxisTitles", window->fontAxisTitles.pixelSize(), 10);
    compare("fontChartTitle", window->fontChartTitle.pixelSize(), 12);
    for (const QFont& font :
         {window->fontAxisLabels, window->fontAxisTitles, window->fontChartTitle})
        QCOMPARE(font.weight(), 50);
}

void TestMainWindowMembers::audioFormatIsOneChannelOfFloats() {
    const QAudioFormat& format = window->audioFormat;
    compare("rate", format.sampleRate(), 40000);
    compare("channels", format.channelCount(), 1);
    compare("bits", format.sampleSize(), 32);
    compare("codec", format.codec(), "audio/pcm");
    compare("byte order", format.byteOrder() == QAudioFormat::LittleEndian, true);
    compare("sample type", format.sampleType() == QAudioFormat::Float, true);
}

void TestMainWindowMembers::initialPlotIsNotLimitedToTheSound() {
    window->data.plotDuration = 0.5;
    window->initParameters();
    QCOMPARE(window->data.nSamples, 10000);
    QCOMPARE(window->data.nPointsToPlot, 20000);
    QVERIFY(window->data.plotDuration == 0.5);
    QCOMPARE(window->pointsWav.size(), 20000);
    // Sized before the count is recomputed.
    QCOMPARE(window->targetSamples.size(), 10000);
}

void TestMainWindowMembers::vectorsFollowOtherSettings() {
    window->data.samplingRate = 8000.9;
    window->data.nSamples = 1025;
    window->data.soundDuration = 0.125;
    window->data.silentInterval = 0.02;
    window->data.saveDataToFile = false;
    window->data.fftMaxFrequency = 8000;
    window->data.fileNumber = 1234;
    window->data.subjectCode = QStringLiteral("S7");
    window->trendTrials = {1};
    window->trendFrequencies = {640};
    window->initParameters();
    QCOMPARE(window->fftLength, qint64(2048));
    QVERIFY(window->fftFrameDuration == 2048 / 8000.9);
    // 2048 / 8000.9 x 8000 is above half the length.
    QCOMPARE(window->data.nFFTPointsToPlot, 1024);
    QCOMPARE(window->fftAmplitudes.size(), 1024);
    QCOMPARE(window->pointsFFT.size(), 1024);
    QVERIFY(window->trendTrials.isEmpty());
    QVERIFY(window->trendFrequencies.isEmpty());
    QCOMPARE(window->audioFormat.sampleRate(), 8000);
    QCOMPARE(window->lineEditSamplingRate->text(), QStringLiteral("8000.9"));
    QCOMPARE(window->lineEditSoundDuration->text(), QStringLiteral("125.00"));
    QCOMPARE(window->lineEditSilentInterval->text(), QStringLiteral("20.00"));
    QCOMPARE(window->lineEditSubCode->text(), QStringLiteral("S7"));
    QVERIFY(!window->checkBoxSaveData->isChecked());
    QCOMPARE(window->lineEditOutputFileName->text(), QStringLiteral("S7_practice1234.txt"));
}

void TestMainWindowMembers::shortSoundShortensThePlot() {
    window->lineEditSoundDuration->setText(QStringLiteral("100.00"));
    window->getParameters();
    QCOMPARE(window->data.nSamples, 4000);
    QCOMPARE(window->data.nPointsToPlot, 4000);
    QVERIFY(window->data.plotDuration == 0.1);

    // The shorter stretch stays for sounds that would fill the longer one.
    window->lineEditSoundDuration->setText(QStringLiteral("250.00"));
    window->getParameters();
    QCOMPARE(window->data.nSamples, 10000);
    QCOMPARE(window->data.nPointsToPlot, 4000);
}
