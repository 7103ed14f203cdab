// A sound as it is played: its bytes, the silence after it, and whether it was heard to its end.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QVector>

/// Returns `length` samples as little-endian 32-bit floats, four bytes each: the samples given,
/// cut off or padded with zeros at the end. Nothing is scaled, clipped or dithered; values beyond
/// -1..+1 are passed on as they are. The length is limited to 0..maximumSampleCount.
QByteArray soundBytes(const QVector<double>& samples, int length);

/// Microseconds of silence to play after a sound. The output reports the end when the server has
/// taken the last sample; stopping the output then discards what the server has not played yet: up
/// to 210 ms with PulseAudio, which takes samples in advance as the output's buffer of 250 ms
/// allows. PipeWire drops the samples that do not fill a quantum, and never reports the end of a
/// sound shorter than that.
constexpr qint64 silenceAfterSound = 250000;

/// Reads the bytes of an array, and then `tailBytes` zero bytes that are not in the array. Can be
/// read once from start to end: seeking back does not restore the tail.
class TailedBuffer : public QBuffer {
public:
    TailedBuffer(QByteArray* bytes, qint64 tailBytes) : QBuffer(bytes), tailLeft(tailBytes) {}

    qint64 bytesAvailable() const override { return QBuffer::bytesAvailable() + tailLeft; }
    bool atEnd() const override { return bytesAvailable() == 0; }

protected:
    qint64 readData(char* bytes, qint64 maximumBytes) override;

private:
    qint64 tailLeft;
};

/// Returns whether the listener can have heard all of a sound when its output goes idle: it has
/// been handed over to the last byte, and at least its duration has passed since the output was
/// started. Otherwise the server ran out of samples, as on an overloaded computer.
bool isHeardCompletely(qint64 bytesHandedOver, qint64 bytes, qint64 elapsedMs, qint64 durationMs);
