// Onset and offset ramps.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "signal/OstrelClasses.h"

#include "signal/WarningReport.h"

#include <algorithm>
#include <cmath>

namespace {

/// The gain at a position from 0, where a ramp starts, to 1, which it does not reach.
using Gain = double (*)(double position);

double raisedCosine(double position) {
    constexpr double pi = 3.141592653589793;
    return (1 - std::cos(position * pi)) * 0.5;
}

double linear(double position) {
    return position;
}

/// Ramps both ends of a signal, each sample multiplied by its gain `times` times over.
void ramp(QVector<double>& signal, int nPoints, Gain gain, int times) {
    if (signal.size() < 2 * qint64(nPoints))
        reportWarning(QStringLiteral("Vector size must be at least twice of nPoints"));
    // A point beyond one end of the signal has its mirror image beyond the other end.
    const int within = std::min(nPoints, signal.size());
    if (within < 1)
        return;
    double* sample = signal.data();
    double* last = sample + signal.size() - 1;
    for (int i = 0; i < within; ++i) {
        const double factor = gain(static_cast<double>(i) / nPoints);
        for (double* ramped : {sample + i, last - i})
            for (int time = 0; time < times; ++time)
                *ramped *= factor;
    }
}

} // namespace

void cosRamp(QVector<double>* signal, int nPoints) {
    ramp(*signal, nPoints, raisedCosine, 1);
}

QVector<double> cosRamp(QVector<double> signal, int nPoints) {
    cosRamp(&signal, nPoints);
    return signal;
}

void cos2Ramp(QVector<double>* signal, int nPoints) {
    ramp(*signal, nPoints, raisedCosine, 2);
}

QVector<double> cos2Ramp(QVector<double> signal, int nPoints) {
    cos2Ramp(&signal, nPoints);
    return signal;
}

void linearRamp(QVector<double>* signal, int nPoints) {
    ramp(*signal, nPoints, linear, 1);
}

QVector<double> linearRamp(QVector<double> signal, int nPoints) {
    linearRamp(&signal, nPoints);
    return signal;
}
