// What a WAV file is meant to hold.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sound/CWav.h"
#include "tools/target/RiffWalk.h"

/// Returns whether a format is linear PCM of 8, 16 or 24 bits.
bool isReadableFormat(const RiffFormat& format);

/// Returns the sound that a file's chunks describe, wherever in the file they are, in a file of its
/// own: the frames that the data chunk holds in full. Samples are on the full scale of -1 to +1,
/// also the lowest code of 24 bits, which is -1 here. Where the file says 0 of something, there is
/// one channel, at the program's rate, with data to the end of the file. Without samples when there
/// is no format, no data or another encoding.
CWav intendedSound(QIODevice& file, const RiffWalk& walk);

/// Returns how many samples have the lowest code of 24 bits; 0 at other numbers of bits.
qint64 minimumCodesOf24Bits(const CWav& wav);

/// Returns the samples of one channel, counted from 0.
QVector<double> channelOf(const CWav& wav, int channel);
