// The comparison sinusoid.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/Sinusoid.h"

#include "base/Sampling.h"

#include <algorithm>
#include <cmath>

void writeSinusoid(QVector<double>& samples, int count, double frequency, double samplingRate) {
    const double angularFrequency = frequency * twoPi;
    const int available = std::min(count, samples.size());
    double* sample = samples.data();
    for (int i = 0; i < available; ++i)
        sample[i] = std::sin(i * angularFrequency / samplingRate);
}
