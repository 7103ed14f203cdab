// The command line of pellion-target.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/Command.h"
#include "tools/target/TargetFile.h"
#include "tools/target/TargetRecipe.h"

#include <QStringList>

#include <variant>

/// Make a file from a recipe.
struct MakeRequest {
    TargetRecipe recipe;
    QString fileName;
    ExistingFile existing = ExistingFile::Keep;
};

/// Convert a file to a target.
struct ConvertRequest {
    QString sourceName;
    double gainDecibels = 0;
    QString fileName;
    ExistingFile existing = ExistingFile::Keep;
};

/// Report on files.
struct InfoRequest {
    QStringList fileNames;
    bool isJson = false;
};

using Request = std::variant<MakeRequest, ConvertRequest, InfoRequest, TextRequest, UsageError>;

/// Returns what a command line, which begins with the program's name, asks for. All numbers have
/// been checked, and the recipe has no problems.
Request parseCommandLine(const QStringList& arguments);
