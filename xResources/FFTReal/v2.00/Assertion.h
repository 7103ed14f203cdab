// The assertion of the real FFT's headers: active in every build, its text exactly as written.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the program through std::abort() unless `condition` holds, after one line on standard
/// error that names the file, the line, the function and `text`. Unlike assert(), it does not
/// depend on NDEBUG, and the text is given rather than made from the condition, so that neither a
/// formatter nor a macro in the condition can change what is reported.
#define FFTREAL_ASSERT(condition, text)                                                            \
    ((condition) ? static_cast<void>(0)                                                            \
                 : FFTReal_assertion_failed(__FILE__, __LINE__, __func__, text))

/// Reports a failed assertion in the form of the C library's own and aborts.
[[noreturn]] inline void FFTReal_assertion_failed(const char* file, int line, const char* function,
                                                  const char* text) {
    std::fprintf(stderr, "%s:%d: %s: Assertion `%s' failed.\n", file, line, function, text);
    std::abort();
}
