// The target files of the benchmarks.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/FileBytes.h"
#include "support/WavBytes.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cmath>

constexpr int samplingRate = 40000;

struct Format {
    quint16 bits;
    quint16 channels;
};

constexpr Format mono16{16, 1};
constexpr Format stereo24{24, 2};

/// Returns the path of a target with a harmonic sound of that many milliseconds.
inline QString targetFile(Format format, int milliseconds) {
    static const QTemporaryDir folder;
    QString path = folder.filePath(
        QString("%1-%2-%3.wav").arg(format.bits).arg(format.channels).arg(milliseconds));
    if (QFile::exists(path))
        return path;
    const int points = samplingRate / 1000 * milliseconds;
    const double fullScale = (1 << (format.bits - 1)) - 1;
    const int offset = format.bits == 8 ? 128 : 0;
    QVector<int> codes;
    codes.reserve(points * format.channels);
    for (int i = 0; i < points; ++i) {
        const double sample = 0.5 * std::sin(i * 0.0691) + 0.3 * std::sin(i * 0.1382 + 1);
        const int code = static_cast<int>(std::lrint(sample * fullScale)) + offset;
        for (int channel = 0; channel < format.channels; ++channel)
            codes.append(code);
    }
    const testsupport::WavFormat wavFormat{samplingRate, format.channels, format.bits};
    if (!testsupport::writeBytes(path, testsupport::wavWithSamples(wavFormat, codes)))
        qFatal("no target can be written");
    return path;
}

/// Returns the path of that target without the last sample of each channel, which its header still
/// declares. CWav reads such a file, but does not convert it.
inline QString cutTargetFile(Format format, int milliseconds) {
    const QString whole = targetFile(format, milliseconds);
    QString path = whole + ".cut";
    if (QFile::exists(path))
        return path;
    const qint64 point = format.channels * format.bits / 8;
    if (!QFile::copy(whole, path) || !QFile::resize(path, QFileInfo(path).size() - point))
        qFatal("no cut target can be written");
    return path;
}
