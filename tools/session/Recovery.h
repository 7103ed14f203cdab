// Making results files from journals.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/session/KeptJournals.h"

#include <QString>

/// The result of recovering one journal.
struct Recovery {
    QString results;       ///< Path of the results file that holds its responses now, if any.
    bool wasThere = false; ///< Whether that file was there before, with the same content.
    QString problem;       ///< Why the journal was kept; empty when it was removed.
};

/// Copies the whole responses of a journal into a results file in a folder, under the name that the
/// program proposed for it. No file is ever replaced: if a file of that name holds something else,
/// the next free file number is taken; if it holds the same, nothing is written and the journal is
/// kept. The journal is removed when the results file is complete on the disk and nothing of the
/// journal was left out. A journal without a response is removed at once.
Recovery recover(const QString& journalPath, const QString& folder);

/// Returns a sentence about a recovery, for the person who asked for it.
QString recoveryText(const Recovery& recovery, const QString& journalPath);
