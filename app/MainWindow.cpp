// The main window: construction and closing.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "window/TopLevelWindow.h"

#include <QBuffer>
#include <QCloseEvent>
#include <QComboBox>
#include <QLabel>

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
