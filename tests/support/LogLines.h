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

    /// Expects a warning once for each call: its absence is a complaint.
    void expect(const QString& warning) { expectedWarnings.append(warning); }

    /// Allows any number of warnings that begin like this.
    void allow(const QString& beginning) { allowedBeginnings.append(beginning); }

    /// Returns and clears the unexpected warnings and the missing ones.
    QStringList takeComplaints();

private:
    QStringList expectedWarnings;
    QStringList allowedBeginnings;
};

} // namespace testsupport
