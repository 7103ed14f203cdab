// The test classes of the real FFT, by subject; each is defined in the file that its comment names.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

/// Known transforms, lengths 1, 2 and 4, what a transform leaves alone (test_fft.cpp).
class TestFftValues : public QObject {
    Q_OBJECT

private slots:
    void impulseOfLength8HasOnesAndNoImaginaryParts();
    void delayedImpulseOfLength4HasThePositiveImaginarySlot();
    void lengthsBelowEight_data();
    void lengthsBelowEight();
    void cosineOfWholePeriodsFillsOneRealBin_data();
    void cosineOfWholePeriodsFillsOneRealBin();
    void sineOfWholePeriodsFillsOneImaginarySlotPositively();
    void constantAndAlternationGoToTheEnds();
    void oneObjectServesManyTransforms();
    void inputIsOnlyRead();
    void nothingBeyondTheOutputIsWritten();
};

/// Tables, oscillators, array, memory (parts.cpp).
class TestFftParts : public QObject {
    Q_OBJECT

private slots:
    void typesAreAsTheirUsersExpect();
    void powersOfTwoAreTold();
    void sizesOfTheTables_data();
    void sizesOfTheTables();
    void bitReversal();
    void cosineLevelsLieBackToBack();
    void oscillatorsStepByTheUnitOfTheirPass();
    void oscillatorTurnsAndResets();
    void arrayOfDefaultSizeIsEmpty();
    void arrayKeepsWhatIsWritten();
    void resizingLosesContentsAndZeroChangesNothing();
    void elementsAreDestroyedWithTheirArray();
    void elementsBeginWhereTheirTypeDemands();
    void longArraysBeginAtALine();
    void transformAllocatesNothing();
    void transformCallsNoSineAndNoCosine();
    void memoryIsWhatTheTablesNeed();
    void arraysAreFreedInOrder();
};

/// Every value against other transforms, within what rounding does (accuracy.cpp).
class TestFftAccuracy : public QObject {
    Q_OBJECT

private slots:
    void agreesWithTheDirectTransform_data();
    void agreesWithTheDirectTransform();
    void agreesWithFftw_data();
    void agreesWithFftw();
};

/// Every way to a transform, to the last bit (ways.cpp).
class TestFftWays : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void everyWayEqualsThePlainPasses_data();
    void everyWayEqualsThePlainPasses();
};
