// Keeps a compiler from contracting or reassociating the operations of the real FFT.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cfloat>

// The order and the rounding of every operation are part of the transform's contract. The code
// between FFTREAL_EXACT_BEGIN and FFTREAL_EXACT_END is compiled without fused multiply-adds,
// regardless of the command line (only clang's -ffp-contract=fast overrides it).
#if defined(__FAST_MATH__) || defined(__ASSOCIATIVE_MATH__)
#error "The real FFT cannot be compiled with -ffast-math: its results are defined to the last bit."
#endif
#if FLT_EVAL_METHOD != 0 && FLT_EVAL_METHOD != 16 // 16 concerns only _Float16
#error "The real FFT needs arithmetic that rounds each result to its type (-mfpmath=sse)."
#endif

#if defined(__clang__) && (defined(__x86_64__) || defined(__i386__))
#define FFTREAL_EXACT_BEGIN _Pragma("float_control(push)") _Pragma("clang fp contract(off)")
#define FFTREAL_EXACT_END _Pragma("float_control(pop)")
#elif defined(__clang__) // without float_control: lasts to the end of the file
#define FFTREAL_EXACT_BEGIN _Pragma("clang fp contract(off)")
#define FFTREAL_EXACT_END
#elif defined(__GNUC__) // and without tracking variables for debuggers
#define FFTREAL_EXACT_BEGIN                                                                        \
    _Pragma("GCC push_options")                                                                    \
        _Pragma("GCC optimize(\"fp-contract=off\", \"no-var-tracking-assignments\")")
#define FFTREAL_EXACT_END _Pragma("GCC pop_options")
#else
#define FFTREAL_EXACT_BEGIN
#define FFTREAL_EXACT_END
#endif
