#!/usr/bin/env python3
"""Matches from Pellion's results files: tables of sessions, matches and requests, and a picture.

    python3 matches.py --target 440 --picture trend.svg FOLDER

Needs only Python 3.7 or newer. README.md explains options and columns. Another program can import
this file: analyse() returns the tables as lists of named tuples.
"""
# SPDX-License-Identifier: GPL-3.0-or-later
import argparse
import collections
import dataclasses
import itertools
import math
import pathlib
import re
import statistics
import sys
from xml.sax.saxutils import escape

HEADER = "filename\tnTrials\tfrequency matched (Hz)"
# The name that the program proposes, or that of a journal, which the session's start follows. The
# excluded characters stand for bytes that are not UTF-8.
NAME = re.compile(r"(?P<subject>[^\ud800-\udfff]*)_(?P<session>practice|experiment)"
                  r"(?P<number>[0-9]{3,})(-[0-9]{8}-[0-9]{6}(-[0-9]+)?)?\.txt")
# Lines are read from the right: the name of a target may contain separators.
RESPONSE = re.compile(r"(?P<target>.*)\t(?P<request>[0-9]+)\t"
                      r"(?P<hertz>[0-9]+([.][0-9]+)?(e[+][0-9]+)?)")
TARGET = re.compile(r"(?P<file>.*)[\t;] *(?P<hertz>[0-9]+([.,][0-9]+)?) *")
# Digits before the last comma would be those of a number with a decimal comma.
TARGET_BY_COMMA = re.compile(r"(?P<file>(.*,)?[^,]*[^0-9,][^,]*), *(?P<hertz>[0-9]+([.][0-9]+)?) *")
TARGET_HEADER = re.compile(r'"?file"?[\t;,] *"?hz"? *', re.IGNORECASE)
# A match this close to a whole number of octaves from the target is an octave error.
OCTAVE_CENTS = 100
# Distinguishable with deficient colour vision.
COLOURS = ("#0072B2", "#E69F00", "#009E73", "#D55E00", "#CC79A7", "#56B4E9", "#000000")

Analysis = collections.namedtuple("Analysis", "sessions matches requests files is_complete")
SessionRow = collections.namedtuple(
    "SessionRow", "subject session number target requests match_hz match_cents requests_mean_hz "
    "requests_sd_hz requests_mean_cents requests_sd_cents target_hz octave_shift residual_cents "
    "approached_from grid_cents file")
MatchesRow = collections.namedtuple(
    "MatchesRow", "subject session matches match_mean_hz match_sd_hz match_mean_cents "
    "match_sd_cents octave_errors residual_mean_cents residual_sd_cents")
RequestRow = collections.namedtuple(
    "RequestRow", "subject session number request target target_hz frequency_hz cents file")
# Read from files, not computed: printed with all their digits.
EXACT_COLUMNS = ("target_hz", "frequency_hz")


def report(problem):
    print("matches.py: " + problem, file=sys.stderr)


@dataclasses.dataclass
class Session:
    """A results file. Values that do not exist are None."""
    path: pathlib.Path
    subject: str
    session: str
    number: int
    target: str = None
    hertz: list = dataclasses.field(default_factory=list)
    target_hz: float = None

    @property
    def cents(self):
        return [cents(value, self.target_hz) for value in self.hertz]

    @property
    def octave_shift(self):
        return octave_shift(self.cents[-1]) if self.hertz else None

    @property
    def residual_cents(self):
        shift = self.octave_shift
        return None if shift is None else self.cents[-1] - 1200 * shift


# Reading

def results_files(paths):
    """Returns the files among the paths and the text files in the folders among them, each once."""
    files = {}
    for path in map(pathlib.Path, paths):
        for file in sorted(path.glob("*.txt")) if path.is_dir() else [path]:
            files.setdefault(file.resolve(), file)
    return list(files.values())


