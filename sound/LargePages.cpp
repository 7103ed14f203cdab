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
    constexpr std::size_t largePage = std::size_t{1} << 21U;
    const std::size_t behindBoundary = reinterpret_cast<std::uintptr_t>(memory) % largePage;
    const std::size_t skipped = (largePage - behindBoundary) % largePage;
    if (bytes < skipped + largePage)
        return;
    // A system without large pages refuses, which does no harm.
    madvise(static_cast<char*>(memory) + skipped, (bytes - skipped) / largePage * largePage,
            MADV_HUGEPAGE);
#else
    static_cast<void>(memory);
    static_cast<void>(bytes);
#endif
}
