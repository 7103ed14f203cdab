// A picture of a window whose controls are numbered, for the guide.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPixmap>
#include <QStringList>
#include <QWidget>

/// Returns a picture of the window with a number from 1 on the upper right corner of each control.
/// `controls` are object names in the order of the numbers; one that the window does not have, or
/// does not show, ends the program.
QPixmap numberedPicture(QWidget& window, const QStringList& controls);
