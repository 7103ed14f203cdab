// What a program holds of the system's memory, files and threads.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// What the own process holds at one moment.
struct ProcessResources {
    double residentMiB = 0; ///< Memory, what it shares with the screen's server included.
    double privateMiB = 0;  ///< Memory that is written and nobody else's.
    int descriptors = 0;    ///< Open files, sockets, pipes and the like.
    int threads = 0;
};

/// Reads them from the system; descriptors and threads are 0 where it does not tell.
ProcessResources ownResources();
