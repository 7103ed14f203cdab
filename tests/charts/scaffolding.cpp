// The three charts as the main window opens.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_charts.h"

#include <QGridLayout>
#include <QtCharts/QChart>
#include <QtCharts/QChartView>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>
#include <QtTest>

#include <functional>

using namespace QtCharts;
using testsupport::InspectedMainWindow;

namespace {

/// What one chart consists of.
struct ChartParts {
    const QLineSeries* series;
    const QValueAxis* axisX;
    const QValueAxis* axisY;
    const QChart* chart;
    const QChartView* view;
};

enum ChartNumber : int { Waveform, Spectrum, Trend };

ChartParts partsOf(const InspectedMainWindow& window, int number) {
    switch (number) {
    case Waveform:
        return {window.seriesWav, window.axisXWav, window.axisYWav, window.chartWav,
                window.chartViewWav};
    case Spectrum:
        return {window.seriesFFT, window.axisXFFT, window.axisYFFT, window.chartFFT,
                window.chartViewFFT};
    default:
        return {window.seriesTrend, window.axisXTrend, window.axisYTrend, window.chartTrend,
                window.chartViewTrend};
    }
}

void displayEmpty(InspectedMainWindow& window, int number) {
    const std::function<void()> functions[] = {[&] { window.displayEmptyWav(); },
                                               [&] { window.displayEmptyFFT(); },
                                               [&] { window.displayEmptyTrend(); }};
    functions[number]();
}

/// A chart of which nothing is set, for what is left to the toolkit.
class PlainChart {
public:
    PlainChart() {
        chart.addSeries(series);
        chart.addAxis(axisX, Qt::AlignBottom);
        series->attachAxis(axisX);
        chart.addAxis(axisY, Qt::AlignLeft);
        series->attachAxis(axisY);
    }

    ChartParts parts() const { return {series, axisX, axisY, &chart, nullptr}; }

private:
    QLineSeries* series = new QLineSeries;
    QValueAxis* axisX = new QValueAxis;
    QValueAxis* axisY = new QValueAxis;
    QChart chart;
};

QVariantList range(const QValueAxis* axis) {
    return {axis->min(), axis->max()};
}

QVariantList margins(const QChart* chart) {
    const QMargins all = chart->margins();
    return {all.left(), all.top(), all.right(), all.bottom()};
}

QVariantList policy(const QChart* chart) {
    const QSizePolicy all = chart->sizePolicy();
    return {all.horizontalPolicy(), all.verticalPolicy(), all.controlType()};
}

void addChartRows() {
    for (const int number : {Waveform, Spectrum, Trend})
        QTest::newRow(std::array{"waveform", "spectrum", "trend"}[std::size_t(number)]) << number;
}

} // namespace

void TestChartScaffolding::setUp() {
    fixture->session();
    window = &fixture->window();
}

