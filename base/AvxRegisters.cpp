// The upper halves of the AVX registers.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/AvxRegisters.h"

#if defined(__x86_64__) && defined(__GNUC__)
#include <immintrin.h>

namespace {
__attribute__((target("avx"))) void clearWithAvx() {
    _mm256_zeroupper();
}
} // namespace

void clearUpperAvxHalves() {
    if (__builtin_cpu_supports("avx"))
        clearWithAvx();
}
#else
void clearUpperAvxHalves() {}
#endif
