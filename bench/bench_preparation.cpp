// Preparing a target: what each step costs, from the chosen file to the painted charts.
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Each iteration prepares a target in a new main window and times the steps one by one; the
// counters are medians over the iterations, whose number is fixed: of the milliseconds of each step
// and of the part of them that the system's kernel took, and of the peak of memory. Loading is
// compared with libsndfile's reading of the same file into doubles, and one transform by FFTW is
// there so that other machines can be compared.
#include "app/MainWindow.h"

#include "Cost.h"
#include "DynArray.h"
#include "FFTReal.h"
#include "Median.h"
#include "TargetFiles.h"
#include "charts/AmplitudeSpectrum.h"
#include "charts/ChartPoints.h"
#include "sound/CWav.h"
#include "support/InspectedWindows.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QTest>
#include <QtCharts/QChartView>
#include <benchmark/benchmark.h>
#include <fftw3.h>
#include <malloc.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

/// The window whose preparation is timed, step by step as prepareTarget() takes them.
class PreparedWindow : public testsupport::InspectedMainWindow {
public:
    PreparedWindow() {
        show();
        for (QWidget* viewport : viewports())
            viewport->installEventFilter(this);
        paintEverything();
        // What the window manager has painted once more is not to be taken for the target's charts.
        QTest::qWait(20);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            unpainted.erase(watched);
        return InspectedMainWindow::eventFilter(watched, event);
    }

    void choose(const QString& path) {
        chooseTarget(QFileInfo(path));
        nRepetitions = nRepetitionsPractice;
        genRandomSequence();
    }

    /// Handles events until each of both charts has been painted.
    void paintEverything() {
        for (QWidget* viewport : viewports())
            unpainted.insert(viewport);
        constexpr int mostMilliseconds = 60000;
        const QDeadlineTimer deadline(mostMilliseconds);
        while (!unpainted.empty()) {
            if (deadline.hasExpired())
                qFatal("the charts are not painted");
            QApplication::processEvents();
        }
    }

private:
    [[nodiscard]] std::vector<QWidget*> viewports() const {
        return {chartViewWav->viewport(), chartViewFFT->viewport()};
    }

    std::set<QObject*> unpainted;
};

/// Returns a number of KiB out of /proc/self/status in bytes.
double statusBytes(const QByteArray& field) {
    QFile file("/proc/self/status");
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no status of the process");
    for (const QByteArray& line : file.readAll().split('\n'))
        if (line.startsWith(field))
            return 1024 * line.simplified().split(' ').value(1).toDouble();
    return 0;
}

/// Sets the system's record of the most memory that the process has had back to the present.
void forgetPeakMemory() {
    QFile file("/proc/self/clear_refs");
    if (!file.open(QIODevice::WriteOnly) || file.write("5") != 1)
        qFatal("the peak of memory cannot be set back");
}

/// Bytes of the buffers that exist at the same time while the spectrum is computed: the file's
/// bytes and samples, the target, the three vectors of bins, the transform's tables and buffer
/// (20 bytes a value), its input and its output.
double requiredBytes(const PreparedWindow& window) {
    const auto length = static_cast<double>(window.fftLength);
    return static_cast<double>(window.wav.rawData.size()) +
           8 * static_cast<double>(window.wav.samples.size()) + 8.0 * window.targetSamples.size() +
           3 * 8 * length / 2 + 20 * length + 2 * 8 * length;
}

/// The costs of steps over the iterations, by name.
using Steps = std::map<std::string, std::vector<Cost>>;

double medianOf(const std::vector<Cost>& costs, double Cost::*kind) {
    std::vector<double> values;
    values.reserve(costs.size());
    for (const Cost& cost : costs)
        values.push_back(cost.*kind);
    return median(std::move(values));
}

// Parts of a preparation that is over, once more on the same data and in memory that has been
// written to before, so that none of them asks the system for any.

/// Reads the file, and converts it, each on its own.
void readAndConvert(const QString& cutPath, Cost& reading, Cost& conversion) {
    CWav wav;
    wav.LoadWav(cutPath.toStdString());
    reading = costOf([&] { wav.LoadWav(cutPath.toStdString()); });
    const bool isReadOnly = wav.samples.empty() && !wav.rawData.empty();
    // From here on the header declares what is there.
    wav.header.dataSize = static_cast<std::uint32_t>(wav.rawData.size());
    wav.numberOfSamples = wav.header.dataSize / (wav.header.bitsPerSample / 8U);
    wav.ConvertData();
    conversion = costOf([&] { wav.ConvertData(); });
    if (!isReadOnly || wav.samples.size() != wav.numberOfSamples)
        qFatal("reading and converting have not been separated");
}

