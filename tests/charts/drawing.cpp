// Drawing the waveform and the spectrum.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_charts.h"

#include "charts/AmplitudeSpectrum.h"

#include <QTest>
#include <QtCharts/QLineSeries>

#include <cmath>

using QtCharts::QValueAxis;
using testsupport::InspectedMainWindow;

namespace {

/// Sets the samples and plotted times as if a target had been loaded.
void setTarget(InspectedMainWindow& window, const QVector<double>& samples) {
    window.targetSamples = samples;
    window.data.nSamples = samples.size();
    const int plotted = qMin(10000, samples.size());
    window.timeAxisMs.resize(plotted);
    for (int i = 0; i < plotted; ++i)
        window.timeAxisMs[i] = i / 40000.0 * 1000;
}

/// The buffers of the spectrum, sized for 4096 values at 40000 Hz up to 2000 Hz.
void sizeSpectrumFor4096(InspectedMainWindow& window) {
    window.fftLength = 4096;
    window.data.nFFTPointsToPlot = 204;
    for (QVector<double>* bins : {&window.fftFrequencies, &window.fftAmplitudes, &window.fftPhases})
        bins->fill(-1.0, 2048);
    window.pointsFFT.resize(204);
}

/// Whole periods in 4096 samples.
QVector<double> sinusoidOf4096(double amplitude, int periods) {
    return sinusoid(4096, amplitude, periods, 4096, 0);
}

/// Samples that all differ, within -0.5 and 0.5.
QVector<double> ramp(int count) {
    QVector<double> samples(count);
    for (int i = 0; i < count; ++i)
        samples[i] = double(i) / count - 0.5;
    return samples;
}

} // namespace

void TestChartDrawing::setUp() {
    window = &fixture->window();
}

void TestChartDrawing::waveformShowsEverySampleOfTheStretch() {
    const QVector<double> samples = ramp(40000);
    setTarget(*window, samples);
    window->displayWav();

    QCOMPARE(window->data.nPointsToPlot, 10000);
    QVERIFY(window->data.plotDuration == 0.25);
    QCOMPARE(window->seriesWav->count(), 10000);
    const QVector<QPointF> points = window->seriesWav->pointsVector();
    for (int i = 0; i < points.size(); ++i) {
        QVERIFY(points[i].x() == i / 40000.0 * 1000);
        QVERIFY(points[i].y() == samples[i]);
    }
    QCOMPARE(points, window->pointsWav);
    QCOMPARE(rangeOf(window->axisXWav), (Range{0, 250}));
    QCOMPARE(rangeOf(window->axisYWav), (Range{-0.5, samples.last()}));
    QCOMPARE(window->rangeWav, (Range{-0.5, samples.last()}));
}

void TestChartDrawing::shortSoundShortensTheAxisPermanently() {
    setTarget(*window, ramp(4000));
    window->displayWav();
    QCOMPARE(window->data.nPointsToPlot, 4000);
    QVERIFY(window->data.plotDuration == 0.1);
    QCOMPARE(window->seriesWav->count(), 4000);
    QCOMPARE(rangeOf(window->axisXWav), (Range{0, 100}));

    setTarget(*window, ramp(40000));
    window->displayWav();
    QCOMPARE(window->data.nPointsToPlot, 4000);
    QCOMPARE(window->seriesWav->count(), 4000);
    QCOMPARE(rangeOf(window->axisXWav), (Range{0, 100}));
}

void TestChartDrawing::roundingMayDropTheLastPointOfAShortSound() {
    // The count is recomputed from the duration of three samples, which gives slightly less than
    // three.
    setTarget(*window, {0.5, -0.5, 0.25});
    window->updateNPointsToPlot();
    QCOMPARE(window->data.nPointsToPlot, 3);
    QVERIFY(window->data.plotDuration * 40000 < 3);
    window->displayWav();
    QCOMPARE(window->data.nPointsToPlot, 2);
    QCOMPARE(window->seriesWav->count(), 2);
}

