"""Measured values, goals and tables, shared by the parts of the report."""
# SPDX-License-Identifier: GPL-3.0-or-later
import statistics
import subprocess


class Measured(float):
    """The median of the runs' values; its text includes their range."""

    def __new__(cls, values):
        values = list(values)
        measured = super().__new__(cls, statistics.median(values))
        measured.low, measured.high = min(values), max(values)
        return measured

    def __format__(self, spec):
        """Without a specification: three digits, or all digits before the point."""
        median, low, high = (
            format(value, spec or (".3g" if abs(value) < 999.5 else ".0f")).replace("%", " %")
            for value in (float(self), self.low, self.high))
        return median if low == high else f"{median} ({low} to {high})"


def version(package):
    """Returns the upstream version of an installed package, without Debian's additions."""
    asked = subprocess.run(["dpkg-query", "-W", "-f", "${source:Upstream-Version}", package],
                           stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                           check=False)
    return asked.stdout.split("+")[0] or "of unknown version"


def table(titles, rows):
    """A table whose rows are lists of cells."""
    return "\n".join("| " + " | ".join(cells) + " |"
                     for cells in [titles, ["---"] * len(titles), *rows])


def judge(values, limit):
    """Returns in words whether labelled values, judged by their ranges, are within a limit."""
    verdicts = {"**missed**": [label for label, value in values.items() if value.low > limit],
                "cannot be told": [label for label, value in values.items()
                                   if value.low <= limit < value.high]}
    return "; ".join(verdict + at(", ".join(labels))
                     for verdict, labels in verdicts.items() if labels) or "met"


def at(label):
    return f" at {label}" if label else ""


def goal_cells(values, limit, spec):
    """Returns the cells of a goal's row: the limit, the largest of the values, the verdict."""
    aimed = f"{Measured([float(limit)]):{spec}}"
    if not values:
        return f"{aimed} | not measured |"
    label, largest = max(values.items(), key=lambda pair: pair[1].high)
    return f"{aimed} | {largest:{spec}}{at(label)} | {judge(values, float(limit))}"
