// The processor time of processes.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

namespace testsupport {

/// Returns the processor time (ms) that all threads of a running process have taken so far, to the
/// hundredth of a second; -1 when there is no such process.
qint64 processorTimeMs(qint64 processId);

/// Waits that long with the event loop running. Returns the processor time that the own process
/// took for each unit of time: next to 0 where it only waits, 1 or more in a busy loop.
double processorShareWhileWaiting(int milliseconds);

} // namespace testsupport
