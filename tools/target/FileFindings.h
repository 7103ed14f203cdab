// The problems of a WAV file, in words.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/target/Inspection.h"

/// Adds the findings and the notes to an inspection that is otherwise complete. `isLoaded` is what
/// CWav::LoadWav() has returned.
void judge(Inspection& inspection, bool isLoaded);
