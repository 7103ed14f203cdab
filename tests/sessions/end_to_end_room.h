// The room in which whole sessions are held and tested.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/MainWindow.h"
#include "support/LogLines.h"
#include "support/SessionDriver.h"
#include "support/SoundRecorder.h"
#include "support/WavBytes.h"

#include <QTemporaryDir>

#include <memory>

/// A target file and what the sound device should receive of it.
struct Target {
    QString path;
    QVector<float> played;
};

/// The main window on the screen, a folder for targets and results, somebody who listens in at
/// the sound device, and a note of every sound that should arrive there.
class SessionRoom {
public:
    using Session = testsupport::SessionDriver::Session;

    SessionRoom();

    /// Shows the window and starts the recorder; returns whether both succeeded.
    bool open();

    /// Makes a target: by sox or ffmpeg, called with the given arguments and the path of the file
    /// behind them, or from its bytes.
    Target targetBySox(const QString& name, const testsupport::WavFormat& format,
                       const QString& arguments) const;
    Target targetByFfmpeg(const QString& name, const testsupport::WavFormat& format,
                          const QString& arguments) const;
    Target targetOfBytes(const QString& name, const testsupport::WavFormat& format,
                         const QByteArray& bytes) const;

    /// A mono 16-bit target of a sinusoid at 40000 Hz, made by sox.
    Target tone(const QString& name, int milliseconds = 50, int frequency = 440) const;

    /// Prepares a session and shortens the silence before its sounds. The results will be
    /// proposed in this room's folder.
    void prepare(Session kind, const Target& chosen);

    /// "Go", and "I am ready" in the window that opens; returns whether it did.
    bool start();

    bool playTarget();
    bool playSinusoid(int frequency);

    /// "Done", with the results saved as proposed. Returns the file's path.
    QString finish();

    /// Notes that the device should receive these samples.
    void expectSound(const QVector<float>& samples) { expectedSounds.append(samples); }

    /// Waits for silence and stops the recorder. Returns what the device received otherwise than
    /// expected; empty when everything is as it should be, to the last bit.
    QString differenceHeard();

    /// Waits for silence and returns everything that the device received.
    QVector<float> heard();

    QString textOf(const char* fieldName);
    bool isEnabled(const char* buttonName);
    int fileNumber();
    QString pathOf(const QString& name) const { return folder.filePath(name); }

    /// Tells that the log is going to have this warning, once.
    void expectWarning(const QString& text) { expectedWarnings.append(text); }

    /// What went wrong with dialogs, and the warnings on the log that were not expected.
    QStringList complaints();

    QTemporaryDir folder;
    testsupport::LogLines log;
    testsupport::SoundRecorder recorder;
    MainWindow window;
    testsupport::SessionDriver driver;
    Target target; ///< The one prepared last.

private:
    QVector<QVector<float>> expectedSounds;
    QStringList expectedWarnings;
};

/// The results file of a session.
QByteArray resultsOf(const QString& targetName, const QVector<int>& frequencies);

/// A fresh room for each test, and a look at its complaints afterwards.
class RoomTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

protected:
    std::unique_ptr<SessionRoom> room;
};
