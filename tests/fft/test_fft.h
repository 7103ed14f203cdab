// The test classes of the real FFT, by subject; each is defined in the file that its comment names.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FFTReal.h"

#include <QObject>

#include <cstdint>
#include <vector>

/// Returns the transform of a sequence by a new object.
inline std::vector<double> transformed(const std::vector<double>& x) {
    const FFTReal<double> fft(static_cast<std::int64_t>(x.size()));
    std::vector<double> f(x.size());
    fft.do_fft(f.data(), x.data());
    return f;
}

/// Known transforms (test_fft.cpp).
class TestFftValues : public QObject {
    Q_OBJECT

private slots:
    void knownTransforms_data();
    void knownTransforms();
    void oneObjectServesManyTransforms();
};

/// Tables, oscillators, array, memory (parts.cpp).
class TestFftParts : public QObject {
    Q_OBJECT

private slots:
    void interfaceHasItsTypes();
    void powersOfTwoAreRecognised();
    void sizesOfTheTables_data();
    void sizesOfTheTables();
    void cosineLevelsAreContiguous();
    void oscillatorsStepByTheUnitOfTheirPass();
    void oscillatorTurnsAndResets();
    void arrayKeepsWhatIsWritten();
    void resizingLosesContentsAndZeroChangesNothing();
    void elementsAreDestroyedWithTheirArray();
    void elementsAreAlignedForTheirType();
    void longArraysAreAlignedToCacheLines();
    void transformAllocatesNothing();
    void transformCallsNoSineAndNoCosine();
    void memoryMatchesTheTables();
    void arraysAreFreedInOrder();
};

/// Every value against another transform, within bounds of rounding errors (accuracy.cpp).
class TestFftAccuracy : public QObject {
    Q_OBJECT

private slots:
    void agreesWithFftw_data();
    void agreesWithFftw();
};

/// Every code path of the transform, to the last bit (code_paths.cpp).
class TestFftCodePaths : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void everyCodePathEqualsThePlainPasses_data();
    void everyCodePathEqualsThePlainPasses();
};
