// The state of a good day, in a file.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/session/SoundState.h"

#include <QString>

#include <optional>

struct SavedState {
    SoundState sound; ///< Of which only what lasts is in the file.
    QString problem;  ///< Why the file cannot be used; empty when it can.
};

/// Reads a file that writeSavedState() has written.
SavedState readSavedState(const QString& path);

/// Writes what lasts of a state; returns what went wrong, or nothing. No file is replaced but an
/// earlier saved state.
QString writeSavedState(const QString& path, const SoundState& sound);
