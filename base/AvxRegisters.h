// The upper halves of the AVX registers.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Clears the upper halves of the processor's AVX registers, where it has them. Qt's painting
/// leaves them in use, and on some processors SSE code such as that of Qt Charts then takes twice
/// as long: each of its instructions has to keep an upper half (Intel 64 Optimization Reference
/// Manual, "Mixing AVX code with SSE code"). Called before a chart is filled.
void clearUpperAvxHalves();
