// Where target files are looked for and results files are proposed.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/DesktopFolder.h"

#include <QStandardPaths>

QString desktopFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
}
