// The main window: what the three charts have in common, fonts and deletion.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "window/Widgets.h"

#include <QtCharts/QChart>
#include <QtCharts/QChartView>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>

void MainWindow::setUpFonts() {
    constexpr int axisPixels = 10;
    constexpr int titlePixels = 12;
    fontAxisLabels.setPixelSize(axisPixels);
    fontAxisTitles.setPixelSize(axisPixels);
    fontChartTitle.setPixelSize(titlePixels);
    for (QFont* font : {&fontAxisLabels, &fontAxisTitles, &fontChartTitle})
        font->setWeight(QFont::Normal);
}

/// Children first: a view deletes its chart, and a chart its axes and series.
void MainWindow::deleteCharts() {
    deleteAndForget(seriesWav);
    deleteAndForget(seriesFFT);
    deleteAndForget(seriesTrend);
    deleteAndForget(axisXWav);
    deleteAndForget(axisXFFT);
    deleteAndForget(axisXTrend);
    deleteAndForget(axisYWav);
    deleteAndForget(axisYFFT);
    deleteAndForget(axisYTrend);
    deleteAndForget(chartWav);
    deleteAndForget(chartFFT);
    deleteAndForget(chartTrend);
    deleteAndForget(chartViewWav);
    deleteAndForget(chartViewFFT);
    deleteAndForget(chartViewTrend);
}
