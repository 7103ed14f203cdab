// Whether the program would read a WAV file as it is meant.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sound/CWav.h"
#include "tools/target/RiffWalk.h"

#include <QStringList>

/// A reason for which the program would not give the listener what the file is meant to hold.
struct Finding {
    QString what;        ///< The problem of the file, in whole sentences.
    QString consequence; ///< What the program would do, in whole sentences.
};

/// What looking at a file has shown.
struct Inspection {
    QString fileName;
    bool isOpened = false;  ///< Whether it is a regular file that could be opened.
    QString programMessage; ///< What the program says on standard error; empty when nothing.
    CWav program;           ///< The file as the program reads it.
    CWav intended;          ///< The sound that it holds.
    QString container;      ///< Where libsndfile had to read that: its name of the format,
    QString encoding;       ///< and of the encoding of the samples.
    RiffWalk walk;
    QVector<Finding> findings;
    QStringList notes; ///< What the program does not mind, in whole sentences.

    bool isAsIntended() const { return isOpened && findings.isEmpty(); }
};

/// Looks at a file in two ways, as the program does and as it is meant, and compares.
Inspection inspect(const QString& fileName);

/// Returns how many samples of a target the program plays: the duration of so many samples at
/// a sampling rate (Hz, not 0), shown in milliseconds with two decimals, at the program's own rate.
int playedSamples(qint64 samples, quint32 samplingRate);
