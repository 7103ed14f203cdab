// Records what the sound server's device receives.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QString>
#include <QVector>

namespace testsupport {

/// Records the virtual sound device "lab": mono, 40000 Hz, 32-bit floats, sample for sample.
class SoundRecorder {
public:
    SoundRecorder() = default;
    ~SoundRecorder();
    SoundRecorder(const SoundRecorder&) = delete;
    SoundRecorder(SoundRecorder&&) = delete;
    SoundRecorder& operator=(const SoundRecorder&) = delete;
    SoundRecorder& operator=(SoundRecorder&&) = delete;

    /// Starts to record and waits, without spinning the event loop, until samples arrive. Returns
    /// false when no recorder or no device is there.
    bool start();

    /// Returns everything received so far.
    QVector<float> samples();

    /// Waits, with the event loop running, until the given stretch of silence has been received
    /// from now on, so that every sound that has ended is in samples(). Returns false after ten
    /// seconds without one.
    bool waitForSilence(int milliseconds = 300);

    /// Stops recording and returns everything received.
    QVector<float> stop();

    static constexpr int samplingRate = 40000; ///< Hz.

private:
    void collect();

    QProcess process;
    QByteArray bytes;
};

} // namespace testsupport
