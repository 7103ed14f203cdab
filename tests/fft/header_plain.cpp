// Compiles the real FFT's header as a compiler without vectors sees it, for every type of value.
// SPDX-License-Identifier: GPL-3.0-or-later
#define FFTREAL_VECTORS 0
#include "FFTReal.h"

template class FFTReal<float>;
template class FFTReal<double>;
template class FFTReal<long double>;
