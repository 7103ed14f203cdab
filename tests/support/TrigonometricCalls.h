// Counts the calls of the C library's sine and cosine.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace testsupport {

/// Returns how often sin, cos or both at once have been called so far, by whatever the program that
/// compiles TrigonometricCalls.cpp is made of. The values are the C library's.
long trigonometricCalls();

} // namespace testsupport
