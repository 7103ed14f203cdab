// The command that makes a target of a file that is none yet.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Which program mends a file, and how.
struct Mending {
    enum class Program {
        Sox,       ///< For whatever sox reads, changing no more than has to be.
        Ffmpeg,    ///< For what sox does not read.
        FfmpegRaw, ///< For what is a WAV file but for its header.
        None       ///< There is no sound in the file.
    };

    Program program = Program::Sox;
    bool isSizeIgnored = false;      ///< The data reach to the end of the file, whatever it says.
    int bitsPerSample = 0;           ///< To encode with; 0 for those of the file.
    bool isFirstChannelOnly = false; ///< Of several.
    bool isResampled = false;
    bool isLowestCodeAvoided = false;
    int paddingSamples = 0;   ///< Silence to add at the end.
    int rawBitsPerSample = 0; ///< Of the samples in a file without a usable header.
    qint64 rawOffset = 0;     ///< Of the samples in such a file, in bytes.
};

/// Returns the command line, for a shell, that makes a canonical WAV file at the program's rate
/// beside the given one, named with "-mended". Empty when nothing mends it.
QString mendingCommand(const Mending& mending, const QString& fileName);