def read_text(path):
    """Returns the content of a text file; raises ValueError with the reason where it cannot."""
    try:
        content = path.read_bytes()
    except FileNotFoundError:
        raise ValueError("there is no such file") from None
    except IsADirectoryError:
        raise ValueError("it is a folder") from None
    except OSError:
        raise ValueError("it cannot be read") from None
    if b"\0" in content:
        raise ValueError("it contains NUL bytes")
    try:
        return content.decode("utf-8")
    except UnicodeDecodeError:
        raise ValueError("it is not UTF-8 text") from None


def lines_of(text):
    """Returns the lines of a text without the empty ones at its end."""
    return re.split("\r\n|\r|\n", text.rstrip("\r\n"))


def read_session(path):
    """Returns the session in a results file; raises ValueError where it is not one."""
    name = NAME.fullmatch(path.name)
    if name is None:
        raise ValueError("the name is not that of a results file")
    content = read_text(path)
    lines = lines_of(content)
    if lines[0] != HEADER:
        raise ValueError("the first line is not that of a results file")
    session = Session(path, name["subject"], name["session"], int(name["number"]))
    for line in lines[1:]:
        order = len(session.hertz) + 1
        response = RESPONSE.fullmatch(line)
        if (response is None or int(response["request"]) != order or
                not 0 < float(response["hertz"]) < math.inf):
            raise ValueError("line %d is not response %d" % (order + 1, order))
        if session.target not in (None, response["target"]):
            raise ValueError("line %d names another target" % (order + 1))
        session.target = response["target"]
        session.hertz.append(float(response["hertz"]))
    if content[-1] not in "\r\n":
        raise ValueError("line %d has no line end and may be cut off" % len(lines))
    return session


def read_sessions(paths):
    """Returns the sessions in order and whether every file was one, and each another one."""
    sessions, is_complete = [], True
    for path in results_files(paths):
        try:
            sessions.append(read_session(path))
        except ValueError as problem:
            report("%s is left out: %s" % (path, problem))
            is_complete = False
    sessions.sort(key=session_key)
    for one, other in zip(sessions, sessions[1:]):
        if session_key(one) == session_key(other):
            report("%s and %s are both %s %d of %s; the tables contain both" %
                   (one.path, other.path, one.session, one.number, one.subject))
            is_complete = False
    return sessions, is_complete


def session_key(session):
    return session.subject, session.session, session.number


def read_targets(path):
    """Returns the frequency of each file in a table of targets; raises ValueError."""
    targets = {}
    lines = lines_of(re.sub("^\ufeff", "", read_text(pathlib.Path(path))))
    for number, line in enumerate(lines, 1):
        if not line or number == 1 and TARGET_HEADER.fullmatch(line):
            continue
        fields = TARGET.fullmatch(line) or TARGET_BY_COMMA.fullmatch(line)
        hertz = float(fields["hertz"].replace(",", ".")) if fields else 0
        if not 0 < hertz < math.inf:
            raise ValueError("line %d is not a file name and a frequency above 0" % number)
        file = fields["file"]
        if re.fullmatch('".*"', file):
            file = file[1:-1].replace('""', '"')
        if targets.setdefault(file, hertz) != hertz:
            raise ValueError("line %d gives %s another frequency" % (number, file))
    return targets


def assign_targets(sessions, target_hz, targets):
    """Gives the sessions their targets' frequencies; returns whether every target has one."""
    names = sorted({session.target for session in sessions if session.hertz} - set(targets))
    for session in sessions:
        if session.hertz:
            session.target_hz = targets.get(session.target, target_hz)
    if target_hz is None:
        for name in names:
            report("%s is not in the table of targets: its sessions have no cents" % name)
        return not names
    if len(names) > 1:
        report("cents refer to %g Hz for several targets: %s" % (target_hz, ", ".join(names)))
    return True


# Computing

def cents(hertz, target_hz):
    return None if target_hz is None else 1200 * math.log2(hertz / target_hz)


def octave_shift(match_cents):
    """Returns the whole octaves by which a match misses the target; 0 where it is near none."""
    if match_cents is None:
        return None
    octaves = round(match_cents / 1200)
    return octaves if abs(match_cents - 1200 * octaves) <= OCTAVE_CENTS else 0


