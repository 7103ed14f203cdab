// The platform windows of closed windows.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <QWindow>

/// Gives a window that was closed by its frame a platform window again; to be called before its
/// QWindow is deleted. Closing by the frame destroys the platform window, and without one a QWindow
/// that is deleted stays what Qt 5.15 takes for the window under the mouse: the next modal dialog
/// crashes.
inline void restorePlatformWindow(const QWidget& window) {
    QWindow* const handle = window.windowHandle();
    if (handle != nullptr && handle->handle() == nullptr)
        handle->create();
}
