// Today's sound, compared with a saved state.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/session/SavedState.h"
#include "tools/session/SessionFindings.h"

#include <optional>

/// Returns what differs between the values that are saved and those of today.
QVector<SessionFinding> differences(const SoundState& saved, const SoundState& today);

struct ComparedFindings {
    QVector<SessionFinding> findings;
    QVector<SessionFinding> notes; ///< Problems that the saved state has as well.
};

/// Returns what is wrong with today's sound and, if there is a saved state, what has changed since.
/// Without a sound server nothing is compared.
ComparedFindings compareSound(const SoundState& today, const std::optional<SavedState>& saved);
