// What pellion-session recovers of sessions that were killed.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "reliability/KilledSessions.h"

/// Recovers the journals of killed sessions into the folder of their results files, and has both
/// example analyses read it. Counts the acknowledged responses that are in the file of their
/// session then; whatever else is found is a fault. To be called from any thread.
void recoverSessions(const QString& folder, const QList<KilledSession>& sessions, Remains& remains);