def approached_from(hertz):
    """Returns where the last other frequency before the match was."""
    for value in reversed(hertz):
        if value != hertz[-1]:
            return "above" if value > hertz[-1] else "below"
    return None


def grid_cents(hertz):
    """Returns the width of a step of 1 Hz around a frequency."""
    return 1200 * math.log2((hertz + 0.5) / (hertz - 0.5)) if hertz > 0.5 else None


def mean(values):
    return None if not values or None in values else statistics.mean(values)


def deviation(values):
    return None if len(values) < 2 or None in values else statistics.stdev(values)


def session_row(session):
    hertz = session.hertz
    match = hertz[-1] if hertz else None
    return SessionRow(
        session.subject, session.session, session.number, session.target, len(hertz),
        match, session.cents[-1] if hertz else None, mean(hertz), deviation(hertz),
        mean(session.cents), deviation(session.cents), session.target_hz, session.octave_shift,
        session.residual_cents, approached_from(hertz), grid_cents(match) if hertz else None,
        session.path.name)


def matches_row(sessions):
    """Returns the row of one subject's sessions of one type."""
    matched = [session for session in sessions if session.hertz]
    # Hertz of different targets have no common mean.
    has_one_target = len({session.target_hz for session in matched}) == 1
    hertz = [session.hertz[-1] for session in matched] if has_one_target else []
    in_cents = [session.cents[-1] for session in matched]
    shifts = [session.octave_shift for session in matched]
    residuals = [session.residual_cents for session in matched]
    errors = None if None in shifts else sum(shift != 0 for shift in shifts)
    return MatchesRow(sessions[0].subject, sessions[0].session, len(matched), mean(hertz),
                      deviation(hertz), mean(in_cents), deviation(in_cents), errors,
                      mean(residuals), deviation(residuals))


def request_rows(session):
    return [RequestRow(session.subject, session.session, session.number, order, session.target,
                       session.target_hz, hertz, cents(hertz, session.target_hz),
                       session.path.name)
            for order, hertz in enumerate(session.hertz, 1)]


def analyse(paths, target_hz=None, targets=None):
    """Returns the tables for results files and folders of them.

    targets gives frequencies (Hz) by file name, target_hz that of all other targets.
    """
    sessions, is_complete = read_sessions(paths)
    is_complete = assign_targets(sessions, target_hz, targets or {}) and is_complete
    groups = itertools.groupby(sessions, lambda session: session_key(session)[:2])
    return Analysis([session_row(session) for session in sessions],
                    [matches_row(list(group)) for _, group in groups],
                    [row for session in sessions for row in request_rows(session)],
                    sessions, is_complete)


# Writing

def encoding(options):
    """Returns the tables' encoding; spreadsheets recognise UTF-8 by the byte order mark."""
    return "utf-8-sig" if options.decimal_comma else "utf-8"


def write_table(row_type, rows, options, file):
    separator = ";" if options.decimal_comma else "\t"
    lines = [row_type._fields, *([cell(name, value, options) for name, value in
                                  zip(row_type._fields, row)] for row in rows)]
    file.writelines(separator.join(line) + "\n" for line in lines)


def cell(column, value, options):
    if value is None:
        return "NA"
    if isinstance(value, float):
        text = "%.15g" % value if column in EXACT_COLUMNS else "%.*f" % (options.digits, value)
        return text.replace(".", ",") if options.decimal_comma else text
    text = str(value)
    is_plain = re.search('[";\t\r\n]', text) is None
    return text if is_plain else '"' + text.replace('"', '""') + '"'


