// Makes a target of the sound of another file.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sound/CWav.h"
#include "tools/target/Inspection.h"

/// What becomes of a sound.
struct Conversion {
    QVector<double> samples; ///< Before they are rounded.
    CWav wav;                ///< The target, of one channel at the program's rate.
    QStringList steps;       ///< What was done, a line each.
    QString problem;         ///< Why there is no target; empty when there is one.
};

/// Returns why a sound cannot become a target at any gain: it has no samples, too few or too many
/// of them, some that are not numbers, or a rate too far from the program's. Empty when it can.
QString conversionProblem(const CWav& sound);

/// Makes a target of a file's first channel, the one that the program plays. At the program's rate
/// and with 8, 16 or 24 bits each sample stays as it is, but for the lowest code of 24 bits, which
/// is raised by one step. What is resampled, changed in level or of other encodings is rounded to
/// 24 bits. Silence is added where the program would leave out the last sample. A sample beyond
/// full scale is a problem.
Conversion convert(const Inspection& source, double gainDecibels);
