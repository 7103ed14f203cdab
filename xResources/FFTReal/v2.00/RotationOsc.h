// Cosines and sines of the multiples of an angle, step by step, for the real FFT's late passes.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ExactArithmetic.h"

#include <cmath>

FFTREAL_EXACT_BEGIN

/// A point that turns on the unit circle by a fixed angle per step: cos and sin of multiples of
/// that angle by the addition theorem, without calling a trigonometric function. Rounding errors
/// accumulate until it is reset.
class RotationOsc {
public:
    /// The angle of one step in radians; the position stays.
    void set_angle_step(double angle) {
        _inc_cos = std::cos(angle);
        _inc_sin = std::sin(angle);
    }

    /// Returns to the angle 0.
    void reset() {
        _cur_cos = 1;
        _cur_sin = 0;
    }

    /// Advances by one step.
    void advance() {
        const double old_cos = _cur_cos;
        const double old_sin = _cur_sin;
        _cur_cos = old_cos * _inc_cos - old_sin * _inc_sin;
        _cur_sin = old_cos * _inc_sin + old_sin * _inc_cos;
    }

    [[nodiscard]] double cos_value() const { return _cur_cos; }
    [[nodiscard]] double sin_value() const { return _cur_sin; }

private:
    double _cur_cos = 1;
    double _cur_sin = 0;
    double _inc_cos = 1;
    double _inc_sin = 0;
};

FFTREAL_EXACT_END
