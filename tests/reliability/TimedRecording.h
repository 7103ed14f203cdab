// A recording of the virtual sound device whose samples have times.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVector>

#include <atomic>
#include <chrono>
#include <thread>

#include <sys/types.h>

/// Records the virtual sound device "lab" in a thread of its own, which notes when each piece
/// arrives, whatever the event loop is doing.
class TimedRecording {
public:
    using Clock = std::chrono::steady_clock;

    /// The present, in ms of `Clock`.
    static double nowMs();

    TimedRecording() = default;
    ~TimedRecording();
    TimedRecording(const TimedRecording&) = delete;
    TimedRecording(TimedRecording&&) = delete;
    TimedRecording& operator=(const TimedRecording&) = delete;
    TimedRecording& operator=(TimedRecording&&) = delete;

    /// Starts to record and waits until samples arrive; returns false when none come.
    bool start();

    /// Waits, with the event loop running, until as much silence has been received from now on, so
    /// that every sound that has ended is recorded. Returns false after ten seconds without it.
    bool waitForSilence(int milliseconds = 300) const;

    /// Stops recording; what follows holds for what was recorded until then.
    void stop();

    const QVector<float>& samples() const { return received; }

    /// When a sample was due at the device, in ms of `Clock`. The device's clock is taken from the
    /// pieces that arrived soonest after they were due; those came later by a constant that cannot
    /// be measured from here, and which is thus part of every time returned.
    double timeOfMs(int sample) const;

    /// By how much the device's clock, as taken from the first and the second half of the
    /// recording, differs (ms): next to 0 when the times can be trusted.
    double clockDriftMs() const;

    static constexpr int samplingRate = 40000; ///< Hz.

private:
    struct Piece {
        double arrivalMs;
        int samplesSoFar;
    };

    void receive(int descriptor);
    double originMs(int firstPiece, int lastPiece) const;

    std::thread receiver;
    std::atomic<int> receivedSoFar{0}; ///< Samples.
    std::atomic<int> endOfSound{0};    ///< As many of them up to the last that is not silent.
    pid_t recorder = -1;
    QVector<float> received;
    QVector<Piece> pieces;
};
