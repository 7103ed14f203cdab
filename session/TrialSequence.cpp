// The order in which the targets of a session are presented.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/TrialSequence.h"

#include <QtGlobal>

#include <chrono>
#include <cstdint>
#include <exception>

namespace {

/// A seed from the system's random device, which is closed at once. If it cannot be opened, the
/// clock gives the seed: a predictable order is better than no session.
std::uint32_t randomSeed() {
    try {
        std::random_device device("/dev/urandom");
        return device();
    } catch (const std::exception&) {
        qWarning("no random device: the order of trials is drawn from the clock");
        const auto now = std::chrono::system_clock::now().time_since_epoch();
        return static_cast<std::uint32_t>(now.count());
    }
}

} // namespace

QVector<int> orderedTrials(int nRepetitions, int nFiles) {
    QVector<int> trials;
    for (int repetition = 0; repetition < nRepetitions; ++repetition)
        for (int file = 0; file < nFiles; ++file)
            trials.append(file);
    return trials;
}

QVector<int> randomTrials(int nRepetitions, int nFiles) {
    QVector<int> trials = orderedTrials(nRepetitions, nFiles);
    std::mt19937 generator(randomSeed());
    shuffleTrials(trials, generator);
    return trials;
}
