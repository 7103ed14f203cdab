#!/usr/bin/env python3
"""Writes sessions of simulated listeners, with what is true about each in truth.tsv.

    python3 simulate.py FOLDER

The sessions beside this file are its output; a seed makes them the same in every run.
"""
# SPDX-License-Identifier: GPL-3.0-or-later
import math
import pathlib
import random
import sys

TARGETS = {"tone-440.wav": 440, "complex-200-missing.wav": 200}
# A session of each type and number; the targets take turns.
SESSIONS = [("practice", 1), *(("experiment", number) for number in range(1, 7))]

# bias_cents: how far the listener's pitch is from the target's frequency.
# lag_cents: how far before that pitch the listener stops, coming from either side.
# scatter_cents: standard deviation of the matches around it.
# octave_sessions: numbers of the experiment sessions matched an octave lower (-1) or higher (1).
LISTENERS = {
    "SIM01": {"bias_cents": 0, "lag_cents": 0, "scatter_cents": 5, "octave_sessions": {}},
    "SIM02": {"bias_cents": 30, "lag_cents": 0, "scatter_cents": 10, "octave_sessions": {}},
    "SIM03": {"bias_cents": 0, "lag_cents": 0, "scatter_cents": 10,
              "octave_sessions": {2: 1, 3: -1, 6: 1}},
    "SIM04": {"bias_cents": 0, "lag_cents": 40, "scatter_cents": 10, "octave_sessions": {}},
    "SIM05": {"bias_cents": 0, "lag_cents": 0, "scatter_cents": 60, "octave_sessions": {}},
}
# A journal keeps the session's start in its name, and a failed write may end it in an empty line.
RECOVERED = ("SIM02", "experiment", 3)


def normal(chance):
    """Returns a number of the standard normal distribution (Box and Muller)."""
    return (math.sqrt(-2 * math.log(1 - chance.random())) *
            math.cos(2 * math.pi * chance.random()))


def requests(chance, listener, session, number, target_hz):
    """Returns the frequencies (Hz) of a session: a search from one side, halving the distance."""
    octaves = listener["octave_sessions"].get(number, 0) if session == "experiment" else 0
    # The sides take turns in pairs of sessions, so that either target is approached from both.
    side = 1 if number // 2 % 2 else -1
    goal = 1200 * octaves + listener["bias_cents"] + listener["scatter_cents"] * normal(chance)
    goal += side * listener["lag_cents"]
    distance = side * (150 + 250 * chance.random())
    frequencies = []
    while abs(distance) > 12:
        frequencies.append(round(target_hz * 2 ** ((goal + distance) / 1200)))
        distance *= 0.35 + 0.2 * chance.random()
    return [*frequencies, round(target_hz * 2 ** (goal / 1200))]


def write_sessions(folder):
    chance = random.Random(6)
    for subject, listener in LISTENERS.items():
        for position, (session, number) in enumerate(SESSIONS):
            target = list(TARGETS)[position % len(TARGETS)]
            frequencies = requests(chance, listener, session, number, TARGETS[target])
            lines = ["filename\tnTrials\tfrequency matched (Hz)",
                     *("%s\t%d\t%d" % (target, order, frequency)
                       for order, frequency in enumerate(frequencies, 1))]
            name = "%s_%s%03d" % (subject, session, number)
            if (subject, session, number) == RECOVERED:
                name += "-20260309-080559"
                lines.append("")
            text = "".join(line + "\r\n" for line in lines)
            (folder / (name + ".txt")).write_bytes(text.encode())


def write_truth(folder):
    lines = ["subject\tbias_cents\tlag_cents\tscatter_cents\toctave_errors"]
    for subject, truth in LISTENERS.items():
        lines.append("%s\t%d\t%d\t%d\t%d" % (subject, truth["bias_cents"], truth["lag_cents"],
                                             truth["scatter_cents"],
                                             len(truth["octave_sessions"])))
    (folder / "truth.tsv").write_text("\n".join(lines) + "\n", encoding="utf-8")
    lines = ["%s\t%d" % target for target in TARGETS.items()]
    (folder / "targets.tsv").write_text("\n".join(["file\thz", *lines]) + "\n", encoding="utf-8")


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    write_sessions(folder)
    write_truth(folder)


if __name__ == "__main__":
    main()
