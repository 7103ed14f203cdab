// The one rate at which the program plays.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Data.h"

/// In Hz.
inline quint32 playedRate() {
    return static_cast<quint32>(Data().samplingRate);
}
