// The one-sided amplitude spectrum of a sound, and its length.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVector>

/// The length of a transform and what follows from it.
struct SpectrumSizing {
    qint64 length;               ///< Values transformed: the smallest power of two >= nSamples.
    double frameDurationSeconds; ///< length / samplingRate; also the number of bins per hertz.
    int pointsToPlot;            ///< Bins up to the highest frequency shown, at most length / 2.

    /// Bins of the spectrum, from 0 to just below half the sampling rate.
    int bins() const { return static_cast<int>(length / 2); }
};

/// Returns the sizes for a sound of nSamples (1 to 2^28) at samplingRate (Hz), shown up to
/// maxFrequency (Hz). A count below 1 is sized as 1.
SpectrumSizing spectrumSizing(int nSamples, double samplingRate, double maxFrequency);

/// Returns the approximate number of bytes that the spectrum of nSamples takes: input, output,
/// scratch and bit reversal of the transform, its cosines, and the three vectors that are filled.
qint64 spectrumMemory(int nSamples);

/// The window by which a sound is multiplied before its transform. Any other number zeroes the
/// sound.
enum AnalysisWindow : int { NoWindow = 0, HannWindow = 1 };

/// Multiplies the samples in place by an analysis window; NoWindow leaves them as they are. The
/// Hann window is 0.5 x (1 - cos(2 pi i / (nSamples - 1))), nSamples being the sample count of
/// the settings, not the vector's length.
void applyAnalysisWindow(QVector<double>& samples, int windowType, int nSamples);

/// The vectors that a spectrum is written to, element k holding bin k.
struct SpectrumVectors {
    QVector<double>& frequencies; ///< Hz.
    QVector<double>& amplitudes;  ///< A sinusoid of peak amplitude A that falls on a bin shows A.
    QVector<double>& phases;      ///< Radians, -pi to pi.
};

/// Transforms `samples`, zero-padded at their end or cut off to `length`, and fills `spectrum` as
/// fillSpectrum() does.
///
/// Takes memory (see spectrumMemory()) until it returns; throws std::bad_alloc if there is none.
///
/// @param length               a power of two from 1 to 2^30; any other aborts the program
/// @param nSamples             the sample count of the sound
/// @param frequencyResolution  Hz per bin
void computeAmplitudeSpectrum(const QVector<double>& samples, qint64 length, int nSamples,
                              double frequencyResolution, const SpectrumVectors& spectrum);

/// Fills the first length / 2 elements of each vector of `spectrum`, which must be long enough,
/// from the `length` values of a transform in the layout of FFTReal.h.
///
/// Amplitudes are sqrt(re^2 + im^2) divided by nSamples / 2 in integer division: half the length of
/// the sound, not of the padded transform, so that padding does not lower them. Bin 0 deliberately
/// uses the component at half the sampling rate, which has no bin of its own, as its imaginary
/// part. A length below 2 leaves the vectors as they are.
void fillSpectrum(const double* transformed, qint64 length, int nSamples,
                  double frequencyResolution, const SpectrumVectors& spectrum);
