// Replaces the system's fsync and ftruncate in a test program.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <vector>

namespace testsupport {

/// Replaces the system's fsync and ftruncate while it lives; only one may exist at a time. For
/// programs that compile SyncCalls.cpp, in which fsync otherwise does nothing.
class SyncCalls {
public:
    SyncCalls();
    ~SyncCalls();
    Q_DISABLE_COPY_MOVE(SyncCalls)

    int count = 0;             ///< Calls so far.
    int failure = 0;           ///< The errno of the next ones; 0 lets them succeed.
    int killAt = 0;            ///< The call during which the process is killed; 0 for none.
    unsigned delayMs = 0;      ///< How long each takes.
    int truncationFailure = 0; ///< The errno of the next truncations; 0 hands them on.
    long long bytesSynced = 0; ///< Size of the file at the last call that was for a regular one.
    std::vector<unsigned long> foldersSynced; ///< Inode of each call that was for a folder.
};

} // namespace testsupport
