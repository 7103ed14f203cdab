// The warning box, which also shows the warnings of the signal library.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMessageBox>

/// Shows a modal box titled "Warning" with a text and a single OK button, and returns when it has
/// been closed. The parent may be null.
inline void showWarning(QWidget* parent, const QString& text) {
    QMessageBox::warning(parent, QStringLiteral("Warning"), text, QMessageBox::Ok);
}
