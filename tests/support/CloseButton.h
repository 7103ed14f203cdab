// Closes a window as its close button does: through the window manager.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QWidget;

namespace testsupport {

/// Asks the window manager to close a window on the screen, as a click on the frame's close button
/// does: the request reaches disabled windows too. Returns whether it could be sent; the close
/// event comes later.
bool pressCloseButton(const QWidget& window);

/// Counts the close events that reach a window while this lives.
class CloseEvents : public QObject {
public:
    explicit CloseEvents(QWidget& window);

    int count() const { return closeEvents; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int closeEvents = 0;
};

} // namespace testsupport
