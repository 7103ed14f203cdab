// The real FFT with its protected tables and passes made public.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FFTReal.h"

namespace testsupport {

class OpenFft : public FFTReal<double> {
public:
    using FFTReal<double>::FFTReal;

    using FFTReal<double>::_bitrev_table;
    using FFTReal<double>::_cos_table;
    using FFTReal<double>::_fft_len;
    using FFTReal<double>::_nbr_bits;
    using FFTReal<double>::_rot_osc;
    using FFTReal<double>::_work_buf;
    using FFTReal<double>::compute_direct_pass_1_2;
    using FFTReal<double>::compute_direct_pass_3;
    using FFTReal<double>::compute_direct_pass_n;
    using FFTReal<double>::compute_direct_pass_n_lut;
    using FFTReal<double>::compute_direct_pass_n_osc;
    using FFTReal<double>::compute_fft_general;
    using FFTReal<double>::use_buffer;
    using FFTReal<double>::work;
};

} // namespace testsupport
