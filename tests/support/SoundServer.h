// A separate sound server, for tests that kill, freeze or change it.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <utility>

namespace testsupport {

/// A PulseAudio server with the virtual sound device "lab", in a folder of its own. It ends with
/// the object.
class SoundServer {
public:
    /// The module that makes the device, which has to be named "lab", and options of the server.
    explicit SoundServer(QStringList sinkModule = nullSink(), QStringList serverOptions = {})
        : sink(std::move(sinkModule)), options(std::move(serverOptions)) {}
    ~SoundServer();
    Q_DISABLE_COPY_MOVE(SoundServer)

    /// The value of PULSE_SERVER for programs that are to use this server. It stays the same when
    /// the server is restarted.
    QByteArray address() const;

    /// Starts the server and waits until it answers. Returns false when it does not.
    bool start();

    /// Ends the server at once, as a crash would.
    void kill();

    /// Removes or restores the sound device; returns whether that succeeded.
    bool removeSink();
    bool addSink();
    bool hasSink() const;

    /// Stops the server's execution (SIGSTOP), like an overloaded machine.
    void freeze();

    /// Stops it so that, when it continues, it first removes the sound device and then handles the
    /// requests that came meanwhile. Returns whether that succeeded.
    bool freezeAndRemoveSink();

    /// Runs pactl; returns whether it succeeded.
    bool control(const QStringList& arguments) const;

    /// Continues the server, now or after a delay, during which the calling thread may be blocked.
    void thaw();
    void thawAfter(int milliseconds);

private:
    static QStringList nullSink();
    QString pathOf(const char* fileName) const { return folder.filePath(fileName); }

    QStringList sink;
    QStringList options;

    // Not below TMPDIR: a server's address may hold no space and few more than 100 characters.
    QTemporaryDir folder{QStringLiteral("/tmp/pellion-server.XXXXXX")};
    QProcess process;
    QProcess delayedThaw;
    int commands = -1; ///< A connection to the server's command line, where one was needed.
};

} // namespace testsupport
