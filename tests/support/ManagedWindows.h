// The window manager's list of the windows on the screen, those of other programs included.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVector>

namespace testsupport {

/// A window as the window manager lists it.
struct ManagedWindow {
    quint64 id = 0;       ///< The same number as QWidget::winId().
    QString title;        ///< Of the title bar, with all that Qt appends.
    QString programClass; ///< By which a desktop distinguishes the windows of programs.
};

/// Returns the windows of every program on the screen that the window manager has taken over.
QVector<ManagedWindow> managedWindows();

/// Asks the window manager to close a window of any program, as its frame's close button does.
/// Returns whether the request could be sent.
bool closeManagedWindow(quint64 id);

} // namespace testsupport