void TestChartScaffolding::propertiesAreAsTheyShouldBe() {
    const PlainChart plainChart;
    const ChartParts plain = plainChart.parts();
    const QFont axisFont = window->fontAxisTitles;

    // One row of the table of properties: how to read it, and what it is in each chart.
    using Read = std::function<QVariant(const ChartParts&)>;
    const auto addRow = [this](const char* property, const Read& read, const QVariant& waveform,
                               const QVariant& spectrum, const QVariant& trend) {
        const QVariantList actual = {read(partsOf(*window, Waveform)),
                                     read(partsOf(*window, Spectrum)),
                                     read(partsOf(*window, Trend))};
        const QVariantList expected = {waveform, spectrum, trend};
        for (int i = 0; i < 3; ++i)
            if (actual[i].userType() != expected[i].userType() || actual[i] != expected[i])
                QTest::qFail(qPrintable(QStringLiteral("%1 of chart %2: %3")
                                            .arg(property)
                                            .arg(i)
                                            .arg(actual[i].toString())),
                             __FILE__, __LINE__);
    };
    const auto addEqualRow = [&addRow](const char* property, const Read& read,
                                       const QVariant& all) {
        addRow(property, read, all, all, all);
    };
    const auto addPlainRow = [&](const char* property, const Read& read) {
        addEqualRow(property, read, read(plain));
    };

    addRow(
        "series name", [](const auto& p) { return p.series->name(); }, "", "", "trend");
    addRow(
        "points visible", [](const auto& p) { return p.series->pointsVisible(); }, false, false,
        true);
    addEqualRow(
        "points", [](const auto& p) { return p.series->count(); }, 0);
    addPlainRow("pen", [](const auto& p) { return p.series->pen().widthF(); });

    addRow(
        "x range", [](const auto& p) { return range(p.axisX); }, range(plain.axisX),
        QVariantList{0.0, 2000.0}, range(plain.axisX));
    addRow(
        "y range", [](const auto& p) { return range(p.axisY); }, range(plain.axisY),
        QVariantList{0.0, 1.0}, QVariantList{0.0, 4.0});
    addRow(
        "x labels", [](const auto& p) { return p.axisX->labelFormat(); },
        plain.axisX->labelFormat(), "%.0f", "%g");
    addRow(
        "y labels", [](const auto& p) { return p.axisY->labelFormat(); },
        plain.axisY->labelFormat(), plain.axisY->labelFormat(), "%g");
    addRow(
        "x ticks", [](const auto& p) { return p.axisX->tickCount(); }, plain.axisX->tickCount(),
        plain.axisX->tickCount(), 2);
    addPlainRow("y ticks", [](const auto& p) { return p.axisY->tickCount(); });
    addEqualRow(
        "x labels visible", [](const auto& p) { return p.axisX->labelsVisible(); }, true);
    addEqualRow(
        "y labels visible", [](const auto& p) { return p.axisY->labelsVisible(); }, true);
    addEqualRow(
        "x labels font", [](const auto& p) { return p.axisX->labelsFont(); },
        window->fontAxisLabels);
    addEqualRow(
        "y labels font", [](const auto& p) { return p.axisY->labelsFont(); },
        window->fontAxisLabels);
    addEqualRow(
        "x title font", [](const auto& p) { return p.axisX->titleFont(); }, axisFont);
    addEqualRow(
        "y title font", [](const auto& p) { return p.axisY->titleFont(); }, axisFont);
    addRow(
        "x title", [](const auto& p) { return p.axisX->titleText(); }, "Time (ms)",
        "Frequency (Hz)", "Number of trials");
    addRow(
        "y title", [](const auto& p) { return p.axisY->titleText(); }, "Amplitude", "Amplitude",
        "Frequency matched (Hz)");
    addEqualRow(
        "x edge", [](const auto& p) { return p.axisX->alignment() == Qt::AlignBottom; }, true);
    addEqualRow(
        "y edge", [](const auto& p) { return p.axisY->alignment() == Qt::AlignLeft; }, true);
    addPlainRow("x grid", [](const auto& p) { return p.axisX->isGridLineVisible(); });
    addPlainRow("y grid", [](const auto& p) { return p.axisY->isGridLineVisible(); });

    addRow(
        "title", [](const auto& p) { return p.chart->title(); }, "Time Waveform",
        "Amplitude Spectrum", "Response Trend");
    addEqualRow(
        "title font", [](const auto& p) { return p.chart->titleFont(); }, window->fontChartTitle);
    addEqualRow(
        "legend visible", [](const auto& p) { return p.chart->legend()->isVisible(); }, false);
    addEqualRow(
        "margins", [](const auto& p) { return margins(p.chart); }, QVariantList{0, 0, 0, 0});
    addEqualRow(
        "size policy", [](const auto& p) { return policy(p.chart); },
        QVariantList{QSizePolicy::Minimum, QSizePolicy::Preferred, QSizePolicy::DefaultType});
    addRow(
        "minimum width", [](const auto& p) { return p.chart->minimumWidth(); }, 200.0, 200.0,
        400.0);
    addPlainRow("theme", [](const auto& p) { return int(p.chart->theme()); });
    addEqualRow(
        "antialiasing",
        [](const auto& p) { return p.view->renderHints().testFlag(QPainter::Antialiasing); }, true);
    addRow(
        "view name", [](const auto& p) { return p.view->objectName(); }, "chartViewWav",
        "chartViewFFT", "chartViewTrend");
}

void TestChartScaffolding::chartOwnsItsSeriesAndAxes_data() {
    QTest::addColumn<int>("number");
    addChartRows();
}

void TestChartScaffolding::chartOwnsItsSeriesAndAxes() {
    QFETCH(int, number);
    const ChartParts parts = partsOf(*window, number);
    QCOMPARE(parts.chart->series().size(), 1);
    QCOMPARE(static_cast<const QAbstractSeries*>(parts.series), parts.chart->series().first());
    QCOMPARE(parts.chart->axes().size(), 2);
    QCOMPARE(parts.chart->axes(Qt::Horizontal, parts.chart->series().first()).value(0),
             static_cast<const QAbstractAxis*>(parts.axisX));
    QCOMPARE(parts.chart->axes(Qt::Vertical, parts.chart->series().first()).value(0),
             static_cast<const QAbstractAxis*>(parts.axisY));
    QCOMPARE(static_cast<const QChart*>(parts.view->chart()), parts.chart);
    QVERIFY(window->centralWidget()->isAncestorOf(parts.view));
}

void TestChartScaffolding::chartsAreVisibleAndEmptyAtStart_data() {
    QTest::addColumn<int>("number");
    addChartRows();
}

