// The command that makes a target of a file that is none yet.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Returns the command line, for a shell, that converts a file into one beside it, named with
/// "-fixed".
QString fixCommand(const QString& fileName);
