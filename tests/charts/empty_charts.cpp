// The three charts as the main window opens.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_charts.h"

#include "support/GridCell.h"

#include <QTest>
#include <QtCharts/QChart>
#include <QtCharts/QChartView>
#include <QtCharts/QLineSeries>

#include <functional>

using namespace QtCharts;
using testsupport::InspectedMainWindow;

namespace {

/// The parts of one chart.
struct ChartParts {
    QLineSeries* series;
    QValueAxis* axisX;
    QValueAxis* axisY;
    QChart* chart;
    QChartView* view;

    bool operator==(const ChartParts& other) const {
        return series == other.series && axisX == other.axisX && axisY == other.axisY &&
               chart == other.chart && view == other.view;
    }
};

enum ChartNumber : int { Waveform, Spectrum, Trend };

ChartParts partsOf(const InspectedMainWindow& w, int number) {
    switch (number) {
    case Waveform:
        return {w.seriesWav, w.axisXWav, w.axisYWav, w.chartWav, w.chartViewWav};
    case Spectrum:
        return {w.seriesFFT, w.axisXFFT, w.axisYFFT, w.chartFFT, w.chartViewFFT};
    default:
        return {w.seriesTrend, w.axisXTrend, w.axisYTrend, w.chartTrend, w.chartViewTrend};
    }
}

void displayEmpty(InspectedMainWindow& window, int number) {
    const std::function<void()> functions[] = {[&] { window.displayEmptyWav(); },
                                               [&] { window.displayEmptyFFT(); },
                                               [&] { window.displayEmptyTrend(); }};
    functions[number]();
}

/// A chart without settings, for Qt's default values.
class PlainChart {
public:
    PlainChart() {
        chart->addSeries(series);
        chart->addAxis(axisX, Qt::AlignBottom);
        series->attachAxis(axisX);
        chart->addAxis(axisY, Qt::AlignLeft);
        series->attachAxis(axisY);
    }

    ChartParts parts() { return {series, axisX, axisY, chart, &view}; }

private:
    QLineSeries* series = new QLineSeries;
    QValueAxis* axisX = new QValueAxis;
    QValueAxis* axisY = new QValueAxis;
    QChart* chart = new QChart;
    QChartView view{chart};
};

QVariantList range(const QValueAxis* axis) {
    return {axis->min(), axis->max()};
}

QVariantMap propertiesOf(const ChartParts& parts) {
    const auto& [series, axisX, axisY, chart, view] = parts;
    const QMargins margins = chart->margins();
    const QSizePolicy policy = chart->sizePolicy();
    QVariantMap properties{
        {"series name", series->name()},
        {"points visible", series->pointsVisible()},
        {"points", series->count()},
        {"pen", series->pen().widthF()},
        {"x edge", int(axisX->alignment())},
        {"y edge", int(axisY->alignment())},
        {"title", chart->title()},
        {"title font", chart->titleFont()},
        {"legend visible", chart->legend()->isVisible()},
        {"margins", QVariantList{margins.left(), margins.top(), margins.right(), margins.bottom()}},
        {"size policy",
         QVariantList{policy.horizontalPolicy(), policy.verticalPolicy(), policy.controlType()}},
        {"minimum width", chart->minimumWidth()},
        {"theme", int(chart->theme())},
        {"antialiasing", view->renderHints().testFlag(QPainter::Antialiasing)},
        {"view name", view->objectName()},
    };
    for (const auto& [name, axis] : {std::pair("x ", axisX), {"y ", axisY}}) {
        const QString prefix(name);
        properties[prefix + "range"] = range(axis);
        properties[prefix + "labels"] = axis->labelFormat();
        properties[prefix + "ticks"] = axis->tickCount();
        properties[prefix + "labels visible"] = axis->labelsVisible();
        properties[prefix + "labels font"] = axis->labelsFont();
        properties[prefix + "title font"] = axis->titleFont();
        properties[prefix + "title"] = axis->titleText();
        properties[prefix + "grid"] = axis->isGridLineVisible();
    }
    return properties;
}

void addCharts() {
    const auto row = columns<int>("number");
    row("waveform", Waveform);
    row("spectrum", Spectrum);
    row("trend", Trend);
}

} // namespace

