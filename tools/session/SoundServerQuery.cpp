// Asking the sound server by its own tools.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Sampling.h"
#include "tools/session/SoundAnswers.h"

#include <QDeadlineTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace {

constexpr int limitMs = 1500;

/// The tools use the user's language, also for numbers; JSON needs a decimal point.
QProcessEnvironment inEnglish() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    return environment;
}

/// Runs pactl; returns whether it succeeded.
bool ask(const char* question, QDeadlineTimer deadline, SoundAnswers& answers, QByteArray& answer) {
    QProcess process;
    process.setProcessEnvironment(inEnglish());
    process.start(QStringLiteral("pactl"), QString(question).split(u' '));
    process.closeWriteChannel();
    const bool isFinished = process.waitForFinished(int(deadline.remainingTime()));
    if (process.error() == QProcess::FailedToStart) {
        answers.problem = QStringLiteral("pactl is not installed");
        answers.remedy = QStringLiteral("Install pulseaudio-utils.");
    } else if (!isFinished) {
        process.kill();
        process.waitForFinished();
        answers.problem = QStringLiteral("the sound server does not answer");
        answers.remedy =
            QStringLiteral("Restart it: \"systemctl --user restart pipewire-pulse\" or "
                           "\"pulseaudio -k\".");
    } else if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        answers.problem = QStringLiteral("no sound server is running");
        answers.remedy = QStringLiteral("Start it: \"systemctl --user start pipewire-pulse\" or "
                                        "\"pulseaudio --start\".");
    }
    answer = process.readAllStandardOutput();
    return answers.problem.isEmpty();
}

/// Waits until pacat reports that its stream is connected; returns whether it is.
bool waitForStream(QProcess& pacat, QDeadlineTimer deadline) {
    QByteArray messages;
    while (pacat.state() != QProcess::NotRunning && !deadline.hasExpired()) {
        pacat.waitForReadyRead(int(deadline.remainingTime()));
        messages += pacat.readAllStandardError();
        if (messages.contains("Connected to device"))
            return true;
    }
    return false;
}

} // namespace

SoundAnswers askSoundServer() {
    SoundAnswers answers;
    const QDeadlineTimer deadline(limitMs);
    if (!ask("--format=json info", deadline, answers, answers.server) ||
        !ask("--format=json list", deadline, answers, answers.everything))
        return answers;
    const QString output = QJsonDocument::fromJson(answers.server)
                               .object()
                               .value(QLatin1String("default_sink_name"))
                               .toString();
    QProcess pacat;
    pacat.setProcessEnvironment(inEnglish());
    pacat.setReadChannel(QProcess::StandardError);
    // Without data on its standard input it plays nothing. Like the program, it names the device.
    const QString stream = QStringLiteral("--playback --verbose --raw --client-name=Pellion "
                                          "--rate=%1 --channels=1 --format=float32le")
                               .arg(playedRate);
    pacat.start(QStringLiteral("pacat"), stream.split(u' ') << "--device=" + output);
    SoundAnswers aboutStream;
    if (waitForStream(pacat, deadline) &&
        ask("--format=json list sink-inputs", deadline, aboutStream, answers.withStream))
        answers.streamProcess = pacat.processId();
    answers.isStreamLate = deadline.hasExpired();
    pacat.kill();
    pacat.waitForFinished();
    return answers;
}
