// Takes the program's start step by step and reports how long each step takes.
// SPDX-License-Identifier: GPL-3.0-or-later
//
//     divide_start NANOSECONDS [files]
//
// NANOSECONDS is what the system's monotonic clock said when this process was launched; with
// "files" the icon is taken as files instead of pictures. Prints one JSON object of milliseconds.
// The steps are those of the program's main() in its order, but for two that the window's
// constructor would take: fonts and sound device are looked up before, and the second time costs
// next to nothing. The last step builds the charts once more with everything loaded.
#include "app/MainWindow.h"

#include "session/ResponseJournal.h"

#include <QApplication>
#include <QAudioDeviceInfo>
#include <QAudioFormat>
#include <QDeadlineTimer>
#include <QDir>
#include <QFontMetrics>
#include <QIcon>
#include <QPixmap>
#include <QtCharts/QChartView>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void fail(const char* message) {
    std::fprintf(stderr, "divide_start: %s\n", message);
    std::exit(1);
}

/// The window that reports when its charts have been painted.
class WatchedWindow : public MainWindow {
public:
    WatchedWindow() {
        for (QtCharts::QChartView* view : {chartViewWav, chartViewFFT, chartViewTrend}) {
            view->viewport()->installEventFilter(this);
            unpainted.insert(view->viewport());
        }
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            unpainted.erase(watched);
        return MainWindow::eventFilter(watched, event);
    }

    bool isPainted() const { return unpainted.empty(); }

    /// Builds the three charts a second time; the first ones are lost. Nothing may follow but the
    /// end of the process.
    void buildChartsOnceMore() {
        seriesWav = seriesFFT = seriesTrend = nullptr;
        axisXWav = axisYWav = axisXFFT = axisYFFT = axisXTrend = axisYTrend = nullptr;
        chartWav = chartFFT = chartTrend = nullptr;
        chartViewWav = chartViewFFT = chartViewTrend = nullptr;
        displayEmptyWav();
        displayEmptyFFT();
        displayEmptyTrend();
    }

private:
    std::set<QObject*> unpainted;
};

/// What has taken how many milliseconds, each step from the end of the one before.
class Steps {
public:
    explicit Steps(Clock::time_point launch) : last(launch) {}

    void end(const char* name) {
        const Clock::time_point now = Clock::now();
        taken.emplace_back(name, std::chrono::duration<double, std::milli>(now - last).count());
        last = Clock::now();
    }

    void print() const {
        const char* separator = "{";
        for (const auto& [name, milliseconds] : taken) {
            std::printf("%s\"%s\": %.3f", separator, name.c_str(), milliseconds);
            separator = ", ";
        }
        std::printf("}\n");
    }

private:
    Clock::time_point last;
    std::vector<std::pair<std::string, double>> taken;
};

QFileInfoList iconFiles() {
    const QFileInfoList files = QDir(QStringLiteral(":/icons")).entryInfoList();
    if (files.isEmpty())
        fail("no icon");
    return files;
}

QIcon iconOfPictures() {
    QIcon icon;
    for (const QFileInfo& file : iconFiles())
        icon.addPixmap(QPixmap(file.filePath(), "PNG"));
    return icon;
}

QIcon iconOfFiles() {
    QIcon icon;
    for (const QFileInfo& file : iconFiles())
        icon.addFile(file.filePath());
    // Files are only read when they are wanted; the window manager is given all of them.
    for (const QSize& size : icon.availableSizes())
        if (icon.pixmap(size).isNull())
            fail("no icon");
    return icon;
}

void lookUpSoundDevice() {
    QAudioFormat format;
    format.setSampleRate(40000);
    format.setChannelCount(1);
    format.setSampleSize(32);
    format.setCodec(QStringLiteral("audio/pcm"));
    format.setSampleType(QAudioFormat::Float);
    if (!QAudioDeviceInfo::defaultOutputDevice().isFormatSupported(format))
        fail("no sound device");
}

void waitForPainting(const WatchedWindow& window) {
    constexpr int mostMilliseconds = 30000;
    const QDeadlineTimer deadline(mostMilliseconds);
    while (!window.isPainted()) {
        if (deadline.hasExpired())
            fail("the charts are not painted");
        QApplication::processEvents();
    }
}

/// Ends the process with the last step.
[[noreturn]] void takeSteps(Steps& steps, bool isIconOfFiles, int argc, char** argv) {
    steps.end("libraries");
    // What the program sets before anything else.
    qputenv("QT_XCB_GL_INTEGRATION", "none");
    const QApplication application(argc, argv);
    steps.end("screen");
    QApplication::setApplicationName(QStringLiteral("pellion"));
    QApplication::setWindowIcon(isIconOfFiles ? iconOfFiles() : iconOfPictures());
    steps.end("icon");
    reportLeftoverJournals(journalFolder());
    steps.end("journals");
    if (QFontMetrics(QApplication::font()).horizontalAdvance(u'0') <= 0)
        fail("no font");
    steps.end("fonts");
    lookUpSoundDevice();
    steps.end("sound device");
    WatchedWindow window;
    steps.end("window");
    window.show();
    waitForPainting(window);
    steps.end("painting");
    window.buildChartsOnceMore();
    steps.end("charts once more");
    steps.print();
    std::fflush(stdout);
    std::_Exit(0);
}

} // namespace

int main(int argc, char** argv) {
    // The steady clock is the system's monotonic one.
    const bool isIconOfFiles = argc == 3 && std::string(argv[2]) == "files";
    if (argc != 2 && !isIconOfFiles)
        fail("usage: divide_start NANOSECONDS [files]");
    const Clock::time_point launch{std::chrono::nanoseconds(std::strtoll(argv[1], nullptr, 10))};
    Steps steps(launch);
    takeSteps(steps, isIconOfFiles, argc, argv);
}
