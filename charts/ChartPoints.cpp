// The points of the waveform and spectrum charts, and their ranges.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "charts/ChartPoints.h"

#include "base/Sampling.h"

#include <algorithm>

PlottedPart plottedPart(double plotDuration, double samplingRate, int nSamples) {
    const int points = sampleCount(plotDuration, samplingRate);
    if (nSamples < points)
        return {nSamples, nSamples / samplingRate};
    return {points, plotDuration};
}

void pairPoints(const QVector<double>& x, const QVector<double>& y, int count,
                QVector<QPointF>& points) {
    if (count < 1)
        return;
    const int available = std::min({count, x.size(), y.size()});
    // The chart may share the earlier points: writing to them would copy them first.
    if (!points.isDetached() || points.size() != available)
        points = QVector<QPointF>(available);
    std::transform(x.cbegin(), x.cbegin() + available, y.cbegin(), points.begin(),
                   [](double left, double right) { return QPointF(left, right); });
}

bool findRange(const QVector<double>& values, QVector<double>& range) {
    if (values.isEmpty())
        return false;
    const auto [smallest, largest] = std::minmax_element(values.cbegin(), values.cend());
    range = {*smallest, *largest};
    return true;
}
