// Whether the program would read a WAV file as intended.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sound/CWav.h"
#include "tools/target/RiffContents.h"

#include <QStringList>

/// A reason why the program would not play the sound that the file is meant to hold.
struct Finding {
    QString what;        ///< The problem of the file, in whole sentences.
    QString consequence; ///< What the program would do, in whole sentences.
};

/// The result of inspecting a file.
struct Inspection {
    QString fileName;
    bool isOpened = false;  ///< Whether it is a regular file that could be opened.
    QString programMessage; ///< What the program says on standard error; empty when nothing.
    CWav program;           ///< The file as the program reads it.
    CWav intended;          ///< The sound that it holds.
    QString container;      ///< libsndfile's name of the format; empty if it was not needed.
    QString encoding;       ///< Likewise, of the samples' encoding.
    RiffContents riff;
    QVector<Finding> findings;
    QString fix;       ///< The shell command that fixes them; empty if there is none.
    QStringList notes; ///< Irregularities that the program ignores, in whole sentences.

    bool isAsIntended() const { return isOpened && findings.isEmpty(); }
};

/// Reads a file in two ways, as the program does and as the file's chunks describe, and compares.
Inspection inspect(const QString& fileName);

/// Returns how many samples the program plays of a target with the given number of samples and
/// sampling rate (Hz, not 0): the duration, shown in milliseconds with two decimals, times the
/// program's own rate.
int playedSamples(qint64 samples, quint32 samplingRate);
