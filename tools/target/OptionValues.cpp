// The values of options on a command line, checked.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/target/OptionValues.h"

#include <QCommandLineParser>

#include <algorithm>

double OptionValues::number(const QString& option, double minimum, double maximum) {
    bool isNumber = false;
    const double value = parser.value(option).toDouble(&isNumber);
    // Also refuses NaN, for which every comparison is false.
    if (isNumber && value >= minimum && value <= maximum)
        return value;
    reportInvalid(option, QStringLiteral("a number from %1 to %2").arg(minimum).arg(maximum));
    return minimum;
}

int OptionValues::integer(const QString& option, int minimum, int maximum) {
    bool isNumber = false;
    const int value = parser.value(option).toInt(&isNumber);
    if (isNumber && value >= minimum && value <= maximum)
        return value;
    reportInvalid(option, QStringLiteral("a whole number from %1 to %2").arg(minimum).arg(maximum));
    return minimum;
}

int OptionValues::choice(const QString& option, const QStringList& words) {
    const int position = words.indexOf(parser.value(option));
    if (position < 0)
        reportInvalid(option, words.join(QLatin1String(", ")));
    return std::max(position, 0);
}

QVector<int> OptionValues::list(const QString& option) {
    constexpr int highest = 10000;
    QVector<int> numbers;
    for (const QString& part : parser.value(option).split(u',')) {
        const QStringList ends = part.split(u'-');
        bool isFirst = false;
        bool isLast = false;
        const int first = ends.constFirst().toInt(&isFirst);
        const int last = ends.constLast().toInt(&isLast);
        if (!isFirst || !isLast || ends.size() > 2 || first < 1 || last < first || last > highest) {
            reportInvalid(
                option,
                QStringLiteral("a list such as 2-10 or 1,3,5 of numbers up to %1").arg(highest));
            return {1};
        }
        for (int value = first; value <= last; ++value)
            numbers.append(value);
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

void OptionValues::reportInvalid(const QString& option, const QString& wanted) {
    if (firstProblem.isEmpty())
        firstProblem =
            QStringLiteral("--%1 takes %2, not \"%3\"").arg(option, wanted, parser.value(option));
}
