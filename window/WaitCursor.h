// The wait cursor while a session is prepared.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>
#include <QTimer>

/// Shows the wait cursor while it lives and until what has changed by then is on the screen:
/// minutes of sound take the charts seconds to draw.
class WaitCursor {
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() {
        // Drawing waits among the events; a timer comes when these have been handled.
        QTimer::singleShot(0, qApp, [] { QApplication::restoreOverrideCursor(); });
    }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor(WaitCursor&&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
    WaitCursor& operator=(WaitCursor&&) = delete;
};
