// Samples as an audio output takes them.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/SoundBytes.h"

#include <QtEndian>

#include <algorithm>

QByteArray soundBytes(const QVector<double>& samples, int length) {
    constexpr int bytesPerSample = sizeof(float);
    QByteArray bytes(std::max(length, 0) * bytesPerSample, '\0');
    const int available = std::min(length, samples.size());
    char* destination = bytes.data();
    for (int i = 0; i < available; ++i, destination += bytesPerSample)
        qToLittleEndian(static_cast<float>(samples[i]), destination);
    return bytes;
}
