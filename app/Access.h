// What a person who does not see a window, or uses no mouse, needs of it.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>

#include <initializer_list>

/// Tells screen readers what a widget is called and what it is for.
inline void describe(QWidget* widget, const QString& name, const QString& description) {
    widget->setAccessibleName(name);
    widget->setAccessibleDescription(description);
}

/// Lets the tab key go from each widget of a window to the next one in the list.
inline void setTabOrder(std::initializer_list<QWidget*> widgets) {
    QWidget* previous = nullptr;
    for (QWidget* widget : widgets) {
        if (previous != nullptr)
            QWidget::setTabOrder(previous, widget);
        previous = widget;
    }
}
