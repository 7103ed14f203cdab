#!/usr/bin/env python3
"""Matches of Pellion's results files: a table of sessions, a table of subjects, a trend picture.

    python3 matches.py --target 440 --picture trend.svg FOLDER

Needs nothing but Python 3.7 or newer. README.md tells what the columns mean.
"""
# SPDX-License-Identifier: GPL-3.0-or-later
import argparse
import collections
import math
import pathlib
import re
import statistics
import sys
from xml.sax.saxutils import escape

HEADER = "filename\tnTrials\tfrequency matched (Hz)"
NAME = re.compile(r"(?P<subject>.*)_(?P<session>practice|experiment)(?P<number>[0-9]{3,})\.txt")
# From the right: the name of a target may hold anything.
RESPONSE = re.compile(r"(?P<target>.*)\t(?P<request>[0-9]+)\t"
                      r"(?P<hertz>[0-9]+([.][0-9]+)?(e[+][0-9]+)?)")
# Told apart also by those who see few colours.
COLOURS = ("#0072B2", "#E69F00", "#009E73", "#D55E00", "#CC79A7", "#56B4E9", "#000000")

Session = collections.namedtuple("Session", "subject session number target hertz")


def complain(text):
    print("matches.py: " + text, file=sys.stderr)


def results_files(paths):
    """Returns the files among the paths and the text files in the folders among them."""
    files = []
    for path in map(pathlib.Path, paths):
        files += sorted(path.glob("*.txt")) if path.is_dir() else [path]
    return files


def read_session(path):
    """Returns the session that a results file holds; raises ValueError where it is none."""
    name = NAME.fullmatch(path.name)
    if name is None:
        raise ValueError("the name is not that of a results file")
    with open(path, encoding="utf-8") as file:
        lines = [line.rstrip("\n") for line in file]
    if not lines or lines[0] != HEADER:
        raise ValueError("the first line is not that of a results file")
    target, hertz = "", []
    for line in lines[1:]:
        response = RESPONSE.fullmatch(line)
        if (response is None or int(response["request"]) != len(hertz) + 1 or
                float(response["hertz"]) == 0):
            raise ValueError("line %d is not response %d" % (len(hertz) + 2, len(hertz) + 1))
        target = response["target"]
        hertz.append(float(response["hertz"]))
    return Session(name["subject"], name["session"], int(name["number"]), target, hertz)


def read_sessions(paths):
    """Returns the sessions in order and whether every file was one."""
    sessions, is_complete = [], True
    for path in results_files(paths):
        try:
            sessions.append(read_session(path))
        except (OSError, ValueError) as problem:
            complain("%s is left out: %s" % (path, problem))
            is_complete = False
    return sorted(sessions, key=lambda session: session[:3]), is_complete


def cents(hertz, target_hertz):
    return 1200 * math.log2(hertz / target_hertz)


def mean_and_deviation(values):
    """Returns the mean and the standard deviation of a sample as texts, NA where there is none."""
    return ["%.2f" % statistics.mean(values) if values else "NA",
            "%.2f" % statistics.stdev(values) if len(values) > 1 else "NA"]


def statistics_of(hertz, target_hertz):
    return (mean_and_deviation(hertz) +
            mean_and_deviation([cents(value, target_hertz) for value in hertz]))


def print_row(*fields):
    print("\t".join(map(str, fields)))


def print_sessions(sessions, target_hertz):
    print_row("subject", "session", "number", "target", "requests", "match_hz", "match_cents",
              "requests_mean_hz", "requests_sd_hz", "requests_mean_cents", "requests_sd_cents")
    for session in sessions:
        match = ["NA", "NA"]
        if session.hertz:
            match = ["%.2f" % session.hertz[-1], "%.2f" % cents(session.hertz[-1], target_hertz)]
        print_row(session.subject, session.session, session.number, session.target or "NA",
                  len(session.hertz), *match, *statistics_of(session.hertz, target_hertz))


def print_matches(sessions, target_hertz):
    print_row("subject", "session", "matches", "match_mean_hz", "match_sd_hz",
              "match_mean_cents", "match_sd_cents")
    groups = {}
    for session in sessions:
        matches = groups.setdefault((session.subject, session.session), [])
        matches += session.hertz[-1:]
    for group, matches in groups.items():
        print_row(*group, len(matches), *statistics_of(matches, target_hertz))


