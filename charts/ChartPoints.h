// What the waveform and the spectrum chart have in common.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointF>
#include <QVector>

/// Makes `points` the first `count` pairs (x[i], y[i]), fewer where a vector is shorter. With
/// a count below 1 `points` keeps what it held before.
void pairPoints(const QVector<double>& x, const QVector<double>& y, int count,
                QVector<QPointF>& points);

/// Sets `range` to the smallest and the largest of `values` and returns true; without values the
/// range stays and the result is false.
bool findRange(const QVector<double>& values, QVector<double>& range);
