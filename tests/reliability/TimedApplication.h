// An application that measures how long it was busy.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>
#include <QElapsedTimer>

#include <algorithm>

/// Adds up the time of handling events: clicks, timers, layout, painting, without waiting. Events
/// sent while another is handled count as part of it.
class TimedApplication : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override {
        if (isHandling)
            return QApplication::notify(receiver, event);
        isHandling = true;
        QElapsedTimer clock;
        clock.start();
        const bool isHandled = QApplication::notify(receiver, event);
        const double tookMs = double(clock.nsecsElapsed()) / nanosecondsInMillisecond;
        busy += tookMs;
        longest = std::max(longest, tookMs);
        isHandling = false;
        return isHandled;
    }

    /// Resets both to 0.
    void forgetEvents() { busy = longest = 0; }

    double busyMs() const { return busy; }       ///< All events together.
    double longestMs() const { return longest; } ///< The event that took longest.

    static constexpr double nanosecondsInMillisecond = 1e6;

private:
    bool isHandling = false;
    double busy = 0;
    double longest = 0;
};
