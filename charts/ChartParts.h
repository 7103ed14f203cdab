// The parts of a chart, without contents.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QString>
#include <QtCharts/QChart>
#include <QtCharts/QChartView>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>

/// Minimum widths in pixels: of waveform and spectrum, and of the trend.
constexpr int minimumChartWidth = 200;
constexpr int minimumTrendWidth = 400;

void titleAxis(QtCharts::QValueAxis* axis, const QString& title, const QFont& labelsFont,
               const QFont& titleFont);

/// Returns a chart that owns the series and both axes.
QtCharts::QChart* createChart(QtCharts::QLineSeries* series, QtCharts::QValueAxis* axisX,
                              QtCharts::QValueAxis* axisY, const QString& title,
                              const QFont& titleFont, int minimumWidth);

/// Returns a view that owns the chart; its object name is the member's.
QtCharts::QChartView* createView(const char* memberName, QtCharts::QChart* chart);
