// The points of the waveform and spectrum charts, and their ranges.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointF>
#include <QVector>

/// The first stretch of a sound, which is drawn.
struct PlottedStretch {
    int points;             ///< Samples drawn.
    double durationSeconds; ///< Of the stretch, for the sounds that follow.
};

/// Returns the stretch of plotDuration seconds at samplingRate (Hz), shortened to a sound of fewer
/// samples. The duration then becomes the shorter one.
PlottedStretch plottedStretch(double plotDuration, double samplingRate, int nSamples);

/// Makes `points` the first `count` pairs (x[i], y[i]), fewer where a vector is shorter. With
/// a count below 1 `points` keeps what it held before.
void pairPoints(const QVector<double>& x, const QVector<double>& y, int count,
                QVector<QPointF>& points);

/// Sets `range` to the smallest and the largest of `values` and returns true; without values the
/// range stays and the result is false.
bool findRange(const QVector<double>& values, QVector<double>& range);
