// The radix-4 step: one bin of four transforms becomes four bins of one, by two passes.
// SPDX-License-Identifier: GPL-3.0-or-later
//
// FFTFastPasses.h shows where a bin is read from and written to.
#pragma once

#include "ExactArithmetic.h"
#include "FFTVectors.h"

#include <cstdint>

#if FFTREAL_VECTORS

FFTREAL_EXACT_BEGIN

namespace fftreal {

using Int = std::int64_t;

/// The twiddles i pi / 2h of a pass, 0 < i < h.
struct Twiddles {
    Int h;
    const double* cosines;
    const double* sines; ///< in reverse order; in the table, the cosines themselves

    FFTREAL_INLINE double cos(Int i) const { return cosines[i]; }
    FFTREAL_INLINE double sin(Int i) const { return sines[h - i]; }
};

/// Combines a bin of two transforms, the second multiplied by its twiddle factor, into bins i
/// (re_0, im_0) and n - i (re_1, im_1) of one.
template <typename V>
FFTREAL_INLINE void join(V& re_0, V& im_0, V& re_1, V& im_1, const V& rotated_re,
                         const V& rotated_im) {
    re_1 = re_0 - rotated_re;
    re_0 = re_0 + rotated_re;
    im_1 = rotated_im - im_0;
    im_0 = rotated_im + im_0;
}

template <typename V>
FFTREAL_INLINE void butterfly(V& re_0, V& im_0, V& re_1, V& im_1, const V& c, const V& s) {
    join(re_0, im_0, re_1, im_1, re_1 * c - im_1 * s, re_1 * s + im_1 * c);
}

/// The butterfly of the third pass, whose cosine and sine are the same.
template <typename V> FFTREAL_INLINE void butterfly_of_pass_3(V& re_0, V& im_0, V& re_1, V& im_1) {
    const V sqrt2_half = V::all(0.7071067811865476);
    join(re_0, im_0, re_1, im_1, (re_1 - im_1) * sqrt2_half, (re_1 + im_1) * sqrt2_half);
}

/// A bin of four transforms of n values, real and imaginary parts, in their order in memory.
/// `stride` is the distance between the two parts in memory: the length of h = n/2 rows or values.
/// Eight named members and not an array, which costs up to twice the time: compilers keep it in
/// memory.
template <typename V> struct Quad {
    V re_0, im_0, re_1, im_1, re_2, im_2, re_3, im_3;

    FFTREAL_INLINE void load_re(const double* p, Int stride) {
        re_0 = V::load(p);
        re_1 = V::load(p + 2 * stride);
        re_2 = V::load(p + 4 * stride);
        re_3 = V::load(p + 6 * stride);
    }
    FFTREAL_INLINE void load_im(const double* p, Int stride) {
        im_0 = V::load(p + stride);
        im_1 = V::load(p + 3 * stride);
        im_2 = V::load(p + 5 * stride);
        im_3 = V::load(p + 7 * stride);
    }

    FFTREAL_INLINE void first_pass(const V& c, const V& s) {
        butterfly(re_0, im_0, re_1, im_1, c, s);
        butterfly(re_2, im_2, re_3, im_3, c, s);
    }
    FFTREAL_INLINE void pass_3() {
        butterfly_of_pass_3(re_0, im_0, re_1, im_1);
        butterfly_of_pass_3(re_2, im_2, re_3, im_3);
    }
    /// Bin i by c and s, bin n - i by c_mirror and s_mirror.
    FFTREAL_INLINE void second_pass(const V& c, const V& s, const V& c_mirror, const V& s_mirror) {
        butterfly(re_0, im_0, re_2, im_2, c, s);
        butterfly(re_1, im_1, re_3, im_3, c_mirror, s_mirror);
    }
    /// Both passes for bin i in all lanes.
    template <bool is_pass_3 = false>
    FFTREAL_INLINE void combine(const Twiddles& a, const Twiddles& b, Int i) {
        if constexpr (is_pass_3)
            pass_3();
        else
            first_pass(V::all(a.cos(i)), V::all(a.sin(i)));
        second_pass(V::all(b.cos(i)), V::all(b.sin(i)), V::all(b.cos(b.h - i)),
                    V::all(b.sin(b.h - i)));
    }
    /// Both passes for the bins i, i + 1, i + 2, i + 3.
    FFTREAL_INLINE void combine_neighbours(const Twiddles& a, const Twiddles& b, Int i) {
        first_pass(V::load(a.cosines + i), V::load(a.sines + a.h - i - 3).reversed());
        second_pass(V::load(b.cosines + i), V::load(b.sines + b.h - i - 3).reversed(),
                    V::load(b.cosines + b.h - i - 3).reversed(), V::load(b.sines + i));
    }

    /// Writes bins i, n + i, ... from p on, and bins n - i, 2n - i, ... from `mirror` on.
    FFTREAL_INLINE void store(double* p, double* mirror, Int stride) const {
        re_0.store(p);
        re_3.store(p + 2 * stride);
        im_0.store(p + 4 * stride);
        im_3.store(p + 6 * stride);
        re_1.store(mirror);
        re_2.store(mirror + 2 * stride);
        im_1.store(mirror + 4 * stride);
        im_2.store(mirror + 6 * stride);
    }
    /// The same for neighbouring bins, whose mirrors are in reverse order.
    FFTREAL_INLINE void store_neighbours(double* p, double* mirror, Int stride) const {
        const Quad stored = {
            re_0, im_0, re_1.reversed(), im_1.reversed(), re_2.reversed(), im_2.reversed(),
            re_3, im_3};
        stored.store(p, mirror - (V::lanes - 1), stride);
    }

    /// Both passes for the bins 0 and h, loaded as re and im, and stored at p.
    FFTREAL_INLINE void combine_bins_0_and_h(double* p, Int stride, const V& c, const V& s) {
        const V even = re_0 + re_1;
        const V odd = re_2 + re_3;
        (even + odd).store(p);
        (even - odd).store(p + 4 * stride);
        (re_0 - re_1).store(p + 2 * stride);
        (re_2 - re_3).store(p + 6 * stride);
        butterfly(im_0, im_1, im_2, im_3, c, s);
        im_0.store(p + stride);
        im_2.store(p + 3 * stride);
        im_1.store(p + 5 * stride);
        im_3.store(p + 7 * stride);
    }
};

} // namespace fftreal

FFTREAL_EXACT_END

#endif // FFTREAL_VECTORS
