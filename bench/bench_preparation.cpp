// Preparing a target: what each step costs, from the chosen file to the painted charts.
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Each iteration prepares a target in a real main window and times the steps one by one; the
// counters are their means in milliseconds, and the time is that of the whole. Loading stands
// beside libsndfile's reading of the same file into doubles, and the transform beside FFTW's, so
// that other machines can be compared.
#include "app/MainWindow.h"

#include "charts/ChartPoints.h"
#include "sound/CWav.h"
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
        Record record;
        record.filePath = QFileInfo(path).path();
        record.fileName = QFileInfo(path).fileName();
        data.records = {record};
        nFiles = 1;
        nRepetitions = 1;
        soundsPlayed = 0;
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

/// Adds up the milliseconds of each step over the iterations of a benchmark.
class Steps {
public:
    /// Returns the milliseconds of this time.
    template <typename Function> double time(const char* step, Function&& function) {
        const Clock::time_point start = Clock::now();
        function();
        const double elapsed = millisecondsSince(start);
        sums[step] += elapsed;
        return elapsed;
    }

    void report(benchmark::State& state) const {
        for (const auto& [step, sum] : sums)
            state.counters[step] = benchmark::Counter(sum, benchmark::Counter::kAvgIterations);
    }

private:
    std::map<std::string, double> sums;
};

/// A whole preparation; "own" is all of it but the toolkit's updating and painting of charts.
void prepare(benchmark::State& state, Format format) {
    const QString path = targetFile(format, static_cast<int>(state.range(0)));
    PreparedWindow window;
    Steps steps;
    double own = 0;
    double total = 0;
    for (auto _ : state) {
        window.choose(path);
        const double loading = steps.time("1 load, convert, buffers", [&] { window.genWav(); });
        const double spectrum = steps.time("2 transform, amplitudes", [&] { window.genFFT(); });
        const double charts = steps.time("3 points and chart update", [&] {
            window.displayWav();
            window.displayFFT();
        });
        const double painting = steps.time("5 painting", [&] { window.paintEverything(); });
        state.PauseTiming();
        // Our part of the chart update, once more on the same data.
        QVector<QPointF> points;
        QVector<double> range;
        const double pairing = steps.time("4 of which points and ranges", [&] {
            pairPoints(window.timeAxisMs, window.targetSamples, window.data.nPointsToPlot, points);
            findRange(window.targetSamples, range);
            pairPoints(window.fftFrequencies, window.fftAmplitudes, window.data.nFFTPointsToPlot,
                       points);
            findRange(window.fftAmplitudes, range);
        });
        own += loading + spectrum + pairing;
        total += loading + spectrum + charts + painting;
        state.ResumeTiming();
    }
    steps.report(state);
    state.counters["own"] = benchmark::Counter(own, benchmark::Counter::kAvgIterations);
    state.counters["own share"] = own / total;
}

void load(benchmark::State& state, Format format) {
    const std::string path = targetFile(format, static_cast<int>(state.range(0))).toStdString();
    for (auto _ : state) {
        CWav wav;
        benchmark::DoNotOptimize(wav.LoadWav(path));
    }
}

void loadBySndfile(benchmark::State& state, Format format) {
    const std::string path = targetFile(format, static_cast<int>(state.range(0))).toStdString();
    for (auto _ : state) {
        SF_INFO info = {};
        SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
        std::vector<double> samples(static_cast<std::size_t>(info.frames) *
                                    static_cast<std::size_t>(info.channels));
        benchmark::DoNotOptimize(sf_readf_double(file, samples.data(), info.frames));
        sf_close(file);
    }
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

} // namespace

BENCHMARK_CAPTURE(prepare, mono16, mono16)->Apply(durations);
BENCHMARK_CAPTURE(prepare, stereo24, stereo24)->Apply(durations);
BENCHMARK_CAPTURE(load, mono8, Format{8, 1})->Apply(durations);
BENCHMARK_CAPTURE(loadBySndfile, mono8, Format{8, 1})->Apply(durations);
BENCHMARK_CAPTURE(load, mono16, mono16)->Apply(durations);
BENCHMARK_CAPTURE(loadBySndfile, mono16, mono16)->Apply(durations);
BENCHMARK_CAPTURE(load, stereo24, stereo24)->Apply(durations);
BENCHMARK_CAPTURE(loadBySndfile, stereo24, stereo24)->Apply(durations);
BENCHMARK(transformByFftw)->Arg(1 << 18)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
