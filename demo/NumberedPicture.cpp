// A picture of a window whose controls are numbered, for the guide.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo/NumberedPicture.h"

#include <QPainter>

#include <algorithm>

QPixmap numberedPicture(QWidget& window, const QStringList& controls) {
    constexpr int radius = 11;
    QPixmap picture = window.grab();
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QFont font = painter.font();
    font.setPixelSize(radius + 2);
    font.setBold(true);
    painter.setFont(font);
    int number = 0;
    for (const QString& name : controls) {
        const auto* control = window.findChild<QWidget*>(name);
        if (control == nullptr || !control->isVisible())
            qFatal("the window shows no %s", qPrintable(name));
        // Above a control of little height rather than on its text, but within the picture.
        const QPoint corner = control->mapTo(&window, QPoint(control->width() - radius / 2, 0));
        const QPoint center(corner.x(), std::max(corner.y() - radius / 2, radius));
        const QRect disc(center - QPoint(radius, radius), QSize(2 * radius, 2 * radius));
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0xB0, 0x20, 0x20));
        painter.drawEllipse(disc);
        painter.setPen(Qt::white);
        painter.drawText(disc, Qt::AlignCenter, QString::number(++number));
    }
    return picture;
}
