// What is wrong with a computer's state, and what to do about it.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/session/ComputerState.h"

#include <QJsonObject>
#include <QVector>

/// One thing that is not as a session wants it.
struct SessionFinding {
    QString subject; ///< Of one or two words.
    QString problem; ///< In one sentence, without full stop, which follows the subject.
    QString remedy;  ///< What to do, in whole sentences.
};

/// Returns what is wrong with the sound, or with the rest.
QVector<SessionFinding> soundFindings(const SoundState& state);
QVector<SessionFinding> diskAndLoadFindings(const ComputerState& state);

/// Returns what lasts of a state, as a saved state holds it.
QJsonObject lastingValues(const SoundState& state);

/// Returns what differs between the values that last of a good day and of today.
QVector<SessionFinding> differences(const QJsonObject& goodDay, const QJsonObject& today);
