// The main window: construction and closing.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "window/TopLevelWindow.h"
#include "window/Widgets.h"

#include <QBuffer>
#include <QCloseEvent>
#include <QComboBox>
#include <QLabel>

#include <QtCharts/QChart>
#include <QtCharts/QChartView>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent), pendingPresentations(std::make_unique<QObject>()) {
    setObjectName(QStringLiteral("MainWindow"));
    createWidgets();
    createLayouts();
    connectWidgets();
    setupGUIMainWindow();
    initParameters();
    displayEmptyWav();
    displayEmptyFFT();
    displayEmptyTrend();
    setUpAccessibility();
}

MainWindow::~MainWindow() {
    restorePlatformWindow(*this);
    cancelPresentation();
    deleteReleasedOutputs();
    deleteCharts();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->setAccepted(isEnabled());
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
