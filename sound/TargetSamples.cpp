// Whether a loaded file can be a target, and its samples as they are played.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/TargetSamples.h"

#include "base/NumberTexts.h"
#include "base/Sampling.h"
#include "charts/AmplitudeSpectrum.h"
#include "sound/CWav.h"

#include <QFile>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

bool isPlayableCount(double count) {
    return count >= 1.0 && count <= maximumSampleCount;
}

/// The approximate number of bytes that preparing and playing a target take.
qint64 bytesToPrepare(int samplesLoaded, int samplesPlayed) {
    constexpr auto bytesPerDouble = qint64(sizeof(double));
    const qint64 target = samplesLoaded * bytesPerDouble;
    // The sinusoid, the sound to be played, and its bytes for the output.
    const qint64 playing = samplesPlayed * (2 * bytesPerDouble + qint64(sizeof(float)));
    return target + spectrumMemory(samplesLoaded) + playing;
}

/// Bytes of memory and swap that are free or can be freed, as far as the system reports them.
qint64 unusedMemory() {
    QFile file(QStringLiteral("/proc/meminfo"));
    if (!file.open(QIODevice::ReadOnly))
        return std::numeric_limits<qint64>::max();
    qint64 kibibytes = 0;
    for (const QByteArray& line : file.readAll().split('\n'))
        if (line.startsWith("MemAvailable:") || line.startsWith("SwapFree:"))
            kibibytes += line.simplified().split(' ').value(1).toLongLong();
    return kibibytes * 1024;
}

/// Allocates the memory and frees it at once, so that a preparation does not fail after charts and
/// settings have changed.
bool isMemoryAvailable(qint64 bytes) {
    // malloc() finds a limit of the process, but the kernel may grant more memory than there is.
    // Volatile, because the compiler may remove a malloc() that is only freed.
    void* volatile block = std::malloc(static_cast<std::size_t>(bytes));
    const bool isAvailable = block != nullptr;
    std::free(block);
    return isAvailable && bytes <= unusedMemory();
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
    const double played = std::floor(durationAsShown(durationSeconds(wav)) * samplingRate);
    return isPlayableCount(loaded) && isPlayableCount(played) &&
           isMemoryAvailable(bytesToPrepare(static_cast<int>(loaded), static_cast<int>(played)));
}

void copyFirstChannel(const CWav& wav, int count, QVector<double>& target) {
    const std::size_t channels = wav.header.numberOfChannels;
    if (channels != 1 && channels != 2)
        return;
    const int wanted = std::max(count, 0);
    if (target.size() < wanted)
        target.resize(wanted);
    const auto available =
        static_cast<int>(std::min<std::size_t>(wav.samples.size() / channels, std::size_t(wanted)));
    double* destination = target.data();
    for (int i = 0; i < available; ++i)
        destination[i] = wav.samples[channels * std::size_t(i)];
    std::fill(destination + available, destination + wanted, 0.0);
}
