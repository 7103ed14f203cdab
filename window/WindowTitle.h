// The titles of the two windows.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Version.h"

/// Returns the full title of a window, given its name, such as "Main Window".
inline QString titleOfWindow(const QString& window) {
    return QStringLiteral("Vantaro Lab | Pellion (%1) | %2").arg(programVersion(), window);
}
