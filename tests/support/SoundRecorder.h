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

/// Records the virtual sound device "lab", one channel of 32-bit floats, sample for sample, in a
/// separate thread, which records the arrival time of each piece independently of the event loop.
///
/// The recording command is DESK_RECORDER of scripts/virtual-desk, which disturbs its sound server
/// as little as possible.
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

    /// The difference (ms) between the device's clock as estimated from the first and the second
    /// half of the recording: close to 0 when the times are reliable.
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
