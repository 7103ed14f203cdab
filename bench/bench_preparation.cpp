// Preparing a target: what each step costs, from the chosen file to the painted charts.
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Each iteration prepares a target in a new main window and times the steps one by one; the
// counters are their means in milliseconds, the part that the system's kernel took, and the peak of
// memory. Loading stands beside libsndfile's reading of the same file into doubles, and one
// transform by FFTW is there so that other machines can be compared.
#include "app/MainWindow.h"

#include "DynArray.h"
#include "FFTReal.h"
#include "Median.h"
#include "charts/ChartPoints.h"
#include "sound/CWav.h"
#include "support/FileBytes.h"
#include "support/InspectedWindows.h"
#include "support/WavBytes.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtCharts/QChartView>
#include <benchmark/benchmark.h>
#include <fftw3.h>
#include <sndfile.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <map>
#include <string>
#include <vector>

namespace {

constexpr int samplingRate = 40000;

struct Format {
    quint16 bits;
    quint16 channels;
};

constexpr Format mono16{16, 1};
constexpr Format stereo24{24, 2};

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// Returns the path of a target with a decaying harmonic sound of that many milliseconds.
QString targetFile(Format format, int milliseconds) {
    static const QTemporaryDir folder;
    const QString path = folder.filePath(
        QString("%1-%2-%3.wav").arg(format.bits).arg(format.channels).arg(milliseconds));
    if (QFile::exists(path))
        return path;
    const int points = samplingRate / 1000 * milliseconds;
    const double fullScale = (1 << (format.bits - 1)) - 1;
    const int offset = format.bits == 8 ? 128 : 0;
    QByteArray data;
    data.reserve(points * format.channels * format.bits / 8);
    for (int i = 0; i < points; ++i) {
        const double sample = 0.5 * std::sin(i * 0.0691) + 0.3 * std::sin(i * 0.1382 + 1);
        const auto code =
            static_cast<quint32>(static_cast<qint32>(std::lrint(sample * fullScale)) + offset);
        for (int channel = 0; channel < format.channels; ++channel)
            for (int shift = 0; shift < format.bits; shift += 8)
                data.append(static_cast<char>((code >> shift) & 0xFFU));
    }
    const testsupport::WavFormat wavFormat{samplingRate, format.channels, format.bits};
    if (!testsupport::writeBytes(path, testsupport::wavWithData(wavFormat, data)))
        qFatal("no target can be written");
    return path;
}

/// The window whose preparation is timed, step by step as getReadyToGo() takes them.
class PreparedWindow : public testsupport::InspectedMainWindow {
public:
    PreparedWindow() {
        show();
        chartViewWav->viewport()->installEventFilter(this);
        chartViewFFT->viewport()->installEventFilter(this);
        paintEverything();
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            ++paintings;
        return InspectedMainWindow::eventFilter(watched, event);
    }

    void choose(const QString& path) {
        chooseTarget(QFileInfo(path));
        nRepetitions = nRepetitionsPractice;
        genRandomSequence();
    }

    /// Handles events until both charts have been painted.
    void paintEverything() {
        paintings = 0;
        while (paintings < 2)
            QApplication::processEvents();
    }

private:
    int paintings = 0;
};

/// Milliseconds that a step has taken.
struct Cost {
    double elapsed = 0; ///< By the clock on the wall.
    double system = 0;  ///< Of these, in the system's kernel: fresh memory, mostly.

    Cost& operator+=(const Cost& other) {
        elapsed += other.elapsed;
        system += other.system;
        return *this;
    }
    friend Cost operator-(const Cost& one, const Cost& other) {
        return {one.elapsed - other.elapsed, one.system - other.system};
    }
};

double systemMilliseconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return 1e3 * static_cast<double>(usage.ru_stime.tv_sec) +
           1e-3 * static_cast<double>(usage.ru_stime.tv_usec);
}

template <typename Function> Cost costOf(Function&& function) {
    const double system = systemMilliseconds();
    const Clock::time_point start = Clock::now();
    function();
    return {millisecondsSince(start), systemMilliseconds() - system};
}

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

/// Bytes of the buffers that stand at the same time while the spectrum is computed: the file's
/// bytes and samples, the target, the three vectors of bins, the transform's tables and buffer
/// (20 bytes a value), its input and its output.
double requiredBytes(const PreparedWindow& window) {
    const auto length = static_cast<double>(window.fftLength);
    return static_cast<double>(window.wav.rawData.size()) +
           8 * static_cast<double>(window.wav.samples.size()) + 8.0 * window.targetSamples.size() +
           3 * 8 * length / 2 + 20 * length + 2 * 8 * length;
}

