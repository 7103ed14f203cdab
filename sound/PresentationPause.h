// The pause between a request and its sound.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <qnamespace.h>

/// How long to wait between a request and its sound, and how precisely.
struct PresentationPause {
    int milliseconds;
    Qt::TimerType timerType;
};

/// Returns the pause of one sound's length plus the silent interval, both in seconds, truncated to
/// whole milliseconds and limited to the range from 0 to the largest int. Pauses under two seconds
/// ask for a precise timer, others for a coarse one.
PresentationPause presentationPause(double soundDuration, double silentInterval);
