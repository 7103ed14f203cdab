// Where target files are looked for and results files are proposed.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Returns the user's desktop folder as the platform reports it, or an empty text where the
/// platform reports none.
QString desktopFolder();
