// The main window: creating and deleting the three charts.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "window/Widgets.h"

#include <QGridLayout>
#include <QPainter>
#include <QtCharts/QChart>
#include <QtCharts/QChartView>
#include <QtCharts/QLegend>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>

using namespace QtCharts;

namespace {

constexpr int minimumChartWidth = 200;
constexpr int minimumTrendWidth = 400;

void titleAxis(QValueAxis* axis, const QString& title, const QFont& labelsFont,
               const QFont& titleFont) {
    axis->setLabelsFont(labelsFont);
    axis->setTitleFont(titleFont);
    axis->setTitleText(title);
}

/// Returns a chart that owns the series and both axes.
QChart* createChart(QLineSeries* series, QValueAxis* axisX, QValueAxis* axisY, const QString& title,
                    const QFont& titleFont, int minimumWidth) {
    auto* chart = new QChart;
    chart->addSeries(series);
    chart->addAxis(axisX, Qt::AlignBottom);
    series->attachAxis(axisX);
    chart->addAxis(axisY, Qt::AlignLeft);
    series->attachAxis(axisY);
    chart->setTitleFont(titleFont);
    chart->setTitle(title);
    chart->legend()->hide();
    chart->setMargins(QMargins(0, 0, 0, 0));
    chart->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Preferred);
    chart->setMinimumWidth(minimumWidth);
    return chart;
}

QChartView* createView(const char* memberName, QChart* chart) {
    auto* view = new QChartView(chart);
    view->setObjectName(QLatin1String(memberName));
    view->setRenderHint(QPainter::Antialiasing);
    return view;
}

} // namespace

void MainWindow::setUpFonts() {
    constexpr int axisPixels = 10;
    constexpr int titlePixels = 12;
    fontAxisLabels.setPixelSize(axisPixels);
    fontAxisTitles.setPixelSize(axisPixels);
    fontChartTitle.setPixelSize(titlePixels);
    for (QFont* font : {&fontAxisLabels, &fontAxisTitles, &fontChartTitle})
        font->setWeight(QFont::Normal);
}

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

void MainWindow::displayEmptyFFT() {
    if (seriesFFT == nullptr)
        seriesFFT = new QLineSeries;
    if (axisXFFT == nullptr) {
        axisXFFT = new QValueAxis;
        axisXFFT->setRange(0, data.fftMaxFrequency);
        axisXFFT->setLabelFormat(QStringLiteral("%.0f"));
        titleAxis(axisXFFT, QStringLiteral("Frequency (Hz)"), fontAxisLabels, fontAxisTitles);
    }
    if (axisYFFT == nullptr) {
        axisYFFT = new QValueAxis;
        axisYFFT->setRange(0, 1);
        titleAxis(axisYFFT, QStringLiteral("Amplitude"), fontAxisLabels, fontAxisTitles);
    }
    if (chartFFT == nullptr)
        chartFFT = createChart(seriesFFT, axisXFFT, axisYFFT, QStringLiteral("Amplitude Spectrum"),
                               fontChartTitle, minimumChartWidth);
    if (chartViewFFT == nullptr) {
        chartViewFFT = createView("chartViewFFT", chartFFT);
        layoutCharts->addWidget(chartViewFFT, 1, 0, 1, 1);
    }
}

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
