// Compares a recording with the sounds that should be in it.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace testsupport {

/// The starts of the sounds of a recording, and its difference from the expected one.
struct HeardSounds {
    QVector<int> starts; ///< Index of each sound's first sample in the recording.
    QString difference;  ///< Empty when the recording holds the sounds and silence, nothing else.
};

/// Looks for the given sounds in a recording, one after the other, each complete and equal in every
/// sample, with silence before, between and after them. A sound that is silent throughout cannot
/// be distinguished from silence and must not be among them.
HeardSounds findSounds(const QVector<float>& recording, const QVector<QVector<float>>& sounds);

/// How much of a sound was heard.
enum class Outcome {
    Complete,   ///< All of it, equal in every sample.
    Missing,    ///< Nothing of it.
    CutAtStart, ///< Its head is missing; the rest may have gaps.
    CutAtEnd,   ///< Its tail is missing; the rest may have gaps.
    CutInside,  ///< A piece is missing between its head and its tail.
    Gaps,       ///< All of it, with silence in between.
    Different   ///< Something else.
};

struct HeardSound {
    Outcome outcome = Outcome::Missing;
    int start = -1;                ///< Index of its first sample, where it is complete; else -1.
    int samplesMissing = 0;        ///< Of those that are not silent.
    int firstWrong = -1;           ///< Index of the first sample that is not as it should be.
    bool isFollowedByMore = false; ///< Whether a complete sound has something else after it.
};

/// Looks for a sound in that stretch of a recording in which it, and nothing else, should be heard.
/// Silent samples of an incomplete sound are not counted, since they cannot be distinguished from a
/// gap. The sound must not be silent throughout.
HeardSound findSound(const QVector<float>& stretch, const QVector<float>& sound);

/// Whether any sample is not silent.
bool isAudible(const QVector<float>& samples);

/// The part of a sound with which a recording begins, from its first sample that is not silent, and
/// the rest of the recording.
struct CutSound {
    int length = 0;
    QVector<float> rest;
};
CutSound findCutSound(const QVector<float>& recording, const QVector<float>& sound);

/// Returns what is heard of a target of one channel with these codes, of 8, 16 or 24 bits.
QVector<float> heardFrom(const QVector<int>& codes, int bits = 16);

/// Returns what is heard of a target file with a header of 44 bytes: its first channel, as long as
/// the duration in hundredths of a millisecond says at 40000 Hz; silence where there are three
/// channels or more.
QVector<float> heardFromFile(const QByteArray& file);

/// Returns what is heard of a comparison sinusoid of that frequency (Hz) and count of samples.
QVector<float> heardSinusoid(int frequency, int count);

} // namespace testsupport
