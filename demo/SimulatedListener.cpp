// A simulated listener who approaches a target's pitch.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo/SimulatedListener.h"

#include <cmath>
#include <cstdlib>

QVector<int> requestsToMatch(double pitch) {
    // Overshoots by three fifths of the last error each time, as bracketing listeners do, with
    // a few hertz of hesitation that fade as the difference becomes easier to hear.
    constexpr double overshoot = -0.6;
    constexpr int toleranceHz = 1;
    constexpr int maximumRequests = 12;
    const QVector<double> hesitation = {7, -12, 9, 8, -5, 4, -2, 2};

    QVector<int> requests;
    double error = pitch * 0.4;
    while (requests.size() < maximumRequests) {
        const double wavering = hesitation.value(requests.size(), 0.0);
        const int request = static_cast<int>(std::lround(pitch + error + wavering));
        requests.append(request);
        if (std::abs(request - static_cast<int>(std::lround(pitch))) <= toleranceHz)
            break;
        error *= overshoot;
    }
    return requests;
}
