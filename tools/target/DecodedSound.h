// The sound of a file of any format.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sound/CWav.h"

#include <QString>

/// A sound as libsndfile reads it.
struct DecodedSound {
    /// Its samples on the full scale of -1 to +1, which some formats exceed, its channels, its
    /// sampling rate and the bits that hold the samples: 8, 16, 24, or 32 where those do not.
    CWav wav;
    QString container; ///< In libsndfile's words, such as "AIFF (Apple/SGI)".
    QString encoding;  ///< Likewise, such as "A-Law".
};

/// Reads up to a number of samples of each channel. There are none when libsndfile does not know
/// the file's format.
DecodedSound decodedSound(const std::string& path, qint64 maximumFrames);
