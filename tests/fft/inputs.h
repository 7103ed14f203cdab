// The inputs of the tests of the real FFT: the same values with every standard library.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cmath>
#include <cstddef>
#include <random>
#include <vector>

namespace fftinputs {

/// `length` values by the generator's own bits (the library's distributions differ by vendor),
/// even over [-1, 1), always the same.
inline std::vector<double> noise(std::size_t length) {
    std::mt19937_64 generator(20140314);
    std::vector<double> x(length);
    for (double& value : x)
        value = std::ldexp(static_cast<double>(generator() >> 11), -52) - 1.0;
    return x;
}

inline std::vector<double> scaled(std::vector<double> x, double factor) {
    for (double& value : x)
        value *= factor;
    return x;
}

/// Noise whose neighbours differ by up to 360 powers of ten.
inline std::vector<double> mixedExponents(std::size_t length) {
    std::mt19937_64 generator(777);
    std::vector<double> x = noise(length);
    for (double& value : x)
        value = std::ldexp(value, static_cast<int>(generator() % 1200) - 600);
    return x;
}

/// Zeros of both signs with a value here and there: the sign of a zero depends on the operations.
inline std::vector<double> signedZeros(std::size_t length) {
    std::mt19937_64 generator(99);
    std::vector<double> x(length);
    for (double& value : x) {
        const auto draw = generator() >> 60;
        value = draw < 8 ? 0.0 : -0.0;
        if (draw == 0)
            value = 1.0;
    }
    return x;
}

inline std::vector<double> toneBetweenBins(std::size_t length) {
    std::vector<double> x(length);
    for (std::size_t n = 0; n < length; ++n)
        x[n] = std::sin(0.4 + 0.211 * static_cast<double>(n));
    return x;
}

/// An impulse away from the origin: all of its bins are of size 1.
inline std::vector<double> delayedImpulse(std::size_t length) {
    std::vector<double> x(length);
    x[length / 3] = 1.0;
    return x;
}

} // namespace fftinputs
