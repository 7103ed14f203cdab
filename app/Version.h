// Which version this is, and the titles that tell it.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// As titles, "--version" and the manual pages show it; the build's own number is its digits.
inline QString programVersion() {
    return QStringLiteral("v014");
}

/// Returns the title of the window that is called that.
inline QString titleOfWindow(const QString& window) {
    return QStringLiteral("Vantaro Lab | Pellion (%1) | %2").arg(programVersion(), window);
}
