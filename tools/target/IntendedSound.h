// What a WAV file is meant to hold.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sound/CWav.h"
#include "tools/target/RiffContents.h"

/// Returns whether a format is linear PCM of 8, 16 or 24 bits.
bool isReadableFormat(const RiffFormat& format);

/// Returns the sound that a file's chunks describe, wherever they are in the file: the complete
/// frames of the data chunk. Full scale is -1 to +1; the lowest code of 24 bits is -1 here. A value
/// of 0 in the header is taken for one channel, for the program's rate, or for data to the end of
/// the file. There are no samples without format or data, or with another encoding.
CWav intendedSound(QIODevice& file, const RiffContents& riff);

/// Returns how many samples have the lowest code of 24 bits; 0 at other numbers of bits.
qint64 minimumCodesOf24Bits(const CWav& wav);

/// Returns the samples of one channel, counted from 0.
QVector<double> channelOf(const CWav& wav, int channel);
