// The environment of each test of the windows, which reports everything unexpected.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/DialogDriver.h"
#include "support/HeardSounds.h"
#include "support/InspectedWindows.h"
#include "support/LogLines.h"
#include "support/SessionDriver.h"
#include "support/SoundRecorder.h"
#include "support/StreamCapture.h"
#include "support/WavBytes.h"

#include <QTemporaryDir>

#include <iostream>
#include <memory>
#include <optional>

namespace testsupport {

/// The log, standard error, the dialogs and a folder, fresh for each test function; the main
/// window, its session and a recorder are made where a test asks for them.
class Fixture {
public:
    using Session = SessionDriver::Session;

    Fixture();
    ~Fixture();
    Q_DISABLE_COPY_MOVE(Fixture)

    /// The main window, hidden. Its journals go into a folder of their own.
    InspectedMainWindow& window();

    /// The experimenter and the listener, with the main window on the screen.
    SessionDriver& session();

    /// Destroys the main window and the objects that it has left to deleteLater().
    void destroyWindow();

    /// Records the sound device from here on, or from the first use of the recorder.
    void record() { recorder(); }
    SoundRecorder& recorder();

    QString pathOf(const QString& name) const { return folder.filePath(name); }

    /// Writes a file, or a WAV file of these samples, into the folder; returns its path.
    QString write(const QString& name, const QByteArray& bytes) const;
    QString write(const QString& name, const QVector<int>& codes,
                  const WavFormat& format = {}) const;

    /// Writes a mono tone of 16 bits at 40000 Hz; returns its path.
    QString writeTone(const QString& name = QStringLiteral("tone.wav"), int milliseconds = 50,
                      int frequency = 440) const;

    /// Prepares a session with a target. Each sound starts 10 ms after its request, and the results
    /// are proposed in the folder.
    void prepare(const QString& targetPath, Session kind = Session::Practice);

    /// "Go" and "I am ready"; returns whether the listener's window came.
    bool start();

    /// Plays a sound to its end and records what should be heard; returns whether it was played.
    bool playTarget();
    bool playSinusoid(int frequency);

    /// What should be heard of the prepared target.
    QVector<float> expectedTarget() const;

    /// Records that the device should receive these samples.
    void expectSound(const QVector<float>& samples) { expectedSounds.append(samples); }

    /// Waits for silence and compares what was recorded with the sounds expected.
    HeardSounds heard();

    /// The difference between recorded and expected sounds; empty when every sample is equal.
    QString differenceHeard() { return heard().difference; }

    /// Ends the session at the listener's window and saves under the name that is proposed;
    /// returns the file's path.
    QString finish();

    /// The same, with the dialog for the results cancelled.
    void finishCancelled();

    /// Cancels the dialog for the results that comes next, and closes the warning that follows.
    void cancelSaving();
    void closeWarningOfNoFile();

    QString textOf(const char* lineEditName);
    int fileNumber();

    /// Paths of the journals that are there.
    static QStringList journals();

    /// Returns and clears the lines on standard error so far.
    QStringList takePrinted();

    /// Destroys the window; returns what went wrong and was not expected: dialogs, lines on
    /// standard error, warnings on the log, and windows that are still open.
    QStringList end();

    QTemporaryDir folder;
    LogLines log;
    DialogDriver dialogs;
    QVector<int> soundSignals; ///< The arguments of soundPlaying so far.

private:
    void closeLeftoverWindows(QStringList& complaints);

    QByteArray earlierDataHome = qgetenv("XDG_DATA_HOME");
    StreamCapture printed{std::cerr};
    std::unique_ptr<InspectedMainWindow> mainWindow;
    std::optional<SessionDriver> sessionDriver;
    std::optional<SoundRecorder> soundRecorder;
    QString target; ///< Path of the one prepared last.
    QVector<QVector<float>> expectedSounds;
};

/// Gives each test function a new fixture, and fails it for everything unexpected.
class FixtureTest : public QObject {
    Q_OBJECT

protected:
    /// Called before each test function, once the fixture is there.
    virtual void setUp() {}

    std::unique_ptr<Fixture> fixture;

private slots:
    // Final, so that no test class can replace them.
    virtual void init() final;
    virtual void cleanup() final;
};

} // namespace testsupport
