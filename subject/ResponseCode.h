// The codes of the signals between the listener's window and the main window.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// What the listener asks for.
enum ResponseCode : int {
    SessionStarted = 0, ///< Understood by the main window, never sent.
    PlayTarget = 2,
    PlaySinusoid = 4,
};

/// Sent instead of the count of sounds started: the last sound of a request has ended.
constexpr int soundsEnded = -1;
