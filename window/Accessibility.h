// Names for screen readers, and the order of the Tab key.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>

#include <initializer_list>

/// Sets what screen readers say of a widget: its name and what it is for.
inline void describe(QWidget* widget, const QString& name, const QString& description) {
    widget->setAccessibleName(name);
    widget->setAccessibleDescription(description);
}

/// Makes the Tab key go from each widget of a window to the next one in the list.
inline void setTabOrder(std::initializer_list<QWidget*> widgets) {
    QWidget* previous = nullptr;
    for (QWidget* widget : widgets) {
        if (previous != nullptr)
            QWidget::setTabOrder(previous, widget);
        previous = widget;
    }
}
