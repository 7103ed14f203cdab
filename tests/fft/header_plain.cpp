// Compiles the real FFT's header without vectors, for every value type.
// SPDX-License-Identifier: GPL-3.0-or-later
#define FFTREAL_VECTORS 0
#include "FFTReal.h"

template class FFTReal<float>;
template class FFTReal<double>;
template class FFTReal<long double>;
