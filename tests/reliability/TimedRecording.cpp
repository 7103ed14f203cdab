// A recording of the virtual sound device whose samples have times.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/TimedRecording.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QtTest>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <limits>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int patienceMs = 10000;
constexpr double samplesPerMillisecond = TimedRecording::samplingRate / 1000.0;

/// Starts the recorder with its output going to a pipe; returns the pipe's reading end, or
/// a negative number when that fails.
int startRecorder(pid_t& recorder) {
    int pipeEnds[2] = {-1, -1};
    if (::pipe2(pipeEnds, O_CLOEXEC) != 0)
        return -1;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], STDOUT_FILENO);
    QByteArrayList words{"parec",        "--device=lab.monitor", "--latency-msec=5",
                         "--rate=40000", "--channels=1",         "--format=float32le",
                         "--raw"};
    std::vector<char*> arguments;
    for (QByteArray& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const int error =
        posix_spawnp(&recorder, "parec", &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipeEnds[1]);
    if (error == 0)
        return pipeEnds[0];
    ::close(pipeEnds[0]);
    recorder = -1;
    return -1;
}

} // namespace

double TimedRecording::nowMs() {
    return std::chrono::duration<double, std::milli>(Clock::now().time_since_epoch()).count();
}

TimedRecording::~TimedRecording() {
    stop();
}

bool TimedRecording::start() {
    const int descriptor = startRecorder(recorder);
    if (descriptor < 0)
        return false;
    receiver = std::thread([this, descriptor] { receive(descriptor); });
    return QTest::qWaitFor([this] { return receivedSoFar > 0; }, patienceMs);
}

bool TimedRecording::waitForSilence(int milliseconds) const {
    const int silentSamples = int(milliseconds * samplesPerMillisecond);
    const int before = receivedSoFar;
    return QTest::qWaitFor(
        [&] { return receivedSoFar - std::max(before, endOfSound.load()) >= silentSamples; },
        patienceMs);
}

void TimedRecording::stop() {
    if (recorder > 0) {
        ::kill(recorder, SIGTERM);
        ::waitpid(recorder, nullptr, 0);
        recorder = -1;
    }
    if (receiver.joinable())
        receiver.join();
}

void TimedRecording::receive(int descriptor) {
    constexpr std::size_t mostBytes = 65536;
    std::vector<char> piece(mostBytes);
    QByteArray rest;
    for (;;) {
        const ssize_t size = ::read(descriptor, piece.data(), piece.size());
        const double arrivalMs = nowMs();
        if (size <= 0)
            break;
        rest.append(piece.data(), int(size));
        const int count = rest.size() / int(sizeof(float));
        const int before = received.size();
        received.resize(before + count);
        std::memcpy(received.data() + before, rest.constData(), std::size_t(count) * sizeof(float));
        rest.remove(0, count * int(sizeof(float)));
        pieces.append({arrivalMs, received.size()});
        const auto lastAudible = std::find_if(received.crbegin(), received.crbegin() + count,
                                              [](float sample) { return sample != 0.0F; });
        const int silentSamples = int(lastAudible - received.crbegin());
        if (silentSamples < count)
            endOfSound = received.size() - silentSamples;
        // Last: what it counts has been looked at.
        receivedSoFar = received.size();
    }
    ::close(descriptor);
}

/// The time of sample 0 by the piece among these that arrived soonest.
double TimedRecording::originMs(int firstPiece, int lastPiece) const {
    double origin = std::numeric_limits<double>::infinity();
    for (int i = firstPiece; i < lastPiece; ++i)
        origin =
            std::min(origin, pieces[i].arrivalMs - pieces[i].samplesSoFar / samplesPerMillisecond);
    return origin;
}

double TimedRecording::timeOfMs(int sample) const {
    return originMs(0, pieces.size()) + sample / samplesPerMillisecond;
}

double TimedRecording::clockDriftMs() const {
    const int middle = pieces.size() / 2;
    return originMs(middle, pieces.size()) - originMs(0, middle);
}
