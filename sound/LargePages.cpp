// Room for long sounds that the system can hand out quickly.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/LargePages.h"

#include <cstdint>

#ifdef __linux__
#include <sys/mman.h>
#endif

void preferLargePages(void* memory, std::size_t bytes) {
#ifdef __linux__
    // Whole large pages only: a vector's neighbours are none of its business.
    constexpr std::uintptr_t largePage = std::uintptr_t{1} << 21U;
    const auto begin = reinterpret_cast<std::uintptr_t>(memory);
    const std::uintptr_t first = (begin + largePage - 1) / largePage * largePage;
    const std::uintptr_t last = (begin + bytes) / largePage * largePage;
    if (first < last) // a system without large pages refuses, which does no harm
        madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
#else
    static_cast<void>(memory);
    static_cast<void>(bytes);
#endif
}
