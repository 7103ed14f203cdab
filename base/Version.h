// The version of the program.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Returns the version as titles and --version show it, such as "v014": the version number in
/// CMakeLists.txt with three digits.
QString programVersion();
