// Asking the sound server by its own tools.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Numbers.h"
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
bool ask(const QStringList& question, QDeadlineTimer deadline, SoundAnswers& answers,
         QByteArray& answer) {
    QProcess process;
    process.setProcessEnvironment(inEnglish());
    process.start(QStringLiteral("pactl"), QStringList{QStringLiteral("--format=json")} + question);
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
    if (!ask({QStringLiteral("info")}, deadline, answers, answers.server) ||
        !ask({QStringLiteral("list")}, deadline, answers, answers.everything))
        return answers;
    const QString output = QJsonDocument::fromJson(answers.server)
                               .object()
                               .value(QLatin1String("default_sink_name"))
                               .toString();
    QProcess pacat;
    pacat.setProcessEnvironment(inEnglish());
    pacat.setReadChannel(QProcess::StandardError);
    // Without data on its standard input it plays nothing. Like the program, it names the device.
    pacat.start(QStringLiteral("pacat"),
                {QStringLiteral("--playback"), QStringLiteral("--verbose"), QStringLiteral("--raw"),
                 QStringLiteral("--device=") + output, QStringLiteral("--client-name=Pellion"),
                 QStringLiteral("--rate=%1").arg(playedRate), QStringLiteral("--channels=1"),
                 QStringLiteral("--format=float32le")});
    SoundAnswers aboutStream;
    if (waitForStream(pacat, deadline) &&
        ask({QStringLiteral("list"), QStringLiteral("sink-inputs")}, deadline, aboutStream,
            answers.withStream))
        answers.streamProcess = pacat.processId();
    answers.isStreamLate = deadline.hasExpired();
    pacat.kill();
    pacat.waitForFinished();
    return answers;
}
