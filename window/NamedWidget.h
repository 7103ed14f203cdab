// Creating widgets that tests and drivers find by name.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1String>

#include <utility>

/// Creates a widget whose object name is that of its member. It has no parent yet: the layouts give
/// their widgets one.
template <typename Widget, typename... Arguments>
Widget* named(const char* memberName, Arguments&&... arguments) {
    auto* widget = new Widget(std::forward<Arguments>(arguments)...);
    widget->setObjectName(QLatin1String(memberName));
    return widget;
}
