// Records what the sound server's device receives.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVector>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <sys/types.h>

namespace testsupport {

/// Records the virtual sound device "lab", one channel of 32-bit floats, sample for sample, in
/// a thread of its own, which notes when each piece arrives, whatever the event loop is doing.
///
/// What records is the command that scripts/virtual-desk puts into the environment (DESK_RECORDER):
/// the recorder that disturbs its sound server the least.
class SoundRecorder {
public:
    using Clock = std::chrono::steady_clock;

    /// The present, in ms of `Clock`.
    static double nowMs();

    /// Samples per second of the device (Hz): 40000, unless the virtual desk has another one.
    static int deviceRate();

    SoundRecorder() = default;
    ~SoundRecorder();
    Q_DISABLE_COPY_MOVE(SoundRecorder)

    /// Starts a new recording and waits, without spinning the event loop, until samples arrive;
    /// returns false when none come. A device that is suspended while nothing plays gives none
    /// until then: it is not waited for.
    bool start();

    /// Returns everything received so far.
    QVector<float> samples() const;

    /// Waits, with the event loop running, until as much silence has been received from now on, so
    /// that every sound that has ended is in samples(). Returns false after ten seconds without it.
    /// A suspended device is silent once it has given nothing for as long.
    bool waitForSilence(int milliseconds = 300) const;

    /// Stops recording and returns everything received.
    QVector<float> stop();

    /// When a sample was due at the device, in ms of `Clock`. The device's clock is taken from the
    /// pieces that arrived soonest after they were due; those came later by a constant that cannot
    /// be measured from here, and which is thus part of every time. Not for a device that was
    /// suspended or missed cycles meanwhile, and not before samples have arrived.
    double timeOfMs(int sample) const;

    /// By how much the device's clock, as taken from the first and the second half of the
    /// recording, differs (ms): next to 0 when the times can be trusted.
    double clockDriftMs() const;

private:
    struct Piece {
        double arrivalMs;
        int samplesSoFar;
    };

    void receive(int descriptor);
    void append(const char* bytes, int count, double arrivalMs);
    double originMs(int firstPiece, int lastPiece) const;

    std::thread receiver;
    pid_t process = -1;
    mutable std::mutex mutex; ///< Of all below, which the receiver writes.
    std::condition_variable hasSamples;
    QVector<float> received;
    int endOfSound = 0; ///< Samples up to the last that is not silent.
    QVector<Piece> pieces;
};

} // namespace testsupport
