// A session of very many responses, and the cost of each.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/LongSession.h"

#include "session/ResultsFile.h"
#include "sound/PlayedSound.h"
#include "subject/ResponseCode.h"
#include "support/FileBytes.h"
#include "support/WavBytes.h"

#include <QPushButton>

#include <QtCharts/QChart>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>

#include <ctime>

namespace {

const char* const shortTarget = "target.wav";

double msOf(const QElapsedTimer& clock) {
    return double(clock.nsecsElapsed()) / TimedApplication::nanosecondsInMillisecond;
}

/// Time of the processor that the calling thread has taken so far.
double processorMs() {
    timespec taken{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &taken);
    constexpr double millisecondsInSecond = 1000;
    return double(taken.tv_sec) * millisecondsInSecond +
           double(taken.tv_nsec) / TimedApplication::nanosecondsInMillisecond;
}

} // namespace

bool DetachedWindow::prepare(const QString& folder, testsupport::DialogDriver& dialogs) {
    constexpr int quarterOfASecond = 10000;
    const QString target = folder + "/quarter.wav";
    if (!testsupport::writeSteadyTarget(target, quarterOfASecond))
        return false;
    dialogs.chooseTarget(target);
    on_pushButtonPractice_clicked();
    chartTrend->removeSeries(seriesTrend);
    chartTrend->removeAxis(axisXTrend);
    chartTrend->removeAxis(axisYTrend);
    return data.nSamples == quarterOfASecond && dialogs.takeComplaints().isEmpty();
}

double DetachedWindow::respond(int frequency) {
    const double beforeAnsweringMs = processorMs();
    updateMainwindow(PlaySinusoid, frequency);
    const double answeringMs = processorMs() - beforeAnsweringMs;
    cancelPresentation();
    // Like playOneSound() after the pause, without the output.
    const double beforePlayingMs = processorMs();
    updateFrequencyMatched();
    ++data.nResponses;
    const QByteArray bytes = soundBytes(sinusoidSamples, data.nSamples);
    const double playingMs = processorMs() - beforePlayingMs;
    if (bytes.isEmpty())
        qFatal("there is nothing to play");
    return answeringMs + playingMs;
}

bool LongSession::begin() {
    window.show();
    return detached.prepare(folder.path(), session.dialogs) && beginNext();
}

bool LongSession::beginNext() {
    frequencies.clear();
    const QString target = folder.filePath(shortTarget);
    if (!testsupport::writeSteadyTarget(target))
        return false;
    constexpr double pauseMs = 10;
    if (!session.begin(target, pauseMs))
        return false;
    SubjectWindow* const listener = session.listener();
    // Recorded before and after the window's own slots run, which are connected to clicked().
    QObject::connect(testsupport::find<QPushButton>(*listener, "pushButtonPlaySinusoid"),
                     &QPushButton::released, [this] { click.start(); });
    QObject::connect(listener, &SubjectWindow::subjectResponded, [this](int response) {
        if (response == PlaySinusoid)
            costs.last().click = msOf(click);
    });
    journal.begin("endurance.txt", QDateTime::currentDateTime());
    return session.playTarget();
}

bool LongSession::respond() {
    constexpr int minimumHz = 10;
    constexpr int stride = 613; // So that every frequency occurs before one repeats.
    constexpr int count = 991;
    const int frequency = minimumHz + frequencies.size() * stride % count;
    frequencies.append(frequency);
    costs.append(ResponseCost());
    application.forgetEvents();
    if (!session.playSinusoid(frequency))
        return false;
    ResponseCost& cost = costs.last();
    cost.busy = application.busyMs();
    cost.longest = application.longestMs();
    cost.own = detached.respond(frequency);
    QElapsedTimer clock;
    clock.start();
    journal.record(shortTarget, frequencies);
    cost.journal = msOf(clock);
    return true;
}

bool LongSession::finish() {
    const QString results = folder.filePath("results.txt");
    journal.discard(results);
    session.finish(results);
    return testsupport::readBytes(results) == resultsText(shortTarget, frequencies).toLatin1() &&
           session.dialogs.takeComplaints().isEmpty();
}
