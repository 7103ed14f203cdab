// The help texts of pellion-target.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/target/HelpText.h"

QString programDescription() {
    return QStringLiteral(
        R"(Makes target sounds for Pellion, also from other sound files, and reports whether Pellion
would read a WAV file as intended.

Commands:
  make tone FILE      a pure tone
  make complex FILE   harmonics of a fundamental, with or without it
  make sam FILE       a sinusoidally amplitude-modulated tone
  make noise FILE     uniform white noise
  convert IN OUT      a target from the sound in another file
  info FILE...        header, duration, levels, and what Pellion would do with each file

Examples:
  pellion-target make tone a440.wav --frequency 440 --duration 500
  pellion-target make complex missing.wav --frequency 200 --harmonics 2-10
  pellion-target make sam am.wav --frequency 1000 --modulation 100 --rms -20
  pellion-target make noise noise.wav --ramp cos2 --ramp-duration 50 --bits 24
  pellion-target convert noise.wav noise-soft.wav --gain -20
  pellion-target info *.wav

For their options see "pellion-target make --help", and likewise for "convert" and "info".

Exit status: 0 when everything was done and every file is as intended, 1 when not, 2 when
the command line cannot be understood.
)");
}

QString makeDescription() {
    return QStringLiteral(
        R"(Makes a target sound: a WAV file with the canonical 44-byte header.

The level is that of the sound before its ramps, in decibels re full scale: of its highest
sample (--peak) or of the root mean square of all of them (--rms). A sine at a peak of 0 dB
has an RMS level of -3.01 dB. A sample beyond full scale is an error, and nothing is written.

Samples are rounded to the nearest of the integers that the bits allow, without dither. Full
scale itself, +1 and -1, becomes the greatest of them and its negative.

The noise is uniform white noise, minus its mean. The seed is printed; --seed with the same
number makes the same noise again.

Examples:
  pellion-target make tone a440.wav --frequency 440 --duration 500 --peak -10
  pellion-target make complex full.wav --frequency 200 --harmonics 1-10
  pellion-target make complex missing.wav --frequency 200 --harmonics 1-10 --without-fundamental
  pellion-target make sam am.wav --frequency 1000 --modulation 100 --depth 1 --rms -20
  pellion-target make noise noise.wav --seed 7 --ramp linear --channels 2 --force
)");
}

QString convertDescription() {
    return QStringLiteral(
        R"(Makes a target from the sound in another file, of any format that libsndfile reads (WAV,
AIFF, FLAC, Ogg, MP3 and more), and says what it did. The target has the canonical 44-byte
header, one channel, the first of the file, and 40000 samples a second.

At this rate and with 8, 16 or 24 bits each sample stays as it is. Only the lowest code of 24
bits is raised by one step. Other sounds are resampled and rounded to 24 bits, without
dither. Silence is added where Pellion would leave out the last sample.

A sample beyond full scale is an error, and nothing is written. Resampling can raise the peak.
The message names the --gain that lowers it enough.

Examples:
  pellion-target convert target.wav converted.wav
  pellion-target convert target.wav soft.wav --gain -20
  pellion-target convert target.wav target.wav --force
)");
}

QString infoDescription() {
    return QStringLiteral(
        R"(Prints each file's header, duration, and peak and RMS level of each channel, and says
whether Pellion would read it as intended, after comparing the file's chunks with what Pellion
reads. Each problem is printed with its effect, and with the command that fixes it.

Examples:
  pellion-target info target.wav
  pellion-target info ~/Desktop/*.wav
  pellion-target info --json target.wav
  pellion-target info target.wav >/dev/null && echo "a good target"

Exit status: 0 only if every file would be read as intended.
)");
}
