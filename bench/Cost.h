// What a step costs, on the wall's clock and in the kernel.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/resource.h>

#include <chrono>

using Clock = std::chrono::steady_clock;

inline double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// Milliseconds that a step has taken.
struct Cost {
    double elapsed = 0; ///< By the clock on the wall.
    /// Of these, in the system's kernel: fresh memory, mostly. Many systems count it in ticks of
    /// some milliseconds, so that it says nothing of short steps.
    double system = 0;

    Cost& operator+=(const Cost& other) {
        elapsed += other.elapsed;
        system += other.system;
        return *this;
    }
    friend Cost operator-(const Cost& one, const Cost& other) {
        return {one.elapsed - other.elapsed, one.system - other.system};
    }
};

inline double systemMilliseconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return 1e3 * static_cast<double>(usage.ru_stime.tv_sec) +
           1e-3 * static_cast<double>(usage.ru_stime.tv_usec);
}

template <typename Function> Cost costOf(Function&& function) {
    const double system = systemMilliseconds();
    const Clock::time_point start = Clock::now();
    function();
    return {millisecondsSince(start), systemMilliseconds() - system};
}
