// The mouse while the program is busy: the wait cursor, and clicks that are delivered late.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QInputEvent>
#include <QTimer>
#include <QWidget>

/// Shows the wait cursor during its lifetime, and after that until the changes have been painted:
/// the charts of a sound of some minutes take seconds to draw.
class WaitCursor {
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() {
        // Paint events are queued; the timer fires after them.
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

    /// begin() is called before the work, end() after it, while the widget is still disabled.
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