void TestChartDrawing::loudestSampleAfterTheStretchSetsTheRange() {
    QVector<double> samples(40000, 0.0);
    samples[5] = 0.125;
    samples[10000] = -0.75;
    samples[39999] = 0.875;
    setTarget(*window, samples);
    window->displayWav();
    QCOMPARE(rangeOf(window->axisYWav), (Range{-0.75, 0.875}));
}

void TestChartDrawing::constantSoundCollapsesTheRange_data() {
    const auto row = columns<double>("value");
    row("silence", 0);
    row("above", 0.5);
    row("below", -0.25);
}

void TestChartDrawing::constantSoundCollapsesTheRange() {
    QFETCH(double, value);
    setTarget(*window, QVector<double>(20000, value));
    window->displayWav();
    QCOMPARE(window->rangeWav, (Range{value, value}));
    // The expected value is that of a plain Qt axis.
    QValueAxis plain;
    plain.setRange(value, value);
    QCOMPARE(rangeOf(window->axisYWav), rangeOf(&plain));
    QCOMPARE(window->seriesWav->count(), 10000);
}

void TestChartDrawing::nextWaveformReplacesTheEarlier() {
    setTarget(*window, ramp(20000));
    window->displayWav();
    const QVector<double> next = {0.5, -0.5, 0.25};
    setTarget(*window, next);
    window->displayWav();
    QCOMPARE(window->seriesWav->count(), 3);
    for (int i = 0; i < next.size(); ++i)
        QVERIFY(window->seriesWav->at(i).y() == next[i]);
    QCOMPARE(rangeOf(window->axisYWav), (Range{-0.5, 0.5}));
    QCOMPARE(rangeOf(window->axisXWav), (Range{0, 3 / 40000.0 * 1000}));
}

void TestChartDrawing::withoutSamplesTheEarlierPointsStay() {
    setTarget(*window, {0.5, -0.5, 0.25});
    window->displayWav();
    const QVector<QPointF> earlier = window->pointsWav;
    QCOMPARE(earlier.size(), 3);
    window->data.nSamples = 0;
    window->displayWav();
    QCOMPARE(window->data.nPointsToPlot, 0);
    QCOMPARE(window->pointsWav, earlier);
    QCOMPARE(window->seriesWav->pointsVector(), earlier);
}

void TestChartDrawing::withoutTargetTheRangeStays() {
    window->rangeWav = {-0.5, 0.5};
    window->axisYWav->setRange(-0.5, 0.5);
    setTarget(*window, {});
    window->displayWav();
    QCOMPARE(window->rangeWav, (Range{-0.5, 0.5}));
    QCOMPARE(rangeOf(window->axisYWav), (Range{-0.5, 0.5}));
}

void TestChartDrawing::countingPointsDrawsNothing() {
    setTarget(*window, ramp(4000));
    const QVector<QPointF> points = window->pointsWav;
    const QVector<double> range = window->rangeWav;
    const double end = window->axisXWav->max();
    window->updateNPointsToPlot();
    QCOMPARE(window->data.nPointsToPlot, 4000);
    QVERIFY(window->data.plotDuration == 0.1);
    QCOMPARE(window->pointsWav, points);
    QCOMPARE(window->rangeWav, range);
    QCOMPARE(window->seriesWav->count(), 0);
    QVERIFY(window->axisXWav->max() == end);
}

void TestChartDrawing::spectrumIsThatOfTheWindowedTarget_data() {
    const auto row = columns<int>("windowType");
    row("no window", NoWindow);
    row("Hann window", HannWindow);
    row("unknown window", 2);
}

