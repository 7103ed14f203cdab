// The real FFT beside FFTW, GSL and kissfft, as ratios of times taken in turns.
// SPDX-License-Identifier: GPL-3.0-or-later
//
// For each length, all of them transform in turns of about half a millisecond, so that other load
// on the machine affects them equally. The medians over the turns are reported: the time of our
// transform in microseconds, and the ratio of it to each other's in the same turn, "x_fftw" for
// instance, which is below 1 where ours is faster. Run it on one idle processor, and more than
// once, because the place of the arrays in memory is random:
//
//     taskset -c 1 bench_fft --benchmark_format=json
//
// Ours, FFTW and GSL compute with doubles; the packaged kissfft computes with floats, half of the
// work. GSL transforms in place and is handed a copy each time, which counts.
#include "Median.h"
#include "tests/support/OpenFft.h"

#include <benchmark/benchmark.h>
#include <fftw3.h>
#include <gsl/gsl_fft_real.h>
#include <kiss_fftr.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

using testsupport::OpenFft;

namespace {

/// Inputs and outputs of all libraries. Allocated once for each length, outside of the timing.
struct Arrays {
    explicit Arrays(std::size_t length) : x(length), f(length), floats(length), bins(length + 2) {
        for (std::size_t n = 0; n < length; ++n) {
            x[n] = std::sin(0.37 * static_cast<double>(n)) + 0.1 * static_cast<double>(n % 7);
            floats[n] = static_cast<float>(x[n]);
        }
    }

    /// In the types of the other libraries; real and imaginary parts in turns.
    [[nodiscard]] fftw_complex* fftwBins() { return reinterpret_cast<fftw_complex*>(bins.data()); }
    [[nodiscard]] kiss_fft_cpx* kissBins() { return reinterpret_cast<kiss_fft_cpx*>(bins.data()); }

    std::vector<double> x;
    std::vector<double> f;
    std::vector<float> floats;
    std::vector<double> bins;
};

fftw_plan newPlan(Arrays& arrays) {
    return fftw_plan_dft_r2c_1d(static_cast<int>(arrays.x.size()), arrays.x.data(),
                                arrays.fftwBins(), FFTW_ESTIMATE);
}

/// A library's transform; the first of a list is ours.
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
    state.counters["median_us"] = median(times.front());
    for (std::size_t i = 1; i < runners.size(); ++i) {
        std::vector<double> ratios;
        for (std::size_t round = 0; round < times[i].size(); ++round)
            ratios.push_back(times.front()[round] / times[i][round]);
        state.counters["x_" + runners[i].name] = median(ratios);
    }
}

using CodePath = void (*)(const OpenFft& fft, double* f, const double* x);

/// One object, transform after transform, by the code path `ours`.
void repeated(benchmark::State& state, int bits, CodePath ours) {
    const std::size_t length = std::size_t{1} << bits;
    Arrays arrays(length);
    const OpenFft fft(static_cast<std::int64_t>(length));
    fftw_forget_wisdom();
    const fftw_plan plan = newPlan(arrays);
    gsl_fft_real_wavetable* const wavetable = gsl_fft_real_wavetable_alloc(length);
    gsl_fft_real_workspace* const workspace = gsl_fft_real_workspace_alloc(length);
    const kiss_fftr_cfg kiss = kiss_fftr_alloc(static_cast<int>(length), 0, nullptr, nullptr);

    takeTurns(state,
              {{"ours", [&] { ours(fft, arrays.f.data(), arrays.x.data()); }},
               {"fftw", [&] { fftw_execute(plan); }},
               {"gsl",
                [&] {
                    arrays.f = arrays.x;
                    gsl_fft_real_transform(arrays.f.data(), 1, length, wavetable, workspace);
                }},
               {"kissfft", [&] { kiss_fftr(kiss, arrays.floats.data(), arrays.kissBins()); }}});

    kiss_fftr_free(kiss);
    gsl_fft_real_workspace_free(workspace);
    gsl_fft_real_wavetable_free(wavetable);
    fftw_destroy_plan(plan);
}

/// Tables and a single transform, beside FFTW with a new plan each time, once without and once with
/// the planner's accumulated knowledge ("warm").
void once(benchmark::State& state, int bits) {
    const std::size_t length = std::size_t{1} << bits;
    Arrays arrays(length);
    const auto planAndTransform = [&] {
        const fftw_plan plan = newPlan(arrays);
        fftw_execute(plan);
        fftw_destroy_plan(plan);
    };
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
                      {"fftw_warm", planAndTransform}});
}

/// `rounds` of turns for 2^bits values.
template <typename Function> void add(const std::string& name, int bits, const Function& function) {
    const int rounds = bits <= 16 ? 101 : bits <= 19 ? 31 : 11;
    benchmark::RegisterBenchmark((name + "/2^" + std::to_string(bits)).c_str(), function, bits)
        ->Iterations(rounds)
        ->UseManualTime()
        ->Unit(benchmark::kMicrosecond);
}

} // namespace

int main(int argc, char** argv) {
    struct NamedCodePath {
        const char* name;
        CodePath path;
    };
    const std::vector<NamedCodePath> paths = {
        {"repeated", [](const OpenFft& fft, double* f, const double* x) { fft.do_fft(f, x); }},
        {"repeated in two pairs",
         [](const OpenFft& fft, double* f, const double* x) {
             fftreal::transform_in_pairs(fft.work(f, x));
         }},
        {"repeated pass by pass",
         [](const OpenFft& fft, double* f, const double* x) { fft.compute_fft_general(f, x); }},
    };
    for (const NamedCodePath& named : paths)
        for (int bits = 3; bits <= 22; ++bits)
            add(named.name, bits, [path = named.path](benchmark::State& state, int logOfLength) {
                repeated(state, logOfLength, path);
            });
    for (int bits = 3; bits <= 22; ++bits)
        add("once", bits, once);

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
