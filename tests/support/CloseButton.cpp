// Closes a window as its close button does: through the window manager.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/CloseButton.h"

#include "support/ManagedWindows.h"

#include <QEvent>
#include <QWidget>

namespace testsupport {

bool pressCloseButton(const QWidget& window) {
    return closeManagedWindow(window.winId());
}

CloseEvents::CloseEvents(QWidget& window) {
    window.installEventFilter(this);
}

bool CloseEvents::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Close)
        ++closeEvents;
    return QObject::eventFilter(watched, event);
}

} // namespace testsupport
