// The mouse while the program is busy: its cursor, and clicks that wait in the queue.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QInputEvent>
#include <QTimer>
#include <QWidget>

/// Shows the wait cursor while it lives and until the changes made by then are on the screen:
/// minutes of sound take the charts seconds to draw.
class WaitCursor {
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() {
        // Painting is queued as events; the timer fires after them.
        QTimer::singleShot(0, qApp, [] { QApplication::restoreOverrideCursor(); });
    }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor(WaitCursor&&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
    WaitCursor& operator=(WaitCursor&&) = delete;
};

/// Discards presses of the mouse that were made on a disabled widget while the program was busy.
/// The window system may deliver them only after the widget has been enabled.
///
/// Their time identifies them: X servers and Wayland compositors on the same computer stamp input
/// with the monotonic clock in milliseconds. Where another clock is used, nothing is discarded.
class StaleClicks : public QObject {
public:
    explicit StaleClicks(QWidget* filtered) : QObject(filtered), widget(filtered) {
        widget->installEventFilter(this);
    }

    /// To be called before and after the work, with the widget not yet enabled.
    void begin() { since = now(); }
    void end() { duration = widget->isEnabled() ? 0 : now() - since; }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool isPress = event->type() == QEvent::MouseButtonPress ||
                             event->type() == QEvent::MouseButtonDblClick;
        if (isPress && quint32(static_cast<QInputEvent*>(event)->timestamp()) - since < duration)
            return true;
        return QObject::eventFilter(watched, event);
    }

private:
    /// 32 bits of milliseconds, which wrap around after 49 days like those of an X server.
    static quint32 now() {
        QElapsedTimer clock;
        clock.start();
        return quint32(clock.msecsSinceReference());
    }

    QWidget* widget;
    quint32 since = 0;
    quint32 duration = 0; ///< Milliseconds; 0 discards nothing.
};
