// The forward fast Fourier transform of a real sequence whose length is a power of two.
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Output
// ------
// For L real values x[0] .. x[L - 1] the transform gives L real values, not scaled:
//
//     index   0      1 .. L/2 - 1     L/2      L/2 + 1 .. L - 1
//     f       Re 0   Re 1 ..          Re L/2   -Im 1 ..
//
// f[k] is the real part of bin k for 0 <= k <= L/2; f[0] is the plain sum of the input. For
// 1 <= k < L/2, f[L/2 + k] is the imaginary part of bin k with the sign OPPOSITE to that of
//
//     X(k) = sum over n of x[n] exp(-2 pi i k n / L),      f[L/2 + k] = -Im X(k).
//
// Bins 0 and L/2 of a real sequence are real, and no imaginary part is stored.
//
// Algorithm
// ---------
// Radix 2, decimation in time, on real arrays only. The input is read in bit-reversed order; then
// log2(L) passes combine transforms of 2^(p-1) values into transforms of 2^p values, each already
// in the layout above. Pass 1 and 2 are done in one sweep, pass 3 (whose only cosine is the root
// of one half) in another, and the rest, counted here by p = 3 .. log2(L) - 1, turn pairs of
// transforms of nbr_coef = 2^p values into transforms of 2 nbr_coef values:
//
//     sf   | sf1r  (h) | sf1i  (h) | sf2r  (h) | sf2i  (h) |       h = nbr_coef / 2
//     df   | dfr          (nbr_coef)  | dfi    (nbr_coef)   |
//
// The real parts of both transforms make dfr, from both its ends towards the middle, and the
// imaginary parts make dfi. Every pass reads one array and writes another: the output array and
// the object's own buffer alternate, and the first destination is chosen so that the last pass
// writes to the output. x is read by the first sweep only.
//
// Twiddle factors come from a table of a quarter period up to pass TRIGO_BD_LIMIT. Later passes
// advance a rotating phasor (RotationOsc.h) step by step instead, which avoids reading large tables
// and costs some accuracy: rounding errors accumulate along a block and start again at the next.
// The error is about 1e-13 of the largest value at 2^14 values and about doubles with the length.
//
// The order of the operations is part of the contract: for the same cosines and sines, which are
// the C library's, results are the same to the last bit everywhere. For doubles, do_fft does the
// same operations four at a time where the compiler has vectors (see FFTFastPasses.h); the passes
// below are used elsewhere and for other types. They are the reference for tests of the fast ones,
// and the place to begin reading.
#pragma once

#include "Assertion.h"
#include "DynArray.h"
#include "ExactArithmetic.h"
#include "FFTFastPasses.h"
#include "RotationOsc.h"

#include <cmath>
#include <cstdint>
#include <type_traits>
#include <utility>

FFTREAL_EXACT_BEGIN

/// Whether `x` > 0 is a power of two (1 is).
inline bool FFTReal_is_pow2(std::int64_t x) {
    FFTREAL_ASSERT(x > 0, "x > 0");
    return (-x & x) == x;
}

