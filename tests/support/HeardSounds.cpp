// Compares a recording with the sounds that should be in it.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/HeardSounds.h"

#include "support/WavBytes.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <iterator>

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

HeardSounds findSounds(const QVector<float>& recording, const QVector<QVector<float>>& sounds) {
    HeardSounds heard;
    int position = 0;
    for (const QVector<float>& sound : sounds) {
        const int number = heard.starts.size() + 1;
        const int onset = firstSound(recording, position);
        if (onset == recording.size()) {
            heard.difference = QStringLiteral("sound %1 is missing").arg(number);
            return heard;
        }
        const int start = onset - firstSound(sound, 0);
        if (start < position || start + sound.size() > recording.size()) {
            heard.difference =
                QStringLiteral("sound %1 is cut at sample %2").arg(number).arg(onset);
            return heard;
        }
        const auto [expected, received] =
            std::mismatch(sound.cbegin(), sound.cend(), recording.cbegin() + start);
        if (expected != sound.cend()) {
            heard.difference = QStringLiteral("sound %1 differs at its sample %2: %3 for %4")
                                   .arg(number)
                                   .arg(expected - sound.cbegin())
                                   .arg(double(*received), 0, 'g', 9)
                                   .arg(double(*expected), 0, 'g', 9);
            return heard;
        }
        heard.starts.append(start);
        position = start + sound.size();
    }
    const int extra = firstSound(recording, position);
    if (extra != recording.size())
        heard.difference = QStringLiteral("a sound too many, at sample %1").arg(extra);
    return heard;
}

HeardSound findSound(const QVector<float>& stretch, const QVector<float>& sound) {
    HeardSound heard;
    const int onset = firstSound(stretch);
    const int start = onset - firstSound(sound);
    if (onset < stretch.size() && start >= 0 && start + sound.size() <= stretch.size() &&
        std::equal(sound.cbegin(), sound.cend(), stretch.cbegin() + start)) {
        heard.fate = Fate::Complete;
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
    heard.fate = audibleHeard.isEmpty() ? Fate::Missing : fateOf(audibleHeard, audibleSound);
    return heard;
}

QVector<float> heardFrom(const QVector<int>& codes, int bits) {
    const int fullScale = 1 << (bits - 1);
    QVector<float> samples;
    samples.reserve(codes.size());
    for (const int code : codes) {
        const int value = bits == 8 ? code - fullScale : code;
        const bool isLowestOf24Bits = bits == 24 && value == -fullScale;
        samples.append(isLowestOf24Bits ? 1.0F : float(double(value) / fullScale));
    }
    return samples;
}

QVector<float> heardFromFile(const QByteArray& file) {
    if (file.size() < wavoffset::data)
        return {};
    const char* const bytes = file.constData();
    const int channels = qFromLittleEndian<quint16>(bytes + wavoffset::channelCount);
    const auto rate = qFromLittleEndian<quint32>(bytes + wavoffset::samplingRate);
    const int bits = qFromLittleEndian<quint16>(bytes + wavoffset::bitsPerSample);
    const int bytesPerFrame = bits / 8 * channels;
    const int frames = (file.size() - wavoffset::data) / bytesPerFrame;
    QVector<int> codes;
    for (int i = 0; i < frames && channels <= 2; ++i) {
        const char* const sample = bytes + wavoffset::data + qptrdiff(i) * bytesPerFrame;
        if (bits == 8)
            codes.append(uchar(*sample));
        else if (bits == 16)
            codes.append(qFromLittleEndian<qint16>(sample));
        else // The two lower bytes, and the sign in the third.
            codes.append(qFromLittleEndian<quint16>(sample) | qint8(sample[2]) * 0x10000);
    }
    QVector<float> samples = heardFrom(codes, bits);
    constexpr double playedRate = 40000; // Hz
    const double shownMs = QString::number(frames * 1000.0 / rate, 'f', 2).toDouble();
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
