// Four neighbouring doubles that are computed with at once, for the fast passes of the real FFT.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ExactArithmetic.h"

// The vector types of GCC (12 and later) and clang. Other compilers, or a definition of this macro
// as 0, leave the transform with its plain passes.
#if !defined(FFTREAL_VECTORS) && defined(__GNUC__) && defined(__has_builtin)
#if __has_builtin(__builtin_shufflevector)
#define FFTREAL_VECTORS 1
#endif
#endif
#ifndef FFTREAL_VECTORS
#define FFTREAL_VECTORS 0
#endif

#if FFTREAL_VECTORS

#if defined(__x86_64__) || defined(__i386__)
#define FFTREAL_AVX2 1
#else
#define FFTREAL_AVX2 0
#endif

// Everything that computes with vectors is inlined into the two functions at the end of
// FFTFastPasses.h, whose target attributes choose the instructions.
#define FFTREAL_INLINE __attribute__((always_inline)) inline

FFTREAL_EXACT_BEGIN

namespace fftreal {

/// One double with the operations of the types below, where fewer than four values are left.
struct One {
    static constexpr int lanes = 1;
    double v;

    static FFTREAL_INLINE One load(const double* p) { return {*p}; }
    static FFTREAL_INLINE One all(double value) { return {value}; }
    FFTREAL_INLINE void store(double* p) const { *p = v; }
    FFTREAL_INLINE One reversed() const { return *this; }

    friend FFTREAL_INLINE One operator+(const One& a, const One& b) { return {a.v + b.v}; }
    friend FFTREAL_INLINE One operator-(const One& a, const One& b) { return {a.v - b.v}; }
    friend FFTREAL_INLINE One operator*(const One& a, const One& b) { return {a.v * b.v}; }
};

/// Four doubles as two vectors of 16 bytes, which nearly every machine has (SSE2, NEON); elsewhere
/// compilers use scalars. Addresses need no more alignment than a double's.
struct TwoPairs {
    using Pair = double __attribute__((vector_size(16)));
    static constexpr int lanes = 4;
    Pair lo;
    Pair hi;

    static FFTREAL_INLINE TwoPairs load(const double* p) {
        TwoPairs r; // NOLINT: both are set by the next two lines
        __builtin_memcpy(&r.lo, p, sizeof r.lo);
        __builtin_memcpy(&r.hi, p + 2, sizeof r.hi);
        return r;
    }
    static FFTREAL_INLINE TwoPairs all(double value) {
        return {Pair{value, value}, Pair{value, value}};
    }
    FFTREAL_INLINE void store(double* p) const {
        __builtin_memcpy(p, &lo, sizeof lo);
        __builtin_memcpy(p + 2, &hi, sizeof hi);
    }
    /// In reverse order.
    FFTREAL_INLINE TwoPairs reversed() const {
        return {__builtin_shufflevector(hi, hi, 1, 0), __builtin_shufflevector(lo, lo, 1, 0)};
    }
    /// Transposes the 4 x 4 matrix with the rows a, b, c, d.
    static FFTREAL_INLINE void transpose(TwoPairs& a, TwoPairs& b, TwoPairs& c, TwoPairs& d) {
        const TwoPairs column_0 = {evens(a.lo, b.lo), evens(c.lo, d.lo)};
        const TwoPairs column_1 = {odds(a.lo, b.lo), odds(c.lo, d.lo)};
        const TwoPairs column_2 = {evens(a.hi, b.hi), evens(c.hi, d.hi)};
        d = {odds(a.hi, b.hi), odds(c.hi, d.hi)};
        a = column_0;
        b = column_1;
        c = column_2;
    }

    friend FFTREAL_INLINE TwoPairs operator+(const TwoPairs& a, const TwoPairs& b) {
        return {a.lo + b.lo, a.hi + b.hi};
    }
    friend FFTREAL_INLINE TwoPairs operator-(const TwoPairs& a, const TwoPairs& b) {
        return {a.lo - b.lo, a.hi - b.hi};
    }
    friend FFTREAL_INLINE TwoPairs operator*(const TwoPairs& a, const TwoPairs& b) {
        return {a.lo * b.lo, a.hi * b.hi};
    }

private:
    static FFTREAL_INLINE Pair evens(const Pair& a, const Pair& b) {
        return __builtin_shufflevector(a, b, 0, 2);
    }
    static FFTREAL_INLINE Pair odds(const Pair& a, const Pair& b) {
        return __builtin_shufflevector(a, b, 1, 3);
    }
};

#if FFTREAL_AVX2

/// The same as one vector of 32 bytes, for machines with AVX2.
struct Quadruple {
    using Vector = double __attribute__((vector_size(32)));
    static constexpr int lanes = 4;
    Vector v;

    static FFTREAL_INLINE Quadruple load(const double* p) {
        Quadruple r; // NOLINT: set by the next line
        __builtin_memcpy(&r.v, p, sizeof r.v);
        return r;
    }
    static FFTREAL_INLINE Quadruple all(double value) {
        return {Vector{value, value, value, value}};
    }
    FFTREAL_INLINE void store(double* p) const { __builtin_memcpy(p, &v, sizeof v); }
    FFTREAL_INLINE Quadruple reversed() const {
        return {__builtin_shufflevector(v, v, 3, 2, 1, 0)};
    }
    static FFTREAL_INLINE void transpose(Quadruple& a, Quadruple& b, Quadruple& c, Quadruple& d) {
        const Vector ab_02 = __builtin_shufflevector(a.v, b.v, 0, 4, 2, 6);
        const Vector ab_13 = __builtin_shufflevector(a.v, b.v, 1, 5, 3, 7);
        const Vector cd_02 = __builtin_shufflevector(c.v, d.v, 0, 4, 2, 6);
        const Vector cd_13 = __builtin_shufflevector(c.v, d.v, 1, 5, 3, 7);
        a.v = __builtin_shufflevector(ab_02, cd_02, 0, 1, 4, 5);
        b.v = __builtin_shufflevector(ab_13, cd_13, 0, 1, 4, 5);
        c.v = __builtin_shufflevector(ab_02, cd_02, 2, 3, 6, 7);
        d.v = __builtin_shufflevector(ab_13, cd_13, 2, 3, 6, 7);
    }

    friend FFTREAL_INLINE Quadruple operator+(const Quadruple& a, const Quadruple& b) {
        return {a.v + b.v};
    }
    friend FFTREAL_INLINE Quadruple operator-(const Quadruple& a, const Quadruple& b) {
        return {a.v - b.v};
    }
    friend FFTREAL_INLINE Quadruple operator*(const Quadruple& a, const Quadruple& b) {
        return {a.v * b.v};
    }
};

#endif // FFTREAL_AVX2

} // namespace fftreal

FFTREAL_EXACT_END

#endif // FFTREAL_VECTORS
