// What is wrong with a computer's state, and what to do about it.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/session/ComputerState.h"

#include <QVector>

/// One problem that can disturb a session.
struct SessionFinding {
    QString subject; ///< Of one or two words.
    QString problem; ///< One sentence without full stop, printed after the subject.
    QString remedy;  ///< What to do, in whole sentences.
};

/// Returns what is wrong with the sound, or with the rest.
QVector<SessionFinding> soundFindings(const SoundState& state);
QVector<SessionFinding> diskAndLoadFindings(const ComputerState& state);
