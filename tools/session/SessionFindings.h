// What is wrong with a computer's state, and what to do about it.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/session/ComputerState.h"

#include <QJsonObject>
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

/// Returns the lasting values of a state, as they are saved.
QJsonObject lastingValues(const SoundState& state);

/// Returns what differs between the lasting values of a good day and those of today.
QVector<SessionFinding> differences(const QJsonObject& goodDay, const QJsonObject& today);
