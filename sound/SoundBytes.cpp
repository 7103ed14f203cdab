// Samples as an audio output takes them.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/SoundBytes.h"

#include "sound/SampleCount.h"

#include <QtEndian>

#include <algorithm>

QByteArray soundBytes(const QVector<double>& samples, int length) {
    constexpr int bytesPerSample = sizeof(float);
    const int samplesSent = std::clamp(length, 0, mostSamples);
    QByteArray bytes(samplesSent * bytesPerSample, '\0');
    const int available = std::min(samplesSent, samples.size());
    char* destination = bytes.data();
    for (int i = 0; i < available; ++i, destination += bytesPerSample)
        qToLittleEndian(static_cast<float>(samples[i]), destination);
    return bytes;
}
