// The test classes of the signal library, by subject; each is defined in the file that its comment
// names. They run as a console tool does: without an application object.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <QVector>

/// Says in what two signals differ to the last bit, the sign of a zero included; empty where they
/// do not.
QString difference(const QVector<double>& actual, const QVector<double>& expected);

/// The interface, and warnings where no box can be shown (test_signal_console.cpp).
class TestSignalLibrary : public QObject {
    Q_OBJECT

private slots:
    void interfaceIsAsItsUsersExpect();
    void withoutAnApplicationAWarningIsALine_data();
    void withoutAnApplicationAWarningIsALine();
    void inAProgramWithoutWidgetsAWarningIsALine_data();
    void inAProgramWithoutWidgetsAWarningIsALine();
    void nothingToWarnOfWritesNothing_data();
    void nothingToWarnOfWritesNothing();
};

/// Noise, tones, modulated tones (console_generators.cpp).
class TestSignalGenerators : public QObject {
    Q_OBJECT

private slots:
    void pointsOfASignalAreRoundedDown_data();
    void pointsOfASignalAreRoundedDown();
    void noCountIsOneLineOnTheLogAndNoSignal_data();
    void noCountIsOneLineOnTheLogAndNoSignal();
    void signalsWithoutAPointAreEmpty_data();
    void signalsWithoutAPointAreEmpty();
    void noiseIsTheGeneratorsNumbersInOrder();
    void noiseLiesFrom0To1AroundOneHalf();
    void noiseWithoutAPointReseeds_data();
    void noiseWithoutAPointReseeds();
    void noisesOfTheSameSecondAreTheSame();
    void sineOf1000HzHasItsPeakAtSample10();
    void sineFollowsTheFormula_data();
    void sineFollowsTheFormula();
    void samFollowsTheFormula_data();
    void samFollowsTheFormula();
    void samPeaksAtTheAmplitudeWhenNormalised();
};

/// Onset and offset ramps (console_ramps.cpp).
class TestSignalRamps : public QObject {
    Q_OBJECT

private slots:
    void tenOnesWithTwoRampPoints_data();
    void tenOnesWithTwoRampPoints();
    void threeOnesWithTwoRampPoints_data();
    void threeOnesWithTwoRampPoints();
    void bothFormsFollowTheFormula_data();
    void bothFormsFollowTheFormula();
    void nothingOutsideTheSignalIsTouched_data();
    void nothingOutsideTheSignalIsTouched();
    void endsBecomeZeroAndTheMiddleStays_data();
    void endsBecomeZeroAndTheMiddleStays();
    void noRampChangesNothing_data();
    void noRampChangesNothing();
    void othersKeepTheirSamples_data();
    void othersKeepTheirSamples();
    void aNegativeSampleBecomesNegativeZero_data();
    void aNegativeSampleBecomesNegativeZero();
};

/// The generator and integers drawn from it (console_random.cpp).
class TestSignalRandom : public QObject {
    Q_OBJECT

private slots:
    void numbersAreTheToolkits();
    void everyThreadHasItsOwnNumbers();
    void integerFollowsTheFormula_data();
    void integerFollowsTheFormula();
    void integersFrom1To6();
    void reversedBoundsAreNotCorrected();
    void oneIntegerDoesNotSeed();
    void integersFollowTheFormula_data();
    void integersFollowTheFormula();
    void equalBoundsGiveThatValue();
    void reversedBoundsGiveTheUpperBound();
    void noIntegersAreEmptyAndReseed_data();
    void noIntegersAreEmptyAndReseed();
    void integersOfTheSameSecondAreTheSame();
};

/// Root mean squares (console_rms.cpp).
class TestSignalRms : public QObject {
    Q_OBJECT

private slots:
    void integers_data();
    void integers();
    void doubles_data();
    void doubles();
    void emptyVectorsAreNotANumber();
    void integersAreSummedExactly();
    void sumsBeyond64BitsGoOn_data();
    void sumsBeyond64BitsGoOn();
    void doublesAreSummedInOrder();
};

/// What the FFT sees of generators and ramps (console_spectra.cpp).
class TestSignalSpectra : public QObject {
    Q_OBJECT

private slots:
    void sineHasOneLine_data();
    void sineHasOneLine();
    void samHasSidebandsOfHalfTheDepth_data();
    void samHasSidebandsOfHalfTheDepth();
    void rampsThatMeetSplatterLessTheSmootherTheyAre();
    void squaringDoublesTheSplatterBesideAPlateau_data();
    void squaringDoublesTheSplatterBesideAPlateau();
};
