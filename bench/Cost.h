// The cost of a step: elapsed time, time in the kernel, and page faults.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <vector>

/// Returns how often to measure: once if BENCH_TRIAL is set, which only tests the benchmarks.
inline int rounds(int usual) {
    return std::getenv("BENCH_TRIAL") == nullptr ? usual : 1;
}

/// Returns the median of one or more values; for an even number, the upper of the two middle
/// values.
inline double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The cost of a step, or of the process until now.
struct Cost {
    double elapsed = 0; ///< Milliseconds of the steady clock.
    double system = 0;  ///< Milliseconds in the kernel; some systems count in ticks.
    double faults = 0;  ///< Minor page faults: pages of fresh memory, mostly.

    static Cost now() {
        using Milliseconds = std::chrono::duration<double, std::milli>;
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        const Milliseconds elapsed = std::chrono::steady_clock::now().time_since_epoch();
        return {elapsed.count(),
                1e3 * static_cast<double>(usage.ru_stime.tv_sec) +
                    1e-3 * static_cast<double>(usage.ru_stime.tv_usec),
                static_cast<double>(usage.ru_minflt)};
    }

    friend Cost operator+(const Cost& one, const Cost& other) {
        return {one.elapsed + other.elapsed, one.system + other.system, one.faults + other.faults};
    }
    friend Cost operator-(const Cost& one, const Cost& other) {
        return {one.elapsed - other.elapsed, one.system - other.system, one.faults - other.faults};
    }
};

template <typename Function> Cost costOf(Function&& function) {
    const Cost start = Cost::now();
    function();
    return Cost::now() - start;
}
