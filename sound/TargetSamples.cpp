// Whether a loaded file can be a target, and its samples as they are played.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/TargetSamples.h"

#include "app/SettingsText.h"
#include "charts/SpectrumSizing.h"
#include "sound/CWav.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

/// The number of doubles that the largest vector holds: its bytes and its header fit an int.
constexpr qint64 mostSamples =
    (std::numeric_limits<int>::max() - qint64(sizeof(QArrayData))) / qint64(sizeof(double));

bool isPlayableCount(double count) {
    return count >= 1.0 && count <= double(mostSamples);
}

/// Bytes that preparing and playing a target take at their peak.
qint64 bytesToPrepare(int samplesLoaded, int samplesPlayed) {
    constexpr auto bytesPerDouble = qint64(sizeof(double));
    const qint64 length = spectrumSizing(samplesLoaded, 1.0, 0.0).length;
    // Input, output, scratch, bit reversal; half a length each of cosines, frequencies,
    // amplitudes and phases.
    const qint64 spectrum = (4 * length + 4 * length / 2) * bytesPerDouble;
    const qint64 target = samplesLoaded * bytesPerDouble;
    // The sinusoid, the sound that is due, and its bytes for the output.
    const qint64 playing = samplesPlayed * (2 * bytesPerDouble + qint64(sizeof(float)));
    return target + spectrum + playing;
}

/// Asks for the memory and gives it back at once. Asking beforehand keeps a preparation from
/// failing half-way, when charts and settings have already changed.
bool isMemoryAvailable(qint64 bytes) {
    // Volatile, or the compiler drops the pair of calls and takes the memory for granted.
    void* volatile block = std::malloc(static_cast<std::size_t>(bytes));
    const bool isAvailable = block != nullptr;
    std::free(block);
    return isAvailable;
}

} // namespace

qint64 samplesPerChannel(const CWav& wav) {
    if (wav.header.numberOfChannels == 0)
        return 0;
    return wav.numberOfSamples / wav.header.numberOfChannels;
}

double durationSeconds(const CWav& wav) {
    return static_cast<double>(samplesPerChannel(wav)) / wav.header.samplingRate;
}

bool isUsableTarget(const CWav& wav, double samplingRate) {
    if (wav.header.numberOfChannels == 0 || wav.header.samplingRate == 0 || wav.samples.empty())
        return false;
    const auto loaded = static_cast<double>(samplesPerChannel(wav));
    const double shownSeconds = secondsFromMillisecondsText(millisecondsText(durationSeconds(wav)));
    const double played = std::floor(shownSeconds * samplingRate);
    return isPlayableCount(loaded) && isPlayableCount(played) &&
           isMemoryAvailable(bytesToPrepare(static_cast<int>(loaded), static_cast<int>(played)));
}

void copyFirstChannel(const CWav& wav, int count, QVector<double>& target) {
    const std::size_t channels = wav.header.numberOfChannels;
    if (channels != 1 && channels != 2)
        return;
    if (target.size() < count)
        target.resize(count);
    const auto available =
        static_cast<int>(std::min<std::size_t>(wav.samples.size() / channels, std::size_t(count)));
    double* destination = target.data();
    for (int i = 0; i < available; ++i)
        destination[i] = wav.samples[channels * std::size_t(i)];
    std::fill(destination + available, destination + count, 0.0);
}
