// Functions compiled with permission to fuse multiplications and additions.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// No type of the transform appears here: the rest of the program is compiled without that
// permission, and the linker would keep one of two instantiations.

/// Transforms 2^bits values of x into f.
using TransformInto = void (*)(int bits, double* f, const double* x);
void transformedFast(int bits, double* f, const double* x);
void transformedPassByPass(int bits, double* f, const double* x);

/// a b + c, in one operation where there is one.
double multipliedAndAdded(double a, double b, double c);
