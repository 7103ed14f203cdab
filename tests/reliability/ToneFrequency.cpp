// The frequency of a recorded tone.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/ToneFrequency.h"

#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace {

/// The amplitudes of a sine and a cosine wave and their angular frequency (radians a sample), or
/// what these lack.
using Three = std::array<double, 3>;

/// Where time is counted from, so that phase and frequency disturb each other least.
double middleOf(const QVector<float>& samples) {
    return (samples.size() - 1) / 2.0;
}

/// Neighbours at equal distances of a sample of a sinusoid add up to 2 cos(angle) times it. Ten
/// samples apart they tell even slow tones well, and tones below a twentieth of the sampling rate
/// without ambiguity.
double roughAngularFrequency(const QVector<float>& samples) {
    constexpr int distance = 10;
    double products = 0;
    double squares = 0;
    for (int i = distance; i + distance < samples.size(); ++i) {
        const double sample = samples[i];
        products += sample * (double(samples[i - distance]) + double(samples[i + distance]));
        squares += 2 * sample * sample;
    }
    return std::acos(products / squares) / distance;
}

/// Solves three linear equations by elimination with pivots; not finite where they have no answer.
Three solve(std::array<Three, 3> matrix, Three right) {
    for (std::size_t column = 0; column < 3; ++column) {
        std::size_t pivot = column;
        for (std::size_t row = column + 1; row < 3; ++row)
            if (std::abs(matrix[row][column]) > std::abs(matrix[pivot][column]))
                pivot = row;
        std::swap(matrix[column], matrix[pivot]);
        std::swap(right[column], right[pivot]);
        for (std::size_t row = 0; row < 3; ++row) {
            if (row == column)
                continue;
            const double factor = matrix[row][column] / matrix[column][column];
            for (std::size_t i = column; i < 3; ++i)
                matrix[row][i] -= factor * matrix[column][i];
            right[row] -= factor * right[column];
        }
    }
    for (std::size_t row = 0; row < 3; ++row)
        right[row] /= matrix[row][row];
    return right;
}

/// One step of Gauss and Newton towards the least squares.
Three improvement(const QVector<float>& samples, const Three& fit) {
    const auto [sine, cosine, angularFrequency] = fit;
    std::array<Three, 3> matrix{};
    Three right{};
    const double middle = middleOf(samples);
    for (int n = 0; n < samples.size(); ++n) {
        const double time = n - middle;
        const double s = std::sin(angularFrequency * time);
        const double c = std::cos(angularFrequency * time);
        const Three slopes{s, c, time * (sine * c - cosine * s)};
        const double rest = double(samples[n]) - sine * s - cosine * c;
        for (std::size_t row = 0; row < 3; ++row) {
            right[row] += slopes[row] * rest;
            for (std::size_t column = 0; column < 3; ++column)
                matrix[row][column] += slopes[row] * slopes[column];
        }
    }
    return solve(matrix, right);
}

/// The sine and cosine wave that fit best at a given angular frequency.
Three bestFitAt(double angularFrequency, const QVector<float>& samples) {
    // With no frequency to improve, the third equation stands by itself.
    std::array<Three, 3> matrix{};
    matrix[2][2] = 1;
    Three right{0, 0, angularFrequency};
    const double middle = middleOf(samples);
    for (int n = 0; n < samples.size(); ++n) {
        const double s = std::sin(angularFrequency * (n - middle));
        const double c = std::cos(angularFrequency * (n - middle));
        matrix[0][0] += s * s;
        matrix[0][1] += s * c;
        matrix[1][0] += s * c;
        matrix[1][1] += c * c;
        right[0] += s * double(samples[n]);
        right[1] += c * double(samples[n]);
    }
    return solve(matrix, right);
}

} // namespace

double toneFrequency(const QVector<float>& samples, double samplingRate) {
    // Each one about doubles the digits that are right.
    constexpr int steps = 8;
    Three fit = bestFitAt(roughAngularFrequency(samples), samples);
    for (int i = 0; i < steps; ++i) {
        const Three step = improvement(samples, fit);
        for (std::size_t j = 0; j < 3; ++j)
            fit[j] += step[j];
    }
    constexpr double twoPi = 6.283185307179586;
    const double frequency = fit[2] * samplingRate / twoPi;
    return std::isfinite(frequency) ? frequency : std::numeric_limits<double>::quiet_NaN();
}

double centsAbove(double measured, double reference) {
    constexpr double centsPerOctave = 1200;
    return centsPerOctave * std::log2(measured / reference);
}
