// The one rate at which the program plays.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Data.h"

#include <QtGlobal>

/// Returns the rate in Hz at which the program plays everything: the default of the settings, which
/// nothing changes.
inline quint32 playedRate() {
    static const auto rate = static_cast<quint32>(Data().samplingRate);
    return rate;
}
