// The order in which the targets of a session are presented.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/TrialSequence.h"

QVector<int> orderedTrials(int nRepetitions, int nFiles) {
    QVector<int> trials;
    for (int repetition = 0; repetition < nRepetitions; ++repetition)
        for (int file = 0; file < nFiles; ++file)
            trials.append(file);
    return trials;
}

QVector<int> randomTrials(int nRepetitions, int nFiles) {
    QVector<int> trials = orderedTrials(nRepetitions, nFiles);
    std::random_device device("/dev/urandom");
    std::mt19937 generator(device());
    shuffleTrials(trials, generator);
    return trials;
}
