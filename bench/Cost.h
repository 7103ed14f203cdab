// The cost of a step: elapsed time and time in the kernel.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/resource.h>

#include <chrono>

using Clock = std::chrono::steady_clock;

inline double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// Milliseconds of a step.
struct Cost {
    double elapsed = 0; ///< Elapsed time.
    /// Of these, in the system's kernel: fresh memory, mostly. Many systems count it in ticks of
    /// some milliseconds, too coarse for short steps.
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
