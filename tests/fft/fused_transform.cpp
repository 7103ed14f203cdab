// The real FFT compiled with permission to fuse multiplications and additions.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fused.h"

#include "support/OpenFft.h"

using testsupport::OpenFft;

void transformedFast(int bits, double* f, const double* x) {
    FFTReal<double>(std::int64_t{1} << bits).do_fft(f, x);
}

void transformedPassByPass(int bits, double* f, const double* x) {
    const OpenFft fft(std::int64_t{1} << bits);
    if (bits > 2)
        fft.compute_fft_general(f, x);
    else
        fft.do_fft(f, x);
}

double multipliedAndAdded(double a, double b, double c) {
    return a * b + c;
}
