// What is compiled with leave to fuse multiplications and additions.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// No type of the transform's appears here: the rest of the program is compiled without that leave,
// and what both parts instantiate would be one of the two.

/// Transforms 2^bits values of x into f.
using TransformInto = void (*)(int bits, double* f, const double* x);
void transformedFast(int bits, double* f, const double* x);
void transformedPassByPass(int bits, double* f, const double* x);

/// a b + c, in one operation where there is one.
double multipliedAndAdded(double a, double b, double c);
