// What the sound device received of a sound that was presented.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/PresentedSounds.h"

#include <algorithm>
#include <iterator>

namespace {

bool isAudible(float sample) {
    return sample != 0.0F;
}

int firstAudible(const QVector<float>& samples) {
    return int(std::find_if(samples.cbegin(), samples.cend(), isAudible) - samples.cbegin());
}

QVector<float> audible(const QVector<float>& samples) {
    QVector<float> kept;
    std::copy_if(samples.cbegin(), samples.cend(), std::back_inserter(kept), isAudible);
    return kept;
}

/// What became of a sound of which these audible samples were heard.
Fate fateOf(const QVector<float>& heard, const QVector<float>& sound) {
    if (heard == sound)
        return Fate::Gaps;
    if (heard.size() >= sound.size())
        return Fate::Different;
    const int head =
        int(std::mismatch(heard.cbegin(), heard.cend(), sound.cbegin(), sound.cend()).first -
            heard.cbegin());
    const int tail =
        int(std::mismatch(heard.crbegin(), heard.crend(), sound.crbegin(), sound.crend()).first -
            heard.crbegin());
    if (head == heard.size())
        return Fate::CutAtEnd;
    if (tail == heard.size())
        return Fate::CutAtStart;
    return head + tail >= heard.size() ? Fate::CutInside : Fate::Different;
}

} // namespace

HeardSound findSound(const QVector<float>& stretch, const QVector<float>& sound) {
    HeardSound heard;
    const int onset = firstAudible(stretch);
    const int start = onset - firstAudible(sound);
    if (onset < stretch.size() && start >= 0 && start + sound.size() <= stretch.size() &&
        std::equal(sound.cbegin(), sound.cend(), stretch.cbegin() + start)) {
        heard.fate = Fate::Complete;
        heard.start = start;
        heard.isFollowedByMore =
            std::any_of(stretch.cbegin() + start + sound.size(), stretch.cend(), isAudible);
        return heard;
    }
    const int from = std::clamp(start, 0, stretch.size());
    heard.firstWrong =
        int(std::mismatch(stretch.cbegin() + from, stretch.cend(), sound.cbegin(), sound.cend())
                .second -
            sound.cbegin());
    const QVector<float> audibleHeard = audible(stretch);
    const QVector<float> audibleSound = audible(sound);
    heard.samplesMissing = std::max(audibleSound.size() - audibleHeard.size(), 0);
    heard.fate = audibleHeard.isEmpty() ? Fate::Missing : fateOf(audibleHeard, audibleSound);
    return heard;
}
