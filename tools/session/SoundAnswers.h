// The sound server's answers, and what they mean.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/session/SoundState.h"

#include <QByteArray>

/// The answers of the sound server's own tools, as they came.
struct SoundAnswers {
    QString problem; ///< Why there are none, and what to do; both empty when there are.
    QString remedy;
    QByteArray server;        ///< "pactl info", in JSON.
    QByteArray everything;    ///< "pactl list", in JSON, before the silent stream was opened.
    QByteArray withStream;    ///< "pactl list sink-inputs", in JSON, with the silent stream.
    qint64 streamProcess = 0; ///< The process that held that stream; 0 when it could not be opened.
    bool isStreamLate = false; ///< Whether the time ran out before the stream was connected.
};

/// Asks the server by pactl, and opens a silent stream by pacat, in Pellion's format and under its
/// name: only a stream shows resampler and volume. The user's own server is asked, or that of
/// PULSE_SERVER. All questions together take at most 1.5 seconds.
SoundAnswers askSoundServer();

/// Returns the state that the answers describe. Needs no server.
SoundState soundState(const SoundAnswers& answers);
