// The state of the computer, as far as a session depends on it.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/session/SoundState.h"

#include <QString>

/// A folder that a session writes into.
struct FolderState {
    QString path;
    QString problem;      ///< Why no file can be made there, if so.
    qint64 freeBytes = 0; ///< For this user; 0 as well when no further file fits.
};

struct ComputerState {
    SoundState sound;
    FolderState desktop;  ///< Where results files are proposed.
    FolderState journals; ///< Where a running session keeps its responses.
    int keptJournals = 0; ///< That hold responses of sessions that are over.
    double load = 0;      ///< Processes that wanted to run, on average of the last minute.
    int processors = 1;
};

/// Looks at a folder without writing into it. Of one that a session will make, the folder above
/// counts.
FolderState folderState(const QString& path, bool isMadeBySessions);

/// Looks at everything.
ComputerState computerState();
