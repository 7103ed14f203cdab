// The costs of the responses of a session.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/ResponseCost.h"

#include <algorithm>

QString MedianAndMaximum::text() const {
    return QStringLiteral("%1 / %2").arg(median, 0, 'f', 2).arg(maximum, 0, 'f', 2);
}

MedianAndMaximum medianAndMaximum(QVector<double> values) {
    std::sort(values.begin(), values.end());
    const int count = values.size();
    return {(values[(count - 1) / 2] + values[count / 2]) / 2, values.last()};
}
