// Today's sound, compared with that of a good day.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/session/SavedState.h"
#include "tools/session/SessionFindings.h"

#include <optional>

/// Returns what differs between the lasting values of a good day and those of today.
QVector<SessionFinding> differences(const SoundState& goodDay, const SoundState& today);

struct ComparedFindings {
    QVector<SessionFinding> findings;
    QVector<SessionFinding> notes; ///< Problems that were already there on the good day.
};

/// Returns what is wrong with today's sound and, if there is a good day, what has changed since.
/// Without a sound server nothing can have changed.
ComparedFindings compareSound(const SoundState& today, const std::optional<SavedState>& goodDay);
