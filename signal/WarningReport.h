// How the signal library reports calls with questionable arguments.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QString;

/// Takes the text of a warning and returns when it has been reported.
using WarningReporter = void (*)(const QString& text);

/// Prints a text as one line on standard error.
void printWarning(const QString& text);

/// Reports a warning by the current reporter, initially printWarning().
///
/// Programs that link the windows show a modal box without a parent, titled "Warning", with the
/// text and a single OK button; in a program without a QApplication, or outside its thread, the
/// text is printed.
void reportWarning(const QString& text);

/// Replaces the reporter, which must not be null, and returns the earlier one. To be called before
/// other threads report.
WarningReporter setWarningReporter(WarningReporter reporter);
