// A whole session that runs by itself, to show a newcomer the program.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo/Demonstration.h"

#include "app/MainWindow.h"
#include "app/Record.h"
#include "demo/NumberedPicture.h"
#include "demo/SimulatedListener.h"
#include "subject/SubjectWindow.h"
#include "support/HeardSounds.h"
#include "support/SessionDriver.h"

#include <QFile>
#include <QLineEdit>
#include <QPixmap>
#include <QProcess>
#include <QTextStream>

#include <cstring>

using testsupport::SessionDriver;

namespace {

constexpr double targetPitch = 440;     // Hz.
constexpr double targetDuration = 0.25; // Seconds.
constexpr double samplingRate = 40000;  // Hz.
const char* const targetName = "harmonic440.wav";

/// The controls of both windows in the order of the guide's tables.
QStringList mainControls() {
    return {"lineEditWavFilePath",    "lineEditWavFileName",    "lineEditSamplingRate",
            "lineEditSoundDuration",  "lineEditSilentInterval", "pushButtonPractice",
            "pushButtonExperiment",   "pushButtonGo",           "pushButtonQuit",
            "lineEditSubCode",        "checkBoxSaveData",       "spinBoxFileNumber",
            "lineEditOutputFilePath", "lineEditOutputFileName", "lineEditFrequencyMatched",
            "chartViewWav",           "chartViewFFT",           "chartViewTrend"};
}
QStringList listenerControls() {
    return {"pushButtonPlayTarget", "spinBoxFrequency", "sliderFrequency", "pushButtonPlaySinusoid",
            "pushButtonDone"};
}

/// In the folder in which the program's dialog opens.
QString targetPath() {
    return desktopFolder() + u'/' + QLatin1String(targetName);
}

void say(const QString& text) {
    QTextStream(stdout) << text << '\n' << Qt::flush;
}

bool fail(const QString& text) {
    say(QStringLiteral("FAILED: ") + text);
    return false;
}

/// Runs a program to its end and returns what it wrote, or nothing when it failed.
QByteArray outputOf(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    constexpr int timeoutMs = 30000;
    const bool hasSucceeded = process.waitForFinished(timeoutMs) && process.exitCode() == 0;
    return hasSucceeded && process.isReadable() ? process.readAllStandardOutput() : QByteArray();
}

} // namespace

Demonstration::Demonstration(const QString& folderPath) : folder(folderPath) {}

bool Demonstration::run() {
    if (!makeTarget())
        return false;
    if (!recorder.start())
        return fail(QStringLiteral("there is no sound device \"lab\" to record"));
    MainWindow window;
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        return fail(QStringLiteral("the main window does not appear"));
    say(QStringLiteral("The main window is open."));
    if (!savePicture(window, QStringLiteral("main-window-start.png")))
        return false;
    SessionDriver session(window);
    const bool isHeld = holdSession(window, session);
    const QStringList complaints = session.dialogs.takeComplaints();
    if (!isHeld || !complaints.isEmpty())
        return fail(QStringLiteral("the session went wrong: ") + complaints.join(u'\n'));
    return checkSound();
}

bool Demonstration::makeTarget() {
    const QString path = targetPath();
    const QStringList format = QStringLiteral("-D -r 40000 -c 3 -n -b 16").split(u' ');
    const QStringList sound = QStringLiteral("synth %1 sine %2 sine %3 sine %4 "
                                             "remix 1v0.3,2v0.2,3v0.1 fade h 0.02 %1 0.02")
                                  .arg(targetDuration)
                                  .arg(targetPitch)
                                  .arg(2 * targetPitch)
                                  .arg(3 * targetPitch)
                                  .split(u' ');
    outputOf(QStringLiteral("sox"), format + QStringList(path) + sound);
    const QByteArray floats = outputOf(QStringLiteral("sox"), {path, "-t", "f32", "-"});
    targetSamples.resize(floats.size() / int(sizeof(float)));
    std::memcpy(targetSamples.data(), floats.constData(), std::size_t(floats.size()));
    if (targetSamples.size() != static_cast<int>(targetDuration * samplingRate))
        return fail(QStringLiteral("sox did not make the target"));
    say(QStringLiteral("sox made a target: %1 Hz with two harmonics, %2 s.")
            .arg(targetPitch)
            .arg(targetDuration));
    return true;
}

