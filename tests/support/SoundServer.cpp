// A separate sound server, for tests that kill, freeze or change it.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/SoundServer.h"

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTest>

#include <csignal>
#include <utility>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace testsupport {

namespace {

constexpr int serverTimeoutMs = 20000;

bool sendSignal(const QProcess& process, int signal) {
    return process.processId() > 0 && ::kill(static_cast<pid_t>(process.processId()), signal) == 0;
}

/// Connects to the server's command line; returns a negative number when there is none.
int connectedTo(const QByteArray& socketPath) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, socketPath.constData(), sizeof(address.sun_path));
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0)
        return descriptor;
    ::close(descriptor);
    return -1;
}

bool writeTo(int descriptor, const QByteArray& text) {
    return ::write(descriptor, text.constData(), size_t(text.size())) == text.size();
}

} // namespace

QStringList SoundServer::nullSink() {
    return {"module-null-sink", "sink_name=lab",    "rate=40000",
            "channels=1",       "format=float32le", "norewinds=1"};
}

SoundServer::~SoundServer() {
    kill();
}

QByteArray SoundServer::address() const {
    return "unix:" + pathOf("socket").toUtf8();
}

bool SoundServer::start() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"XDG_RUNTIME_DIR", "PULSE_RUNTIME_PATH", "PULSE_STATE_PATH"})
        environment.insert(name, folder.path());
    environment.remove("PULSE_SERVER");
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(pathOf("log"));
    // A server that was killed leaves its sockets.
    for (const char* socket : {"socket", "commands"})
        QFile::remove(pathOf(socket));
    process.start(
        "pulseaudio",
        options +
            QStringList{"-n", "--daemonize=no", "--exit-idle-time=-1", "--disallow-exit", "-L",
                        sink.join(u' '), "-L",
                        "module-native-protocol-unix auth-anonymous=1 socket=" + pathOf("socket"),
                        "-L", "module-cli-protocol-unix socket=" + pathOf("commands")});
    return QTest::qWaitFor([this] { return hasSink(); }, serverTimeoutMs);
}

void SoundServer::kill() {
    if (delayedThaw.processId() > 0)
        ::kill(-static_cast<pid_t>(delayedThaw.processId()), SIGKILL);
    delayedThaw.kill();
    delayedThaw.waitForFinished();
    process.kill();
    process.waitForFinished();
    if (commands >= 0)
        ::close(std::exchange(commands, -1));
}

bool SoundServer::removeSink() {
    return control({"unload-module", sink.constFirst()}) && !hasSink();
}

bool SoundServer::addSink() {
    return control(QStringList{"load-module"} + sink) && hasSink();
}

void SoundServer::freeze() {
    if (!sendSignal(process, SIGSTOP))
        qFatal("there is no sound server to freeze");
}

bool SoundServer::freezeAndRemoveSink() {
    // The server handles its newest connection first.
    commands = connectedTo(pathOf("commands").toUtf8());
    char welcome = 0;
    const bool isConnected = writeTo(commands, "hello\n") && ::read(commands, &welcome, 1) == 1;
    freeze();
    return isConnected && writeTo(commands, "unload-module " + sink.constFirst().toUtf8() + '\n');
}

void SoundServer::thaw() {
    sendSignal(process, SIGCONT);
}

void SoundServer::thawAfter(int milliseconds) {
    // A separate process group, so that it ends together with the command that it waits for.
    delayedThaw.start("setsid", {"sh", "-c",
                                 QStringLiteral("sleep %1; kill -CONT %2")
                                     .arg(milliseconds / 1000.0)
                                     .arg(process.processId())});
    delayedThaw.waitForStarted();
}

bool SoundServer::control(const QStringList& arguments) const {
    QProcess pactl;
    pactl.start("pactl", QStringList{"--server", address()} + arguments);
    return pactl.waitForFinished() && pactl.exitCode() == 0;
}

bool SoundServer::hasSink() const {
    QProcess pactl;
    pactl.start("pactl", {"--server", address(), "list", "short", "sinks"});
    return pactl.waitForFinished() && pactl.exitCode() == 0 &&
           pactl.readAllStandardOutput().contains("\tlab\t");
}

} // namespace testsupport