void TestChartScaffolding::chartsAreVisibleAndEmptyAtStart() {
    QFETCH(int, number);
    const ChartParts parts = partsOf(*window, number);
    QVERIFY(parts.view->isVisible());
    QVERIFY(parts.chart->isVisible());
    QVERIFY(!parts.view->viewport()->visibleRegion().isEmpty());
    QVERIFY(parts.chart->size().width() >= (number == Trend ? 400 : 200));
    QVERIFY(parts.chart->plotArea().width() > 0);
    QVERIFY(parts.chart->plotArea().height() > 0);
    QCOMPARE(parts.series->count(), 0);
}

void TestChartScaffolding::chartsStandBelowEachOther_data() {
    QTest::addColumn<int>("number");
    QTest::addColumn<QVector<int>>("cell");
    QTest::newRow("waveform") << int(Waveform) << QVector<int>{0, 0, 1, 1};
    QTest::newRow("spectrum") << int(Spectrum) << QVector<int>{1, 0, 1, 1};
    QTest::newRow("trend") << int(Trend) << QVector<int>{2, 0, 1, 2};
}

void TestChartScaffolding::chartsStandBelowEachOther() {
    QFETCH(int, number);
    const QGridLayout& grid = *window->layoutCharts;
    QCOMPARE(grid.count(), 3);
    int row = -1;
    int column = -1;
    int rowSpan = -1;
    int columnSpan = -1;
    for (int i = 0; i < grid.count(); ++i)
        if (grid.itemAt(i)->widget() == partsOf(*window, number).view)
            grid.getItemPosition(i, &row, &column, &rowSpan, &columnSpan);
    QTEST((QVector<int>{row, column, rowSpan, columnSpan}), "cell");
}

void TestChartScaffolding::secondCallCreatesNothing_data() {
    QTest::addColumn<int>("number");
    addChartRows();
}

void TestChartScaffolding::secondCallCreatesNothing() {
    QFETCH(int, number);
    const ChartParts before = partsOf(*window, number);
    // Set anew, these would show that something has been done a second time.
    window->data.fftMaxFrequency = 500;
    for (QChart* chart : {window->chartWav, window->chartFFT, window->chartTrend})
        chart->setTitle(QStringLiteral("kept"));
    for (QValueAxis* axis : {window->axisXWav, window->axisYWav, window->axisXFFT, window->axisYFFT,
                             window->axisXTrend, window->axisYTrend}) {
        axis->setRange(7, 77);
        axis->setTitleText(QStringLiteral("kept"));
    }
    const int objects = window->findChildren<QObject*>().size();
    displayEmpty(*window, number);

    const ChartParts after = partsOf(*window, number);
    QCOMPARE(after.series, before.series);
    QCOMPARE(after.axisX, before.axisX);
    QCOMPARE(after.axisY, before.axisY);
    QCOMPARE(after.chart, before.chart);
    QCOMPARE(after.view, before.view);
    QCOMPARE(window->findChildren<QChartView*>().size(), 3);
    QCOMPARE(window->findChildren<QObject*>().size(), objects);
    QCOMPARE(window->layoutCharts->count(), 3);
    QCOMPARE(after.chart->series().size(), 1);
    QCOMPARE(after.chart->axes().size(), 2);
    QCOMPARE(after.chart->title(), QStringLiteral("kept"));
    for (const QValueAxis* axis : {after.axisX, after.axisY}) {
        QCOMPARE(range(axis), (QVariantList{7.0, 77.0}));
        QCOMPARE(axis->titleText(), QStringLiteral("kept"));
    }
}

void TestChartScaffolding::onlyWhatIsMissingIsCreated() {
    const std::unique_ptr<QChartView> earlierView(window->chartViewTrend);
    const ChartParts before = partsOf(*window, Trend);
    window->chartViewTrend = nullptr;
    window->displayEmptyTrend();
    const ChartParts after = partsOf(*window, Trend);
    QVERIFY(after.view != earlierView.get());
    QCOMPARE(static_cast<const QChart*>(after.view->chart()), before.chart);
    QCOMPARE(after.chart, before.chart);
    QCOMPARE(after.series, before.series);
    QCOMPARE(after.axisX, before.axisX);
    QCOMPARE(after.axisY, before.axisY);
    QCOMPARE(window->layoutCharts->count(), 4);
}

void TestChartScaffolding::spectrumAxisEndsAtTheSettingOfItsTime() {
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

void TestChartScaffolding::deletedChartsAreForgotten() {
    window->deleteCharts();
    for (const int number : {Waveform, Spectrum, Trend}) {
        const ChartParts parts = partsOf(*window, number);
        QVERIFY(!parts.series && !parts.axisX && !parts.axisY && !parts.chart && !parts.view);
    }
    QCOMPARE(window->layoutCharts->count(), 0);
    QVERIFY(window->findChildren<QChartView*>().isEmpty());
}
