// What a program holds of the system's memory, files and threads.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVector>

/// What the own process holds at one moment.
struct ProcessResources {
    double residentMiB = 0; ///< Memory, what it shares with the screen's server included.
    double privateMiB = 0;  ///< Memory that is written and nobody else's.
    /// What was asked of the allocator and not given back; 0 with an allocator that does not report
    /// it, as that of a sanitizer.
    double allocatedMiB = 0;
    int descriptors = 0; ///< Open files, sockets, pipes and the like.
    int threads = 0;
};

/// Reads them from the system; descriptors and threads are 0 where it does not report them.
ProcessResources ownResources();

/// Lets everything that was put off happen.
void rest();

/// Returns what is held when nothing is going on. Memory that is free for further use, of which
/// dialogs leave now more, now less, is given back first.
ProcessResources resourcesAtRest();

/// Returns by how much the memory (MiB) grew from one item to the next, from that index on: the
/// slope of the line that fits best. At least two items have to be there from that index on.
double growthOfMemory(const QVector<ProcessResources>& held, int firstIndex);
