// Puts a made target on the disk.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sound/CWav.h"

#include <QString>

/// What to do about a file of the same name.
enum class ExistingFile { Keep, Replace };

/// Writes the header and the raw data into a new file beside the named one, and only when the disk
/// holds all of them gives it the name: a file that exists is as it was when anything fails. Data
/// of an odd size are followed by a byte of 0, as the format wants it.
///
/// Returns why it could not be done, in one sentence that ends in no full stop; empty when it was.
QString writeTarget(const CWav& wav, const QString& fileName, ExistingFile existing);