/// What the program does to draw the vectors of a window, without the charts.
Cost pairAndFindRanges(const PreparedWindow& window) {
    // Not the window's, which the charts share and which would be copied first.
    QVector<QPointF> pointsWav(window.pointsWav.size());
    QVector<QPointF> pointsFFT(window.pointsFFT.size());
    QVector<double> range(2);
    return costOf([&] {
        pairPoints(window.timeAxisMs, window.targetSamples, window.data.nPointsToPlot, pointsWav);
        findRange(window.targetSamples, range);
        pairPoints(window.fftFrequencies, window.fftAmplitudes, window.data.nFFTPointsToPlot,
                   pointsFFT);
        findRange(window.fftAmplitudes, range);
    });
}

/// Fills the spectrum from its transform; "library" is what the C library takes of a preparation:
/// of this the arctangents, and of the transform's tables the cosines.
void fillSpectrumAgain(PreparedWindow& window, Cost& filling, Cost& library) {
    const qint64 length = window.fftLength;
    const auto bins = static_cast<int>(length / 2);
    DynArray<double> input(length);
    DynArray<double> output(length);
    const QVector<double>& samples = window.targetSamples;
    std::copy(samples.cbegin(), samples.cend(), &input[0]);
    std::fill(&input[0] + samples.size(), &input[0] + length, 0.0);
    FFTReal<double>(length).do_fft(&output[0], &input[0]);
    filling = costOf([&] {
        fillSpectrum(&output[0], length, window.data.nSamples, window.frequencyResolution,
                     {window.fftFrequencies, window.fftAmplitudes, window.fftPhases});
    });
    const double* const real = &output[0];
    double* const results = &input[0];
    constexpr double pi = 3.141592653589793;
    library = costOf([&] {
        for (int k = 0; k < bins; ++k)
            results[k] = std::atan2(-real[bins + k], real[k]);
        for (int i = 0; i < bins / 2; ++i)
            results[i] = std::cos(i * (pi / bins));
    });
    benchmark::DoNotOptimize(results);
}

/// Takes a whole preparation in the program's order; "own" is all of it but Qt's updating
/// and painting of charts. Steps that the program takes in one go are separated by taking parts of
/// them again; "buffers", "transform" and "chart update" are what is left of the whole. The texts
/// and the trend's reset, which prepareTarget() sees to as well, are not timed.
void prepareOnce(PreparedWindow& window, const QString& cutPath, Steps& steps,
                 std::vector<double>& peaks) {
    forgetPeakMemory();
    const double before = statusBytes("VmRSS:");
    const Cost loading = costOf([&] { window.genWav(); });
    Cost charts = costOf([&] { window.displayWav(); });
    const Cost spectrum = costOf([&] { window.genFFT(); });
    charts += costOf([&] { window.displayFFT(); });
    const Cost painting = costOf([&] { window.paintEverything(); });
    peaks.push_back(statusBytes("VmHWM:") - before);

    const Cost pairing = pairAndFindRanges(window);
    Cost reading;
    Cost conversion;
    readAndConvert(cutPath, reading, conversion);
    Cost filling;
    Cost library;
    fillSpectrumAgain(window, filling, library);
    steps["read"].push_back(reading);
    steps["convert"].push_back(conversion);
    steps["buffers"].push_back(loading - reading - conversion);
    steps["points, ranges"].push_back(pairing);
    steps["transform"].push_back(spectrum - filling);
    steps["amplitudes, phases"].push_back(filling);
    steps["chart update"].push_back(charts - pairing);
    steps["painting"].push_back(painting);
    steps["C library"].push_back(library);
    Cost own;
    for (const Cost& part : {loading, pairing, spectrum})
        own += part;
    steps["own"].push_back(own);
    Cost total;
    for (const Cost& part : {loading, charts, spectrum, painting})
        total += part;
    steps["total"].push_back(total);
}

