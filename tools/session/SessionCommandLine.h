// The command line of pellion-session.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/Command.h"

#include <QString>
#include <QStringList>

#include <variant>

/// Check whether the computer is ready.
struct CheckRequest {
    QString saveTo;      ///< Where to save the state; empty for nowhere.
    QString compareWith; ///< A saved state; empty for none.
    bool isJson = false;
};

/// List kept journals, or copy them into a folder.
struct RecoverRequest {
    QString folder; ///< Empty for a list only.
    bool isInWindow = false;
};

using SessionRequest = std::variant<CheckRequest, RecoverRequest, TextRequest, UsageError>;

/// Returns what a command line, the program's name first, asks for.
SessionRequest parseSessionCommandLine(const QStringList& arguments);
