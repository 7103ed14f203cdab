// What "pellion-target info" prints of an inspected file.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/target/Inspection.h"

#include <QJsonObject>

/// Prints an inspection to standard output: the file's name, its header by CWav::DisplayHeader(),
/// the duration and the levels of what it is meant to hold, whether the program would read it as
/// intended, then its problems, the command that fixes them, and the notes.
void printReport(const Inspection& inspection);

/// Returns the same as a JSON object: "file", "opened", "asIntended", "channels", "samplingRate"
/// (Hz), "bitsPerSample", "samples" (of each channel), "durationMs", "levels" of each channel with
/// "peakDb" and "rmsDb" re full scale, "problems" with "problem" and "effect", "fix", "notes".
QJsonObject jsonReport(const Inspection& inspection);

/// Returns the length of a sound in words: "250.00 ms, 10000 samples".
QString lengthText(const CWav& wav);
