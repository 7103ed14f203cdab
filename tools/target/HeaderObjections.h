// What keeps the program from finding the sound in a WAV file.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/target/Inspection.h"

/// Returns a sentence for each difference from a canonical file: a 44-byte header, then as much
/// linear PCM of 8, 16 or 24 bits as the header declares.
QStringList headerObjections(const Inspection& inspection);

/// Returns a sentence for each irregularity that the program ignores.
QStringList headerNotes(const RiffContents& riff);
