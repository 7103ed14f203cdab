// The root of the mean square.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "signal/OstrelClasses.h"

#include <cmath>
#include <limits>

// By value: the library's interface is fixed.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
double rms(QVector<int> signal) {
    qint64 sum = 0;
    double sumBeyond64Bits = 0;
    for (const qint64 sample : qAsConst(signal)) {
        const qint64 square = sample * sample;
        if (sum > std::numeric_limits<qint64>::max() - square) {
            sumBeyond64Bits += static_cast<double>(sum);
            sum = 0;
        }
        sum += square;
    }
    return std::sqrt((sumBeyond64Bits + static_cast<double>(sum)) / signal.size());
}

// NOLINTNEXTLINE(performance-unnecessary-value-param)
double rms(QVector<double> signal) {
    double sum = 0;
    for (const double sample : qAsConst(signal))
        sum += sample * sample;
    return std::sqrt(sum / signal.size());
}
