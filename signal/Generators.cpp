// Stimulus generators: noise, a pure tone, an amplitude-modulated tone.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "signal/OstrelClasses.h"

#include "base/Sampling.h"
#include "signal/PointCount.h"
#include "signal/RandomGenerator.h"

#include <cmath>

namespace {
constexpr double radiansPerDegree = 0.017453292519943295;
} // namespace

QVector<double> whiteNoise(int nPoints) {
    seedRandomNumbersWithTime();
    if (nPoints < 1)
        return {};
    QVector<double> samples(nPoints);
    for (double& sample : samples)
        sample = nextRandomNumber() / static_cast<double>(maximumRandomNumber);
    return samples;
}

QVector<double> sine(double samplingRate, double durationSeconds, double frequency,
                     double amplitude, double phaseDegrees) {
    const int nPoints = pointCount(samplingRate, durationSeconds);
    if (nPoints < 1)
        return {};
    QVector<double> samples(nPoints);
    double* sample = samples.data();
    for (int i = 0; i < nPoints; ++i)
        sample[i] = amplitude * std::sin(i * (frequency * twoPi) / samplingRate +
                                         phaseDegrees * radiansPerDegree);
    return samples;
}

QVector<double> sam(double samplingRate, double durationSeconds, double carrierFrequency,
                    double modulationFrequency, double depth, double amplitude,
                    double carrierPhaseDegrees, double modulatorPhaseDegrees, bool normalise) {
    const int nPoints = pointCount(samplingRate, durationSeconds);
    if (nPoints < 1)
        return {};
    const double normalisingFactor = 1 / (depth + 1);
    QVector<double> samples(nPoints);
    double* sample = samples.data();
    for (int i = 0; i < nPoints; ++i) {
        const double carrier = std::sin(carrierFrequency * twoPi * i / samplingRate +
                                        carrierPhaseDegrees * radiansPerDegree);
        const double modulator = std::cos(i * (modulationFrequency * twoPi) / samplingRate +
                                          modulatorPhaseDegrees * radiansPerDegree);
        sample[i] = carrier * ((modulator * depth + 1) * amplitude);
        if (normalise)
            sample[i] *= normalisingFactor;
    }
    return samples;
}
