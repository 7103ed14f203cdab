// The order in which the targets of a session are presented.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVector>

#include <random>
#include <utility>

/// Returns the indices 0 to nFiles - 1 in order, nRepetitions times over.
QVector<int> orderedTrials(int nRepetitions, int nFiles);

/// Shuffles a sequence in place (Fisher-Yates from the front); each order is equally likely if the
/// generator is uniform. Not std::shuffle, which may take two positions from one draw. A sequence
/// of 0 or 1 entries draws nothing and stays as it is.
template <typename Generator> void shuffleTrials(QVector<int>& trials, Generator& generator) {
    for (int i = 0; i + 1 < trials.size(); ++i) {
        std::uniform_int_distribution<int> offset(0, trials.size() - 1 - i);
        const int j = offset(generator);
        if (j != 0)
            std::swap(trials[i], trials[i + j]);
    }
}

/// Returns the trials in a random order, which cannot be repeated: the system's random device gives
/// the seed.
QVector<int> randomTrials(int nRepetitions, int nFiles);
