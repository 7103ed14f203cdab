// Locks a journal against other recoveries, and detects that a running session holds it.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// During its lifetime, locks the journal of a session that is over, so that nothing else recovers
/// it.
class JournalLock {
public:
    /// Locks a journal, if it can be opened and no running session holds it.
    explicit JournalLock(const QString& path);
    ~JournalLock();
    JournalLock(const JournalLock&) = delete;
    JournalLock(JournalLock&&) = delete;
    JournalLock& operator=(const JournalLock&) = delete;
    JournalLock& operator=(JournalLock&&) = delete;

    /// Whether another process holds the journal, or a session may be about to lock it. Also false
    /// if the journal cannot be opened, or if its file system has no locks.
    bool isHeldElsewhere() const { return heldElsewhere; }

    /// Returns the bytes of a journal that this has locked; nothing when not all can be read. They
    /// are read from the locked descriptor: where locks are mandatory, even this process could not
    /// read the file through another one.
    std::optional<QByteArray> contents() const;

private:
    int descriptor = -1;
    bool heldElsewhere = false;
};
