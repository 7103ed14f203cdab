// Random integers in a range.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "signal/OstrelClasses.h"

#include "signal/RandomGenerator.h"
#include "signal/WarningReport.h"

int randomInteger(int min, int max) {
    const int range = max - min + 1;
    if (max < min)
        reportWarning(QStringLiteral("min cannot be larger than max"));
    return min + nextRandomNumber() % range;
}

QVector<int> randomIntegers(int n, int min, int max) {
    if (min > max) {
        reportWarning(QStringLiteral("min cannot be larger than max; force min = max"));
        min = max;
    }
    seedRandomNumbersWithTime();
    if (n < 1)
        return {};
    // In 64 bits, so that no bounds overflow.
    const qint64 range = qint64(max) + 1 - min;
    QVector<int> integers(n);
    for (int& integer : integers)
        integer = static_cast<int>(nextRandomNumber() % range + min);
    return integers;
}
