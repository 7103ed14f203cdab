// Measures the pause between a response and its sound: measure_pause COUNT.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"
#include "reliability/RecordedCampaign.h"
#include "subject/SubjectWindow.h"
#include "support/FileBytes.h"
#include "support/HeardSounds.h"
#include "support/SessionDriver.h"
#include "support/WavBytes.h"

#include <QApplication>
#include <QCheckBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <cmath>
#include <cstdlib>

using testsupport::SessionDriver;
using testsupport::SoundRecorder;

namespace {

constexpr int soundSamples = 4000; // 100 ms.
constexpr double pauseMs = 350;
constexpr int presentationsPerSession = 20;
constexpr int firstFrequency = 100; // Hz, of a session; each of the others is 1 Hz higher.

struct MeasuredPause {
    bool isJournaled;
    double askedMs;       ///< The click.
    double startedMs = 0; ///< When the program reported the start to the listener's window.
    double heardMs = 0;   ///< When the first sample was due at the device.
};

/// Real sessions, by the widgets that a person clicks.
class MeasuredSessions {
public:
    MeasuredSessions() {
        QObject::connect(&window, &MainWindow::soundPlaying, [this](int index) {
            // Not for the target at the start of the next session.
            if (index == 1 && !presentations.isEmpty() && presentations.last().startedMs == 0)
                presentations.last().startedMs = SoundRecorder::nowMs();
        });
        window.show();
        testsupport::writeBytes(target,
                                testsupport::wavWithSamples({}, QVector<int>(soundSamples, 0)));
    }

    bool hold(bool isJournaled) {
        testsupport::find<QCheckBox>(window, "checkBoxSaveData")->setChecked(isJournaled);
        if (!session.begin(target, pauseMs) || !session.playTarget())
            return false;
        auto* const button =
            testsupport::find<QPushButton>(*session.listener(), "pushButtonPlaySinusoid");
        // Recorded before the window's own slots run, which are connected to clicked().
        QObject::connect(button, &QPushButton::released, [this, isJournaled] {
            presentations.append({isJournaled, SoundRecorder::nowMs()});
        });
        for (int i = 0; i < presentationsPerSession; ++i)
            if (!session.playSinusoid(firstFrequency + i))
                return false;
        if (isJournaled)
            session.finish(folder.filePath("results.txt"));
        else
            session.finishWithoutSaving();
        return session.dialogs.takeComplaints().isEmpty();
    }

    QVector<MeasuredPause> presentations;

private:
    QTemporaryDir folder;
    const QString target = folder.filePath("silence.wav"); // Only the sinusoids are heard.
    MainWindow window;
    SessionDriver session{window};
};

/// Finds the sinusoids; returns the difference between them and the recording.
QString findOnsets(const SoundRecorder& recording, QVector<MeasuredPause>& presentations) {
    QVector<QVector<float>> sinusoids;
    for (int i = 0; i < presentations.size(); ++i)
        sinusoids.append(
            testsupport::heardSinusoid(firstFrequency + i % presentationsPerSession, soundSamples));
    const testsupport::HeardSounds heard = testsupport::findSounds(recording.samples(), sinusoids);
    const double originMs = recording.timeOfMs(0);
    for (int i = 0; i < heard.starts.size(); ++i)
        presentations[i].heardMs =
            originMs + heard.starts[i] * 1000.0 / SoundRecorder::deviceRate();
    return heard.difference;
}

/// The value below which that fraction of the sorted values lies, interpolated between neighbours.
double quantile(const QVector<double>& sorted, double fraction) {
    const double position = fraction * (sorted.size() - 1);
    const int below = int(position);
    const int above = std::min(below + 1, sorted.size() - 1);
    return sorted[below] + (position - below) * (sorted[above] - sorted[below]);
}

void report(QTextStream& out, const QString& name, QVector<double> values) {
    std::sort(values.begin(), values.end());
    double mean = 0;
    for (const double value : values)
        mean += value / values.size();
    double squares = 0;
    for (const double value : values)
        squares += (value - mean) * (value - mean);
    const double deviation = std::sqrt(squares / std::max(values.size() - 1, 1));
    out << qSetFieldWidth(34) << Qt::left << name << qSetFieldWidth(9) << Qt::right
        << values.size();
    for (const double value : {quantile(values, 0.5), quantile(values, 0.05),
                               quantile(values, 0.95), deviation, values.first(), values.last()})
        out << QString::number(value, 'f', 2);
    out << qSetFieldWidth(0) << '\n';
}

void reportKind(QTextStream& out, const QVector<MeasuredPause>& presentations, bool isJournaled) {
    QVector<double> heard;
    QVector<double> started;
    QVector<double> chain;
    for (const MeasuredPause& presentation : presentations) {
        if (presentation.isJournaled != isJournaled)
            continue;
        heard.append(presentation.heardMs - presentation.askedMs - pauseMs);
        started.append(presentation.startedMs - presentation.askedMs - pauseMs);
        chain.append(presentation.heardMs - presentation.startedMs);
    }
    out << (isJournaled ? "with the journal" : "without a journal") << '\n';
    report(out, "  response to first sample, less D", heard);
    report(out, "  response to started, less D", started);
    report(out, "  started to first sample", chain);
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellion"));
    const int count = QApplication::arguments().value(1).toInt();
    RecordedCampaign campaign("measure_pause", count, 1);
    if (!campaign.hasBegun())
        return EXIT_FAILURE;
    QTextStream& out = campaign.out;
    MeasuredSessions sessions;
    // Both kinds in turn, so that other load on the machine affects them equally.
    for (int held = 0; held < count; held += presentationsPerSession)
        for (const bool isJournaled : {true, false})
            if (!sessions.hold(isJournaled)) {
                out << "a session went wrong\n";
                return EXIT_FAILURE;
            }
    if (!campaign.finishRecording())
        return EXIT_FAILURE;
    const QString difference = findOnsets(campaign.recording, sessions.presentations);
    if (!difference.isEmpty()) {
        out << difference << '\n';
        return EXIT_FAILURE;
    }
    out << "D is " << pauseMs << " ms. All times are in ms; columns: count, median, 5th and 95th "
        << "percentile, standard deviation, minimum, maximum.\n";
    reportKind(out, sessions.presentations, true);
    reportKind(out, sessions.presentations, false);
    out << "drift of the device's clock: " << campaign.recording.clockDriftMs() << " ms\n";
    return EXIT_SUCCESS;
}
