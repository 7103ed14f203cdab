// Where a window opens on the screen.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>

class QWidget;

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

/// Places a window on the primary screen as windowPlacement() says. Without a screen it stays.
void placeOnPrimaryScreen(QWidget& window, bool center, double widthFraction,
                          double heightFraction);
