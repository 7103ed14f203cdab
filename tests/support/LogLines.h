// Collects what the program writes on the log.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace testsupport {

/// Collects the lines that reach the toolkit's log while it lives. One at a time.
class LogLines {
public:
    LogLines();
    ~LogLines();
    LogLines(const LogLines&) = delete;
    LogLines(LogLines&&) = delete;
    LogLines& operator=(const LogLines&) = delete;
    LogLines& operator=(LogLines&&) = delete;

    /// Everything collected, in order.
    QStringList all() const;

    /// The warnings among it, a misspelt connection for example.
    QStringList warnings() const;
};

} // namespace testsupport
