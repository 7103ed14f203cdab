// Charts of targets that the experimenter has chosen.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_charts.h"

#include <QPushButton>
#include <QTest>
#include <QtCharts/QLineSeries>

#include <algorithm>
#include <cmath>

void TestChartsOfTargets::setUp() {
    window = &fixture->window();
}

void TestChartsOfTargets::preparedTargetIsDrawn() {
    QVector<int> codes(12000, 0);
    codes[1] = 8192;
    codes[11999] = -16384;
    const QString target = fixture->write("target.wav", codes);
    fixture->prepare(target);

    QCOMPARE(window->seriesWav->count(), 10000);
    QCOMPARE(window->seriesWav->at(1), QPointF(0.025, 0.25));
    QCOMPARE(rangeOf(window->axisXWav), (Range{0, 250}));
    QCOMPARE(rangeOf(window->axisYWav), (Range{-0.5, 0.25}));
    QCOMPARE(window->fftLength, qint64(16384));
    QCOMPARE(window->seriesFFT->count(), 819);
    QCOMPARE(window->rangeFFT, rangeOf(window->axisYFFT));
    // Two impulses: 0.25 and -0.5 in line at most, 0.25 apart at least, over half the sound.
    QVERIFY(window->axisYFFT->max() <= 0.75 / 6000 * (1 + 1e-12));
    QVERIFY(window->axisYFFT->max() > 0.74 / 6000);
    QCOMPARE(rangeOf(window->axisXFFT), (Range{0, 2000}));
    QCOMPARE(window->seriesTrend->count(), 0);
    QVERIFY(window->pushButtonGo->isEnabled());
}

void TestChartsOfTargets::targetOfOneSampleIsDrawn() {
    const QString target = fixture->write("target.wav", QVector<int>{16384});
    fixture->prepare(target);
    QCOMPARE(window->data.nSamples, 1);
    QCOMPARE(window->seriesWav->pointsVector(), (QVector<QPointF>{{0, 0.5}}));
    QCOMPARE(rangeOf(window->axisXWav), (Range{0, 1 / 40000.0 * 1000}));
    QCOMPARE(rangeOf(window->axisYWav), (Range{0.5, 0.5}));
    QCOMPARE(window->fftLength, qint64(1));
    QVERIFY(window->fftAmplitudes.isEmpty());
    QCOMPARE(window->seriesFFT->count(), 0);
    QCOMPARE(rangeOf(window->axisYFFT), (Range{0, 1}));
    QVERIFY(window->pushButtonGo->isEnabled());
}

void TestChartsOfTargets::targetOfTwoSamplesHasOneBin() {
    const QString target = fixture->write("target.wav", QVector<int>{16384, 8192});
    fixture->prepare(target);
    QCOMPARE(window->fftLength, qint64(2));
    QCOMPARE(window->fftAmplitudes.size(), 1);
    // Sum and difference over half of two.
    QVERIFY(window->fftAmplitudes[0] == std::sqrt(0.25 * 0.25 + 0.75 * 0.75));
    QCOMPARE(window->data.nFFTPointsToPlot, 0);
    QCOMPARE(window->seriesFFT->count(), 0);
    QCOMPARE(rangeOf(window->axisYWav), (Range{0.25, 0.5}));
}

void TestChartsOfTargets::silentTargetCollapsesTheRanges() {
    const QString target = fixture->write("target.wav", QVector<int>(400, 0));
    fixture->prepare(target);
    QCOMPARE(window->rangeWav, (Range{0, 0}));
    QCOMPARE(window->rangeFFT, (Range{0, 0}));
    QCOMPARE(window->seriesWav->count(), 400);
    // Painting a collapsed range must not fail.
    QVERIFY(!window->grab().isNull());
}

void TestChartsOfTargets::waveformIsDrawnBeforeTheAnalysisWindow() {
    const QString target = fixture->write("target.wav", QVector<int>(401, 16384));
    window->windowType = 1;
    fixture->prepare(target);
    const auto points = window->seriesWav->pointsVector();
    QVERIFY(std::all_of(points.cbegin(), points.cend(),
                        [](const QPointF& point) { return point.y() == 0.5; }));
    QVERIFY(window->targetSamples[0] == 0.0);
    QVERIFY(window->targetSamples[200] == 0.5);
}

void TestChartsOfTargets::preparingEmptiesTheTrend() {
    const QString target = fixture->write("target.wav", QVector<int>{1000, -1000});
    fixture->prepare(target);
    window->data.nResponses = 3;
    window->data.records[0].frequencyMatched = 640;
    window->updateTrend();
    QCOMPARE(window->seriesTrend->count(), 1);
    fixture->prepare(target);
    QCOMPARE(window->seriesTrend->count(), 0);
    QCOMPARE(window->data.nResponses, 0);
    QCOMPARE(rangeOf(window->axisXTrend), (Range{0, 3}));
}
