// An independent, plain implementation of the real FFT's passes: the reference to the bit.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace plainfft {

/// The transform of 2^bits values by the plainest form of the passes: no tables, no shared code,
/// every value written as its formula. Every faster code path must give the same doubles, to the
/// last bit. It shares no code with the transform under test.
class Transform {
public:
    explicit Transform(int bits) : bits_(bits), length_(std::size_t{1} << bits) {}

    /// x holds 2^bits values; the result is laid out as the transform under test lays it out.
    [[nodiscard]] std::vector<double> operator()(const std::vector<double>& x) const {
        if (bits_ == 0)
            return {x[0]};
        if (bits_ == 1)
            return {x[0] + x[1], x[0] - x[1]};
        if (bits_ == 2)
            return {(x[0] + x[2]) + (x[1] + x[3]), x[0] - x[2], (x[0] + x[2]) - (x[1] + x[3]),
                    x[1] - x[3]};
        std::vector<double> values = passesOneAndTwo(x);
        values = passThree(values);
        for (int pass = 3; pass < bits_; ++pass)
            values = passN(values, pass);
        return values;
    }

private:
    [[nodiscard]] std::size_t bitReversed(std::size_t index) const {
        std::size_t reversed = 0;
        for (int bit = 0; bit < bits_; ++bit) {
            reversed = reversed * 2 + index % 2;
            index /= 2;
        }
        return reversed;
    }

    [[nodiscard]] std::vector<double> passesOneAndTwo(const std::vector<double>& x) const {
        std::vector<double> df(length_);
        for (std::size_t i = 0; i < length_; i += 4) {
            const std::size_t r0 = bitReversed(i);
            const std::size_t r1 = bitReversed(i + 1);
            const std::size_t r2 = bitReversed(i + 2);
            const std::size_t r3 = bitReversed(i + 3);
            df[i + 1] = x[r0] - x[r1];
            df[i + 3] = x[r2] - x[r3];
            const double s0 = x[r0] + x[r1];
            const double s2 = x[r2] + x[r3];
            df[i] = s0 + s2;
            df[i + 2] = s0 - s2;
        }
        return df;
    }

    [[nodiscard]] std::vector<double> passThree(const std::vector<double>& sf) const {
        const double q = 0.7071067811865476;
        std::vector<double> df(length_);
        for (std::size_t i = 0; i < length_; i += 8) {
            df[i] = sf[i] + sf[i + 4];
            df[i + 4] = sf[i] - sf[i + 4];
            df[i + 2] = sf[i + 2];
            df[i + 6] = sf[i + 6];
            double v = (sf[i + 5] - sf[i + 7]) * q;
            df[i + 1] = sf[i + 1] + v;
            df[i + 3] = sf[i + 1] - v;
            v = (sf[i + 5] + sf[i + 7]) * q;
            df[i + 5] = v + sf[i + 3];
            df[i + 7] = v - sf[i + 3];
        }
        return df;
    }

    /// The cosines and sines of i pi / 2^pass for 0 <= i < 2^(pass - 1); element 0 is not used.
    [[nodiscard]] static std::vector<std::pair<double, double>> angles(int pass) {
        const double pi = 3.14159265358979323846;
        const std::size_t h = std::size_t{1} << (pass - 1);
        std::vector<std::pair<double, double>> result(h);
        if (pass <= 12) {
            const double mul = pi / static_cast<double>(2 * h);
            for (std::size_t i = 1; i < h; ++i)
                result[i] = {std::cos(static_cast<double>(i) * mul),
                             std::cos(static_cast<double>(h - i) * mul)};
            return result;
        }
        const double step = pi / 2 / static_cast<double>(std::size_t{4096} << (pass - 13));
        const double stepCos = std::cos(step);
        const double stepSin = std::sin(step);
        double c = 1;
        double s = 0;
        for (std::size_t i = 1; i < h; ++i) {
            const double nextCos = c * stepCos - s * stepSin;
            const double nextSin = c * stepSin + s * stepCos;
            c = nextCos;
            s = nextSin;
            result[i] = {c, s};
        }
        return result;
    }

    [[nodiscard]] std::vector<double> passN(const std::vector<double>& sf, int pass) const {
        const std::size_t n = std::size_t{1} << pass;
        const std::size_t h = n / 2;
        const std::vector<std::pair<double, double>> angle = angles(pass);
        std::vector<double> df(length_);
        for (std::size_t c = 0; c < length_; c += 2 * n) {
            df[c] = sf[c] + sf[c + n];
            df[c + n] = sf[c] - sf[c + n];
            df[c + h] = sf[c + h];
            df[c + n + h] = sf[c + h + n];
            for (std::size_t i = 1; i < h; ++i) {
                const auto [cosine, sine] = angle[i];
                double v = sf[c + n + i] * cosine - sf[c + h + n + i] * sine;
                df[c + i] = sf[c + i] + v;
                df[c + n - i] = sf[c + i] - v;
                v = sf[c + n + i] * sine + sf[c + h + n + i] * cosine;
                df[c + n + i] = v + sf[c + h + i];
                df[c + n + n - i] = v - sf[c + h + i];
            }
        }
        return df;
    }

    int bits_;
    std::size_t length_;
};

} // namespace plainfft
