// The memory, files and threads that a process holds.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVector>

/// The resources of this process at one moment.
struct ProcessResources {
    double residentMiB = 0; ///< Memory, including that shared with the X server.
    double privateMiB = 0;  ///< Memory that was written and is not shared.
    /// Memory allocated and not freed; 0 with an allocator that does not report it, as that of a
    /// sanitizer.
    double allocatedMiB = 0;
    int descriptors = 0; ///< Open files, sockets, pipes and the like.
    int threads = 0;
};

/// Reads them from the system; descriptors and threads are 0 where it does not report them.
ProcessResources ownResources();

/// Handles deferred events for a while.
void handleDeferredEvents();

/// Returns the resources held when the program is idle. Free memory of the allocator, whose size
/// after dialogs varies, is returned to the system first.
ProcessResources resourcesAtRest();

/// Returns by how much the memory (MiB) grew from one item to the next, from that index on: the
/// slope of the line that fits best. At least two items have to be there from that index on.
double growthOfMemory(const QVector<ProcessResources>& held, int firstIndex);
