// Converts the sound of another file to a target.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sound/CWav.h"
#include "tools/target/Inspection.h"

/// The result of a conversion.
struct Conversion {
    QVector<double> samples; ///< Before they are rounded.
    CWav wav;                ///< The target, of one channel at the program's rate.
    QStringList steps;       ///< What was done, one line per step.
    QString problem;         ///< Why there is no target; empty when there is one.
};

/// Returns why a sound cannot become a target at any gain: no samples, too few or too many, some
/// that are not numbers, or a rate too far from the program's. Empty if it can.
QString conversionProblem(const CWav& sound);

/// Makes a target from a file's first channel, the one that the program plays. At the program's
/// rate and with 8, 16 or 24 bits each sample stays as it is, except that the lowest code of 24
/// bits is raised by one step. Samples that are resampled, changed in level or stored in another
/// encoding are rounded to 24 bits. Silence is added where the program would leave out the last
/// sample. A sample beyond full scale is a problem.
Conversion convert(const Inspection& source, double gainDecibels);