void TestChartDrawing::spectrumIsThatOfTheWindowedTarget() {
    QFETCH(int, windowType);
    QVector<double> samples = sinusoidOf4096(0.5, 100);
    setTarget(*window, samples);
    sizeSpectrumFor4096(*window);
    window->windowType = windowType;
    window->data.nSamples = 5000;
    window->genFFT();
    QVERIFY(window->fftFrameDuration == 4096 / 40000.0);
    QVERIFY(window->frequencyResolution == 1 / (4096 / 40000.0));
    applyAnalysisWindow(samples, windowType, 5000);
    QCOMPARE(window->targetSamples, samples);
    QVector<double> frequencies(2048);
    QVector<double> amplitudes(2048);
    QVector<double> phases(2048);
    computeAmplitudeSpectrum(samples, 4096, 5000, window->frequencyResolution,
                             {frequencies, amplitudes, phases});
    QCOMPARE(window->fftFrequencies, frequencies);
    QCOMPARE(window->fftAmplitudes, amplitudes);
    QCOMPARE(window->fftPhases, phases);
    QCOMPARE(window->seriesFFT->count(), 0);
}

void TestChartDrawing::spectrumIsDrawnUpToTheMaximumFrequency() {
    setTarget(*window, sinusoidOf4096(0.5, 100));
    sizeSpectrumFor4096(*window);
    window->genFFT();
    window->displayFFT();
    QCOMPARE(window->seriesFFT->count(), 204);
    const QVector<QPointF> points = window->seriesFFT->pointsVector();
    for (int k = 0; k < 204; ++k) {
        QVERIFY(points[k].x() == window->fftFrequencies[k]);
        QVERIFY(points[k].y() == window->fftAmplitudes[k]);
    }
    QVERIFY(points.last().x() <= 2000);
    QCOMPARE(window->pointsFFT, points);

    window->displayFFT();
    QCOMPARE(window->seriesFFT->count(), 204);
}

void TestChartDrawing::strongComponentBeyondTheAxisSetsItsTop() {
    QVector<double> samples = sinusoidOf4096(0.25, 100);
    const QVector<double> strong = sinusoidOf4096(0.75, 1500);
    for (int i = 0; i < samples.size(); ++i)
        samples[i] += strong[i];
    setTarget(*window, samples);
    sizeSpectrumFor4096(*window);
    window->genFFT();
    window->displayFFT();
    const auto all =
        std::minmax_element(window->fftAmplitudes.cbegin(), window->fftAmplitudes.cend());
    QCOMPARE(all.second - window->fftAmplitudes.cbegin(), 1500);
    QCOMPARE(window->rangeFFT, (Range{*all.first, *all.second}));
    QCOMPARE(rangeOf(window->axisYFFT), (Range{*all.first, *all.second}));
    QVERIFY(std::abs(window->axisYFFT->max() - 0.75) < 1e-14);
}

void TestChartDrawing::spectrumKeepsItsFrequencyAxis() {
    window->data.fftMaxFrequency = 500;
    setTarget(*window, sinusoidOf4096(0.5, 100));
    sizeSpectrumFor4096(*window);
    window->genFFT();
    window->displayFFT();
    QCOMPARE(rangeOf(window->axisXFFT), (Range{0, 2000}));
}

void TestChartDrawing::lengthOneKeepsTheSpectrum() {
    setTarget(*window, {0.5});
    window->fftLength = 1;
    window->fftFrequencies = {1, 2};
    window->fftAmplitudes = {3, 4};
    window->fftPhases = {5, 6};
    window->genFFT();
    QVERIFY(window->fftFrameDuration == 1 / 40000.0);
    QVERIFY(window->frequencyResolution == 1 / (1 / 40000.0));
    QCOMPARE(window->fftFrequencies, (QVector<double>{1, 2}));
    QCOMPARE(window->fftAmplitudes, (QVector<double>{3, 4}));
    QCOMPARE(window->fftPhases, (QVector<double>{5, 6}));
}

void TestChartDrawing::withoutAmplitudesTheRangeStays() {
    window->rangeFFT = {0.25, 0.5};
    window->axisYFFT->setRange(0.25, 0.5);
    window->fftAmplitudes.clear();
    window->data.nFFTPointsToPlot = 0;
    window->displayFFT();
    QCOMPARE(window->rangeFFT, (Range{0.25, 0.5}));
    QCOMPARE(rangeOf(window->axisYFFT), (Range{0.25, 0.5}));
}