/// The transform of one length, for values of type T (the program uses double). An object may be
/// used for any number of transforms, but by one thread at a time: do_fft is const, yet works in
/// the object's buffer. Violated preconditions abort the program (FFTREAL_ASSERT).
template <typename T> class FFTReal {
public:
    /// The largest log2 of a length.
    static constexpr int MAX_BIT_DEPTH = 30;
    /// The last pass that takes its cosines from the table.
    static constexpr int TRIGO_BD_LIMIT = 12;

    /// Builds the tables for `length` values, a power of two from 1 to 2^30. Takes 20 bytes per
    /// value for T = double; throws std::bad_alloc if there is no memory.
    explicit FFTReal(std::int64_t length);

    virtual ~FFTReal() = default;
    FFTReal(const FFTReal&) = delete;
    FFTReal& operator=(const FFTReal&) = delete;

    /// Transforms the `length` values of x into the `length` values of f, in the layout described
    /// at the head of this file. x is only read. f and x are two different arrays, and neither is
    /// the object's buffer. Allocates nothing.
    void do_fft(T* f, const T* x) const;

    // Protected rather than private, so that tests can reach the tables and single passes.
protected:
    static constexpr double PI = 3.14159265358979323846;

    /// The number of significant bits of `value`, 0 for values below 1.
    static int count_significant_bits(std::int64_t value);

    void build_bitrev_table();
    void build_cos_table();
    void build_oscillators();

    /// The buffer of L values that alternates with the output array. The fast passes use no other
    /// array.
    [[nodiscard]] T* use_buffer() const { return &_work_buf[0]; }

#if FFTREAL_VECTORS
    /// Tables and arrays for the fast passes; for lengths from 8.
    [[nodiscard]] fftreal::Work<T> work(T* f, const T* x) const {
        return {_nbr_bits,
                TRIGO_BD_LIMIT,
                &_bitrev_table[0],
                _cos_table.size() > 0 ? &_cos_table[0] : nullptr,
                _rot_osc.size() > 0 ? &_rot_osc[0] : nullptr,
                use_buffer(),
                f,
                x};
    }
#endif

    /// do_fft for lengths from 8, pass by pass.
    void compute_fft_general(T* f, const T* x) const;

    // The passes: df is the destination, sf the source, each of L values.
    void compute_direct_pass_1_2(T* df, const T* x) const;
    void compute_direct_pass_3(T* df, const T* sf) const;
    void compute_direct_pass_n(T* df, const T* sf, int pass) const;
    void compute_direct_pass_n_lut(T* df, const T* sf, int pass) const;
    void compute_direct_pass_n_osc(T* df, const T* sf, int pass) const;

    // Declared in this order because destruction, which runs backwards, frees the oscillators
    // first and the bit-reversal table last.
    const std::int64_t _fft_len;          ///< L
    const int _nbr_bits;                  ///< log2(L)
    DynArray<std::int64_t> _bitrev_table; ///< entry i is i with its _nbr_bits bits reversed
    DynArray<T> _cos_table;               ///< levels 3 .. _nbr_bits - 1, back to back
    mutable DynArray<T> _work_buf;        ///< L values, see use_buffer()
    DynArray<RotationOsc> _rot_osc;       ///< element j serves pass TRIGO_BD_LIMIT + 1 + j

private:
    class Block;
};

/// The four quarters that a pass reads and the two halves that it writes of the 2 nbr_coef values
/// from `start` on (the drawing at the head of this file).
template <typename T> class FFTReal<T>::Block {
public:
    Block(T* df, const T* sf, std::int64_t start, std::int64_t nbr_coef)
        : _nbr_coef(nbr_coef), _h(nbr_coef / 2), _sf1r(sf + start), _sf2r(_sf1r + nbr_coef),
          _sf1i(_sf1r + _h), _sf2i(_sf1i + nbr_coef), _dfr(df + start), _dfi(_dfr + nbr_coef) {}

    /// The values of the angles 0 and pi/2, which need no multiplication.
    void combine_ends() const {
        _dfr[0] = _sf1r[0] + _sf2r[0];
        _dfi[0] = _sf1r[0] - _sf2r[0];
        _dfr[_h] = _sf1r[_h];
        _dfi[_h] = _sf2r[_h];
    }

    /// The values of the angle i pi / nbr_coef, 0 < i < h, whose cosine and sine are c and s.
    void combine(std::int64_t i, T c, T s) const {
        const T turned_re = _sf2r[i] * c - _sf2i[i] * s;
        _dfr[i] = _sf1r[i] + turned_re;
        _dfr[_nbr_coef - i] = _sf1r[i] - turned_re;

        const T turned_im = _sf2r[i] * s + _sf2i[i] * c;
        _dfi[i] = turned_im + _sf1i[i];
        _dfi[_nbr_coef - i] = turned_im - _sf1i[i];
    }

private:
    std::int64_t _nbr_coef;
    std::int64_t _h;
    const T* _sf1r;
    const T* _sf2r;
    const T* _sf1i;
    const T* _sf2i;
    T* _dfr;
    T* _dfi;
};

template <typename T>
FFTReal<T>::FFTReal(std::int64_t length)
    : _fft_len(length), _nbr_bits(count_significant_bits(length > 0 ? length - 1 : 0)) {
    // All checks come before the first allocation, so that an invalid length is reported as such
    // and never as a lack of memory. "size" is the size that the buffer would have.
    FFTREAL_ASSERT(length >= 0, "size >= 0");
    FFTREAL_ASSERT(FFTReal_is_pow2(length), "FFTReal_is_pow2 (length)");
    FFTREAL_ASSERT(_nbr_bits <= MAX_BIT_DEPTH, "_nbr_bits <= MAX_BIT_DEPTH");

    _work_buf.resize(length);
    build_bitrev_table();
    build_cos_table();
    build_oscillators();
}