/// Prepares in a window after the other. The vectors of earlier iterations are let go beforehand
/// and their memory is given back, so that each preparation is a first one.
void prepare(benchmark::State& state, Format format) {
    const auto milliseconds = static_cast<int>(state.range(0));
    const QString path = targetFile(format, milliseconds);
    const QString cutPath = cutTargetFile(format, milliseconds);
    Steps steps;
    std::vector<double> peaks;
    double required = 0;
    for ([[maybe_unused]] auto _ : state) {
        PreparedWindow window;
        window.choose(path);
        malloc_trim(0);
        prepareOnce(window, cutPath, steps, peaks);
        required = requiredBytes(window);
        state.SetIterationTime(steps["total"].back().elapsed * 1e-3);
    }
    std::vector<double> shares;
    std::vector<double> sharesOfOwnCode;
    for (std::size_t i = 0; i < peaks.size(); ++i) {
        const Cost& own = steps["own"][i];
        const double total = steps["total"][i].elapsed;
        shares.push_back(own.elapsed / total);
        sharesOfOwnCode.push_back((own.elapsed - own.system - steps["C library"][i].elapsed) /
                                  total);
    }
    for (const auto& [name, costs] : steps) {
        state.counters[name] = medianOf(costs, &Cost::elapsed);
        state.counters[name + ", system"] = medianOf(costs, &Cost::system);
    }
    state.counters["own share"] = median(shares);
    state.counters["own code's share"] = median(sharesOfOwnCode);
    state.counters["peak bytes"] = median(peaks);
    state.counters["required bytes"] = required;
}

void readBySndfile(const std::string& path) {
    SF_INFO info = {};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    const auto count =
        static_cast<std::size_t>(info.frames) * static_cast<std::size_t>(info.channels);
    // Not a vector, which would write zeros first.
    const std::unique_ptr<double[]> samples(new double[count]);
    benchmark::DoNotOptimize(sf_readf_double(file, samples.get(), info.frames));
    sf_close(file);
}

/// CWav and libsndfile load the same file in turns; the ratio is the median over the turns.
void load(benchmark::State& state, Format format) {
    const std::string path = targetFile(format, static_cast<int>(state.range(0))).toStdString();
    std::vector<double> ours;
    std::vector<double> sndfiles;
    std::vector<double> ratios;
    for ([[maybe_unused]] auto _ : state) {
        ours.push_back(costOf([&] {
                           CWav wav;
                           benchmark::DoNotOptimize(wav.LoadWav(path));
                       }).elapsed);
        sndfiles.push_back(costOf([&] { readBySndfile(path); }).elapsed);
        ratios.push_back(ours.back() / sndfiles.back());
        state.SetIterationTime(ours.back() * 1e-3);
    }
    state.counters["ours"] = median(ours);
    state.counters["sndfile"] = median(sndfiles);
    state.counters["x_sndfile"] = median(ratios);
}

/// One transform by FFTW's estimate plan, the measure that other machines have in common.
void transformByFftw(benchmark::State& state) {
    const auto length = static_cast<int>(state.range(0));
    std::vector<double> input(static_cast<std::size_t>(length), 0.5);
    std::vector<std::complex<double>> output(static_cast<std::size_t>(length / 2 + 1));
    fftw_forget_wisdom();
    fftw_plan plan = fftw_plan_dft_r2c_1d(
        length, input.data(), reinterpret_cast<fftw_complex*>(output.data()), FFTW_ESTIMATE);
    std::vector<double> times;
    for ([[maybe_unused]] auto _ : state) {
        times.push_back(costOf([&] { fftw_execute(plan); }).elapsed);
        state.SetIterationTime(times.back() * 1e-3);
    }
    state.counters["median_ms"] = median(times);
    fftw_destroy_plan(plan);
}

constexpr int quarterSecond = 250;
constexpr int fiveSeconds = 5000;
constexpr int oneMinute = 60000;
constexpr int tenMinutes = 600000;

void timeByHand(benchmark::internal::Benchmark* benchmark, int iterations) {
    benchmark->Iterations(iterations)->UseManualTime()->Unit(benchmark::kMillisecond);
}

void turns(benchmark::internal::Benchmark* benchmark) {
    for (const int milliseconds : {quarterSecond, fiveSeconds, oneMinute, tenMinutes})
        benchmark->Arg(milliseconds);
    timeByHand(benchmark, 21);
}

/// Long preparations take seconds, so that there are fewer of them.
void preparations(const char* name, Format format) {
    struct Rounds {
        int milliseconds;
        int iterations;
    };
    for (const auto [milliseconds, iterations] :
         {Rounds{quarterSecond, 21}, {fiveSeconds, 21}, {oneMinute, 7}, {tenMinutes, 3}})
        timeByHand(benchmark::RegisterBenchmark(name, prepare, format)->Arg(milliseconds),
                   iterations);
}

} // namespace

BENCHMARK_CAPTURE(load, mono8, Format{8, 1})->Apply(turns);
BENCHMARK_CAPTURE(load, mono16, mono16)->Apply(turns);
BENCHMARK_CAPTURE(load, stereo24, stereo24)->Apply(turns);
BENCHMARK(transformByFftw)
    ->Arg(1 << 18)
    ->Iterations(101)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    preparations("prepare/mono16", mono16);
    preparations("prepare/stereo24", stereo24);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
