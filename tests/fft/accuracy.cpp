// Every value of the real FFT against FFTW, within bounds of rounding errors.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_fft.h"

#include "inputs.h"
#include "support/TestTable.h"

#include <QTest>

#include <fftw3.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <vector>

using namespace fftinputs;

namespace {

using MakeSequence = std::vector<double> (*)(std::size_t);

/// How far a spectrum is from an exact one.
struct Deviation {
    double relativeL2 = 0; ///< root of the sum of squared errors / that of the squared values
    double ofInput = 0;    ///< the largest error of a value / the sum of the input's sizes
};

Deviation deviation(const std::vector<double>& actual, const std::vector<double>& exact,
                    const std::vector<double>& x) {
    long double errorSquares = 0;
    long double squares = 0;
    long double largestError = 0;
    for (std::size_t i = 0; i < exact.size(); ++i) {
        const long double value = exact[i];
        const long double error = std::abs(actual[i] - value);
        errorSquares += error * error;
        squares += value * value;
        largestError = std::max(largestError, error);
    }
    long double inputSum = 0;
    for (const double value : x)
        inputSum += std::abs(value);
    return {static_cast<double>(std::sqrt(errorSquares / squares)),
            static_cast<double>(largestError / inputSum)};
}

/// FFTW's double-precision transform, in the layout of the transform under test.
std::vector<double> fftwTransform(const std::vector<double>& x) {
    const std::size_t length = x.size();
    std::vector<double> in = x;
    std::vector<std::complex<double>> out(length / 2 + 1);
    const fftw_plan plan =
        fftw_plan_dft_r2c_1d(static_cast<int>(length), in.data(),
                             reinterpret_cast<fftw_complex*>(out.data()), FFTW_ESTIMATE);
    fftw_execute(plan);
    fftw_destroy_plan(plan);
    fftw_cleanup();

    std::vector<double> f(length);
    for (std::size_t k = 0; k <= length / 2; ++k) {
        f[k] = out[k].real();
        if (k > 0 && 2 * k < length)
            f[length / 2 + k] = -out[k].imag();
    }
    return f;
}

/// The bound of rounding errors, as a relative L2 error, for a transform of 2^bits values.
///
/// Up to 13 bits: with u = 2^-53, a butterfly adds at most 4 sqrt(2) u by its operations, and its
/// cosine, whose argument below pi/2 is rounded twice (pi, and the product), less than 4 u:
/// together 9.6 u, 1.07e-15, a pass, and the passes add up (Higham, Accuracy and Stability of
/// Numerical Algorithms, theorem 24.2). The first two passes do not multiply, which leaves 1e-15
/// for each of all passes.
///
/// Above, pass p turns an oscillator 2^(p - 1) times, and each step may add u / 2 by the rounded
/// constants, always the same way, and sqrt(2) u by its own operations, either way. If all had one
/// direction, the last position would be wrong by 2^p u, 9e-13 for pass 13. The measured error is a
/// tenth of that, 1e-13 at 2^14 values, and doubles with the length; the bound is 1.5 times as
/// large.
double boundOfL2(int bits) {
    const double tableOnly = 1e-15 * bits;
    return bits <= 13 ? tableOnly : tableOnly + std::ldexp(1.5e-13, bits - 14);
}

/// The same for each value, relative to the sum of the input's sizes. Errors that grow evenly along
/// a block are sqrt(3) times their root mean square at its end.
double boundOfValue(int bits) {
    return bits <= 13 ? boundOfL2(bits) : std::sqrt(3.0) * boundOfL2(bits);
}

} // namespace

Q_DECLARE_METATYPE(MakeSequence)

void TestFftAccuracy::agreesWithFftw_data() {
    const auto row = testsupport::columns<int, MakeSequence>("bits", "make");
    for (int bits = 0; bits <= 22; ++bits) {
        const QByteArray length = "2^" + QByteArray::number(bits);
        row(length + ", noise", bits, noise);
        row(length + ", tone", bits, toneBetweenBins);
        row(length + ", impulse", bits, delayedImpulse);
    }
}

void TestFftAccuracy::agreesWithFftw() {
    QFETCH(int, bits);
    QFETCH(MakeSequence, make);
    const std::vector<double> x = make(std::size_t{1} << bits);
    const Deviation found = deviation(transformed(x), fftwTransform(x), x);
    QVERIFY2(found.relativeL2 <= boundOfL2(bits), QByteArray::number(found.relativeL2));
    QVERIFY2(found.ofInput <= boundOfValue(bits), QByteArray::number(found.ofInput));
}