class Panel:
    """A subject's part of the picture: the requests of each session, its match a larger dot."""

    left, top, width, height = 70, 40, 620, 400

    def __init__(self, subject, sessions):
        self.subject, self.sessions = subject, sessions
        self.targets = sorted({session.target_hz for session in sessions} - {None})
        values = [value for session in sessions for value in session.hertz] + self.targets
        room = max(0.05 * (max(values) - min(values)), 1)
        self.minimum, self.maximum = min(values) - room, max(values) + room
        self.last = max([len(session.hertz) for session in sessions] + [2])
        legend = self.top + 36 + 20 * (len(self.targets) + len(sessions))
        self.total_height = max(self.top + self.height + 60, legend)

    def x(self, request):
        return self.left + self.width * (request - 0.5) / self.last

    def y(self, hertz):
        return self.top + self.height * (self.maximum - hertz) / (self.maximum - self.minimum)

    def axes(self):
        yield ('<rect x="%d" y="%d" width="%d" height="%d" fill="none" stroke="#888"/>' %
               (self.left, self.top, self.width, self.height))
        for request in ticks(1, self.last):
            if request == int(request):
                yield label(self.x(request), self.top + self.height + 20, "%d" % request)
        for hertz in ticks(self.minimum, self.maximum):
            yield ('<line x1="%d" x2="%d" y1="%.2f" y2="%.2f" stroke="#ddd"/>' %
                   (self.left, self.left + self.width, self.y(hertz), self.y(hertz)))
            yield label(self.left - 8, self.y(hertz) + 4, "%g" % hertz, "end")
        middle = self.left + self.width / 2
        yield label(middle, 24, "Requests and matches: " + self.subject)
        yield label(middle, self.top + self.height + 44, "Request")
        yield ('<g transform="translate(18 %.2f) rotate(-90)">%s</g>' %
               (self.top + self.height / 2, label(0, 0, "Frequency (Hz)")))

    def legend(self, position, content):
        return label(self.left + self.width + 34, self.top + 12 + 20 * position, content, "start")

    def target(self, position, hertz):
        yield ('<line x1="%d" x2="%d" y1="%.2f" y2="%.2f" stroke="#444" stroke-dasharray="6 4"/>' %
               (self.left, self.left + self.width, self.y(hertz), self.y(hertz)))
        yield self.legend(position, "- - target, %g Hz" % hertz)

    def session(self, position, colour, session):
        points = [(self.x(i + 1), self.y(value)) for i, value in enumerate(session.hertz)]
        yield ('<polyline points="%s" fill="none" stroke="%s"/>' %
               (" ".join("%.2f,%.2f" % point for point in points), colour))
        for point in points:
            radius = 5 if point == points[-1] else 2.5
            yield '<circle cx="%.2f" cy="%.2f" r="%g" fill="%s"/>' % (*point, radius, colour)
        yield ('<circle cx="%d" cy="%d" r="5" fill="%s"/>' %
               (self.left + self.width + 22, self.top + 8 + 20 * position, colour))
        yield self.legend(position, "%s %d" % (session.session, session.number))

    def svg(self):
        shapes = [*self.axes()]
        for position, hertz in enumerate(self.targets):
            shapes += self.target(position, hertz)
        for position, session in enumerate(self.sessions):
            shapes += self.session(len(self.targets) + position, COLOURS[position % len(COLOURS)],
                                   session)
        return "\n".join(shapes)


def label(x, y, content, anchor="middle"):
    return ('<text x="%.2f" y="%.2f" text-anchor="%s">%s</text>' %
            (x, y, anchor, escape(content)))


def ticks(minimum, maximum):
    """Returns some five to ten round numbers between two."""
    step = 10 ** math.floor(math.log10(maximum - minimum))
    if (maximum - minimum) / step < 5:
        step /= 2 if (maximum - minimum) / step >= 2 else 5
    first = math.ceil(minimum / step)
    return [step * i for i in range(first, math.floor(maximum / step) + 1)]


def picture(sessions):
    """Returns an SVG picture with a panel for each subject, one below the other."""
    drawn = [session for session in sessions if session.hertz]
    panels = [Panel(subject, list(group)) for subject, group in
              itertools.groupby(drawn, lambda session: session.subject)]
    shapes, height = [], 0
    for panel in panels:
        shapes.append('<g transform="translate(0 %d)">\n%s\n</g>' % (height, panel.svg()))
        height += panel.total_height
    return ('<svg xmlns="http://www.w3.org/2000/svg" width="960" height="%d" '
            'font-family="sans-serif" font-size="13">\n'
            '<rect width="100%%" height="100%%" fill="white"/>\n%s\n</svg>\n' %
            (height, "\n".join(shapes)))


