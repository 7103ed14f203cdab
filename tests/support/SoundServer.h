// A sound server of a test's own, for tests that do away with it.
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

    /// What PULSE_SERVER has to be for a program that is to use this server. It stays the same
    /// when the server is started again.
    QByteArray address() const;

    /// Starts the server and waits until it answers. Returns false when it does not.
    bool start();

    /// Ends the server at once, as a crash would.
    void kill();

    /// Takes the sound device away, or brings it back; returns whether that is done.
    bool removeSink();
    bool addSink();
    bool hasSink() const;

    /// Stops the server's execution, as a machine that is out of breath does.
    void freeze();

    /// Stops it in such a way that, when it goes on, the first it does is to take the sound device
    /// away, before it looks at what it was asked for meanwhile. Returns whether that is so.
    bool freezeAndRemoveSink();

    /// Has pactl do something; returns whether it did.
    bool control(const QStringList& arguments) const;

    /// Lets the server go on, now or after a while. The thread that calls has to do nothing for it.
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
