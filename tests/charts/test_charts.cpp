// Lengths, plotted parts, points and ranges of the charts.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_charts.h"

#include "charts/AmplitudeSpectrum.h"
#include "charts/ChartPoints.h"
#include "support/TestMain.h"

#include <limits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

using Points = QVector<QPointF>;
const Points earlierPoints = {{1, 2}, {3, 4}, {5, 6}};

qint64 lengthFor(int nSamples) {
    return spectrumSizing(nSamples, 40000, 2000).length;
}

} // namespace

void TestChartFunctions::lengthIsTheNextPowerOfTwo_data() {
    QTest::addColumn<int>("power");
    for (int exponent = 0; exponent <= 28; ++exponent)
        QTest::addRow("2^%d", exponent) << (1 << exponent);
}

void TestChartFunctions::lengthIsTheNextPowerOfTwo() {
    QFETCH(int, power);
    QCOMPARE(lengthFor(power), qint64(power));
    QCOMPARE(spectrumSizing(power, 40000, 2000).bins(), power / 2);
    // Below 3 the count one less is a power of two itself.
    if (power > 2)
        QCOMPARE(lengthFor(power - 1), qint64(power));
    if (power < 1 << 28)
        QCOMPARE(lengthFor(power + 1), 2 * qint64(power));
}

void TestChartFunctions::countsBelowOneAreSizedAsOne() {
    for (const int count : {0, -1, std::numeric_limits<int>::min()}) {
        const SpectrumSizing sizing = spectrumSizing(count, 40000, 2000);
        QCOMPARE(sizing.length, qint64(1));
        QCOMPARE(sizing.bins(), 0);
        QCOMPARE(sizing.pointsToPlot, 0);
    }
}

void TestChartFunctions::pointsReachTheMaximumFrequency_data() {
    const auto row =
        columns<int, double, double, int>("nSamples", "samplingRate", "maxFrequency", "points");
    row("default", 10000, 40000, 2000, 819);        // 819.2
    row("half a second", 20000, 40000, 2000, 1638); // 1638.4
    row("without padding", 8192, 40000, 2000, 409); // 409.6
    row("whole number", 16384, 40960, 2000, 800);
    row("other rate", 10000, 8000, 2000, 4096); // 4096.0
    row("exactly half the length", 10000, 8000, 4000, 8192);
    row("at most half the length", 10000, 8000, 4001, 8192);
    row("beyond an int", 10000, 1e-6, 2000, 8192);
    row("less than one", 4, 40000, 2000, 0);
    row("two samples, all", 2, 40000, 40000, 1);
    row("half of one in integers", 1, 40000, 40000, 0);
    row("rate 0", 10000, 0, 2000, 8192);
    row("rate and frequency 0", 10000, 0, 0, 0);
    row("rate not a number", 10000, notANumber, 2000, 0);
    row("infinite rate", 10000, infinity, 2000, 0);
    row("infinite rate and frequency", 10000, infinity, infinity, 0);
    row("infinite frequency", 10000, 40000, infinity, 8192);
    row("frequency not a number", 10000, 40000, notANumber, 0);
    row("negative rate", 10000, -40000, 2000, 0);
}

void TestChartFunctions::pointsReachTheMaximumFrequency() {
    QFETCH(int, nSamples);
    QFETCH(double, samplingRate);
    QFETCH(double, maxFrequency);
    QTEST(spectrumSizing(nSamples, samplingRate, maxFrequency).pointsToPlot, "points");
}

void TestChartFunctions::frameLastsAsLongAsItsSamples() {
    QVERIFY(spectrumSizing(10000, 40000, 2000).frameDurationSeconds == 0.4096);
    QVERIFY(spectrumSizing(22050, 44100, 2000).frameDurationSeconds == 32768.0 / 44100);
    QVERIFY(spectrumSizing(1, 8000, 2000).frameDurationSeconds == 1.0 / 8000);
}

void TestChartFunctions::plottedPartIsLimitedToTheSound_data() {
    const auto row = columns<double, double, int, int, double>(
        "samplingRate", "plotDuration", "nSamples", "points", "durationAfterwards");
    row("longer sound", 40000, 0.25, 40000, 10000, 0.25);
    row("sound of the same length", 40000, 0.25, 10000, 10000, 0.25);
    row("one sample less", 40000, 0.25, 9999, 9999, 9999.0 / 40000);
    row("shorter sound", 40000, 0.25, 4000, 4000, 0.1);
    row("one sample", 40000, 0.25, 1, 1, 1.0 / 40000);
    row("no sample", 40000, 0.25, 0, 0, 0);
    row("rounded down", 40000, 0.043, 40000, 1719, 0.043);
    row("another rate", 8000, 0.25, 40000, 2000, 0.25);
    row("another rate, shorter sound", 8000, 0.25, 1000, 1000, 0.125);
}

void TestChartFunctions::plottedPartIsLimitedToTheSound() {
    QFETCH(double, samplingRate);
    QFETCH(double, plotDuration);
    QFETCH(double, durationAfterwards);
    QFETCH(int, nSamples);
    const PlottedPart part = plottedPart(plotDuration, samplingRate, nSamples);
    QTEST(part.points, "points");
    QVERIFY(part.durationSeconds == durationAfterwards);
}

void TestChartFunctions::pointsPairTimesAndValues_data() {
    const auto row =
        columns<QVector<double>, QVector<double>, int, Points>("x", "y", "count", "expected");
    row("as many as wanted", {0, 0.025, 0.05}, {1, -1, 0.5}, 2, {{0, 1}, {0.025, -1}});
    row("all", {0, 0.025}, {1, -1}, 2, {{0, 1}, {0.025, -1}});
    row("few times", {1}, {2, 3, 4}, 1000000, {{1, 2}});
    row("few values", {1, 2, 3}, {4, 5}, 1000000, {{1, 4}, {2, 5}});
    row("no times", {}, {4, 5}, 1000000, {});
    row("none wanted", {7, 8}, {9, 10}, 0, earlierPoints);
    row("negative count", {7, 8}, {9, 10}, -1, earlierPoints);
    row("far fewer", {7, 8}, {9, 10}, std::numeric_limits<int>::min(), earlierPoints);
}

void TestChartFunctions::pointsPairTimesAndValues() {
    QFETCH(QVector<double>, x);
    QFETCH(QVector<double>, y);
    QFETCH(int, count);
    Points points = earlierPoints;
    pairPoints(x, y, count, points);
    QTEST(points, "expected");
}

void TestChartFunctions::rangeSpansTheExtremes_data() {
    const auto row = columns<QVector<double>, QVector<double>>("values", "expected");
    row("mixed", {0.5, -0.75, 0.25}, {-0.75, 0.5});
    row("all below 0", {-3, -1, -2}, {-3, -1});
    row("extremes at the ends", {9, 2, 3, 1}, {1, 9});
    row("one", {640}, {640, 640});
    row("equal", {0.5, 0.5}, {0.5, 0.5});
    row("nothing, so the earlier range stays", {}, {0, 4});
}

void TestChartFunctions::rangeSpansTheExtremes() {
    QFETCH(QVector<double>, values);
    QVector<double> range = {0, 4};
    QCOMPARE(findRange(values, range), !values.isEmpty());
    QTEST(range, "expected");
}

int main(int argc, char** argv) {
    return testsupport::runWithWindows<TestChartFunctions, TestAmplitudeSpectrum, TestEmptyCharts,
                                       TestChartDrawing, TestTrendChart, TestChartsOfTargets>(argc,
                                                                                              argv);
}
