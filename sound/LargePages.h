// Room for long sounds that the system can hand out quickly.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

/// Asks the system to back memory by large pages, where it has them; pages that have been written
/// to stay as they are. Nothing but the time of the first writing depends on it: a page at a time,
/// the system takes longer to hand out a gibibyte than our own work on it takes. (The real FFT's
/// arrays do the same for themselves.)
void preferLargePages(void* memory, std::size_t bytes);

/// Empties a vector and makes room for `count` elements in it, on large pages where it is long.
/// Throws what the vector's reserve() throws.
template <typename Vector> void reserveOnLargePages(Vector& vector, std::size_t count) {
    vector.clear();
    vector.reserve(static_cast<decltype(vector.size())>(count));
    preferLargePages(vector.data(), count * sizeof(*vector.data()));
}
