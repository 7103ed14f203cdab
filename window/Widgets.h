// Creating, describing, ordering and deleting the widgets of a window.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1String>
#include <QString>
#include <QWidget>

#include <initializer_list>
#include <utility>

/// Creates a widget whose object name is that of its member. It has no parent yet: the layouts give
/// their widgets one.
template <typename Widget, typename... Arguments>
Widget* named(const char* memberName, Arguments&&... arguments) {
    auto* widget = new Widget(std::forward<Arguments>(arguments)...);
    widget->setObjectName(QLatin1String(memberName));
    return widget;
}

/// Sets the texts of a widget for screen readers: its name and its purpose.
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

/// Deletes an object and sets its pointer to null.
template <typename Object> void deleteAndForget(Object*& object) {
    delete object;
    object = nullptr;
}
