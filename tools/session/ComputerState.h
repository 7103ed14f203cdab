// The state of the computer, as far as a session depends on it.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/session/SoundState.h"

#include <QString>

/// A folder that a session writes into.
struct FolderState {
    QString path;
    QString problem;      ///< Why no file can be created there; empty if one can.
    qint64 freeBytes = 0; ///< For this user; also 0 if no further file can be created.
};

struct ComputerState {
    SoundState sound;
    FolderState desktop;  ///< Where results files are proposed.
    FolderState journals; ///< Where a running session keeps its responses.
    int keptJournals = 0; ///< Number of journals that hold responses of ended sessions.
    double load = 0;      ///< Load average of the last minute.
    int processors = 1;
};

/// Checks a folder without writing into it; for one that a session will create, the parent folder.
FolderState folderState(const QString& path, bool isMadeBySessions);

/// Returns the state of everything.
ComputerState computerState();
