// Asks the window manager for what a person asks of it by a window's frame.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

namespace testsupport {

/// Has the window manager close a window as its frame's close button does: the program gets the
/// manager's request and may refuse it. The request arrives through the event loop. Returns false
/// where there is no X server to ask, or the window is not on the screen.
bool closeByWindowManager(const QWidget& window);

} // namespace testsupport
