// Collects what the program writes on the log.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace testsupport {

/// Collects the lines that reach Qt's log while it lives, from any thread. One at a time.
class LogLines {
public:
    LogLines();
    ~LogLines();
    Q_DISABLE_COPY_MOVE(LogLines)

    /// Everything collected, in order.
    QStringList all() const;

    /// The warnings among it, a misspelt connection for example.
    QStringList warnings() const;

    /// A warning that has to come, once for each call: it is no complaint, but its absence is.
    void expect(const QString& warning) { expectedWarnings.append(warning); }

    /// Warnings that begin like this may come, any number of them.
    void allow(const QString& beginning) { allowedBeginnings.append(beginning); }

    /// The warnings that nobody expected, and those that did not come. Empties both.
    QStringList takeComplaints();

private:
    QStringList expectedWarnings;
    QStringList allowedBeginnings;
};

} // namespace testsupport
