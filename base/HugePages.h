// Huge pages for the memory of long sounds.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

/// Asks the kernel to back memory by transparent huge pages, where it has them; pages that have
/// been written to stay as they are. This makes only the first write faster: for a gibibyte, a page
/// fault for each 4 KiB takes longer than our own computations. (The real FFT's arrays make the
/// same request themselves.)
void preferHugePages(void* memory, std::size_t bytes);

/// Empties a vector and makes room for exactly `count` elements in it, on huge pages where it is
/// long. Memory of another size is freed first: a short sound must not keep the memory of a long
/// one. Throws what the vector's reserve() throws.
template <typename Vector> void reserveOnHugePages(Vector& vector, std::size_t count) {
    if (static_cast<std::size_t>(vector.capacity()) == count)
        vector.clear();
    else
        vector = Vector();
    vector.reserve(static_cast<decltype(vector.size())>(count));
    preferHugePages(vector.data(), count * sizeof(*vector.data()));
}
