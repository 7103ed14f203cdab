// The main window: the fonts of the charts.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

void MainWindow::setUpFonts() {
    constexpr int axisPixels = 10;
    constexpr int titlePixels = 12;
    fontAxisLabels.setPixelSize(axisPixels);
    fontAxisTitles.setPixelSize(axisPixels);
    fontChartTitle.setPixelSize(titlePixels);
    for (QFont* font : {&fontAxisLabels, &fontAxisTitles, &fontChartTitle})
        font->setWeight(QFont::Normal);
}
