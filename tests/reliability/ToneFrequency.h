// The frequency of a recorded tone.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVector>

/// Returns the frequency (Hz) of the sinusoid of any amplitude and phase that lies closest to the
/// samples by least squares. It is taken from the samples alone, for tones that fill the stretch,
/// are next to pure, lie below a twentieth of the sampling rate and last half a period or more.
/// NaN where there is no such sinusoid, as in silence.
double toneFrequency(const QVector<float>& samples, double samplingRate);

/// Returns by how much a frequency lies above another, in cents.
double centsAbove(double measured, double reference);