class Picture:
    """A trend picture: the requests of each session, with its match as a larger dot."""

    left, top, width, height = 70, 40, 620, 400

    def __init__(self, sessions, target_hertz):
        self.sessions = [session for session in sessions if session.hertz]
        self.target_hertz = target_hertz
        values = [value for session in self.sessions for value in session.hertz] + [target_hertz]
        room = max(0.05 * (max(values) - min(values)), 1)
        self.lowest, self.highest = min(values) - room, max(values) + room
        self.last = max([len(session.hertz) for session in self.sessions] + [2])

    def x(self, request):
        return self.left + self.width * (request - 0.5) / self.last

    def y(self, hertz):
        return self.top + self.height * (self.highest - hertz) / (self.highest - self.lowest)

    def axes(self):
        yield ('<rect x="%d" y="%d" width="%d" height="%d" fill="none" stroke="#888"/>' %
               (self.left, self.top, self.width, self.height))
        for request in ticks(1, self.last):
            if request == int(request):
                yield text(self.x(request), self.top + self.height + 20, "%d" % request)
        for hertz in ticks(self.lowest, self.highest):
            yield ('<line x1="%d" x2="%d" y1="%.2f" y2="%.2f" stroke="#ddd"/>' %
                   (self.left, self.left + self.width, self.y(hertz), self.y(hertz)))
            yield text(self.left - 8, self.y(hertz) + 4, "%g" % hertz, "end")
        middle = self.left + self.width / 2
        yield text(middle, 24, "Requests and matches")
        yield text(middle, self.top + self.height + 44, "Request")
        yield ('<g transform="translate(18 %.2f) rotate(-90)">%s</g>' %
               (self.top + self.height / 2, text(0, 0, "Frequency (Hz)")))

    def target(self):
        y = self.y(self.target_hertz)
        yield ('<line x1="%d" x2="%d" y1="%.2f" y2="%.2f" stroke="#444" stroke-dasharray="6 4"/>' %
               (self.left, self.left + self.width, y, y))
        yield text(self.left + self.width + 16, self.top + 12,
                   "- - target, %g Hz" % self.target_hertz, "start")

    def session(self, position, session):
        colour = COLOURS[position % len(COLOURS)]
        points = [(self.x(i + 1), self.y(value)) for i, value in enumerate(session.hertz)]
        yield ('<polyline points="%s" fill="none" stroke="%s"/>' %
               (" ".join("%.2f,%.2f" % point for point in points), colour))
        for point in points:
            radius = 5 if point == points[-1] else 2.5
            yield '<circle cx="%.2f" cy="%.2f" r="%g" fill="%s"/>' % (*point, radius, colour)
        y = self.top + 36 + 20 * position
        yield ('<circle cx="%d" cy="%d" r="5" fill="%s"/>' %
               (self.left + self.width + 22, y - 4, colour))
        yield text(self.left + self.width + 34, y,
                   "%s %s %d" % (session.subject, session.session, session.number), "start")

    def svg(self):
        total = max(self.top + self.height + 60, self.top + 56 + 20 * len(self.sessions))
        shapes = [*self.axes(), *self.target()]
        for position, session in enumerate(self.sessions):
            shapes += self.session(position, session)
        return ('<svg xmlns="http://www.w3.org/2000/svg" width="960" height="%d" '
                'font-family="sans-serif" font-size="13">\n'
                '<rect width="100%%" height="100%%" fill="white"/>\n%s\n</svg>\n' %
                (total, "\n".join(shapes)))


def text(x, y, content, anchor="middle"):
    return ('<text x="%.2f" y="%.2f" text-anchor="%s">%s</text>' %
            (x, y, anchor, escape(content)))


def ticks(lowest, highest):
    """Returns some five to ten round numbers between two."""
    step = 10 ** math.floor(math.log10(highest - lowest))
    if (highest - lowest) / step < 5:
        step /= 2 if (highest - lowest) / step >= 2 else 5
    first = math.ceil(lowest / step)
    return [step * i for i in range(first, math.floor(highest / step) + 1)]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--target", type=float, required=True, metavar="HZ",
                        help="frequency of the target, to which cents refer")
    parser.add_argument("--picture", metavar="FILE", help="where to draw the trend (SVG)")
    parser.add_argument("paths", nargs="+", metavar="PATH", help="results file, or folder of them")
    arguments = parser.parse_args()
    if not 0 < arguments.target < math.inf:
        parser.error("--target takes a frequency above 0")
    sessions, is_complete = read_sessions(arguments.paths)
    if len({session.target for session in sessions if session.target}) > 1:
        complain("the sessions had several targets; cents refer to %g Hz in all of them" %
                 arguments.target)
    print_sessions(sessions, arguments.target)
    print()
    print_matches(sessions, arguments.target)
    if arguments.picture:
        pathlib.Path(arguments.picture).write_text(Picture(sessions, arguments.target).svg(),
                                                   encoding="utf-8")
    return 0 if sessions and is_complete else 1


if __name__ == "__main__":
    sys.exit(main())
