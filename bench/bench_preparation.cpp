// Preparing a target: the cost of each step, from the chosen file to the painted charts.
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Each iteration prepares a target twice in a new main window, with huge pages, and twice in
// another one without them; the steps of the first one with huge pages are timed one by one. Then
// Qt draws the same points in a window that has done nothing else. Counters are medians over the
// iterations: milliseconds, page faults, bytes; shares are those of the sums. Loading is compared
// with libsndfile's reading of the same file into doubles.
#include "app/MainWindow.h"

#include "Cost.h"
#include "DynArray.h"
#include "FFTReal.h"
#include "TargetFiles.h"
#include "base/AvxRegisters.h"
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
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <sndfile.h>
#include <sys/prctl.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <numeric>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

/// The contents of a prepared window's charts.
struct DrawnPoints {
    QVector<QPointF> waveform;
    QVector<QPointF> spectrum;
    double plottedMs;
    QVector<double> waveformRange; ///< Minimum and maximum.
    QVector<double> spectrumRange; ///< Minimum and maximum.
};

/// The window whose preparation is timed, step by step as prepareTarget() takes them.
class PreparedWindow : public testsupport::InspectedMainWindow {
public:
    PreparedWindow() {
        show();
        for (QWidget* viewport : viewports())
            viewport->installEventFilter(this);
        paintEverything();
        // Repaints caused by the window manager must not count as painting of the target's charts.
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
        constexpr int timeoutMs = 60000;
        const QDeadlineTimer deadline(timeoutMs);
        while (!unpainted.empty()) {
            if (deadline.hasExpired())
                qFatal("the charts are not painted");
            QApplication::processEvents();
        }
    }

    /// Copies, which are not shared with the charts.
    [[nodiscard]] DrawnPoints drawnPoints() const {
        DrawnPoints points{pointsWav, pointsFFT, axisXWav->max(), rangeWav, rangeFFT};
        points.waveform.detach();
        points.spectrum.detach();
        return points;
    }

    /// Draws by calling Qt only.
    Cost draw(const DrawnPoints& points) {
        return costOf([&] {
            clearUpperAvxHalves();
            seriesWav->replace(points.waveform);
            axisXWav->setRange(0, points.plottedMs);
            axisYWav->setRange(points.waveformRange[0], points.waveformRange[1]);
            clearUpperAvxHalves();
            seriesFFT->replace(points.spectrum);
            axisYFFT->setRange(points.spectrumRange[0], points.spectrumRange[1]);
            paintEverything();
        });
    }

private:
    [[nodiscard]] std::vector<QWidget*> viewports() const {
        return {chartViewWav->viewport(), chartViewFFT->viewport()};
    }

    std::set<QObject*> unpainted;
};

/// Returns a field of /proc/self/status, which is in KiB, in bytes.
double statusBytes(const QByteArray& field) {
    QFile file("/proc/self/status");
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no status of the process");
    for (const QByteArray& line : file.readAll().split('\n'))
        if (line.startsWith(field))
            return 1024 * line.simplified().split(' ').value(1).toDouble();
    return 0;
}

/// Resets the kernel's peak memory of the process.
void resetPeakMemory() {
    QFile file("/proc/self/clear_refs");
    if (!file.open(QIODevice::WriteOnly) || file.write("5") != 1)
        qFatal("the peak of memory cannot be set back");
}

/// Bytes of the buffers that exist at the same time while the spectrum is computed: the file's
/// bytes and samples, the target, the three vectors of bins, the transform's tables and buffer (20
/// bytes per value), its input and its output.
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

Cost sumOf(const std::vector<Cost>& costs) {
    return std::accumulate(costs.begin(), costs.end(), Cost());
}

// Parts of a finished preparation are repeated on the same data, in memory that is already mapped,
// so that none of them needs memory from the kernel.

/// Reads the file and converts it, timed separately.
void readAndConvert(const QString& cutPath, Cost& reading, Cost& conversion) {
    CWav wav;
    wav.LoadWav(cutPath.toStdString());
    reading = costOf([&] { wav.LoadWav(cutPath.toStdString()); });
    const bool isReadOnly = wav.samples.empty() && !wav.rawData.empty();
    // From here on the header declares the data that exist.
    wav.header.dataSize = static_cast<std::uint32_t>(wav.rawData.size());
    wav.numberOfSamples = wav.header.dataSize / (wav.header.bitsPerSample / 8U);
    wav.ConvertData();
    conversion = costOf([&] { wav.ConvertData(); });
    if (!isReadOnly || wav.samples.size() != wav.numberOfSamples)
        qFatal("reading and converting have not been separated");
}

