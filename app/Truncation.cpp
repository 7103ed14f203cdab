// Real numbers as ints.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Truncation.h"

#include <algorithm>
#include <cmath>
#include <limits>

int truncatedToInt(double number) {
    if (std::isnan(number))
        return 0;
    constexpr double least = std::numeric_limits<int>::min();
    constexpr double most = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(number, least, most));
}
