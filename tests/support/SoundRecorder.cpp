// Records what the sound server's device receives.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/SoundRecorder.h"

#include <QByteArray>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace testsupport {

namespace {

constexpr int recordingTimeoutMs = 10000;

bool isDeviceSuspendable() {
    return !qEnvironmentVariableIsEmpty("DESK_SUSPEND");
}

double samplesPerMillisecond() {
    return SoundRecorder::deviceRate() / 1000.0;
}

/// Starts the recorder with its output going to a pipe, in a process group of its own; returns the
/// pipe's reading end, or a negative number when that fails.
int startRecorder(pid_t& process) {
    int pipeEnds[2] = {-1, -1};
    QByteArray command = qgetenv("DESK_RECORDER");
    if (command.isEmpty() || ::pipe2(pipeEnds, O_CLOEXEC) != 0)
        return -1;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], STDOUT_FILENO);
    char shell[] = "sh";
    char option[] = "-c";
    char* const arguments[] = {shell, option, command.data(), nullptr};
    posix_spawnattr_t group;
    posix_spawnattr_init(&group);
    posix_spawnattr_setflags(&group, POSIX_SPAWN_SETPGROUP);
    const int error = posix_spawnp(&process, shell, &actions, &group, arguments, environ);
    posix_spawnattr_destroy(&group);
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipeEnds[1]);
    if (error == 0)
        return pipeEnds[0];
    ::close(pipeEnds[0]);
    process = -1;
    return -1;
}

} // namespace

double SoundRecorder::nowMs() {
    return std::chrono::duration<double, std::milli>(Clock::now().time_since_epoch()).count();
}

int SoundRecorder::deviceRate() {
    constexpr int soundRate = 40000;
    const int rate = qEnvironmentVariableIntValue("DESK_RATE");
    return rate > 0 ? rate : soundRate;
}

SoundRecorder::~SoundRecorder() {
    stop();
}

bool SoundRecorder::start() {
    stop();
    received.clear();
    pieces.clear();
    endOfSound = 0;
    const int descriptor = startRecorder(process);
    if (descriptor < 0)
        return false;
    receiver = std::thread([this, descriptor] { receive(descriptor); });
    std::unique_lock lock(mutex);
    return isDeviceSuspendable() ||
           hasSamples.wait_for(lock, std::chrono::milliseconds(recordingTimeoutMs),
                               [this] { return !received.isEmpty(); });
}

QVector<float> SoundRecorder::samples() const {
    const std::lock_guard lock(mutex);
    return received;
}

bool SoundRecorder::waitForSilence(int milliseconds) const {
    const int silentSamples = int(milliseconds * samplesPerMillisecond());
    const double beginningMs = nowMs();
    const int before = samples().size();
    return QTest::qWaitFor(
        [&] {
            const std::lock_guard lock(mutex);
            const double latestMs = pieces.isEmpty() ? 0 : pieces.constLast().arrivalMs;
            const bool isSuspended =
                isDeviceSuspendable() && nowMs() - std::max(beginningMs, latestMs) > milliseconds;
            return isSuspended || received.size() - std::max(before, endOfSound) >= silentSamples;
        },
        recordingTimeoutMs);
}

QVector<float> SoundRecorder::stop() {
    if (process > 0) {
        ::kill(-process, SIGTERM);
        ::waitpid(std::exchange(process, -1), nullptr, 0);
    }
    if (receiver.joinable())
        receiver.join();
    return samples();
}

void SoundRecorder::receive(int descriptor) {
    constexpr std::size_t maximumBytes = 65536;
    std::vector<char> piece(maximumBytes);
    std::size_t rest = 0; // Bytes of a sample that has not arrived whole.
    for (;;) {
        const ssize_t size = ::read(descriptor, piece.data() + rest, piece.size() - rest);
        if (size <= 0)
            break;
        const std::size_t held = rest + std::size_t(size);
        append(piece.data(), int(held / sizeof(float)), nowMs());
        rest = held % sizeof(float);
        std::copy_n(piece.data() + held - rest, rest, piece.data());
    }
    ::close(descriptor);
}

void SoundRecorder::append(const char* bytes, int count, double arrivalMs) {
    const std::lock_guard lock(mutex);
    const int before = received.size();
    received.resize(before + count);
    std::memcpy(received.data() + before, bytes, std::size_t(count) * sizeof(float));
    pieces.append({arrivalMs, received.size()});
    const auto lastAudible = std::find_if(received.crbegin(), received.crbegin() + count,
                                          [](float sample) { return sample != 0.0F; });
    const int silentSamples = int(lastAudible - received.crbegin());
    if (silentSamples < count)
        endOfSound = received.size() - silentSamples;
    hasSamples.notify_all();
}

/// The time of sample 0 by the piece among these that arrived earliest.
double SoundRecorder::originMs(int firstPiece, int lastPiece) const {
    double origin = std::numeric_limits<double>::infinity();
    for (int i = firstPiece; i < lastPiece; ++i)
        origin = std::min(origin,
                          pieces[i].arrivalMs - pieces[i].samplesSoFar / samplesPerMillisecond());
    return origin;
}

double SoundRecorder::timeOfMs(int sample) const {
    const std::lock_guard lock(mutex);
    return originMs(0, pieces.size()) + sample / samplesPerMillisecond();
}

double SoundRecorder::clockDriftMs() const {
    const std::lock_guard lock(mutex);
    const int middle = pieces.size() / 2;
    return originMs(middle, pieces.size()) - originMs(0, middle);
}

} // namespace testsupport