/// The program's own part in drawing the vectors of a window, without the charts.
Cost pairAndFindRanges(const PreparedWindow& window) {
    // The window's points are shared with the charts and would be copied first.
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

/// Fills the spectrum from its transform. "library" is the time of a preparation in the C library:
/// the arctangents of the spectrum, and the cosines of the transform's tables.
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

/// The consecutive steps of one preparation.
struct Preparation {
    explicit Preparation(PreparedWindow& window) {
        loading = costOf([&] { window.genWav(); });
        charts = costOf([&] { window.displayWav(); });
        spectrum = costOf([&] { window.genFFT(); });
        charts = charts + costOf([&] { window.displayFFT(); });
        painting = costOf([&] { window.paintEverything(); });
    }

    [[nodiscard]] Cost whole() const { return loading + charts + spectrum + painting; }

    Cost loading;
    Cost charts;
    Cost spectrum;
    Cost painting;
};

/// Separates steps that the program does not separate, by repeating parts of them: "buffers",
/// "transform" and "chart update" are the remainders. "Own" is all except Qt's updating and
/// painting of charts. prepareTarget() also resets the texts and the trend, which is not timed.
void separate(const Preparation& preparation, PreparedWindow& window, const QString& cutPath,
              Steps& steps) {
    const Cost pairing = pairAndFindRanges(window);
    Cost reading;
    Cost conversion;
    readAndConvert(cutPath, reading, conversion);
    Cost filling;
    Cost library;
    fillSpectrumAgain(window, filling, library);
    steps["read"].push_back(reading);
    steps["convert"].push_back(conversion);
    steps["buffers"].push_back(preparation.loading - reading - conversion);
    steps["points, ranges"].push_back(pairing);
    steps["transform"].push_back(preparation.spectrum - filling);
    steps["amplitudes, phases"].push_back(filling);
    steps["chart update"].push_back(preparation.charts - pairing);
    steps["painting"].push_back(preparation.painting);
    steps["C library"].push_back(library);
    steps["own"].push_back(preparation.loading + pairing + preparation.spectrum);
}

struct Target {
    explicit Target(Format format, int milliseconds)
        : path(targetFile(format, milliseconds)), cutPath(cutTargetFile(format, milliseconds)) {}

    QString path;
    QString cutPath;
};

/// Prepares a target in a new window, twice. The memory of earlier windows is freed before,
/// so that the first preparation is like that of a new process.
DrawnPoints prepareTwice(const Target& target, bool hasHugePages, Steps& steps,
                         benchmark::State& state) {
    const std::string pages = hasHugePages ? "huge pages" : "small pages";
    prctl(PR_SET_THP_DISABLE, hasHugePages ? 0 : 1, 0, 0, 0);
    PreparedWindow window;
    window.choose(target.path);
    malloc_trim(0);
    resetPeakMemory();
    const double before = statusBytes("VmRSS:");
    const Preparation first(window);
    const double peak = statusBytes("VmHWM:") - before;
    steps[pages + ", first"].push_back(first.whole());
    steps[pages + ", second"].push_back(Preparation(window).whole());
    if (hasHugePages) {
        // The same in each iteration, except for some pages.
        state.counters["peak bytes"] = peak;
        state.counters["required bytes"] = requiredBytes(window);
        separate(first, window, target.cutPath, steps);
    }
    prctl(PR_SET_THP_DISABLE, 0, 0, 0, 0);
    return window.drawnPoints();
}

Cost drawAlone(const DrawnPoints& points) {
    PreparedWindow window;
    malloc_trim(0);
    return window.draw(points);
}

void prepare(benchmark::State& state, Format format) {
    const Target target(format, static_cast<int>(state.range(0)));
    Steps steps;
    bool hasHugePages = true;
    for ([[maybe_unused]] auto _ : state) {
        prepareTwice(target, hasHugePages, steps, state);
        steps["Qt alone"].push_back(drawAlone(prepareTwice(target, !hasHugePages, steps, state)));
        // The other one begins the next time.
        hasHugePages = !hasHugePages;
        state.SetIterationTime(steps["huge pages, first"].back().elapsed * 1e-3);
    }
    for (const auto& [name, costs] : steps) {
        state.counters[name] = medianOf(costs, &Cost::elapsed);
        state.counters[name + ": system"] = medianOf(costs, &Cost::system);
        state.counters[name + ": faults"] = medianOf(costs, &Cost::faults);
    }
    const Cost own = sumOf(steps["own"]);
    const double whole = sumOf(steps["huge pages, first"]).elapsed;
    state.counters["own share"] = own.elapsed / whole;
    state.counters["own code's share"] =
        (own.elapsed - own.system - sumOf(steps["C library"]).elapsed) / whole;
}

void readBySndfile(const std::string& path) {
    SF_INFO info = {};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    const auto count =
        static_cast<std::size_t>(info.frames) * static_cast<std::size_t>(info.channels);
    // A vector would write zeros first.
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
    state.counters["libsndfile"] = median(sndfiles);
    state.counters["ratio"] = median(ratios);
}

/// A benchmark of each length; long preparations take seconds, so that there are fewer of them.
template <typename Function> void add(const char* name, Function function, Format format) {
    struct Length {
        int milliseconds;
        int iterations;
    };
    for (const auto [milliseconds, iterations] :
         {Length{250, 11}, {5000, 11}, {60000, 5}, {600000, 3}})
        benchmark::RegisterBenchmark(name, function, format)
            ->Arg(milliseconds)
            ->Iterations(rounds(iterations))
            ->UseManualTime();
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    add("load/mono8", load, Format{8, 1});
    add("load/mono16", load, mono16);
    add("load/stereo24", load, stereo24);
    add("prepare/mono16", prepare, mono16);
    add("prepare/stereo24", prepare, stereo24);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
