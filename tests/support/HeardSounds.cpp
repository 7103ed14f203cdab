// Compares a recording with the sounds that should be in it.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/HeardSounds.h"

#include "support/PlainReading.h"
#include "support/WavBytes.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace testsupport {

namespace {

bool isSound(float sample) {
    return sample != 0.0F;
}

/// Index of the first sample from `from` on that is not silent, or the size when there is none.
int firstSound(const QVector<float>& samples, int from = 0) {
    return int(std::find_if(samples.cbegin() + from, samples.cend(), isSound) - samples.cbegin());
}

QVector<float> audible(const QVector<float>& samples) {
    QVector<float> kept;
    std::copy_if(samples.cbegin(), samples.cend(), std::back_inserter(kept), isSound);
    return kept;
}

/// The outcome of a sound of which these audible samples were heard.
Outcome outcomeOf(const QVector<float>& heard, const QVector<float>& sound) {
    if (heard == sound)
        return Outcome::Gaps;
    if (heard.size() >= sound.size())
        return Outcome::Different;
    const int head =
        int(std::mismatch(heard.cbegin(), heard.cend(), sound.cbegin(), sound.cend()).first -
            heard.cbegin());
    const int tail =
        int(std::mismatch(heard.crbegin(), heard.crend(), sound.crbegin(), sound.crend()).first -
            heard.crbegin());
    if (head == heard.size())
        return Outcome::CutAtEnd;
    if (tail == heard.size())
        return Outcome::CutAtStart;
    return head + tail >= heard.size() ? Outcome::CutInside : Outcome::Different;
}

PlainReading readingOf(const QByteArray& file) {
    return {{file.constData(), std::size_t(file.size())}, std::numeric_limits<int>::max()};
}

QVector<float> firstChannelOf(const PlainReading& reading) {
    QVector<float> samples;
    for (std::size_t i = 0; i < reading.samples.size(); i += reading.channels)
        samples.append(float(reading.samples[i]));
    return samples;
}

} // namespace

HeardSound findSound(const QVector<float>& stretch, const QVector<float>& sound) {
    HeardSound heard;
    const int onset = firstSound(stretch);
    const int start = onset - firstSound(sound);
    if (onset < stretch.size() && start >= 0 && start + sound.size() <= stretch.size() &&
        std::equal(sound.cbegin(), sound.cend(), stretch.cbegin() + start)) {
        heard.outcome = Outcome::Complete;
        heard.start = start;
        heard.isFollowedByMore =
            std::any_of(stretch.cbegin() + start + sound.size(), stretch.cend(), isSound);
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
    heard.outcome =
        audibleHeard.isEmpty() ? Outcome::Missing : outcomeOf(audibleHeard, audibleSound);
    return heard;
}

HeardSounds findSounds(const QVector<float>& recording, const QVector<QVector<float>>& sounds) {
    HeardSounds heard;
    int position = 0;
    for (const QVector<float>& sound : sounds) {
        const HeardSound found = findSound(recording.mid(position), sound);
        if (found.outcome != Outcome::Complete) {
            heard.difference = QStringLiteral("sound %1 is wrong from its sample %2 on, %3 missing")
                                   .arg(heard.starts.size() + 1)
                                   .arg(found.firstWrong)
                                   .arg(found.samplesMissing);
            return heard;
        }
        heard.starts.append(position + found.start);
        position = heard.starts.last() + sound.size();
    }
    const int extra = firstSound(recording, position);
    if (extra != recording.size())
        heard.difference = QStringLiteral("a sound too many, at sample %1").arg(extra);
    return heard;
}

bool isAudible(const QVector<float>& samples) {
    return firstSound(samples, 0) < samples.size();
}

CutSound findCutSound(const QVector<float>& recording, const QVector<float>& sound) {
    const auto* const onset = recording.cbegin() + firstSound(recording, 0);
    const auto* const end =
        std::mismatch(onset, recording.cend(), sound.cbegin(), sound.cend()).first;
    return {int(end - onset), recording.mid(int(end - recording.cbegin()))};
}

QVector<float> heardFrom(const QVector<int>& codes, int bits) {
    return firstChannelOf(readingOf(wavWithSamples({40000, 1, quint16(bits)}, codes)));
}

QVector<float> heardFromFile(const QByteArray& file) {
    const PlainReading reading = readingOf(file);
    const unsigned wholeFrames = reading.numberOfSamples / std::max(reading.channels, 1U);
    const double frames = wholeFrames;
    QVector<float> samples;
    if (reading.channels == 1 || reading.channels == 2)
        samples = firstChannelOf(reading);
    constexpr double playedRate = 40000; // Hz
    const double shownMs = QString::number(frames * 1000 / reading.samplingRate, 'f', 2).toDouble();
    samples.resize(int(std::floor(shownMs / 1000 * playedRate)));
    return samples;
}

QVector<float> heardSinusoid(int frequency, int count) {
    constexpr double twoPi = 6.283185307179586;
    constexpr double samplingRate = 40000; // Hz.
    QVector<float> samples(count);
    for (int i = 0; i < count; ++i)
        samples[i] = static_cast<float>(std::sin(i * (frequency * twoPi) / samplingRate));
    return samples;
}

} // namespace testsupport
