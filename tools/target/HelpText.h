// The help texts of pellion-target.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Returns the introductions of the help: to the program, to "make", "convert" and "info".
QString programDescription();
QString makeDescription();
QString convertDescription();
QString infoDescription();
