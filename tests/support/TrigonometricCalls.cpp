// Counts the calls of the C library's sine and cosine.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/TrigonometricCalls.h"

#include <dlfcn.h>

namespace testsupport {

namespace {

long calls = 0;

template <typename Function> Function* inTheLibrary(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

long trigonometricCalls() {
    return calls;
}

} // namespace testsupport

// These replace the C library's functions in the whole test program. <cmath> is not included, since
// compilers evaluate functions that it declares themselves where they can.
extern "C" double sin(double x) {
    static auto* const original = testsupport::inTheLibrary<double(double)>("sin");
    ++testsupport::calls;
    return original(x);
}

extern "C" double cos(double x) {
    static auto* const original = testsupport::inTheLibrary<double(double)>("cos");
    ++testsupport::calls;
    return original(x);
}

extern "C" void sincos(double x, double* sine, double* cosine) {
    static auto* const original =
        testsupport::inTheLibrary<void(double, double*, double*)>("sincos");
    ++testsupport::calls;
    original(x, sine, cosine);
}