bool Demonstration::holdSession(MainWindow& window, SessionDriver& session) {
    say(QStringLiteral("Experimenter: \"Practice\", and chooses the target."));
    session.prepare(SessionDriver::Session::Practice, targetPath());
    say(QStringLiteral("Experimenter: \"Go\"."));
    if (session.go() == nullptr)
        return fail(QStringLiteral("the listener's window does not open"));
    if (!savePicture(*session.listener(), QStringLiteral("subject-window-start.png")))
        return false;
    say(QStringLiteral("Listener: \"I am ready\"."));
    session.beReady();
    if (!matchPitch(session))
        return fail(QStringLiteral("a sound did not start or end"));
    if (!savePicture(*session.listener(), QStringLiteral("subject-window.png")) ||
        !saveNumberedPicture(*session.listener(), listenerControls(),
                             QStringLiteral("subject-window-controls.png")))
        return false;
    const QString resultsName =
        testsupport::find<QLineEdit>(window, "lineEditOutputFileName")->text();
    say(QStringLiteral("Listener: \"Done\". Experimenter: saves %1.").arg(resultsName));
    session.finish(pathOf(resultsName));
    return savePicture(window, QStringLiteral("main-window.png")) &&
           saveNumberedPicture(window, mainControls(),
                               QStringLiteral("main-window-controls.png")) &&
           checkResults(resultsName);
}

bool Demonstration::matchPitch(SessionDriver& session) {
    requests = requestsToMatch(targetPitch);
    for (const int frequency : requests) {
        say(QStringLiteral("Listener: \"Play target\", then \"Play sinusoid\" at %1 Hz.")
                .arg(frequency));
        if (!session.playTarget() || !session.playSinusoid(frequency))
            return false;
        expected.append(
            {targetSamples, testsupport::heardSinusoid(frequency, targetSamples.size())});
    }
    return true;
}

bool Demonstration::savePicture(QWidget& window, const QString& fileName) {
    window.activateWindow();
    return window.grab().save(pathOf(fileName)) ||
           fail(QStringLiteral("cannot write ") + pathOf(fileName));
}

bool Demonstration::saveNumberedPicture(QWidget& window, const QStringList& controls,
                                        const QString& fileName) {
    return numberedPicture(window, controls).save(pathOf(fileName)) ||
           fail(QStringLiteral("cannot write ") + pathOf(fileName));
}

bool Demonstration::checkResults(const QString& fileName) {
    QByteArray lines = "filename\tnTrials\tfrequency matched (Hz)\r\n";
    for (int i = 0; i < requests.size(); ++i)
        lines += QByteArray(targetName) + '\t' + QByteArray::number(i + 1) + '\t' +
                 QByteArray::number(requests[i]) + "\r\n";
    QFile file(pathOf(fileName));
    if (!file.open(QIODevice::ReadOnly) || file.readAll() != lines)
        return fail(QStringLiteral("the results file does not hold the listener's requests"));
    say(QStringLiteral("The results file holds the %1 requests.").arg(requests.size()));
    return true;
}

bool Demonstration::checkSound() {
    if (!recorder.waitForSilence())
        return fail(QStringLiteral("the sound device does not fall silent"));
    const QVector<float> recording = recorder.stop();
    QFile raw(pathOf(QStringLiteral("heard.f32")));
    if (!raw.open(QIODevice::WriteOnly))
        return fail(QStringLiteral("cannot write ") + raw.fileName());
    raw.write(reinterpret_cast<const char*>(recording.constData()),
              recording.size() * qint64(sizeof(float)));
    raw.close();
    // Unlike sox, ffmpeg keeps the floats as they are.
    outputOf(
        QStringLiteral("ffmpeg"),
        QStringLiteral("-loglevel error -y -f f32le -ar 40000 -ac 1 -i").split(u' ') +
            QStringList{raw.fileName(), "-c:a", "pcm_f32le", pathOf(QStringLiteral("heard.wav"))});
    raw.remove();
    if (!folder.exists(QStringLiteral("heard.wav")))
        return fail(QStringLiteral("ffmpeg did not write heard.wav"));
    const testsupport::HeardSounds heard = testsupport::findSounds(recording, expected);
    if (!heard.difference.isEmpty())
        return fail(QStringLiteral("what the sound device received is not what was played: ") +
                    heard.difference);
    say(QStringLiteral("The sound device received all %1 sounds, equal in every sample.")
            .arg(expected.size()));
    return true;
}
