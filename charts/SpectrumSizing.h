// How long the spectrum of a sound is.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

/// The length of a transform and what follows from it.
struct SpectrumSizing {
    qint64 length;               ///< Values transformed: the least power of two >= nSamples.
    double frameDurationSeconds; ///< length / samplingRate; also the number of bins per hertz.
    int pointsToPlot;            ///< Bins up to the highest frequency shown, at most length / 2.

    /// Bins of the spectrum, from 0 to just below half the sampling rate.
    int bins() const { return static_cast<int>(length / 2); }
};

/// Returns the sizes for a sound of nSamples (1 to 2^28) at samplingRate (Hz), shown up to
/// maxFrequency (Hz). A count below 1 is sized as 1.
SpectrumSizing spectrumSizing(int nSamples, double samplingRate, double maxFrequency);
