// The sound of a file of any format.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sound/CWav.h"

#include <QString>

/// A sound as libsndfile reads it.
struct DecodedSound {
    /// Its samples, channels, sampling rate and bits per sample (32 if 24 are not enough). Full
    /// scale is -1 to +1, which some formats exceed.
    CWav wav;
    QString container; ///< In libsndfile's words, such as "AIFF (Apple/SGI)".
    QString encoding;  ///< Likewise, such as "A-Law".
};

/// Reads up to `maximumFrames` samples of each channel. There are none if libsndfile does not know
/// the file's format.
DecodedSound decodedSound(const std::string& path, qint64 maximumFrames);
