// Writes a target to the disk.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sound/CWav.h"

#include <QString>

/// What to do about a file of the same name.
enum class ExistingFile { Keep, Replace };

/// Writes the header and the raw data into a new file beside the named one, and renames it only
/// when all of it is on the disk: if anything fails, an existing file stays as it was. Data of an
/// odd size are followed by a byte of 0, as the format requires.
///
/// Returns why it failed, in one sentence without full stop; empty on success.
QString writeTarget(const CWav& wav, const QString& fileName, ExistingFile existing);
