// The command that makes a target of a file that is none yet.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Where the samples lie in a file whose header other programs refuse.
struct RawSound {
    qint64 offset = 0; ///< Of the first sample, in bytes.
    qint64 frames = 0; ///< Samples of each channel; 0 when they reach to the end of the file.
    int bitsPerSample = 16;
    int channelCount = 1;
    quint32 samplingRate = 0; ///< Hz.
};

/// Which program fixes a file, and how.
struct Fix {
    enum class Program {
        Sox,       ///< For whatever sox reads, changing no more than has to be.
        Ffmpeg,    ///< For what sox does not read: its first channel with 16 bits.
        FfmpegRaw, ///< The same for what is a WAV file but for its header.
        None       ///< There is no sound in the file that any of them could find.
    };

    Program program = Program::Sox;
    int paddingSamples = 0; ///< Silence to add at the end, at the program's rate.

    // For sox; what ffmpeg makes needs none of it.
    bool isSizeIgnored = false;      ///< The data reach to the end of the file, whatever it says.
    int bitsPerSample = 0;           ///< To encode with; 0 for those of the file.
    bool isFirstChannelOnly = false; ///< Of several.
    bool isResampled = false;        ///< To the program's rate.
    bool isLowestCodeAvoided = false;

    RawSound raw; ///< For FfmpegRaw.
};

/// Returns the command line, for a shell, that makes a canonical WAV file at the program's rate
/// beside the given one, named with "-fixed". Empty when nothing fixes it.
QString fixCommand(const Fix& fix, const QString& fileName);
