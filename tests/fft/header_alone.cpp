// Compiles the real FFT's header on its own, with nothing included before it.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "FFTReal.h"

template class DynArray<double>;
template class DynArray<std::int64_t>;
template class DynArray<RotationOsc>;
template class FFTReal<double>;
