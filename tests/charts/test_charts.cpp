// Lengths, stretches, points and ranges of the charts.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_charts.h"

#include "charts/ChartPoints.h"
#include "charts/PlottedStretch.h"
#include "charts/SpectrumSizing.h"
#include "support/TestMain.h"

#include <limits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

qint64 lengthFor(int nSamples) {
    return spectrumSizing(nSamples, 40000, 2000).length;
}

} // namespace

void TestChartFunctions::lengthIsTheLeastPowerOfTwo_data() {
    QTest::addColumn<int>("power");
    for (int exponent = 0; exponent <= 28; ++exponent)
        QTest::addRow("2^%d", exponent) << (1 << exponent);
}

void TestChartFunctions::lengthIsTheLeastPowerOfTwo() {
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

void TestChartFunctions::pointsReachTheHighestFrequencyShown_data() {
    QTest::addColumn<int>("nSamples");
    QTest::addColumn<double>("samplingRate");
    QTest::addColumn<double>("maxFrequency");
    QTest::addColumn<int>("points");
    QTest::newRow("default") << 10000 << 40000.0 << 2000.0 << 819;        // 819.2
    QTest::newRow("half a second") << 20000 << 40000.0 << 2000.0 << 1638; // 1638.4
    QTest::newRow("without padding") << 8192 << 40000.0 << 2000.0 << 409; // 409.6
    QTest::newRow("whole number") << 16384 << 40960.0 << 2000.0 << 800;
    QTest::newRow("other rate") << 10000 << 8000.0 << 2000.0 << 4096; // 4096.0
    QTest::newRow("exactly half the length") << 10000 << 8000.0 << 4000.0 << 8192;
    QTest::newRow("at most half the length") << 10000 << 8000.0 << 4001.0 << 8192;
    QTest::newRow("beyond an int") << 10000 << 1e-6 << 2000.0 << 8192;
    QTest::newRow("less than one") << 4 << 40000.0 << 2000.0 << 0;
    QTest::newRow("two samples, all") << 2 << 40000.0 << 40000.0 << 1;
    QTest::newRow("no half of one") << 1 << 40000.0 << 40000.0 << 0;
    QTest::newRow("rate 0") << 10000 << 0.0 << 2000.0 << 8192;
    QTest::newRow("rate and frequency 0") << 10000 << 0.0 << 0.0 << 0;
    QTest::newRow("rate not a number") << 10000 << notANumber << 2000.0 << 0;
    QTest::newRow("infinite rate") << 10000 << infinity << 2000.0 << 0;
    QTest::newRow("infinite rate and frequency") << 10000 << infinity << infinity << 0;
    QTest::newRow("infinite frequency") << 10000 << 40000.0 << infinity << 8192;
    QTest::newRow("frequency not a number") << 10000 << 40000.0 << notANumber << 0;
    QTest::newRow("negative rate") << 10000 << -40000.0 << 2000.0 << 0;
}

void TestChartFunctions::pointsReachTheHighestFrequencyShown() {
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

void TestChartFunctions::stretchIsLimitedToTheSound_data() {
    QTest::addColumn<double>("samplingRate");
    QTest::addColumn<double>("plotDuration");
    QTest::addColumn<int>("nSamples");
    QTest::addColumn<int>("points");
    QTest::addColumn<double>("durationAfterwards");
    const double rate = 40000;
    QTest::newRow("longer sound") << rate << 0.25 << 40000 << 10000 << 0.25;
    QTest::newRow("sound of the same length") << rate << 0.25 << 10000 << 10000 << 0.25;
    QTest::newRow("one sample less") << rate << 0.25 << 9999 << 9999 << 9999.0 / 40000;
    QTest::newRow("shorter sound") << rate << 0.25 << 4000 << 4000 << 0.1;
    QTest::newRow("one sample") << rate << 0.25 << 1 << 1 << 1.0 / 40000;
    QTest::newRow("no sample") << rate << 0.25 << 0 << 0 << 0.0;
    QTest::newRow("rounded down") << rate << 0.043 << 40000 << 1719 << 0.043;
    QTest::newRow("another rate") << 8000.0 << 0.25 << 40000 << 2000 << 0.25;
    QTest::newRow("another rate, shorter sound") << 8000.0 << 0.25 << 1000 << 1000 << 0.125;
}

void TestChartFunctions::stretchIsLimitedToTheSound() {
    QFETCH(double, samplingRate);
    QFETCH(double, plotDuration);
    QFETCH(double, durationAfterwards);
    QFETCH(int, nSamples);
    Data data;
    data.samplingRate = samplingRate;
    data.plotDuration = plotDuration;
    data.nSamples = nSamples;
    limitPlotToSound(data);
    QTEST(data.nPointsToPlot, "points");
    QVERIFY(data.plotDuration == durationAfterwards);
}

void TestChartFunctions::stretchLeavesOtherSettingsAlone() {
    Data data;
    data.nSamples = 4000;
    data.soundDuration = 0.5;
    data.samplingRate = 8000;
    limitPlotToSound(data);
    QCOMPARE(data.nSamples, 4000);
    QCOMPARE(data.soundDuration, 0.5);
    QCOMPARE(data.samplingRate, 8000.0);
    QCOMPARE(data.nFFTPointsToPlot, 500);
}

void TestChartFunctions::pointsPairTimesAndValues() {
    QVector<QPointF> points(7, QPointF(9, 9));
    pairPoints({0, 0.025, 0.05, 0.075}, {1, -1, 0.5, 0.25}, 3, points);
    QCOMPARE(points, (QVector<QPointF>{{0, 1}, {0.025, -1}, {0.05, 0.5}}));
    pairPoints({0, 0.025, 0.05, 0.075}, {1, -1, 0.5, 0.25}, 4, points);
    QCOMPARE(points, (QVector<QPointF>{{0, 1}, {0.025, -1}, {0.05, 0.5}, {0.075, 0.25}}));
}

void TestChartFunctions::pointsEndWithTheShorterVector_data() {
    QTest::addColumn<QVector<double>>("x");
    QTest::addColumn<QVector<double>>("y");
    QTest::addColumn<QVector<QPointF>>("expected");
    QTest::newRow("few times") << QVector<double>{1} << QVector<double>{2, 3, 4}
                               << QVector<QPointF>{{1, 2}};
    QTest::newRow("few values") << QVector<double>{1, 2, 3} << QVector<double>{4, 5}
                                << QVector<QPointF>{{1, 4}, {2, 5}};
    QTest::newRow("none") << QVector<double>() << QVector<double>{4, 5} << QVector<QPointF>();
}

void TestChartFunctions::pointsEndWithTheShorterVector() {
    QFETCH(QVector<double>, x);
    QFETCH(QVector<double>, y);
    QVector<QPointF> points;
    pairPoints(x, y, 1000000, points);
    QTEST(points, "expected");
}

void TestChartFunctions::withoutPointsTheEarlierOnesStay_data() {
    QTest::addColumn<int>("count");
    QTest::newRow("0") << 0;
    QTest::newRow("-1") << -1;
    QTest::newRow("minimum") << std::numeric_limits<int>::min();
}

void TestChartFunctions::withoutPointsTheEarlierOnesStay() {
    QFETCH(int, count);
    const QVector<QPointF> earlier = {{1, 2}, {3, 4}};
    QVector<QPointF> points = earlier;
    pairPoints({7, 8}, {9, 10}, count, points);
    QCOMPARE(points, earlier);
}

void TestChartFunctions::rangeSpansTheExtremes_data() {
    QTest::addColumn<QVector<double>>("values");
    QTest::addColumn<QVector<double>>("expected");
    QTest::newRow("mixed") << QVector<double>{0.5, -0.75, 0.25} << QVector<double>{-0.75, 0.5};
    QTest::newRow("all below 0") << QVector<double>{-3, -1, -2} << QVector<double>{-3, -1};
    QTest::newRow("extremes at the ends") << QVector<double>{9, 2, 3, 1} << QVector<double>{1, 9};
    QTest::newRow("one") << QVector<double>{640} << QVector<double>{640, 640};
    QTest::newRow("equal") << QVector<double>{0.5, 0.5} << QVector<double>{0.5, 0.5};
}

void TestChartFunctions::rangeSpansTheExtremes() {
    QFETCH(QVector<double>, values);
    QVector<double> range;
    QVERIFY(findRange(values, range));
    QTEST(range, "expected");
}

void TestChartFunctions::rangeOfNothingStays() {
    QVector<double> range = {0, 4};
    QVERIFY(!findRange({}, range));
    QCOMPARE(range, (QVector<double>{0, 4}));
}

int main(int argc, char** argv) {
    return testsupport::runWithWindows<TestChartFunctions, TestAmplitudeSpectrum,
                                       TestChartScaffolding, TestChartDrawing, TestTrendChart,
                                       TestChartsOfTargets>(argc, argv);
}
