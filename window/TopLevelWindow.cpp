// The title, the position and the platform window of a top-level window.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/TopLevelWindow.h"

#include "base/Sampling.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

QRect windowPlacement(QSize available, QPoint currentPosition, bool center, double widthFraction,
                      double heightFraction) {
    const QSize size(truncatedToInt(available.width() * std::clamp(widthFraction, 0.0, 1.0)),
                     truncatedToInt(available.height() * std::clamp(heightFraction, 0.0, 1.0)));
    if (center)
        return {QPoint((available.width() - size.width()) / 2,
                       (available.height() - size.height()) / 2),
                size};
    constexpr int leftmost = 5;
    constexpr int topmost = 40;
    return {QPoint(std::max(currentPosition.x(), leftmost), std::max(currentPosition.y(), topmost)),
            size};
}

void placeOnPrimaryScreen(QWidget& window, bool center, double widthFraction,
                          double heightFraction) {
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (screen == nullptr)
        return;
    window.setGeometry(windowPlacement(screen->availableSize(), window.pos(), center, widthFraction,
                                       heightFraction));
}