void TestEmptyCharts::setUp() {
    fixture->session();
    window = &fixture->window();
}

void TestEmptyCharts::chartsHaveTheirProperties_data() {
    const auto row = columns<int, QVariantMap>("number", "own");
    row("waveform", Waveform,
        {{"title", "Time Waveform"},
         {"x title", "Time (ms)"},
         {"y title", "Amplitude"},
         {"minimum width", 200.0},
         {"view name", "chartViewWav"}});
    row("spectrum", Spectrum,
        {{"title", "Amplitude Spectrum"},
         {"x title", "Frequency (Hz)"},
         {"y title", "Amplitude"},
         {"x range", QVariantList{0.0, 2000.0}},
         {"y range", QVariantList{0.0, 1.0}},
         {"x labels", "%.0f"},
         {"minimum width", 200.0},
         {"view name", "chartViewFFT"}});
    row("trend", Trend,
        {{"title", "Response Trend"},
         {"series name", "trend"},
         {"points visible", true},
         {"x title", "Number of trials"},
         {"y title", "Frequency matched (Hz)"},
         {"y range", QVariantList{0.0, 4.0}},
         {"x labels", "%g"},
         {"y labels", "%g"},
         {"x ticks", 2},
         {"minimum width", 400.0},
         {"view name", "chartViewTrend"}});
}

void TestEmptyCharts::chartsHaveTheirProperties() {
    QFETCH(int, number);
    QFETCH(QVariantMap, own);
    const QVariantMap common{
        {"points", 0},
        {"points visible", false},
        {"series name", ""},
        {"x labels visible", true},
        {"y labels visible", true},
        {"x labels font", window->fontAxisLabels},
        {"y labels font", window->fontAxisLabels},
        {"x title font", window->fontAxisTitles},
        {"y title font", window->fontAxisTitles},
        {"x edge", int(Qt::AlignBottom)},
        {"y edge", int(Qt::AlignLeft)},
        {"title font", window->fontChartTitle},
        {"legend visible", false},
        {"margins", QVariantList{0, 0, 0, 0}},
        {"size policy",
         QVariantList{QSizePolicy::Minimum, QSizePolicy::Preferred, QSizePolicy::DefaultType}},
        {"antialiasing", true},
    };
    QVariantMap expected = propertiesOf(PlainChart().parts());
    for (const QVariantMap& differences : {common, own})
        for (auto property = differences.cbegin(); property != differences.cend(); ++property)
            expected[property.key()] = property.value();
    const QVariantMap actual = propertiesOf(partsOf(*window, number));
    QCOMPARE(actual.keys(), expected.keys());
    for (auto property = actual.cbegin(); property != actual.cend(); ++property)
        QVERIFY2(property.value() == expected[property.key()],
                 qPrintable(property.key() + ": " + property.value().toString()));
}

void TestEmptyCharts::chartOwnsItsSeriesAndAxes_data() {
    addCharts();
}

void TestEmptyCharts::chartOwnsItsSeriesAndAxes() {
    QFETCH(int, number);
    const ChartParts parts = partsOf(*window, number);
    QAbstractSeries* const series = parts.series;
    QCOMPARE(parts.chart->series(), QList<QAbstractSeries*>{series});
    QCOMPARE(parts.chart->axes().size(), 2);
    QCOMPARE(parts.chart->axes(Qt::Horizontal, series), QList<QAbstractAxis*>{parts.axisX});
    QCOMPARE(parts.chart->axes(Qt::Vertical, series), QList<QAbstractAxis*>{parts.axisY});
    QCOMPARE(parts.view->chart(), parts.chart);
    QVERIFY(window->centralWidget()->isAncestorOf(parts.view));
}

