// A sound as it is played: its bytes, the silence after it, and whether it was heard to its end.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/PlayedSound.h"

#include "base/Sampling.h"

#include <QtEndian>

#include <algorithm>

QByteArray soundBytes(const QVector<double>& samples, int length) {
    constexpr int bytesPerSample = sizeof(float);
    const int samplesSent = std::clamp(length, 0, maximumSampleCount);
    QByteArray bytes(samplesSent * bytesPerSample, '\0');
    const int available = std::min(samplesSent, samples.size());
    char* destination = bytes.data();
    for (int i = 0; i < available; ++i, destination += bytesPerSample)
        qToLittleEndian(static_cast<float>(samples[i]), destination);
    return bytes;
}

qint64 TailedBuffer::readData(char* bytes, qint64 maximumBytes) {
    const qint64 fromArray = std::max(QBuffer::readData(bytes, maximumBytes), qint64(0));
    const qint64 fromTail = std::min(maximumBytes - fromArray, tailLeft);
    std::fill_n(bytes + fromArray, fromTail, '\0');
    tailLeft -= fromTail;
    return fromArray + fromTail;
}

bool isHeardCompletely(qint64 bytesHandedOver, qint64 bytes, qint64 elapsedMs, qint64 durationMs) {
    return bytesHandedOver >= bytes && elapsedMs >= durationMs;
}
