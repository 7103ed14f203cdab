// The parts of a chart, without contents.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "charts/ChartParts.h"

#include <QPainter>
#include <QtCharts/QLegend>

using namespace QtCharts;

void titleAxis(QValueAxis* axis, const QString& title, const QFont& labelsFont,
               const QFont& titleFont) {
    axis->setLabelsFont(labelsFont);
    axis->setTitleFont(titleFont);
    axis->setTitleText(title);
}

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