template <typename T> void FFTReal<T>::do_fft(T* f, const T* x) const {
    FFTREAL_ASSERT(f != nullptr, "f != 0");
    FFTREAL_ASSERT(f != use_buffer(), "f != use_buffer ()");
    FFTREAL_ASSERT(x != nullptr, "x != 0");
    FFTREAL_ASSERT(x != use_buffer(), "x != use_buffer ()");
    FFTREAL_ASSERT(x != f, "x != f");

    if (_nbr_bits > 2) {
#if FFTREAL_VECTORS
        if constexpr (std::is_same_v<T, double>) {
            fftreal::transform(work(f, x));
            return;
        }
#endif
        compute_fft_general(f, x);
    } else if (_nbr_bits == 2) {
        f[1] = x[0] - x[2];
        f[3] = x[1] - x[3];
        const T b_0 = x[0] + x[2];
        const T b_2 = x[1] + x[3];
        f[0] = b_0 + b_2;
        f[2] = b_0 - b_2;
    } else if (_nbr_bits == 1) {
        f[0] = x[0] + x[1];
        f[1] = x[0] - x[1];
    } else {
        f[0] = x[0];
    }
}

template <typename T> int FFTReal<T>::count_significant_bits(std::int64_t value) {
    int nbr_bits = 0;
    for (std::int64_t rest = value; rest > 0; rest /= 2)
        ++nbr_bits;
    return nbr_bits;
}

template <typename T> void FFTReal<T>::build_bitrev_table() {
    _bitrev_table.resize(std::int64_t{1} << _nbr_bits);
    std::int64_t* const table = &_bitrev_table[0];
    table[0] = 0;

    // Doubles the filled part: the new entries are the old ones with the next lower bit set.
    std::int64_t bit = _fft_len;
    for (std::int64_t filled = 1; bit > 1; filled *= 2) {
        bit /= 2;
        for (std::int64_t i = 0; i < filled; ++i)
            table[filled + i] = table[i] + bit;
    }
}

template <typename T> void FFTReal<T>::build_cos_table() {
    if (_nbr_bits <= 3)
        return;

    // Every level is filled, also those above TRIGO_BD_LIMIT that no pass reads. The angles of a
    // level are exactly every other angle of the next level: the factor is halved.
    _cos_table.resize((std::int64_t{1} << (_nbr_bits - 1)) - 4);
    std::int64_t level_len = std::int64_t{1} << (_nbr_bits - 2);
    T* level_part = &_cos_table[level_len - 4];
    const T mul = static_cast<T>(PI) / static_cast<T>(2 * level_len);
    for (std::int64_t i = 0; i < level_len; ++i)
        level_part[i] = std::cos(static_cast<T>(i) * mul);
    while (level_len > 4) {
        const T* const above = level_part;
        level_len /= 2;
        level_part = &_cos_table[level_len - 4];
        for (std::int64_t i = 0; i < level_len; ++i)
            level_part[i] = above[2 * i];
    }
}

template <typename T> void FFTReal<T>::build_oscillators() {
    const int nbr_osc = _nbr_bits - TRIGO_BD_LIMIT;
    if (nbr_osc <= 0)
        return;

    _rot_osc.resize(nbr_osc);
    for (int j = 0; j < nbr_osc; ++j) {
        const std::int64_t steps_per_quarter_turn = std::int64_t{1} << (TRIGO_BD_LIMIT + j);
        _rot_osc[j].set_angle_step((PI / 2) / static_cast<double>(steps_per_quarter_turn));
    }
}

template <typename T> void FFTReal<T>::compute_fft_general(T* f, const T* x) const {
    FFTREAL_ASSERT(f != nullptr, "f != 0");
    FFTREAL_ASSERT(f != use_buffer(), "f != use_buffer ()");
    FFTREAL_ASSERT(x != nullptr, "x != 0");
    FFTREAL_ASSERT(x != use_buffer(), "x != use_buffer ()");
    FFTREAL_ASSERT(x != f, "x != f");

    T* df = f;
    T* sf = use_buffer();
    if (_nbr_bits % 2 != 0)
        std::swap(df, sf);

    compute_direct_pass_1_2(df, x);
    compute_direct_pass_3(sf, df);
    for (int pass = 3; pass < _nbr_bits; ++pass) {
        compute_direct_pass_n(df, sf, pass);
        std::swap(df, sf);
    }
}

