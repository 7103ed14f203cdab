// What the trend shows without responses.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// The empty trend's y axis runs from 0 to this.
constexpr double emptyTrendTop = 4;