/// Transforms `samples` as the spectrum does, from the tables on.
void transform(const QVector<double>& samples, qint64 length) {
    const FFTReal<double> fft(length);
    DynArray<double> input(length);
    DynArray<double> output(length);
    std::copy(samples.cbegin(), samples.cend(), &input[0]);
    std::fill(&input[0] + samples.size(), &input[0] + length, 0.0);
    fft.do_fft(&output[0], &input[0]);
}

/// A whole preparation in the program's order; "own" is all of it but the toolkit's updating and
/// painting of charts. Steps that the program takes in one go are told apart by taking parts of
/// them once more on the same data. The vectors of earlier iterations are let go beforehand, so
/// that each preparation is a first one.
void prepare(benchmark::State& state, Format format) {
    const QString path = targetFile(format, static_cast<int>(state.range(0)));
    std::map<std::string, Cost> steps;
    double peak = 0;
    double required = 0;
    for ([[maybe_unused]] auto _ : state) {
        PreparedWindow window;
        window.choose(path);
        forgetPeakMemory();
        const double before = statusBytes("VmRSS:");
        const Cost loading = costOf([&] { window.genWav(); });
        Cost charts = costOf([&] { window.displayWav(); });
        const Cost spectrum = costOf([&] { window.genFFT(); });
        charts += costOf([&] { window.displayFFT(); });
        const Cost painting = costOf([&] { window.paintEverything(); });
        peak = statusBytes("VmHWM:") - before;
        required = requiredBytes(window);

        QVector<QPointF> points(0);
        QVector<double> range;
        const Cost pairing = costOf([&] {
            pairPoints(window.timeAxisMs, window.targetSamples, window.data.nPointsToPlot, points);
            findRange(window.targetSamples, range);
            pairPoints(window.fftFrequencies, window.fftAmplitudes, window.data.nFFTPointsToPlot,
                       points);
            findRange(window.fftAmplitudes, range);
        });
        CWav wav;
        const Cost reading = costOf([&] { wav.LoadWav(path.toStdString()); });
        wav.samples = {};
        const Cost conversion = costOf([&] { wav.ConvertData(); });
        const Cost transforming =
            costOf([&] { transform(window.targetSamples, window.fftLength); });
        steps["load"] += reading - conversion;
        steps["convert"] += conversion;
        steps["buffers"] += loading - reading;
        steps["points, ranges"] += pairing;
        steps["transform"] += transforming;
        steps["amplitudes, phases"] += spectrum - transforming;
        steps["chart update"] += charts - pairing;
        steps["painting"] += painting;
        Cost& own = steps["own"];
        for (const Cost& part : {loading, pairing, spectrum})
            own += part;
        Cost total;
        for (const Cost& part : {loading, charts, spectrum, painting})
            total += part;
        steps["total"] += total;
        state.SetIterationTime(total.elapsed * 1e-3);
    }
    for (const auto& [name, cost] : steps) {
        using benchmark::Counter;
        state.counters[name] = Counter(cost.elapsed, Counter::kAvgIterations);
        state.counters[name + ", system"] = Counter(cost.system, Counter::kAvgIterations);
    }
    state.counters["peak bytes"] = peak;
    state.counters["required bytes"] = required;
}

void readBySndfile(const std::string& path) {
    SF_INFO info = {};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    std::vector<double> samples(static_cast<std::size_t>(info.frames) *
                                static_cast<std::size_t>(info.channels));
    benchmark::DoNotOptimize(sf_readf_double(file, samples.data(), info.frames));
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
    std::vector<fftw_complex> output(static_cast<std::size_t>(length / 2 + 1));
    fftw_forget_wisdom();
    fftw_plan plan = fftw_plan_dft_r2c_1d(length, input.data(), output.data(), FFTW_ESTIMATE);
    for (auto _ : state)
        fftw_execute(plan);
    fftw_destroy_plan(plan);
}

constexpr int quarterSecond = 250;
constexpr int fiveSeconds = 5000;
constexpr int oneMinute = 60000;
constexpr int tenMinutes = 600000;

void durations(benchmark::internal::Benchmark* benchmark) {
    for (const int milliseconds : {quarterSecond, fiveSeconds, oneMinute, tenMinutes})
        benchmark->Arg(milliseconds);
    benchmark->Unit(benchmark::kMillisecond);
}

void turns(benchmark::internal::Benchmark* benchmark) {
    durations(benchmark);
    benchmark->Iterations(21)->UseManualTime();
}

} // namespace

BENCHMARK_CAPTURE(prepare, mono16, mono16)->Apply(durations)->UseManualTime();
BENCHMARK_CAPTURE(prepare, stereo24, stereo24)->Apply(durations)->UseManualTime();
BENCHMARK_CAPTURE(load, mono8, Format{8, 1})->Apply(turns);
BENCHMARK_CAPTURE(load, mono16, mono16)->Apply(turns);
BENCHMARK_CAPTURE(load, stereo24, stereo24)->Apply(turns);
BENCHMARK(transformByFftw)->Arg(1 << 18)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
