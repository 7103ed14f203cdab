// The pause between a request and its sound.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/PresentationPause.h"

#include "base/Sampling.h"

#include <algorithm>

PresentationPause presentationPause(double soundDuration, double silentInterval) {
    constexpr int coarseFrom = 2000;
    const double pause = (soundDuration + silentInterval) * millisecondsPerSecond;
    const int milliseconds = std::max(truncatedToInt(pause), 0);
    return {milliseconds, milliseconds < coarseFrom ? Qt::PreciseTimer : Qt::CoarseTimer};
}
