// Whether a loaded file can be a target, and its samples as they are played.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVector>

class CWav;

/// Returns the number of samples per channel that the file's header declares; 0 when it declares
/// no channel.
qint64 samplesPerChannel(const CWav& wav);

/// Returns the length of one channel in seconds at the file's own sampling rate, which must not
/// be 0.
double durationSeconds(const CWav& wav);

/// Returns whether a file can be prepared, shown and played as a target at the given sampling rate
/// of the settings (Hz).
///
/// It cannot if it has no channels, no sampling rate or no samples, or if there is not enough
/// memory to prepare and play it. Nor can it if its number of samples is below 1 or beyond what a
/// vector holds: as loaded, or as "Go" computes it from the duration shown in milliseconds with two
/// decimals. (An output that gets nothing to play never reports that it is idle.)
bool isUsableTarget(const CWav& wav, double samplingRate);

/// Copies up to `count` (0 or more) samples of one channel into the beginning of `target`, which
/// grows if it is shorter than `count`. The channel is the only one of a mono file or the first
/// (left) of a stereo file; nothing is copied from files with more channels. If the file has fewer
/// samples, the rest up to `count` becomes 0.
void copyFirstChannel(const CWav& wav, int count, QVector<double>& target);
