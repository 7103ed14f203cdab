// Calls of the signal library with and without warnings, and the seconds that are its seeds.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "signal/OstrelClasses.h"

#include <QTest>

#include <ctime>
#include <functional>
#include <limits>
#include <utility>

namespace testsupport {

/// The two forms of a ramp.
using RampOfCopy = QVector<double> (*)(QVector<double>, int);
using RampInPlace = void (*)(QVector<double>*, int);

using SignalCall = std::function<void()>;

/// Repeats an action until it begins and ends in the same second, and returns that second: numbers
/// seeded by the time may differ across two seconds.
template <typename Action> uint inOneSecond(Action action) {
    for (;;) {
        const std::time_t second = std::time(nullptr);
        action();
        if (std::time(nullptr) == second)
            return static_cast<uint>(second);
    }
}

/// Adds a row for each form of each ramp, applied to `size` samples.
inline void addRampCalls(const char* name, int size, int nPoints, const QString& text = {}) {
    const std::pair<RampOfCopy, const char*> ofCopies[] = {
        {cosRamp, "cosRamp"}, {cos2Ramp, "cos2Ramp"}, {linearRamp, "linearRamp"}};
    const std::pair<RampInPlace, const char*> inPlace[] = {
        {cosRamp, "cosRamp"}, {cos2Ramp, "cos2Ramp"}, {linearRamp, "linearRamp"}};
    for (const auto& [ramp, rampName] : ofCopies)
        QTest::addRow("%s of a copy, %s", rampName, name)
            << SignalCall([=, ramp = ramp] { ramp(QVector<double>(size, 1.0), nPoints); }) << text;
    for (const auto& [ramp, rampName] : inPlace)
        QTest::addRow("%s in place, %s", rampName, name) << SignalCall([=, ramp = ramp] {
            QVector<double> signal(size, 1.0);
            ramp(&signal, nPoints);
        }) << text;
}

inline void addCallsThatWarn() {
    QTest::addColumn<SignalCall>("call");
    QTest::addColumn<QString>("text");
    const auto text = QStringLiteral("Vector size must be at least twice of nPoints");
    addRampCalls("one sample short", 19, 10, text);
    addRampCalls("empty signal", 0, 1, text);
    addRampCalls("longest ramp", 3, std::numeric_limits<int>::max(), text);
    QTest::newRow("randomInteger")
        << SignalCall([] { randomInteger(7, 2); }) << "min cannot be larger than max";
    QTest::newRow("randomIntegers") << SignalCall([] { randomIntegers(4, 7, 2); })
                                    << "min cannot be larger than max; force min = max";
    QTest::newRow("randomIntegers, count 0") << SignalCall([] { randomIntegers(0, 7, 2); })
                                             << "min cannot be larger than max; force min = max";
}

inline void addCallsThatDoNotWarn() {
    QTest::addColumn<SignalCall>("call");
    QTest::addColumn<QString>("text");
    addRampCalls("just long enough", 20, 10);
    addRampCalls("no ramp", 1, 0);
    addRampCalls("no ramp of an empty signal", 0, 0);
    addRampCalls("negative ramp", 3, -1);
    addRampCalls("most negative ramp", 3, std::numeric_limits<int>::min());
    const QString none;
    QTest::newRow("randomInteger") << SignalCall([] { randomInteger(1, 6); }) << none;
    QTest::newRow("randomInteger, one value") << SignalCall([] { randomInteger(3, 3); }) << none;
    QTest::newRow("randomIntegers") << SignalCall([] { randomIntegers(5, 1, 6); }) << none;
    QTest::newRow("randomIntegers, one value")
        << SignalCall([] { randomIntegers(5, 3, 3); }) << none;
    QTest::newRow("randomIntegers, none") << SignalCall([] { randomIntegers(0, 1, 6); }) << none;
    QTest::newRow("whiteNoise, none") << SignalCall([] { whiteNoise(-5); }) << none;
    QTest::newRow("sine, none") << SignalCall([] { sine(40000, -1, 1000, 1, 0); }) << none;
}

} // namespace testsupport

Q_DECLARE_METATYPE(testsupport::RampOfCopy)
Q_DECLARE_METATYPE(testsupport::RampInPlace)
Q_DECLARE_METATYPE(testsupport::SignalCall)
