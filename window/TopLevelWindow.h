// The title, the position and the platform window of a top-level window.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Version.h"

#include <QRect>
#include <QWidget>
#include <QWindow>

/// Returns the full title of a window, given its name, such as "Main Window".
inline QString titleOfWindow(const QString& window) {
    return QStringLiteral("Vantaro Lab | Pellion (%1) | %2").arg(programVersion(), window);
}

/// Returns the geometry of a window that covers the given fractions of the available screen.
///
/// @param available        the screen's size in pixels without task bars
/// @param currentPosition  where the window is now, used when it is not centred
/// @param center           whether to centre the window; otherwise it stays where it is, but at
///                         least 5 pixels from the left and 40 from the top, so that its frame
///                         and title can be reached
/// @param widthFraction    of the available width, limited to 0..1
/// @param heightFraction   of the available height, limited to 0..1
QRect windowPlacement(QSize available, QPoint currentPosition, bool center, double widthFraction,
                      double heightFraction);

/// Places a window on the primary screen as windowPlacement() says. Does nothing without a screen.
void placeOnPrimaryScreen(QWidget& window, bool center, double widthFraction,
                          double heightFraction);

/// Creates the platform window again after the window's close button has destroyed it; to be called
/// before the QWindow is deleted. Without it Qt 5.15 keeps a deleted QWindow as the window under
/// the mouse, and the next modal dialog crashes.
inline void restorePlatformWindow(const QWidget& window) {
    QWindow* const handle = window.windowHandle();
    if (handle != nullptr && handle->handle() == nullptr)
        handle->create();
}
