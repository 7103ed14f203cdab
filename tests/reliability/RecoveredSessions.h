// The recovery of killed sessions by pellion-session.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "reliability/KilledSessions.h"

/// Recovers the journals of killed sessions into the folder of their results files, and has both
/// example analyses read it. Counts the acknowledged responses that are then in the file of their
/// session; every other finding is a fault. To be called from any thread.
void recoverSessions(const QString& folder, const QList<KilledSession>& sessions,
                     KillResult& result);
