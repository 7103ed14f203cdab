// The laboratory's library of stimulus routines.
// SPDX-License-Identifier: GPL-3.0-or-later
//
// A signal is a vector of samples of one channel, without its sampling rate. Durations are in
// seconds, frequencies and sampling rates in Hz, phases in degrees; amplitudes and depths are
// factors. Nothing is limited to full scale.
//
// Every value is documented to the last bit: the formulas below are computed in doubles, in the
// order in which they are written and without contraction (-ffp-contract=off). Sines and cosines
// are the C library's.
//
// Warnings (WarningReport.h) never stop a routine: it continues after the box is closed or the line
// is written. Vectors that memory cannot hold end in std::bad_alloc.
//
//   Generators.cpp       whiteNoise, sine, sam
//   Ramps.cpp            cosRamp, cos2Ramp, linearRamp
//   RandomIntegers.cpp   randomInteger, randomIntegers
//   RootMeanSquare.cpp   rms
#pragma once

#include <QVector>

/// Names the library; its routines are the free functions below.
class OstrelClasses {
public:
    OstrelClasses() = default;
};

/// Returns nPoints samples of uniform noise, each the next number of the thread's generator
/// (RandomGenerator.h) divided by 2147483647.0: from 0 to 1 and deliberately not centred on zero;
/// callers subtract the offset themselves. The generator is first seeded with the time in whole
/// seconds, also where nPoints < 1 and the vector is empty. Two calls in the same second therefore
/// return the same noise, deliberately.
QVector<double> whiteNoise(int nPoints);

/// Returns floor(samplingRate x durationSeconds) samples of a pure tone,
///
///     amplitude x sin(i x (frequency x 2 pi) / samplingRate + phaseDegrees x pi/180)
///
/// with 2 pi = 6.283185307179586 and pi/180 = 0.017453292519943295. The vector is empty for less
/// than one sample, and for a count that does not fit an int, which is logged.
QVector<double> sine(double samplingRate, double durationSeconds, double frequency,
                     double amplitude, double phaseDegrees);

/// Returns as many samples as sine() of a tone whose amplitude a sinusoid modulates,
///
///     carrier   = sin(carrierFrequency x 2 pi x i / samplingRate + carrierPhaseDegrees x pi/180)
///     modulator = cos(i x (modulationFrequency x 2 pi) / samplingRate
///                     + modulatorPhaseDegrees x pi/180)
///     sample    = carrier x ((modulator x depth + 1) x amplitude)
///
/// The depth is 1 for full modulation and not limited. The peak reaches amplitude x (1 + depth); if
/// `normalise` is set, each sample is finally multiplied by 1 / (depth + 1), so that for depths of
/// 0 or more the peak does not exceed the amplitude.
QVector<double> sam(double samplingRate, double durationSeconds, double carrierFrequency,
                    double modulationFrequency, double depth, double amplitude,
                    double carrierPhaseDegrees, double modulatorPhaseDegrees, bool normalise);

// The ramps fade the first nPoints samples in and, as their mirror image, the last nPoints out.
// For i = 0 .. nPoints - 1 sample i and then sample size - 1 - i are multiplied by the gain g(i),
// so that the first and the last sample become 0 (or -0) and the gain stays below 1. Samples
// between the ramps keep their values.
//
// A signal with less than 2 x nPoints samples is reported ("Vector size must be at least twice of
// nPoints") and still ramped: samples in the overlap receive both gains (the middle sample of an
// odd number the same gain twice), and indices outside the signal are skipped. nPoints < 1 changes
// nothing.
//
// Each ramp has a form that returns a ramped copy and one that ramps the caller's vector, which
// must not be null. Both compute the same values.

/// Raised cosine: g(i) = (1 - cos(i / nPoints x pi)) x 0.5, with pi = 3.141592653589793.
QVector<double> cosRamp(QVector<double> signal, int nPoints);
void cosRamp(QVector<double>* signal, int nPoints);

/// The raised cosine squared, an onset like sin^4 and not a cos^2 window, deliberately: each sample
/// is multiplied by the gain of cosRamp() and then by the same gain again. Only where the two ramps
/// meet does it have less spectral splatter than cosRamp(). Next to a plateau it bends twice as
/// sharply and has twice the energy far from the carrier.
QVector<double> cos2Ramp(QVector<double> signal, int nPoints);
void cos2Ramp(QVector<double>* signal, int nPoints);

/// Linear: g(i) = i / nPoints.
QVector<double> linearRamp(QVector<double> signal, int nPoints);
void linearRamp(QVector<double>* signal, int nPoints);

/// Returns min + (next number of the thread's generator mod (max - min + 1)), a value from min to
/// max inclusive with the slight bias of a plain remainder. The generator is not seeded: it
/// continues from its state.
///
/// max < min is reported ("min cannot be larger than max") and, unlike in randomIntegers(),
/// deliberately not corrected: the range is then negative and the remainder, whose sign is that of
/// the number drawn, gives a value from min to min + (min - max - 2).
///
/// The caller ensures that max - min + 1 and the possible values fit an int, and that max is not
/// min - 1, which would divide by zero.
int randomInteger(int min, int max);

/// Returns n values from min to max inclusive, each (next number of the thread's generator mod
/// (max + 1 - min)) + min; empty for n < 1. min > max is reported ("min cannot be larger than max;
/// force min = max"), then every value is max. After that, and for any n, the generator is seeded
/// with the time in whole seconds: two calls in the same second return the same values,
/// deliberately. Of a range of more than 2^31 values only the lower 2^31 occur.
QVector<int> randomIntegers(int n, int min, int max);

/// Returns the root of the mean of the squared samples, summed in index order; NaN for an empty
/// vector. Integers are squared and summed exactly, in 64 bits; a sum beyond those, which takes
/// 131072 samples of 24 bits at full scale, continues in doubles.
double rms(QVector<int> signal);
double rms(QVector<double> signal);
