// What keeps the program from finding the sound in a WAV file.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/target/Inspection.h"

/// Returns a sentence for each thing in which a file differs from a canonical header, followed by
/// linear PCM of 8, 16 or 24 bits as long as it says. Empty for a canonical file.
QStringList headerObjections(const Inspection& inspection);

/// Returns a sentence for each oddity that neither the program nor most others mind.
QStringList headerNotes(const RiffWalk& walk);
