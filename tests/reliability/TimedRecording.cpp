// A recording of the virtual sound device whose samples have times.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/TimedRecording.h"

#include <QByteArray>
#include <QByteArrayList>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <limits>
#include <vector>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr double samplesPerMillisecond = TimedRecording::samplingRate / 1000.0;

/// Starts the recorder with its output going to a pipe; returns the pipe's reading end.
int startRecorder(pid_t& recorder) {
    int pipeEnds[2] = {-1, -1};
    if (::pipe(pipeEnds) != 0)
        return -1;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, pipeEnds[0]);
    posix_spawn_file_actions_addclose(&actions, pipeEnds[1]);
    QByteArrayList words{"parec",        "--device=lab.monitor", "--latency-msec=5",
                         "--rate=40000", "--channels=1",         "--format=float32le",
                         "--raw"};
    std::vector<char*> arguments;
    for (QByteArray& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    if (posix_spawnp(&recorder, "parec", &actions, nullptr, arguments.data(), environ) != 0)
        recorder = -1;
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipeEnds[1]);
    return pipeEnds[0];
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
    if (descriptor < 0 || recorder < 0)
        return false;
    receiver = std::thread([this, descriptor] { receive(descriptor); });
    const double limitMs = nowMs() + 10000;
    while (!hasBegun && nowMs() < limitMs)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return hasBegun;
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
        hasBegun = true;
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
