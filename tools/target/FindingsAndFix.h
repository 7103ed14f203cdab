// The problems of a WAV file in words, and the command that fixes them.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/target/Inspection.h"

/// Adds the findings, the notes and the fix to an inspection that is otherwise complete. `isLoaded`
/// is what CWav::LoadWav() has returned.
void addFindings(Inspection& inspection, bool isLoaded);
