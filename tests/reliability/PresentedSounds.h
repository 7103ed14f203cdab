// What the sound device received of a sound that was presented.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVector>

/// What became of a sound.
enum class Fate {
    Complete,   ///< All of it, equal in every sample.
    Missing,    ///< Nothing of it.
    CutAtStart, ///< Its head is missing; the rest may have gaps.
    CutAtEnd,   ///< Its tail is missing; the rest may have gaps.
    CutInside,  ///< A piece is missing between its head and its tail.
    Gaps,       ///< All of it, with silence in between.
    Different   ///< Something else.
};

struct HeardSound {
    Fate fate = Fate::Missing;
    int start = -1;                ///< Index of its first sample, where it is complete; else -1.
    int samplesMissing = 0;        ///< Of those that are not silent.
    int firstWrong = -1;           ///< Index of the first sample that is not as it should be.
    bool isFollowedByMore = false; ///< Whether a complete sound has something else behind it.
};

/// Looks for a sound in that stretch of a recording in which it, and nothing else, should be heard.
/// Of an incomplete sound only what is not silent counts, for silence within the sound cannot
/// be told from a gap. The sound must not be silent throughout.
HeardSound findSound(const QVector<float>& stretch, const QVector<float>& sound);
