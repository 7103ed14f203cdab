// What a test program does when the program starts threads.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace testsupport {

/// Stands between the program under test and the system's starting of threads while it lives: one
/// at a time. To be had by the programs that compile ThreadStarts.cpp.
class ThreadStarts {
public:
    /// `refuse`: whether each start fails for want of resources.
    explicit ThreadStarts(bool refuse);
    ~ThreadStarts();
    ThreadStarts(const ThreadStarts&) = delete;
    ThreadStarts(ThreadStarts&&) = delete;
    ThreadStarts& operator=(const ThreadStarts&) = delete;
    ThreadStarts& operator=(ThreadStarts&&) = delete;

    const bool refuses;
    int count = 0; ///< Starts asked for so far, from all threads of one program in turn.
};

} // namespace testsupport
