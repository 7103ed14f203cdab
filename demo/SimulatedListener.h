// A simulated listener who approaches a target's pitch.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVector>

/// Returns the frequencies (whole Hz) that a practised listener asks for to match a pitch (Hz):
/// first far off, then from either side ever closer, as in a bracketing procedure, until the
/// match is as good as one hertz. The same pitch always gives the same requests.
QVector<int> requestsToMatch(double pitch);
