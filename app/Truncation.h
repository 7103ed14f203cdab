// Real numbers as ints.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Converts a real number to an int, dropping its fraction. Beyond the range of an int the nearest
/// int is returned, for NaN 0: a plain conversion would be undefined there.
int truncatedToInt(double number);
