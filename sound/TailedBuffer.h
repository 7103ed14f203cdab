// A sound followed by silence, for sound servers that drop the end of a stream.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QBuffer>

#include <algorithm>

/// Hands out the bytes of an array, and then `tailBytes` zero bytes, which the array does not hold.
/// For one reading from start to end: going back does not bring the tail back.
class TailedBuffer : public QBuffer {
public:
    TailedBuffer(QByteArray* bytes, qint64 tailBytes) : QBuffer(bytes), tailLeft(tailBytes) {}

    qint64 bytesAvailable() const override { return QBuffer::bytesAvailable() + tailLeft; }
    bool atEnd() const override { return bytesAvailable() == 0; }

protected:
    qint64 readData(char* bytes, qint64 mostBytes) override {
        const qint64 fromArray = std::max(QBuffer::readData(bytes, mostBytes), qint64(0));
        const qint64 fromTail = std::min(mostBytes - fromArray, tailLeft);
        std::fill_n(bytes + fromArray, fromTail, '\0');
        tailLeft -= fromTail;
        return fromArray + fromTail;
    }

private:
    qint64 tailLeft;
};
