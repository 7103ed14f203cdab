// When a sound starts, and whether it came to its end.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/Presentation.h"

#include "app/Truncation.h"

#include <algorithm>

PresentationPause presentationPause(double soundDuration, double silentInterval) {
    constexpr double millisecondsPerSecond = 1000.0;
    constexpr int coarseFrom = 2000;
    const double pause = (soundDuration + silentInterval) * millisecondsPerSecond;
    const int milliseconds = std::max(truncatedToInt(pause), 0);
    return {milliseconds, milliseconds < coarseFrom ? Qt::PreciseTimer : Qt::CoarseTimer};
}

bool isHeardWhole(qint64 bytesHandedOver, qint64 bytes, qint64 elapsedMs, qint64 durationMs) {
    return bytesHandedOver >= bytes && elapsedMs >= durationMs;
}
