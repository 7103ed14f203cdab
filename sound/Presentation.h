// When a sound starts, and whether it came to its end.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>
#include <qnamespace.h>

/// How long to wait from a request until its sound, and how precisely.
struct PresentationPause {
    int milliseconds;
    Qt::TimerType timerType;
};

/// Returns the pause of one sound's length plus the silent interval, both in seconds, truncated to
/// whole milliseconds and limited to 0 and the largest int. Pauses under two seconds ask for
/// a precise timer, others for a coarse one.
PresentationPause presentationPause(double soundDuration, double silentInterval);

/// Returns whether the listener can have heard all of a sound when its output goes idle: it has
/// been handed over to the last byte, and at least its duration has passed since the output was
/// started. Otherwise the server ran out of samples on the way, as on an overloaded computer.
bool isHeardWhole(qint64 bytesHandedOver, qint64 bytes, qint64 elapsedMs, qint64 durationMs);
