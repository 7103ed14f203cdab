// The version of the program.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Version.h"

QString programVersion() {
    return QStringLiteral("v%1").arg(PELLION_VERSION, 3, 10, QLatin1Char('0'));
}
