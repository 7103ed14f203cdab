// The comparison sinusoid.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVector>

/// Writes sin(i x (frequency x 2 pi) / samplingRate) into the first `count` samples, or into all of
/// them when there are fewer. Full scale, phase 0 and, deliberately, no onset or offset ramp: the
/// comparison sound starts and stops abruptly. Frequency and sampling rate in Hz.
void writeSinusoid(QVector<double>& samples, int count, double frequency, double samplingRate);