template <typename T> void FFTReal<T>::compute_direct_pass_1_2(T* df, const T* x) const {
    FFTREAL_ASSERT(df != nullptr, "df != 0");
    FFTREAL_ASSERT(df != x, "df != x");

    const std::int64_t* const bitrev = &_bitrev_table[0];
    for (std::int64_t i = 0; i < _fft_len; i += 4) {
        const T x_0 = x[bitrev[i]];
        const T x_1 = x[bitrev[i + 1]];
        const T x_2 = x[bitrev[i + 2]];
        const T x_3 = x[bitrev[i + 3]];

        df[i + 1] = x_0 - x_1;
        df[i + 3] = x_2 - x_3;
        const T sum_0 = x_0 + x_1;
        const T sum_2 = x_2 + x_3;
        df[i] = sum_0 + sum_2;
        df[i + 2] = sum_0 - sum_2;
    }
}

template <typename T> void FFTReal<T>::compute_direct_pass_3(T* df, const T* sf) const {
    FFTREAL_ASSERT(df != nullptr, "df != 0");
    FFTREAL_ASSERT(sf != nullptr, "sf != 0");
    FFTREAL_ASSERT(df != sf, "df != sf");

    constexpr T sqrt2_half = static_cast<T>(0.7071067811865476);
    for (std::int64_t i = 0; i < _fft_len; i += 8) {
        df[i] = sf[i] + sf[i + 4];
        df[i + 4] = sf[i] - sf[i + 4];
        df[i + 2] = sf[i + 2];
        df[i + 6] = sf[i + 6];

        const T turned_re = (sf[i + 5] - sf[i + 7]) * sqrt2_half;
        df[i + 1] = sf[i + 1] + turned_re;
        df[i + 3] = sf[i + 1] - turned_re;

        const T turned_im = (sf[i + 5] + sf[i + 7]) * sqrt2_half;
        df[i + 5] = turned_im + sf[i + 3];
        df[i + 7] = turned_im - sf[i + 3];
    }
}

template <typename T> void FFTReal<T>::compute_direct_pass_n(T* df, const T* sf, int pass) const {
    FFTREAL_ASSERT(df != nullptr, "df != 0");
    FFTREAL_ASSERT(sf != nullptr, "sf != 0");
    FFTREAL_ASSERT(df != sf, "df != sf");
    FFTREAL_ASSERT(pass >= 3, "pass >= 3");
    FFTREAL_ASSERT(pass < _nbr_bits, "pass < _nbr_bits");

    if (pass <= TRIGO_BD_LIMIT)
        compute_direct_pass_n_lut(df, sf, pass);
    else
        compute_direct_pass_n_osc(df, sf, pass);
}

template <typename T>
void FFTReal<T>::compute_direct_pass_n_lut(T* df, const T* sf, int pass) const {
    FFTREAL_ASSERT(df != nullptr, "df != 0");
    FFTREAL_ASSERT(sf != nullptr, "sf != 0");
    FFTREAL_ASSERT(df != sf, "df != sf");
    FFTREAL_ASSERT(pass >= 3, "pass >= 3");
    FFTREAL_ASSERT(pass < _nbr_bits, "pass < _nbr_bits");

    const std::int64_t nbr_coef = std::int64_t{1} << pass;
    const std::int64_t h = nbr_coef / 2;
    const T* const cosines = &_cos_table[h - 4];
    for (std::int64_t start = 0; start < _fft_len; start += 2 * nbr_coef) {
        const Block block(df, sf, start, nbr_coef);
        block.combine_ends();
        for (std::int64_t i = 1; i < h; ++i)
            block.combine(i, cosines[i], cosines[h - i]);
    }
}

template <typename T>
void FFTReal<T>::compute_direct_pass_n_osc(T* df, const T* sf, int pass) const {
    FFTREAL_ASSERT(df != nullptr, "df != 0");
    FFTREAL_ASSERT(sf != nullptr, "sf != 0");
    FFTREAL_ASSERT(df != sf, "df != sf");
    FFTREAL_ASSERT(pass > TRIGO_BD_LIMIT, "pass > TRIGO_BD_LIMIT");
    FFTREAL_ASSERT(pass < _nbr_bits, "pass < _nbr_bits");

    const std::int64_t nbr_coef = std::int64_t{1} << pass;
    const std::int64_t h = nbr_coef / 2;
    // A copy, which the compiler can keep in registers while df is written.
    RotationOsc osc = _rot_osc[pass - (TRIGO_BD_LIMIT + 1)];
    for (std::int64_t start = 0; start < _fft_len; start += 2 * nbr_coef) {
        const Block block(df, sf, start, nbr_coef);
        block.combine_ends();
        osc.reset();
        for (std::int64_t i = 1; i < h; ++i) {
            osc.advance();
            block.combine(i, static_cast<T>(osc.cos_value()), static_cast<T>(osc.sin_value()));
        }
    }
}

FFTREAL_EXACT_END
