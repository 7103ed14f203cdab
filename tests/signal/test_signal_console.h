// The test classes of the signal library, by subject; each is defined in the file that its comment
// names. They run as a console tool does: without an application object.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/TestTable.h"

#include <QObject>
#include <QString>
#include <QVector>

#include <limits>

using testsupport::columns;

constexpr int minimumInt = std::numeric_limits<int>::min();
constexpr int maximumInt = std::numeric_limits<int>::max();

/// Describes the first difference of two signals, to the last bit and the sign of a zero; empty if
/// they are equal.
QString difference(const QVector<double>& actual, const QVector<double>& expected);

/// The interface, and warnings where no box can be shown (test_signal_console.cpp).
class TestSignalLibrary : public QObject {
    Q_OBJECT

private slots:
    void interfaceHasItsSignatures();
    void warningWithoutAnApplicationIsPrinted_data();
    void warningWithoutAnApplicationIsPrinted();
    void warningWithoutWidgetsIsPrinted_data();
    void warningWithoutWidgetsIsPrinted();
    void validCallWritesNothing_data();
    void validCallWritesNothing();
};

/// Noise, tones, modulated tones (console_generators.cpp).
class TestSignalGenerators : public QObject {
    Q_OBJECT

private slots:
    void pointsOfASignalAreRoundedDown_data();
    void pointsOfASignalAreRoundedDown();
    void invalidCountGivesEmptySignalAndOneLogLine_data();
    void invalidCountGivesEmptySignalAndOneLogLine();
    void noiseFollowsTheRandomNumbers();
    void emptyNoiseReseeds_data();
    void emptyNoiseReseeds();
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
    void bothFormsFollowTheFormula_data();
    void bothFormsFollowTheFormula();
    void nothingOutsideTheSignalIsTouched_data();
    void nothingOutsideTheSignalIsTouched();
    void noRampChangesNothing_data();
    void noRampChangesNothing();
    void copiesKeepTheirSamples_data();
    void copiesKeepTheirSamples();
};

/// The generator and integers drawn from it (console_random.cpp).
class TestSignalRandom : public QObject {
    Q_OBJECT

private slots:
    void numbersAreThoseOfQrand();
    void randomNumbersAreSeparateForEachThread();
    void integerFollowsTheFormula_data();
    void integerFollowsTheFormula();
    void integersFollowTheFormula_data();
    void integersFollowTheFormula();
    void countBelowOneGivesEmptyVectorAndReseeds_data();
    void countBelowOneGivesEmptyVectorAndReseeds();
};

/// Root mean squares (console_rms.cpp).
class TestSignalRms : public QObject {
    Q_OBJECT

private slots:
    void integers_data();
    void integers();
    void doubles_data();
    void doubles();
    void emptyVectorGivesNaN();
    void integersAreSummedExactly();
    void doublesAreSummedInOrder();
};
