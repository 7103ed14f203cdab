// The command that converts a file with problems to a target.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Returns the shell command that converts a file to one beside it with "-fixed" in its name.
QString fixCommand(const QString& fileName);
