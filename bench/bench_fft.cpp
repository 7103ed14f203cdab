// The real FFT compared with FFTW, GSL and KISS FFT, as ratios of times measured in turns.
// SPDX-License-Identifier: GPL-3.0-or-later
//
// For each length, all of them transform in turns of about half a millisecond, so that other load
// on the machine affects them equally. The counters are medians over the turns: the microseconds of
// each transform, and the ratios of each pair of transforms in the same turn. "ours / fftw
// measure", for instance, is below 1 if ours is faster. Run it on one idle processor, and more than
// once, because the addresses of the arrays are random.
//
// All compute with doubles. GSL transforms in place; copying its input is included in its time.
#include "Cost.h"
#include "tests/support/OpenFft.h"

#include <benchmark/benchmark.h>
#include <fftw3.h>
#include <gsl/gsl_fft_real.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// After <cmath>, which this header uses without including it.
#include <kissfft/kissfft.hh>

using testsupport::OpenFft;

namespace {

using Plan = std::unique_ptr<fftw_plan_s, decltype(&fftw_destroy_plan)>;

/// Inputs and outputs of all libraries. Allocated once for each length, outside the timed code.
struct Arrays {
    explicit Arrays(std::size_t length) : x(length), f(length), bins(length / 2 + 1) {}

    /// To be called after planning: FFTW_MEASURE overwrites the arrays.
    void fill() {
        for (std::size_t n = 0; n < x.size(); ++n)
            x[n] = std::sin(0.37 * static_cast<double>(n)) + 0.1 * static_cast<double>(n % 7);
    }

    Plan newPlan(unsigned flags) {
        return {fftw_plan_dft_r2c_1d(static_cast<int>(x.size()), x.data(),
                                     reinterpret_cast<fftw_complex*>(bins.data()), flags),
                &fftw_destroy_plan};
    }

    std::vector<double> x;
    std::vector<double> f;
    std::vector<std::complex<double>> bins;
};

/// A library's transform, or one of our code paths.
struct Runner {
    std::string name;
    std::function<void()> transform;
};

double microseconds(const std::function<void()>& transform, int repetitions) {
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < repetitions; ++i) {
        transform();
        benchmark::ClobberMemory();
    }
    const std::chrono::duration<double, std::micro> taken =
        std::chrono::steady_clock::now() - begin;
    return taken.count() / repetitions;
}

double medianRatio(const std::vector<double>& times, const std::vector<double>& others) {
    std::vector<double> ratios(times.size());
    std::transform(times.begin(), times.end(), others.begin(), ratios.begin(), std::divides<>());
    return median(ratios);
}

/// Times all of them in turns, round after round.
void takeTurns(benchmark::State& state, const std::vector<Runner>& runners) {
    std::vector<int> repetitions;
    for (const Runner& runner : runners) {
        runner.transform();
        constexpr double turn = 500;
        const double once = microseconds(runner.transform, 3);
        repetitions.push_back(std::max(1, static_cast<int>(turn / once)));
    }
    std::vector<std::vector<double>> times(runners.size());
    for ([[maybe_unused]] const auto& round : state) {
        for (std::size_t i = 0; i < runners.size(); ++i)
            times[i].push_back(microseconds(runners[i].transform, repetitions[i]));
        state.SetIterationTime(times.front().back() * 1e-6);
    }
    for (std::size_t i = 0; i < runners.size(); ++i) {
        state.counters[runners[i].name] = median(times[i]);
        for (std::size_t k = 0; k < runners.size(); ++k)
            if (k != i)
                state.counters[runners[i].name + " / " + runners[k].name] =
                    medianRatio(times[i], times[k]);
    }
}

/// One object or plan, transform after transform.
void repeated(benchmark::State& state, int bits) {
    const std::size_t length = std::size_t{1} << bits;
    Arrays arrays(length);
    // With wisdom, FFTW_ESTIMATE would reuse measured plans of earlier lengths.
    fftw_forget_wisdom();
    const Plan estimate = arrays.newPlan(FFTW_ESTIMATE);
    // Measuring takes minutes for longer ones.
    const bool isMeasured = bits <= 20;
    const Plan measure = arrays.newPlan(isMeasured ? FFTW_MEASURE : FFTW_ESTIMATE);
    arrays.fill();
    const OpenFft fft(static_cast<std::int64_t>(length));
    gsl_fft_real_wavetable* const wavetable = gsl_fft_real_wavetable_alloc(length);
    gsl_fft_real_workspace* const workspace = gsl_fft_real_workspace_alloc(length);
    // Transforms pairs of real values as complex ones.
    const kissfft<double> kiss(length / 2, false);
    double* const f = arrays.f.data();
    const double* const x = arrays.x.data();

    std::vector<Runner> runners = {
        {"ours", [&] { fft.do_fft(f, x); }},
        {"in two pairs", [&] { fftreal::transform_in_pairs(fft.work(f, x)); }},
        {"pass by pass", [&] { fft.compute_fft_general(f, x); }},
        {"fftw estimate", [&] { fftw_execute(estimate.get()); }},
        {"gsl",
         [&] {
             arrays.f = arrays.x;
             gsl_fft_real_transform(f, 1, length, wavetable, workspace);
         }},
        {"kissfft", [&] { kiss.transform_real(x, arrays.bins.data()); }}};
    if (isMeasured)
        runners.push_back({"fftw measure", [&] { fftw_execute(measure.get()); }});
    takeTurns(state, runners);

    gsl_fft_real_workspace_free(workspace);
    gsl_fft_real_wavetable_free(wavetable);
}

/// Tables and a single transform, compared with FFTW with a new plan each time, once without and
/// once with the planner's accumulated knowledge ("warm").
void once(benchmark::State& state, int bits) {
    const std::size_t length = std::size_t{1} << bits;
    Arrays arrays(length);
    arrays.fill();
    const auto planAndTransform = [&] { fftw_execute(arrays.newPlan(FFTW_ESTIMATE).get()); };
    takeTurns(state, {{"ours",
                       [&] {
                           const FFTReal<double> fft(static_cast<std::int64_t>(length));
                           fft.do_fft(arrays.f.data(), arrays.x.data());
                       }},
                      {"fftw",
                       [&] {
                           fftw_forget_wisdom();
                           planAndTransform();
                       }},
                      {"fftw warm", planAndTransform}});
}

} // namespace

int main(int argc, char** argv) {
    using Function = void (*)(benchmark::State&, int);
    for (const auto& [name, function] :
         {std::pair<std::string, Function>("repeated/", repeated), {"once/", once}}) {
        for (int bits = 3; bits <= 22; ++bits) {
            const int turns = bits <= 16 ? 101 : bits <= 19 ? 31 : 11;
            benchmark::RegisterBenchmark((name + std::to_string(bits)).c_str(), function, bits)
                ->Iterations(rounds(turns))
                ->UseManualTime();
        }
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