void TestEmptyCharts::chartsAreVisibleBelowEachOther_data() {
    const auto row = columns<int, QRect>("number", "cell");
    row("waveform", Waveform, {0, 0, 1, 1});
    row("spectrum", Spectrum, {0, 1, 1, 1});
    row("trend", Trend, {0, 2, 2, 1});
}

void TestEmptyCharts::chartsAreVisibleBelowEachOther() {
    QFETCH(int, number);
    const ChartParts parts = partsOf(*window, number);
    QCOMPARE(window->layoutCharts->count(), 3);
    QTEST(testsupport::cellOf(*window->layoutCharts, parts.view), "cell");
    QVERIFY(parts.view->isVisible());
    QVERIFY(parts.chart->isVisible());
    QVERIFY(!parts.view->viewport()->visibleRegion().isEmpty());
    QVERIFY(parts.chart->size().width() >= parts.chart->minimumWidth());
    QVERIFY(parts.chart->plotArea().width() > 0);
    QVERIFY(parts.chart->plotArea().height() > 0);
}

void TestEmptyCharts::secondCallCreatesNothing_data() {
    addCharts();
}

void TestEmptyCharts::secondCallCreatesNothing() {
    QFETCH(int, number);
    const ChartParts parts = partsOf(*window, number);
    // A second initialisation would overwrite these values.
    window->data.fftMaxFrequency = 500;
    parts.chart->setTitle(QStringLiteral("kept"));
    for (QValueAxis* axis : {parts.axisX, parts.axisY}) {
        axis->setRange(7, 77);
        axis->setTitleText(QStringLiteral("kept"));
    }
    const QVariantMap properties = propertiesOf(parts);
    const int objects = window->findChildren<QObject*>().size();
    displayEmpty(*window, number);
    QVERIFY(partsOf(*window, number) == parts);
    QCOMPARE(propertiesOf(parts), properties);
    QCOMPARE(parts.chart->series().size(), 1);
    QCOMPARE(parts.chart->axes().size(), 2);
    QCOMPARE(window->findChildren<QObject*>().size(), objects);
    QCOMPARE(window->layoutCharts->count(), 3);
}

void TestEmptyCharts::onlyWhatIsMissingIsCreated() {
    const std::unique_ptr<QChartView> earlierView(window->chartViewTrend);
    ChartParts expected = partsOf(*window, Trend);
    window->chartViewTrend = nullptr;
    window->displayEmptyTrend();
    QVERIFY(window->chartViewTrend != earlierView.get());
    expected.view = window->chartViewTrend;
    QVERIFY(partsOf(*window, Trend) == expected);
    QCOMPARE(expected.view->chart(), expected.chart);
    QCOMPARE(window->layoutCharts->count(), 4);
}

void TestEmptyCharts::spectrumAxisIsSetAtItsCreation() {
    window->data.fftMaxFrequency = 500;
    QCOMPARE(range(window->axisXFFT), (QVariantList{0.0, 2000.0}));
    QValueAxis* const earlier = std::exchange(window->axisXFFT, nullptr);
    window->displayEmptyFFT();
    const std::unique_ptr<QValueAxis> created(std::exchange(window->axisXFFT, earlier));
    QCOMPARE(range(created.get()), (QVariantList{0.0, 500.0}));
    // The chart was there already, so the axis was not added to it.
    QVERIFY(!created->parent());
    QVERIFY(!window->chartFFT->axes().contains(created.get()));
}

void TestEmptyCharts::deletedChartsAreForgotten() {
    window->deleteCharts();
    for (const int number : {Waveform, Spectrum, Trend}) {
        const ChartParts parts = partsOf(*window, number);
        QVERIFY(!parts.series && !parts.axisX && !parts.axisY && !parts.chart && !parts.view);
    }
    QCOMPARE(window->layoutCharts->count(), 0);
    QVERIFY(window->findChildren<QChartView*>().isEmpty());
}
