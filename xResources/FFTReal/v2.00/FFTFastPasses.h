// The passes of the real FFT, four values at a time, with the operations of the plain passes.
// SPDX-License-Identifier: GPL-3.0-or-later
//
// One sub-transform per lane
// --------------------------
// Until the last two passes, the plain passes (radix 2, decimation in time) work on four
// independent sub-transforms of L/4 values: those of x[4m], x[4m + 1], x[4m + 2] and x[4m + 3]. All
// four undergo the same operations with the same twiddle factors. So four neighbours of x are one
// vector here, a "row", each lane holds one sub-transform, and the plain passes are done on L/4
// rows. The bit reversal permutes whole rows:
//
//     x        0  1  2  3 | 4  5  6  7 | 8  9 10 11 | ..          L/4 rows of four neighbours
//                   |  passes 1, 2 (and 3, if that leaves an even number of passes)
//                   v  on rows in bit-reversed order
//     buffer   row 0      | row 1      | row 2      | ..          L/4 rows
//                   |  radix-4 steps, two passes each, in place
//                   v  (the four sub-transforms are in the lanes 0, 2, 1, 3)
//     buffer   bin 0      | bin 1      | bin 2      | ..          of all four sub-transforms
//                   |  the last two passes: four rows are loaded, and transposed in registers
//                   v  into four neighbouring bins of each sub-transform
//     f        the output
//
// Radix-4 steps, in place
// -----------------------
// Passes are counted as in FFTReal.h: after passes 1, 2 and 3 the count continues with p = 3 again.
// Pass p makes one transform of 2n values out of two of n = 2^p. (So pass 3 is the pass p = 2.)
//
// Passes p and p + 1 make one transform of 4n values out of four of n. One radix-4 step reads bin i
// of all four, and nothing else, and writes four bins of the result (a Quad). With h = n/2:
//
//               0            n             2n            3n            4n
//     read      | i  h+i     | n+i  n+h+i  | 2n+i 2n+h+i | 3n+i 3n+h+i |
//     written   | i      n-i | n+i    2n-i | 2n+i   3n-i | 3n+i   4n-i |
//
// Bins i and h - i together are read from the places that they are written to, so that no second
// array is needed. Bins 0 and h need hardly any multiplication and have separate functions.
//
// Cache blocking
// --------------
// Memory access takes most of the time. So a block is combined as soon as it is complete, while it
// is in the cache. Four parts of the buffer are filled in turn, because their rows come from
// neighbouring rows of x, which share cache lines (25 to 43 % faster from 2^17 on). The parts are a
// power of two apart and compete for the same cache sets: more than four evict each other.
//
// Twiddle factors of the late passes
// ----------------------------------
// Every block of a pass needs the same cosines and sines of the pass's oscillator. They are
// computed once, at the start, and stored in f, which is unused until the last two passes: pass p
// has 2^(p-1) cosines from f + L - 2^(p+1) on, followed by as many sines, backwards like those of
// the table. All passes together fill f except for its end, and each factor is read by the step of
// the last two passes that overwrites it.
#pragma once

#include "ExactArithmetic.h"
#include "FFTQuad.h"
#include "FFTVectors.h"
#include "RotationOsc.h"

#include <algorithm>

#if FFTREAL_VECTORS

FFTREAL_EXACT_BEGIN

