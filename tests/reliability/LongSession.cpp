// A session of very many responses, and what each of them costs.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/LongSession.h"

#include "session/ResultsText.h"
#include "sound/SoundBytes.h"
#include "subject/ResponseCode.h"
#include "support/FileBytes.h"
#include "support/WavBytes.h"

#include <QLineEdit>
#include <QPushButton>

#include <QtCharts/QChart>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>

namespace {

const char* const shortTarget = "target.wav";

double msOf(const QElapsedTimer& clock) {
    return double(clock.nsecsElapsed()) / TimedApplication::nanosecondsInMillisecond;
}

bool writeTarget(const QString& path, int samples) {
    return testsupport::writeBytes(path,
                                   testsupport::wavWithSamples({}, QVector<int>(samples, 12345)));
}

} // namespace

bool DetachedWindow::prepare(const QString& folder, testsupport::DialogDriver& dialogs) {
    constexpr int quarterOfASecond = 10000;
    const QString target = folder + "/quarter.wav";
    if (!writeTarget(target, quarterOfASecond))
        return false;
    dialogs.chooseTarget(target);
    on_pushButtonPractice_clicked();
    chartTrend->removeSeries(seriesTrend);
    chartTrend->removeAxis(axisXTrend);
    chartTrend->removeAxis(axisYTrend);
    return data.nSamples == quarterOfASecond && dialogs.takeComplaints().isEmpty();
}

double DetachedWindow::respond(int frequency) {
    QElapsedTimer clock;
    clock.start();
    updateMainwindow(PlaySinusoid, frequency);
    const double answeringMs = msOf(clock);
    cancelPresentation();
    // As playOneSound() does once the pause is over, but for the output.
    clock.start();
    updateFrequencyMatched();
    ++data.nResponses;
    const QByteArray bytes = soundBytes(sinusoidSamples, data.nSamples);
    const double playingMs = msOf(clock);
    if (bytes.isEmpty())
        qFatal("there is nothing to play");
    return answeringMs + playingMs;
}

bool LongSession::begin() {
    constexpr int samples = 200; // 5 ms.
    const QString target = folder.filePath(shortTarget);
    if (!detached.prepare(folder.path(), session.dialogs) || !writeTarget(target, samples))
        return false;
    window.show();
    session.prepare(testsupport::SessionDriver::Session::Practice, target);
    testsupport::find<QLineEdit>(window, "lineEditSilentInterval")->setText("5");
    SubjectWindow* const listener = session.go();
    if (listener == nullptr)
        return false;
    // Noted before the window's own slots run, which are connected to clicked(), and after them.
    QObject::connect(testsupport::find<QPushButton>(*listener, "pushButtonPlaySinusoid"),
                     &QPushButton::released, [this] { click.start(); });
    QObject::connect(listener, &SubjectWindow::subjectResponded, [this](int response) {
        if (response == PlaySinusoid)
            costs.last().click = msOf(click);
    });
    session.beReady();
    journal.begin("endurance.txt", QDateTime::currentDateTime());
    return session.playTarget();
}

bool LongSession::respond() {
    constexpr int lowest = 10;
    constexpr int stride = 613; // So that each frequency comes before one comes again.
    constexpr int count = 991;
    const int frequency = lowest + frequencies.size() * stride % count;
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
    journal.discard();
    const QString results = folder.filePath("results.txt");
    session.finish(results);
    return testsupport::readBytes(results) == resultsText(shortTarget, frequencies).toLatin1() &&
           session.dialogs.takeComplaints().isEmpty();
}
