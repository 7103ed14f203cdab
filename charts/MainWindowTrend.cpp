// The main window: the trend of the matches.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "base/AvxRegisters.h"
#include "charts/ChartParts.h"
#include "charts/ChartPoints.h"

#include <QGridLayout>

using namespace QtCharts;

namespace {
/// The y axis of the empty trend runs from 0 to this.
constexpr double emptyTrendTop = 4;
} // namespace

void MainWindow::displayEmptyTrend() {
    constexpr int minimumTickCount = 2;
    const QString numberFormat = QStringLiteral("%g");
    if (seriesTrend == nullptr) {
        seriesTrend = new QLineSeries;
        seriesTrend->setName(QStringLiteral("trend"));
        seriesTrend->setPointsVisible(true);
    }
    if (axisXTrend == nullptr) {
        axisXTrend = new QValueAxis;
        axisXTrend->setLabelsVisible(true);
        axisXTrend->setLabelFormat(numberFormat);
        axisXTrend->setTickCount(minimumTickCount);
        titleAxis(axisXTrend, QStringLiteral("Number of trials"), fontAxisLabels, fontAxisTitles);
    }
    if (axisYTrend == nullptr) {
        axisYTrend = new QValueAxis;
        axisYTrend->setLabelsVisible(true);
        axisYTrend->setRange(0, emptyTrendTop);
        axisYTrend->setLabelFormat(numberFormat);
        titleAxis(axisYTrend, QStringLiteral("Frequency matched (Hz)"), fontAxisLabels,
                  fontAxisTitles);
    }
    if (chartTrend == nullptr)
        chartTrend =
            createChart(seriesTrend, axisXTrend, axisYTrend, QStringLiteral("Response Trend"),
                        fontChartTitle, minimumTrendWidth);
    if (chartViewTrend == nullptr) {
        chartViewTrend = createView("chartViewTrend", chartTrend);
        layoutCharts->addWidget(chartViewTrend, 2, 0, 1, 2);
    }
}

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
