// The main window: the trend of the matches.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "base/AvxRegisters.h"
#include "charts/ChartPoints.h"

#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>

void MainWindow::updateTrend() {
    const Record* record = firstRecord();
    if (record == nullptr)
        return;
    recordResponse(record->frequencyMatched);
    clearUpperAvxHalves();
    seriesTrend->append(trendTrials.last(), trendFrequencies.last());
    axisXTrend->setRange(0, data.nResponses);
    axisXTrend->setLabelFormat(QStringLiteral("%g"));
    // One tick for each response; Qt ignores fewer than two.
    axisXTrend->setTickCount(data.nResponses + 1);
    findRange(trendFrequencies, rangeTrend);
    // The first response leaves the axis at its empty range: deliberate.
    if (trendFrequencies.size() >= 2)
        axisYTrend->setRange(rangeTrend[0], rangeTrend[1]);
}

void MainWindow::resetTrend() {
    trendTrials.clear();
    trendFrequencies.clear();
    data.nResponses = 0;
    data.reserved = 0;
    seriesTrend->clear();
    rangeTrend = {0, emptyTrendTop};
    axisYTrend->setRange(rangeTrend[0], rangeTrend[1]);
}
