// Repeats the program's start step by step and reports the duration of each step.
// SPDX-License-Identifier: GPL-3.0-or-later
//
//     divide_start NANOSECONDS
//
// NANOSECONDS is the time of the system's monotonic clock when this process was launched. Prints
// one JSON object of milliseconds. The steps are those of the program's main() in the same order,
// without version, desktop file name and some environment variables. Fonts and sound device are
// looked up before the window, whose constructor then finds them at almost no cost.
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
#include <cstdio>
#include <cstdlib>
#include <set>
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

private:
    std::set<QObject*> unpainted;
};

/// The steps and their milliseconds, each from the end of the step before.
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

QIcon iconOfPictures() {
    QIcon icon;
    for (const QFileInfo& file : QDir(QStringLiteral(":/icons")).entryInfoList())
        icon.addPixmap(QPixmap(file.filePath(), "PNG"));
    if (icon.isNull())
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
    constexpr int timeoutMs = 30000;
    const QDeadlineTimer deadline(timeoutMs);
    while (!window.isPainted()) {
        if (deadline.hasExpired())
            fail("the charts are not painted");
        QApplication::processEvents();
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        fail("usage: divide_start NANOSECONDS");
    // The steady clock is the system's monotonic one.
    Steps steps(Clock::time_point(std::chrono::nanoseconds(std::strtoll(argv[1], nullptr, 10))));
    steps.end("libraries");
    // Of the environment variables that the program sets first, the one that matters to the time.
    qputenv("QT_XCB_GL_INTEGRATION", "none");
    const QApplication application(argc, argv);
    steps.end("screen");
    QApplication::setApplicationName(QStringLiteral("pellion"));
    QApplication::setWindowIcon(iconOfPictures());
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
    steps.print();
    return 0;
}