namespace fftreal {

/// Tables, arrays and length of one transform. Pointers to empty tables are null.
template <typename T> struct Work {
    int nbr_bits;               ///< log2 of the length, at least 3
    int last_table_pass;        ///< later passes use oscillators
    const Int* bitrev;          ///< the bit-reversal table
    const T* cosines;           ///< the cosine table
    const RotationOsc* rot_osc; ///< the oscillators
    T* buffer;                  ///< as many values as the transform has
    T* f;                       ///< the output
    const T* x;                 ///< the input
};

/// A transform by vectors of the type V, Quadruple or TwoPairs.
template <typename V> class FastPasses {
public:
    explicit FFTREAL_INLINE FastPasses(const Work<double>& work) : _work(work) {}

    /// Transforms x into f.
    FFTREAL_INLINE void transform() const {
        if (_work.nbr_bits == 3) {
            read_eight_rows<One>(_work.f, _work.x, _work.bitrev);
            return;
        }
        tabulate_oscillators();
        combine_rows();

        // The same code twice, as in combine_pair().
        const int pass = _work.nbr_bits - 2;
        if (pass == 2)
            combine_last_two_passes<true>(twiddles_of_pass_3(), table_twiddles(pass + 1));
        else if (pass < _work.last_table_pass)
            combine_last_two_passes<false>(table_twiddles(pass), table_twiddles(pass + 1));
        else
            combine_last_two_passes<false>(twiddles(pass), twiddles(pass + 1));
    }

private:
    /// Computes the cosines and sines of all oscillators into f.
    FFTREAL_INLINE void tabulate_oscillators() const {
        // Two oscillators at a time: each step depends on the one before it, so two overlap (5 to
        // 12 % faster from 2^15 on).
        for (int pass = _work.nbr_bits - 1; pass > _work.last_table_pass; pass -= 2) {
            const int index = pass - _work.last_table_pass - 1;
            const Int h = Int{1} << (pass - 1);
            RotationOsc osc = _work.rot_osc[index];
            osc.reset();
            Int i = 1;
            if (index > 0) {
                RotationOsc previous = _work.rot_osc[index - 1];
                previous.reset();
                for (; i < h / 2; ++i) {
                    store_twiddle(osc, oscillator_cosines(pass), h, i);
                    store_twiddle(previous, oscillator_cosines(pass - 1), h / 2, i);
                }
            }
            for (; i < h; ++i)
                store_twiddle(osc, oscillator_cosines(pass), h, i);
        }
    }

    static FFTREAL_INLINE void store_twiddle(RotationOsc& osc, double* cosines, Int h, Int i) {
        osc.advance();
        cosines[i] = osc.cos_value();
        cosines[h + h - i] = osc.sin_value();
    }

    FFTREAL_INLINE double* oscillator_cosines(int pass) const {
        return _work.f + (Int{1} << _work.nbr_bits) - (Int{2} << pass);
    }

    FFTREAL_INLINE Twiddles twiddles(int pass) const {
        if (pass <= _work.last_table_pass)
            return table_twiddles(pass);
        const Int h = Int{1} << (pass - 1);
        return {h, oscillator_cosines(pass), oscillator_cosines(pass) + h};
    }

    FFTREAL_INLINE Twiddles table_twiddles(int pass) const {
        const Int h = Int{1} << (pass - 1);
        return {h, _work.cosines + h - 4, _work.cosines + h - 4};
    }

    /// The only angle is pi/4, whose factors are a constant and not in a table.
    static FFTREAL_INLINE Twiddles twiddles_of_pass_3() { return {2, nullptr, nullptr}; }

    /// All passes but the last two: from x to rows in the buffer.
    FFTREAL_INLINE void combine_rows() const {
        const Int nbr_rows = Int{1} << (_work.nbr_bits - 2);
        const Int part = nbr_rows < 1024 ? nbr_rows : nbr_rows / 4;
        const Int chunk = std::min(part, Int{256}); // 8 KiB, which fits any L1 cache
        for (Int row = 0; row < part; row += chunk) {
            read_rows(row, chunk, part);
            for (Int start = 0; start < nbr_rows; start += part)
                combine_completed(start + row + chunk, chunk);
        }
    }

    [[nodiscard]] FFTREAL_INLINE bool begins_with_three_passes() const {
        return _work.nbr_bits % 2 != 0;
    }

    /// The first two or three passes on `chunk` rows of every part, from its row `begin` on.
    FFTREAL_INLINE void read_rows(Int begin, Int chunk, Int part) const {
        const Int nbr_rows = Int{1} << (_work.nbr_bits - 2);
        for (Int row = begin; row < begin + chunk; row += begins_with_three_passes() ? 8 : 4)
            for (Int i = row; i < nbr_rows; i += part)
                if (begins_with_three_passes())
                    read_eight_rows<V>(_work.buffer + 4 * i, _work.x, _work.bitrev + i);
                else
                    read_four_rows(_work.buffer + 4 * i, _work.x, _work.bitrev + i);
    }

    static FFTREAL_INLINE void read_four_rows(double* rows, const double* x, const Int* bitrev) {
        const V x_0 = V::load(x + bitrev[0]);
        const V x_1 = V::load(x + bitrev[1]);
        const V x_2 = V::load(x + bitrev[2]);
        const V x_3 = V::load(x + bitrev[3]);
        const V sum_0 = x_0 + x_1;
        const V sum_2 = x_2 + x_3;
        (sum_0 + sum_2).store(rows);
        (x_0 - x_1).store(rows + 4);
        (sum_0 - sum_2).store(rows + 8);
        (x_2 - x_3).store(rows + 12);
    }

    /// A Row is a V, or One for a transform of eight single values.
    template <typename Row>
    static FFTREAL_INLINE void read_eight_rows(double* rows, const double* x, const Int* bitrev) {
        constexpr Int row = Row::lanes;
        const Row x_0 = Row::load(x + bitrev[0]);
        const Row x_1 = Row::load(x + bitrev[1]);
        const Row x_2 = Row::load(x + bitrev[2]);
        const Row x_3 = Row::load(x + bitrev[3]);
        const Row x_4 = Row::load(x + bitrev[4]);
        const Row x_5 = Row::load(x + bitrev[5]);
        const Row x_6 = Row::load(x + bitrev[6]);
        const Row x_7 = Row::load(x + bitrev[7]);
        const Row sum_0 = x_0 + x_1;
        const Row sum_2 = x_2 + x_3;
        const Row sum_4 = x_4 + x_5;
        const Row sum_6 = x_6 + x_7;
        ((sum_0 + sum_2) + (sum_4 + sum_6)).store(rows);
        ((sum_0 + sum_2) - (sum_4 + sum_6)).store(rows + 4 * row);
        (sum_0 - sum_2).store(rows + 2 * row);
        (sum_4 - sum_6).store(rows + 6 * row);
        Row re_0 = x_0 - x_1;
        Row im_0 = x_2 - x_3;
        Row re_1 = x_4 - x_5;
        Row im_1 = x_6 - x_7;
        butterfly_of_pass_3(re_0, im_0, re_1, im_1);
        re_0.store(rows + row);
        re_1.store(rows + 3 * row);
        im_0.store(rows + 5 * row);
        im_1.store(rows + 7 * row);
    }

    /// Combines what the `chunk` rows before row `end` complete.
    FFTREAL_INLINE void combine_completed(Int end, Int chunk) const {
        int pass = 3;
        if (!begins_with_three_passes()) {
            combine_pass_3_and_next(_work.buffer + 4 * (end - chunk), chunk);
            pass = 4;
        }
        const Int all = Int{1} << (_work.nbr_bits - 2);
        for (Int block = Int{4} << pass; block <= all && end % block == 0; block *= 4) {
            const Int nbr_rows = std::max(block, chunk);
            combine_pair(_work.buffer + 4 * (end - nbr_rows), nbr_rows, pass);
            pass += 2;
        }
    }

    FFTREAL_INLINE void combine_pass_3_and_next(double* rows, Int nbr_rows) const {
        const Twiddles a = twiddles_of_pass_3();
        const Twiddles b = table_twiddles(3);
        for (Int row = 0; row + 16 <= nbr_rows; row += 16) {
            combine_bins_0_and_h(rows + 4 * row, b);
            combine_bin_half_h<true>(rows + 4 * row, a, b);
        }
    }

    /// Passes `pass` and `pass` + 1 on all blocks of the rows.
    FFTREAL_INLINE void combine_pair(double* rows, Int nbr_rows, int pass) const {
        // The same code twice: where the compiler sees that sines and cosines are one table, it
        // loads them once.
        if (pass < _work.last_table_pass)
            combine_blocks(rows, nbr_rows, table_twiddles(pass), table_twiddles(pass + 1));
        else
            combine_blocks(rows, nbr_rows, twiddles(pass), twiddles(pass + 1));
    }

    static FFTREAL_INLINE void combine_blocks(double* rows, Int nbr_rows, const Twiddles& a,
                                              const Twiddles& b) {
        const Int h = a.h;
        const Int stride = 4 * h;
        for (double* block = rows; block < rows + 4 * nbr_rows; block += 8 * stride) {
            combine_bins_0_and_h(block, b);
            combine_bin_half_h<false>(block, a, b);
            double* p = block;
            double* mirror = block + stride;
            for (Int i = 1; i < h / 2; ++i) {
                p += 4;
                mirror -= 4;
                Quad<V> bin;
                Quad<V> other;
                bin.load_re(p, stride);
                bin.load_im(p, stride);
                other.load_im(mirror, stride); // before bin.store() overwrites it
                bin.combine(a, b, i);
                bin.store(p, mirror + stride, stride);
                other.load_re(mirror, stride);
                other.combine(a, b, h - i);
                other.store(mirror, p + stride, stride);
            }
        }
    }

    static FFTREAL_INLINE void combine_bins_0_and_h(double* block, const Twiddles& b) {
        const Int h = b.h / 2;
        Quad<V> bins;
        bins.load_re(block, 4 * h);
        bins.load_im(block, 4 * h);
        bins.combine_bins_0_and_h(block, 4 * h, V::all(b.cos(h)), V::all(b.sin(h)));
    }

    /// Bin h/2, which is its own mirror image.
    template <bool is_pass_3>
    static FFTREAL_INLINE void combine_bin_half_h(double* block, const Twiddles& a,
                                                  const Twiddles& b) {
        const Int stride = 4 * a.h;
        double* const p = block + stride / 2;
        Quad<V> bin;
        bin.load_re(p, stride);
        bin.load_im(p, stride);
        bin.template combine<is_pass_3>(a, b, a.h / 2);
        bin.store(p, p + stride, stride);
    }

    /// The last two passes, from rows to f.
    template <bool is_pass_3>
    FFTREAL_INLINE void combine_last_two_passes(const Twiddles& a, const Twiddles& b) const {
        const Int h = a.h;
        const Int n = b.h;
        const double* const rows = _work.buffer;
        double* const f = _work.f;
        Int i = 1;
        for (; i + 4 <= h; i += 4) {
            Quad<V> bins;
            load_transposed(bins.re_0, bins.re_1, bins.re_2, bins.re_3, rows + 4 * i);
            load_transposed(bins.im_0, bins.im_1, bins.im_2, bins.im_3, rows + 4 * (h + i));
            bins.combine_neighbours(a, b, i);
            bins.store_neighbours(f + i, f + n - i, h);
        }
        for (; i < h; ++i) {
            Quad<One> bin = single_bin(rows + 4 * i, h);
            bin.template combine<is_pass_3>(a, b, i);
            bin.store(f + i, f + n - i, h);
        }
        single_bin(rows, h).combine_bins_0_and_h(f, h, One::all(b.cos(h)), One::all(b.sin(h)));
    }

    /// Four neighbouring bins, real or imaginary parts, of each of the four transforms.
    static FFTREAL_INLINE void load_transposed(V& bins_0, V& bins_1, V& bins_2, V& bins_3,
                                               const double* rows) {
        bins_0 = V::load(rows);
        bins_2 = V::load(rows + 4);
        bins_1 = V::load(rows + 8);
        bins_3 = V::load(rows + 12);
        V::transpose(bins_0, bins_2, bins_1, bins_3);
    }

    static FFTREAL_INLINE Quad<One> single_bin(const double* re, Int h) {
        const double* const im = re + 4 * h;
        return {{re[0]}, {im[0]}, {re[2]}, {im[2]}, {re[1]}, {im[1]}, {re[3]}, {im[3]}};
    }

    const Work<double> _work;
};

/// The transform for any machine.
inline void transform_in_pairs(const Work<double>& work) {
    FastPasses<TwoPairs>(work).transform();
}

#if FFTREAL_AVX2
/// The transform for machines with AVX2.
__attribute__((target("avx2"))) inline void transform_in_quadruples(const Work<double>& work) {
    FastPasses<Quadruple>(work).transform();
}
#endif

/// The transform for this machine.
inline void transform(const Work<double>& work) {
#if FFTREAL_AVX2
    if (__builtin_cpu_supports("avx2")) {
        transform_in_quadruples(work);
        return;
    }
#endif
    transform_in_pairs(work);
}

} // namespace fftreal

FFTREAL_EXACT_END

#endif // FFTREAL_VECTORS
