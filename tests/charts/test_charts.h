// The test classes of the charts; each is defined in the file that its comment names.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Fixture.h"
#include "support/TestTable.h"

#include <QtCharts/QValueAxis>

using testsupport::columns;

using Range = QVector<double>;

inline Range rangeOf(const QtCharts::QValueAxis* axis) {
    return {axis->min(), axis->max()};
}

/// A sinusoid of `periods` periods in `length` samples, phase in radians.
QVector<double> sinusoid(int count, double amplitude, double periods, int length, double phase);

/// Lengths, plotted parts, points and ranges, without a window (test_charts.cpp).
class TestChartFunctions : public QObject {
    Q_OBJECT

private slots:
    void lengthIsTheNextPowerOfTwo_data();
    void lengthIsTheNextPowerOfTwo();
    void countsBelowOneAreSizedAsOne();
    void pointsReachTheMaximumFrequency_data();
    void pointsReachTheMaximumFrequency();
    void frameLastsAsLongAsItsSamples();
    void plottedPartIsLimitedToTheSound_data();
    void plottedPartIsLimitedToTheSound();
    void pointsPairTimesAndValues_data();
    void pointsPairTimesAndValues();
    void rangeSpansTheExtremes_data();
    void rangeSpansTheExtremes();
};

/// The amplitude spectrum and its analysis windows, without a window (amplitudes.cpp).
class TestAmplitudeSpectrum : public QObject {
    Q_OBJECT

private slots:
    void hannWindowFollowsTheSampleCountOfTheSettings_data();
    void hannWindowFollowsTheSampleCountOfTheSettings();
    void otherWindowsKeepTheSoundOrZeroIt();
    void everyBinIsComputedFromItsSlotsOfTheTransform_data();
    void everyBinIsComputedFromItsSlotsOfTheTransform();
    void binZeroTakesTheNyquistComponentAsImaginaryPart_data();
    void binZeroTakesTheNyquistComponentAsImaginaryPart();
    void sinusoidOnABinShowsItsAmplitude_data();
    void sinusoidOnABinShowsItsAmplitude();
    void kilohertzPeaksBetweenTwoBins();
    void oneSampleDividesByZero();
    void soundBeyondTheLengthIsCutOff();
    void elementsBeyondHalfTheLengthStay();
};

/// The three charts as the window opens (empty_charts.cpp).
class TestEmptyCharts : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void chartsHaveTheirProperties_data();
    void chartsHaveTheirProperties();
    void chartOwnsItsSeriesAndAxes_data();
    void chartOwnsItsSeriesAndAxes();
    void chartsAreVisibleBelowEachOther_data();
    void chartsAreVisibleBelowEachOther();
    void secondCallCreatesNothing_data();
    void secondCallCreatesNothing();
    void onlyWhatIsMissingIsCreated();
    void spectrumAxisIsSetAtItsCreation();
    void deletedChartsAreForgotten();

private:
    void setUp() override;

    testsupport::InspectedMainWindow* window = nullptr; ///< The fixture's.
};

/// Drawing the waveform and the spectrum (drawing.cpp).
class TestChartDrawing : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void waveformShowsEverySampleOfTheStretch();
    void shortSoundShortensTheAxisPermanently();
    void roundingMayDropTheLastPointOfAShortSound();
    void loudestSampleAfterTheStretchSetsTheRange();
    void constantSoundCollapsesTheRange_data();
    void constantSoundCollapsesTheRange();
    void nextWaveformReplacesTheEarlier();
    void withoutSamplesTheEarlierPointsStay();
    void withoutTargetTheRangeStays();
    void countingPointsDrawsNothing();
    void spectrumIsThatOfTheWindowedTarget_data();
    void spectrumIsThatOfTheWindowedTarget();
    void spectrumIsDrawnUpToTheMaximumFrequency();
    void strongComponentBeyondTheAxisSetsItsTop();
    void spectrumKeepsItsFrequencyAxis();
    void lengthOneKeepsTheSpectrum();
    void withoutAmplitudesTheRangeStays();

private:
    void setUp() override;

    testsupport::InspectedMainWindow* window = nullptr; ///< The fixture's.
};

/// The trend of the matches (trend.cpp).
class TestTrendChart : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void firstResponseKeepsTheEmptyRange();
    void everyResponseHasItsTick();
    void rangeSpansAllResponses();
    void equalResponsesCollapseTheRange();
    void responsesComeFromTheFirstRecordOnly();
    void withoutRecordsNothingIsAdded();
    void labelFormatIsSetWithEachResponse();
    void resetEmptiesTheTrendButNotItsTrials();
    void countZeroKeepsTheTicksOfTheEarlierSession();

private:
    void setUp() override;
    void respond(int count, double frequency);

    testsupport::InspectedMainWindow* window = nullptr; ///< The fixture's.
};

/// Charts of targets that the experimenter has chosen (targets.cpp).
class TestChartsOfTargets : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void preparedTargetIsDrawn();
    void targetOfOneSampleIsDrawn();
    void targetOfTwoSamplesHasOneBin();
    void silentTargetCollapsesTheRanges();
    void waveformIsDrawnBeforeTheAnalysisWindow();
    void preparingEmptiesTheTrend();

private:
    void setUp() override;

    testsupport::InspectedMainWindow* window = nullptr; ///< The fixture's.
};
