// The main window: the target's waveform.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "base/AvxRegisters.h"
#include "base/Numbers.h"
#include "charts/ChartPoints.h"

#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>

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
    const PlottedStretch stretch =
        plottedStretch(data.plotDuration, data.samplingRate, data.nSamples);
    data.nPointsToPlot = stretch.points;
    data.plotDuration = stretch.durationSeconds;
}
