// Counts the calls of the C library's sine and cosine.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace testsupport {

/// Returns how often sin, cos or sincos have been called so far in the program that compiles
/// TrigonometricCalls.cpp. Their values are the C library's.
long trigonometricCalls();

} // namespace testsupport
