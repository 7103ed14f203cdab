// A saved state of the sound, in a file.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/session/SoundState.h"

#include <QJsonObject>
#include <QString>

#include <optional>

struct SavedState {
    SoundState sound; ///< The file has only its lasting values.
    QString problem;  ///< Why the file cannot be used; empty when it can.
};

/// Returns the lasting values of a state, those that should be the same from day to day, by the
/// names under which they are saved.
QJsonObject lastingValues(const SoundState& state);

/// Reads a file that writeSavedState() has written.
SavedState readSavedState(const QString& path);

/// Writes the lasting values of a state; returns what went wrong, or nothing. Of existing files,
/// only a saved state is replaced.
QString writeSavedState(const QString& path, const SoundState& sound);
