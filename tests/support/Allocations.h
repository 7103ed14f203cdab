// What a test program allocates and frees.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <vector>

namespace testsupport {

/// The requests to operators new and delete.
struct Allocations {
    std::size_t count = 0;
    std::size_t bytes = 0;          ///< Of all requests together.
    std::size_t largest = 0;        ///< Of one request, in bytes.
    std::vector<const void*> freed; ///< In the order in which it was freed.
};

/// Returns what an action allocates and frees, in all of a program that compiles Allocations.cpp.
/// Requests beyond the limit fail. One at a time, in one thread.
Allocations allocationsOf(const std::function<void()>& action,
                          std::size_t limitBytes = std::numeric_limits<std::size_t>::max());

} // namespace testsupport
