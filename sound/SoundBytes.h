// Samples as an audio output takes them.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QVector>

/// Returns `length` samples as little-endian 32-bit floats, four bytes each: the samples given,
/// cut off or padded with zeros at the end. Nothing is scaled, clipped or dithered; values beyond
/// -1..+1 are passed on as they are. A length below 1 gives no bytes, one beyond mostSamples that
/// many samples.
QByteArray soundBytes(const QVector<double>& samples, int length);
