// Charts of targets that the experimenter has chosen.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_charts.h"

#include "support/FileBytes.h"
#include "support/SessionDriver.h"
#include "support/WavBytes.h"

#include <QPushButton>
#include <QTemporaryDir>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>

#include <algorithm>
#include <cmath>

using testsupport::find;
using testsupport::InspectedMainWindow;
using testsupport::SessionDriver;

namespace {

constexpr auto practice = SessionDriver::Session::Practice;

/// The value that a 16-bit code stands for.
double sampleOf(int code) {
    return code / 32768.0;
}

/// A mono 16-bit file at 40000 Hz that is there for as long as the object.
class TargetFile {
public:
    explicit TargetFile(const QVector<int>& codes) : path(folder.filePath("target.wav")) {
        if (!testsupport::writeBytes(path, testsupport::wavWithSamples({}, codes)))
            qFatal("cannot write a target");
    }

private:
    QTemporaryDir folder;

public:
    const QString path;
};

QVector<double> rangeOf(const QtCharts::QValueAxis* axis) {
    return {axis->min(), axis->max()};
}

using Range = QVector<double>;

} // namespace

void TestChartsOfTargets::init() {
    window = std::make_unique<InspectedMainWindow>();
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
}

void TestChartsOfTargets::cleanup() {
    window.reset();
}

void TestChartsOfTargets::preparedTargetIsDrawn() {
    QVector<int> codes(12000, 0);
    codes[1] = 8192;
    codes[11999] = -16384;
    const TargetFile target(codes);
    SessionDriver session(*window);
    session.prepare(practice, target.path);
    QCOMPARE(session.dialogs.takeComplaints(), QStringList());

    QCOMPARE(window->seriesWav->count(), 10000);
    QCOMPARE(window->seriesWav->at(1), QPointF(0.025, 0.25));
    QCOMPARE(rangeOf(window->axisXWav), (Range{0, 250}));
    QCOMPARE(rangeOf(window->axisYWav), (Range{-0.5, 0.25}));
    QCOMPARE(window->fftLength, qint64(16384));
    QCOMPARE(window->seriesFFT->count(), 819);
    QCOMPARE(window->rangeFFT, rangeOf(window->axisYFFT));
    // Two impulses: 0.25 and -0.5 in line at most, 0.25 apart at least, over half the sound.
    QVERIFY(window->axisYFFT->max() <= 0.75 / 6000 * (1 + 1e-12));
    QVERIFY(window->axisYFFT->max() > 0.74 / 6000);
    QCOMPARE(rangeOf(window->axisXFFT), (Range{0, 2000}));
    QCOMPARE(window->seriesTrend->count(), 0);
    QVERIFY(find<QPushButton>(*window, "pushButtonGo")->isEnabled());
}

void TestChartsOfTargets::shorterSecondTargetLeavesNothingOfTheFirst() {
    const TargetFile loudAndLong(QVector<int>(20000, 30000));
    const QVector<int> softCodes = {100, -200, 300, -400, 50};
    const TargetFile softAndShort(softCodes);
    SessionDriver session(*window);
    session.prepare(practice, loudAndLong.path);
    QCOMPARE(rangeOf(window->axisYWav), (Range{sampleOf(30000), sampleOf(30000)}));
    // As after a session in which a sound was played.
    window->soundsPlayed = 1;
    session.prepare(practice, softAndShort.path);
    QCOMPARE(session.dialogs.takeComplaints(), QStringList());

    QCOMPARE(window->soundsPlayed, 0);
    QCOMPARE(window->targetSamples.size(), 5);
    QCOMPARE(window->seriesWav->count(), 5);
    for (int i = 0; i < softCodes.size(); ++i)
        QVERIFY(window->seriesWav->at(i).y() == sampleOf(softCodes[i]));
    QCOMPARE(rangeOf(window->axisXWav), (Range{0, 5 / 40000.0 * 1000}));
    QCOMPARE(rangeOf(window->axisYWav), (Range{sampleOf(-400), sampleOf(300)}));
    QCOMPARE(window->fftLength, qint64(8));
    QCOMPARE(window->fftAmplitudes.size(), 4);
    QCOMPARE(rangeOf(window->axisYFFT), window->rangeFFT);
    const double sum = sampleOf(100 - 200 + 300 - 400 + 50);
    const double alternatingSum = sampleOf(100 + 200 + 300 + 400 + 50);
    QVERIFY(window->fftAmplitudes[0] == std::sqrt(alternatingSum * alternatingSum + sum * sum) / 2);
}

