// The state of the sound server and of its default output, as plain values.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

/// What a check knows of the sound on this computer. Where `problem` is not empty, nothing else is
/// known.
struct SoundState {
    QString problem; ///< Why the server could not be asked.
    QString remedy;  ///< What to do about it.

    QString server; ///< Name and version, such as "PulseAudio 16.1" or "PipeWire 1.4.2".
    QString output; ///< Name of the default sink; empty when there is none.
    QString device; ///< Its kind: "sound card", "HDMI", "Bluetooth", "null sink" or "filter".
    QString port;   ///< The device's jack, such as "analog-output-headphones".
    QString format; ///< Of the samples that the device takes, such as "s16le".
    int channels = 0;
    int rate = 0; ///< Hz.
    /// For the program's sounds; empty where nothing is resampled, or no stream was connected.
    QString resampler;
    QString exactVolumes;   ///< Of each channel, "front-left 65536, front-right 65536" being 100 %.
    int volume = 0;         ///< Percent; of several channels the minimum.
    bool isBalanced = true; ///< Whether all channels have the same volume.
    bool isMuted = false;
    bool isUnplugged = false; ///< Whether the device says that nothing is plugged in.
    bool isSuspended = false;
    QString suspendAfter; ///< Seconds without a sound, which may be 0; empty for never.
    /// Why no stream in the program's format was connected; empty if one was.
    QString streamProblem;
    int streamVolume = 100; ///< Percent, of the program's own sounds in the mixer.
    bool isStreamMuted = false;
    QStringList otherPrograms; ///< Those that are playing.

    bool isPipeWire() const { return server.startsWith(QLatin1String("PipeWire")); }
};