# The program

EXAMPLES = """examples:
  python3 matches.py --target 440 FOLDER
  python3 matches.py --targets targets.tsv --picture trend.svg FOLDER
  python3 matches.py --target 440 --requests requests.csv --decimal-comma FOLDER
"""


def begins_with_header(path):
    """Returns whether a file begins as a results file does, whatever its name."""
    try:
        # Reading a pipe would wait.
        return path.is_file() and path.read_bytes().startswith(HEADER.encode())
    except OSError:
        return False


def refuse_outputs(parser, options):
    """Ends the program where writing would replace responses, an input or another output."""
    inputs = [*results_files(options.paths), *map(pathlib.Path, filter(None, [options.targets]))]
    taken = {path.resolve() for path in inputs}
    for output in map(pathlib.Path, filter(None, (options.requests, options.picture))):
        # Files that the shell has listed may follow an option whose value was forgotten.
        if NAME.fullmatch(output.name):
            parser.error("%s has the name of a results file and is not written" % output)
        if begins_with_header(output):
            parser.error("%s begins as a results file does and is not written" % output)
        if output.resolve() in taken:
            parser.error("%s is an input or another output and is not written" % output)
        taken.add(output.resolve())


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0], epilog=EXAMPLES,
                                     formatter_class=argparse.RawDescriptionHelpFormatter,
                                     allow_abbrev=False)
    parser.add_argument("--target", type=float, metavar="HZ",
                        help="frequency of every target that the table does not contain")
    parser.add_argument("--targets", metavar="FILE", help="table of targets: file name, frequency")
    parser.add_argument("--requests", metavar="FILE", help="where to write a table of requests")
    parser.add_argument("--picture", metavar="FILE", help="where to draw the requests (SVG)")
    parser.add_argument("--decimal-comma", action="store_true",
                        help="tables with decimal commas, separated by semicolons")
    parser.add_argument("--digits", type=int, choices=range(16), default=2, metavar="COUNT",
                        help="decimals of computed values, 0 to 15 (default: 2)")
    parser.add_argument("paths", nargs="+", metavar="PATH", help="results file, or folder of them")
    options = parser.parse_args()
    if options.target is None and options.targets is None:
        parser.error("--target or --targets is missing")
    if options.target is not None and not 0 < options.target < math.inf:
        parser.error("--target takes a frequency above 0")
    refuse_outputs(parser, options)
    try:
        options.targets = read_targets(options.targets) if options.targets else {}
    except ValueError as problem:
        parser.error("%s: %s" % (options.targets, problem))
    return options


def write_files(analysis, options):
    """Writes what the options name; returns whether all of it could be written."""
    try:
        name = options.requests
        if name:
            with open(name, "w", encoding=encoding(options), newline="\n") as file:
                write_table(RequestRow, analysis.requests, options, file)
        name = options.picture
        if name and not analysis.requests:
            report("%s is not drawn: there is no request" % name)
            return False
        if name:
            pathlib.Path(name).write_text(picture(analysis.files), encoding="utf-8")
    except OSError:
        report("%s cannot be written" % name)
        return False
    return True


def main():
    options = parse_arguments()
    sys.stdout.reconfigure(encoding=encoding(options))
    analysis = analyse(options.paths, options.target, options.targets)
    write_table(SessionRow, analysis.sessions, options, sys.stdout)
    print()
    write_table(MatchesRow, analysis.matches, options, sys.stdout)
    is_written = write_files(analysis, options)
    if not analysis.sessions:
        report("there are no results files")
    return 0 if analysis.sessions and analysis.is_complete and is_written else 1


if __name__ == "__main__":
    sys.exit(main())
