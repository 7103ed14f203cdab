// How the signal library reports what a caller should not have asked for.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QString;

/// Shows a modal box without a parent, titled "Warning", with the text and a single OK button, and
/// returns when it has been closed. Where no box can be shown, in a program without widgets or in
/// a thread other than that of the windows, the text is one line on standard error instead.
void reportWarning(const QString& text);
