// The trend of the matches.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_charts.h"

#include <QTest>
#include <QtCharts/QLineSeries>

void TestTrendChart::setUp() {
    window = &fixture->window();
    window->data.records.resize(1);
    window->resetTrend();
}

/// A request of the listener after `count` sinusoids have been played.
void TestTrendChart::respond(int count, double frequency) {
    window->data.nResponses = count;
    window->data.records[0].frequencyMatched = frequency;
    window->updateTrend();
}

void TestTrendChart::firstResponseKeepsTheEmptyRange() {
    respond(0, 640);
    QCOMPARE(window->seriesTrend->pointsVector(), (QVector<QPointF>{{0, 640}}));
    QCOMPARE(window->trendTrials, QVector<double>{0});
    QCOMPARE(window->trendFrequencies, QVector<double>{640});
    QCOMPARE(rangeOf(window->axisXTrend), (Range{0, 0}));
    QCOMPARE(window->axisXTrend->tickCount(), 2);
    QCOMPARE(rangeOf(window->axisYTrend), (Range{0, 4}));
    QCOMPARE(window->rangeTrend, (Range{640, 640}));
}

void TestTrendChart::everyResponseHasItsTick() {
    for (int count = 0; count < 12; ++count) {
        respond(count, 500 + count);
        QCOMPARE(window->axisXTrend->tickCount(), qMax(2, count + 1));
        QCOMPARE(rangeOf(window->axisXTrend), (Range{0, double(count)}));
        QCOMPARE(window->seriesTrend->count(), count + 1);
    }
}

void TestTrendChart::rangeSpansAllResponses() {
    respond(0, 10);
    respond(1, 1000);
    QCOMPARE(window->seriesTrend->pointsVector(), (QVector<QPointF>{{0, 10}, {1, 1000}}));
    QCOMPARE(window->rangeTrend, (Range{10, 1000}));
    respond(2, 523.25);
    respond(3, 440);
    QCOMPARE(rangeOf(window->axisYTrend), (Range{10, 1000}));
    QCOMPARE(window->trendFrequencies, (QVector<double>{10, 1000, 523.25, 440}));
    QCOMPARE(window->trendTrials, (QVector<double>{0, 1, 2, 3}));
}

void TestTrendChart::equalResponsesCollapseTheRange() {
    respond(0, 640);
    respond(1, 640);
    QCOMPARE(window->rangeTrend, (Range{640, 640}));
    // The expected value is that of a plain Qt axis.
    QtCharts::QValueAxis plain;
    plain.setRange(0, 4);
    plain.setRange(640, 640);
    QCOMPARE(rangeOf(window->axisYTrend), rangeOf(&plain));
    QCOMPARE(window->seriesTrend->count(), 2);
}

void TestTrendChart::responsesComeFromTheFirstRecordOnly() {
    window->data.records.resize(3);
    window->data.records[1].frequencyMatched = 111;
    window->data.records[2].frequencyMatched = 222;
    window->currentFileIndex = 2;
    respond(0, 640);
    window->currentFileIndex = 1;
    respond(1, 500);
    QCOMPARE(window->trendFrequencies, (QVector<double>{640, 500}));
    QCOMPARE(window->data.records[1].frequencyMatched, 111.0);
    QCOMPARE(window->data.records[2].frequencyMatched, 222.0);
}

void TestTrendChart::withoutRecordsNothingIsAdded() {
    window->data.records.clear();
    window->updateTrend();
    QCOMPARE(window->trendFrequencies.size(), 0);
    QCOMPARE(window->trendTrials.size(), 0);
    QCOMPARE(window->seriesTrend->count(), 0);
    QCOMPARE(rangeOf(window->axisYTrend), (Range{0, 4}));
}

void TestTrendChart::labelFormatIsSetWithEachResponse() {
    window->axisXTrend->setLabelFormat(QStringLiteral("%.3f"));
    respond(0, 640);
    QCOMPARE(window->axisXTrend->labelFormat(), QStringLiteral("%g"));
}

void TestTrendChart::resetEmptiesTheTrendButNotItsTrials() {
    for (int count = 0; count < 5; ++count)
        respond(count, 600 + count);
    window->data.reserved = 7;
    window->resetTrend();
    QVERIFY(window->trendTrials.isEmpty());
    QVERIFY(window->trendFrequencies.isEmpty());
    QCOMPARE(window->data.nResponses, 0);
    QCOMPARE(window->data.reserved, qint64(0));
    QCOMPARE(window->seriesTrend->count(), 0);
    QCOMPARE(window->rangeTrend, (Range{0, 4}));
    QCOMPARE(rangeOf(window->axisYTrend), (Range{0, 4}));
    QCOMPARE(rangeOf(window->axisXTrend), (Range{0, 4}));
    QCOMPARE(window->axisXTrend->tickCount(), 5);
    QCOMPARE(window->data.records[0].frequencyMatched, 604.0);
}

void TestTrendChart::countZeroKeepsTheTicksOfTheEarlierSession() {
    for (int count = 0; count < 6; ++count)
        respond(count, 600 + count);
    window->resetTrend();
    QCOMPARE(rangeOf(window->axisXTrend), (Range{0, 5}));
    respond(0, 440);
    QCOMPARE(window->axisXTrend->tickCount(), 6);
    QCOMPARE(rangeOf(window->axisXTrend), (Range{0, 0}));
    QCOMPARE(rangeOf(window->axisYTrend), (Range{0, 4}));
}
