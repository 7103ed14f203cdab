// Which version this is, and the titles that tell it.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// As titles, "pellion-target --version" and the manual pages show it. The build's own number
/// (CMakeLists.txt) is its digits; scripts/check compares them all.
inline QString programVersion() {
    return QStringLiteral("v014");
}

/// Returns the full title of a window, given its name, such as "Main Window".
inline QString titleOfWindow(const QString& window) {
    return QStringLiteral("Vantaro Lab | Pellion (%1) | %2").arg(programVersion(), window);
}
