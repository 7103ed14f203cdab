// The random numbers of the signal library.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <ctime>

// The generator is Qt's deprecated qrand(). The library's contract includes that two calls in the
// same second, and equal seeds, repeat the numbers. The deprecation warnings are switched off here,
// and everything else goes through these functions.
//
// Each thread has its own generator. Seeding one does not affect the others, and a thread that has
// not been seeded draws as after seedRandomNumbers(1), independently of other threads.

/// The numbers range from 0 to this.
constexpr int maximumRandomNumber = 2147483647;

/// Restarts the thread's numbers: the same seed gives the same ones.
inline void seedRandomNumbers(uint seed) {
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    qsrand(seed);
    QT_WARNING_POP
}

/// Restarts the thread's numbers by the C library's time in whole seconds.
inline void seedRandomNumbersWithTime() {
    seedRandomNumbers(static_cast<uint>(std::time(nullptr)));
}

/// Returns the thread's next number.
inline int nextRandomNumber() {
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    return qrand();
    QT_WARNING_POP
}