void TestChartsOfTargets::targetOfOneSampleIsDrawn() {
    const TargetFile target({16384});
    SessionDriver session(*window);
    session.prepare(practice, target.path);
    QCOMPARE(session.dialogs.takeComplaints(), QStringList());
    QCOMPARE(window->data.nSamples, 1);
    QCOMPARE(window->seriesWav->pointsVector(), (QVector<QPointF>{{0, 0.5}}));
    QCOMPARE(rangeOf(window->axisXWav), (Range{0, 1 / 40000.0 * 1000}));
    QCOMPARE(rangeOf(window->axisYWav), (Range{0.5, 0.5}));
    QCOMPARE(window->fftLength, qint64(1));
    QVERIFY(window->fftAmplitudes.isEmpty());
    QCOMPARE(window->seriesFFT->count(), 0);
    QCOMPARE(rangeOf(window->axisYFFT), (Range{0, 1}));
    QVERIFY(find<QPushButton>(*window, "pushButtonGo")->isEnabled());
}

void TestChartsOfTargets::targetOfTwoSamplesHasOneBin() {
    const TargetFile target({16384, 8192});
    SessionDriver session(*window);
    session.prepare(practice, target.path);
    QCOMPARE(session.dialogs.takeComplaints(), QStringList());
    QCOMPARE(window->fftLength, qint64(2));
    QCOMPARE(window->fftAmplitudes.size(), 1);
    // Sum and difference over half of two.
    QVERIFY(window->fftAmplitudes[0] == std::sqrt(0.25 * 0.25 + 0.75 * 0.75));
    QCOMPARE(window->data.nFFTPointsToPlot, 0);
    QCOMPARE(window->seriesFFT->count(), 0);
    QCOMPARE(rangeOf(window->axisYWav), (Range{0.25, 0.5}));
}

void TestChartsOfTargets::silentTargetCollapsesTheRanges() {
    const TargetFile target(QVector<int>(400, 0));
    SessionDriver session(*window);
    session.prepare(practice, target.path);
    QCOMPARE(session.dialogs.takeComplaints(), QStringList());
    QCOMPARE(window->rangeWav, (Range{0, 0}));
    QCOMPARE(window->rangeFFT, (Range{0, 0}));
    QCOMPARE(window->seriesWav->count(), 400);
    // Painted, a collapsed range must do no harm.
    QVERIFY(!window->grab().isNull());
}

void TestChartsOfTargets::waveformIsDrawnBeforeTheAnalysisWindow() {
    const TargetFile target(QVector<int>(401, 16384));
    SessionDriver session(*window);
    window->windowType = 1;
    session.prepare(practice, target.path);
    QCOMPARE(session.dialogs.takeComplaints(), QStringList());
    const auto points = window->seriesWav->pointsVector();
    QVERIFY(std::all_of(points.cbegin(), points.cend(),
                        [](const QPointF& point) { return point.y() == 0.5; }));
    QVERIFY(window->targetSamples[0] == 0.0);
    QVERIFY(window->targetSamples[200] == 0.5);
}

void TestChartsOfTargets::preparingEmptiesTheTrend() {
    const TargetFile target({1000, -1000});
    SessionDriver session(*window);
    session.prepare(practice, target.path);
    window->data.nResponses = 3;
    window->data.records[0].frequencyMatched = 640;
    window->updateTrend();
    QCOMPARE(window->seriesTrend->count(), 1);
    session.prepare(practice, target.path);
    QCOMPARE(session.dialogs.takeComplaints(), QStringList());
    QCOMPARE(window->seriesTrend->count(), 0);
    QCOMPARE(window->data.nResponses, 0);
    QCOMPARE(rangeOf(window->axisXTrend), (Range{0, 3}));
}

void TestChartsOfTargets::cancelledTargetLeavesTheCharts() {
    const TargetFile target({1000, -1000, 500, 0});
    SessionDriver session(*window);
    session.prepare(practice, target.path);
    window->updateTrend();
    session.dialogs.cancelTarget();
    testsupport::click(*window, "pushButtonPractice");
    QCOMPARE(session.dialogs.takeComplaints(), QStringList());
    QCOMPARE(window->seriesWav->count(), 4);
    QCOMPARE(window->seriesTrend->count(), 1);
    QCOMPARE(rangeOf(window->axisYWav), (Range{sampleOf(-1000), sampleOf(1000)}));
    QVERIFY(!find<QPushButton>(*window, "pushButtonGo")->isEnabled());
}
