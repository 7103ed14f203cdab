// A presented sound in the recording of a sound device of another rate.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/ResampledSounds.h"

#include <algorithm>
#include <cmath>
#include <vector>

using testsupport::HeardSound;
using testsupport::Outcome;

namespace {

constexpr double pi = 3.141592653589793;
constexpr double cutoffHz = 8000;
constexpr double halfWidthSeconds = 0.001; // Of the low-pass filter.
constexpr double blockSeconds = 0.005;

/// A recording or a sound with its rate, to be read between its samples, below the cutoff.
class FilteredSignal {
public:
    FilteredSignal(const QVector<float>& signal, double signalRate)
        : samples(signal), rate(signalRate) {}

    /// The value at a time (s) by a sinc filter with a Blackman window, with silence around it.
    double at(double seconds) const {
        const int first = std::max(int(std::ceil((seconds - halfWidthSeconds) * rate)), 0);
        const int last =
            std::min(int(std::floor((seconds + halfWidthSeconds) * rate)), samples.size() - 1);
        double sum = 0;
        for (int i = first; i <= last; ++i)
            sum += double(samples[i]) * filter(seconds - i / rate);
        return sum / rate;
    }

private:
    /// The filter's response, from a table that is fine enough to be read at the next entry below.
    static double filter(double seconds) {
        constexpr int entries = 1 << 20;
        static const std::vector<double> table = [] {
            std::vector<double> values(entries + 1);
            for (int i = 0; i <= entries; ++i)
                values[std::size_t(i)] = response(i * halfWidthSeconds / entries);
            return values;
        }();
        return table[std::size_t(std::abs(seconds) / halfWidthSeconds * entries)];
    }

    static double response(double seconds) {
        const double phase = 2 * pi * cutoffHz * seconds;
        const double sinc = phase == 0 ? 1 : std::sin(phase) / phase;
        const double turn = pi * seconds / halfWidthSeconds;
        return 2 * cutoffHz * sinc * (0.42 + 0.5 * std::cos(turn) + 0.08 * std::cos(2 * turn));
    }

    const QVector<float>& samples;
    double rate;
};

/// Compares a stretch with a sound whose filtered samples are computed once.
class Comparison {
public:
    Comparison(const QVector<float>& stretch, double deviceRate, const QVector<float>& sound,
               double soundRate)
        : recording(stretch, deviceRate), rate(soundRate), count(sound.size()),
          block(int(blockSeconds * soundRate)) {
        const FilteredSignal source(sound, soundRate);
        // The filter's ringing beyond both ends belongs to the sound.
        for (int i = -block; i < count + block; ++i)
            expected.append(source.at(i / rate));
        double squares = 0;
        for (const double value : expected)
            squares += value * value;
        level = std::sqrt(squares / count);
    }

    /// The sum of squares by which the sound's beginning differs at a delay (s).
    double differenceAtStart(double delay) const {
        constexpr int blocks = 5;
        double squares = 0;
        for (int i = 0; i < std::min(blocks * block, expected.size()); ++i) {
            const double error = receivedAt(i, delay) - expected[i];
            squares += error * error;
        }
        return squares;
    }

    /// The delay (s) at which the beginning differs the least, near a rough one.
    double bestDelay(double rough) const {
        constexpr int steps = 20;
        double best = rough;
        double least = differenceAtStart(best);
        for (double reach = 0.002; reach > 1e-8; reach *= 2.0 / steps) {
            const double centre = best;
            for (int step = -steps; step <= steps; ++step) {
                const double delay = centre + step * reach / steps;
                const double difference = differenceAtStart(delay);
                if (difference < least) {
                    least = difference;
                    best = delay;
                }
            }
        }
        return best;
    }

    HeardSound judge(double delay) const {
        constexpr double tolerance = 0.01;
        HeardSound heard;
        heard.outcome = Outcome::Complete;
        heard.start = int(std::lround(delay * rate));
        for (int first = 0; first < expected.size(); first += block) {
            double errors = 0;
            double received = 0;
            for (int i = first; i < std::min(first + block, expected.size()); ++i) {
                const double value = receivedAt(i, delay);
                errors += (value - expected[i]) * (value - expected[i]);
                received += value * value;
            }
            if (std::sqrt(errors / block) <= tolerance * level)
                continue;
            if (heard.samplesMissing == 0)
                heard.firstWrong = first - block;
            heard.samplesMissing += block;
            const bool isSilent = std::sqrt(received / block) <= tolerance * level;
            if (heard.outcome != Outcome::Gaps)
                heard.outcome = isSilent ? Outcome::Gaps : Outcome::Different;
        }
        return heard;
    }

private:
    double receivedAt(int index, double delay) const {
        return recording.at((index - block) / rate + delay);
    }

    FilteredSignal recording;
    double rate;
    int count;
    int block;
    QVector<double> expected; ///< From a block before the sound to a block after it.
    double level;             ///< Root mean square of the sound.
};

/// Index of the first sample that more than the noise of a resampler is heard in.
int firstAudible(const QVector<float>& samples, int from = 0) {
    constexpr float threshold = 1e-3F;
    const auto isAudible = [](float sample) { return std::abs(sample) > threshold; };
    return int(std::find_if(samples.cbegin() + from, samples.cend(), isAudible) - samples.cbegin());
}

} // namespace

HeardSound findResampledSound(const QVector<float>& stretch, double deviceRate,
                              const QVector<float>& sound, double soundRate) {
    HeardSound heard;
    heard.samplesMissing = sound.size();
    const int onset = firstAudible(stretch);
    if (onset == stretch.size())
        return heard;
    const Comparison comparison(stretch, deviceRate, sound, soundRate);
    const double delay = comparison.bestDelay(onset / deviceRate - firstAudible(sound) / soundRate);
    heard = comparison.judge(delay);
    const int end = int((delay + sound.size() / soundRate + blockSeconds) * deviceRate);
    heard.isFollowedByMore =
        end < stretch.size() && firstAudible(stretch, std::max(end, 0)) < stretch.size();
    return heard;
}
