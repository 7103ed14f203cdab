// The points of the waveform and spectrum charts, and their ranges.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointF>
#include <QVector>

/// The part of a sound, from its beginning, that is drawn.
struct PlottedPart {
    int points;             ///< Samples drawn.
    double durationSeconds; ///< Its duration, which also becomes the plot duration of later sounds.
};

/// Returns the part of plotDuration seconds at samplingRate (Hz), or the whole sound if that is
/// shorter, with its duration.
PlottedPart plottedPart(double plotDuration, double samplingRate, int nSamples);

/// Sets `points` to the first `count` pairs (x[i], y[i]), or fewer if a vector is shorter. With a
/// count below 1 `points` keeps what it held before.
void pairPoints(const QVector<double>& x, const QVector<double>& y, int count,
                QVector<QPointF>& points);

/// Sets `range` to the minimum and the maximum of `values` and returns true. Returns false, with
/// `range` unchanged, if there are no values.
bool findRange(const QVector<double>& values, QVector<double>& range);
