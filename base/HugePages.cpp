// Huge pages for the memory of long sounds.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/HugePages.h"

#include <cstdint>

#ifdef __linux__
#include <sys/mman.h>
#endif

void preferHugePages(void* memory, std::size_t bytes) {
#ifdef __linux__
    // Whole huge pages only, so that memory beside the vector is not affected.
    constexpr std::size_t hugePage = std::size_t{1} << 21U;
    const std::size_t pastBoundary = reinterpret_cast<std::uintptr_t>(memory) % hugePage;
    const std::size_t skipped = (hugePage - pastBoundary) % hugePage;
    if (bytes < skipped + hugePage)
        return;
    // A kernel without huge pages refuses, which does no harm.
    madvise(static_cast<char*>(memory) + skipped, (bytes - skipped) / hugePage * hugePage,
            MADV_HUGEPAGE);
#else
    static_cast<void>(memory);
    static_cast<void>(bytes);
#endif
}
