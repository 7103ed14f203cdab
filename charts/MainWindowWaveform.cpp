// The main window: the target's waveform.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "base/AvxRegisters.h"
#include "base/Sampling.h"
#include "charts/ChartParts.h"
#include "charts/ChartPoints.h"

#include <QGridLayout>

using namespace QtCharts;

void MainWindow::displayEmptyWav() {
    if (seriesWav == nullptr)
        seriesWav = new QLineSeries;
    if (axisXWav == nullptr) {
        axisXWav = new QValueAxis;
        titleAxis(axisXWav, QStringLiteral("Time (ms)"), fontAxisLabels, fontAxisTitles);
    }
    if (axisYWav == nullptr) {
        axisYWav = new QValueAxis;
        titleAxis(axisYWav, QStringLiteral("Amplitude"), fontAxisLabels, fontAxisTitles);
    }
    if (chartWav == nullptr)
        chartWav = createChart(seriesWav, axisXWav, axisYWav, QStringLiteral("Time Waveform"),
                               fontChartTitle, minimumChartWidth);
    if (chartViewWav == nullptr) {
        chartViewWav = createView("chartViewWav", chartWav);
        layoutCharts->addWidget(chartViewWav, 0, 0, 1, 1);
    }
}

void MainWindow::displayWav() {
    updateNPointsToPlot();
    pairPoints(timeAxisMs, targetSamples, data.nPointsToPlot, pointsWav);
    clearUpperAvxHalves();
    seriesWav->replace(pointsWav);
    axisXWav->setRange(0, data.nPointsToPlot / data.samplingRate * millisecondsPerSecond);
    // The whole sound, not only the part that is drawn.
    if (findRange(targetSamples, rangeWav))
        axisYWav->setRange(rangeWav[0], rangeWav[1]);
}

void MainWindow::updateNPointsToPlot() {
    const PlottedPart part = plottedPart(data.plotDuration, data.samplingRate, data.nSamples);
    data.nPointsToPlot = part.points;
    data.plotDuration = part.durationSeconds;
}
