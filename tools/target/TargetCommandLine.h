// What pellion-target is asked to do.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/Command.h"
#include "tools/target/TargetFile.h"
#include "tools/target/TargetRecipe.h"

#include <QStringList>

#include <variant>

/// Make a file by a recipe.
struct MakeRequest {
    TargetRecipe recipe;
    QString fileName;
    ExistingFile existing = ExistingFile::Keep;
};

/// Make a target of a file.
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

/// Returns what a command line, the program's name in front, asks for. Every number in it has been
/// checked, and the recipe has been found to have no problems.
Request parseCommandLine(const QStringList& arguments);
