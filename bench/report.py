"""Turns the runs of the benchmarks into a page: report.py RUNS DOCS PAGE.

RUNS is a folder with a folder for each run. The text is bench/performance.md.in: {NAME} is
replaced by a table or a figure, {NAME LIMIT} by the cells of a goal. The cost of a response is
taken from DOCS/reliability.md. PAGE, and the picture in pictures/ beside it, are written.
"""
# SPDX-License-Identifier: GPL-3.0-or-later
import json
import pathlib
import re
import sys

from report_fft import Transforms
from report_values import Measured, goal_cells, table, version

TEMPLATE = pathlib.Path(__file__).with_name("performance.md.in")
PLACE = re.compile(r"\{(\w+)(?: ([\d.]+))?\}")
RESPONSES_TITLE = "## Many sessions, many responses"
PAUSE_MS = 750
# The format that tables without details show.
FIRST_FORMAT = "mono16"
STEPS = ["read", "convert", "buffers", "points, ranges", "transform", "amplitudes, phases",
         "chart update", "painting"]
FIRST = "huge pages, first"
START_STEPS = {"libraries": "launch to `main()`: loading and linking the libraries",
               "screen": "Qt's start: its plug-ins, the X server",
               "icon": "icon, taken as pictures",
               "journals": "journals of earlier runs",
               "fonts": "looking up fonts",
               "sound device": "looking up the sound device",
               "window": "building the window and its charts",
               "painting": "showing it, until its charts are laid out and painted"}
START_MEASURES = {"painted_ms": "painted (ms)", "cpu_ms": "computing (ms)",
                  "pss_kib": "PSS (MiB)", "rss_kib": "RSS (MiB)"}


def benchmarks(path):
    """Returns the counters of a benchmark by its name without Google Benchmark's additions, and the
    machine's data."""
    document = json.loads(path.read_text(encoding="utf-8"))
    found = {re.sub(r"/iterations.*", "", run["name"]): run for run in document["benchmarks"]}
    return found, document["context"]


def read_run(folder):
    fft, context = benchmarks(folder / "fft.json")
    preparation, _ = benchmarks(folder / "preparation.json")
    programs = json.loads((folder / "programs.json").read_text(encoding="utf-8"))
    return {"fft": fft, "preparation": preparation, "programs": programs,
            "load": context["load_avg"][0] if context.get("load_avg") else float("nan")}


def measured(runs, value):
    """Returns the median of a value over the runs, with its range."""
    return Measured(map(value, runs))


def duration(milliseconds):
    seconds = int(milliseconds) / 1000
    return f"{seconds / 60:g} min" if seconds > 60 else f"{seconds:g} s"


class Preparations:
    """The results of bench_preparation by the benchmarks' names."""

    def __init__(self, runs):
        self.runs = runs
        names = list(runs[0]["preparation"])
        self.targets = [name for name in names if name.startswith("prepare/")]
        self.files = [name for name in names if name.startswith("load/")]

    def value(self, name, counter):
        return measured(self.runs, lambda run: run["preparation"][name][counter])

    def ratio(self, name, counter, other):
        return measured(self.runs, lambda run: (run["preparation"][name][counter] /
                                                run["preparation"][name][other]))

    def cells(self, name, counters):
        return [f"{self.value(name, counter):{spec}}" for counter, spec in counters.items()]

    @staticmethod
    def label(name):
        _, form, milliseconds = name.split("/")
        return f"{form} {duration(milliseconds)}"

    def memory(self, name):
        """Returns the ratio of peak and buffers; None for small targets: it is meaningless."""
        is_large = self.value(name, "required bytes") > 1e8
        return self.ratio(name, "peak bytes", "required bytes") if is_large else None

    def waiting_table(self):
        rows = []
        for target in (name for name in self.targets if FIRST_FORMAT in name):
            milliseconds = int(target.split("/")[2])
            drawing = [run["programs"]["drawing"].get(f"{milliseconds / 1000:g}", {})
                       for run in self.runs]
            rows.append([duration(milliseconds), *self.cells(target, {
                FIRST: "", "Qt alone": "", "own share": ".0%"}), *(
                    f"{Measured(one[name] for one in drawing):{spec}}" if name in drawing[0]
                    else "–" for name, spec in (("Pellion", ""), ("Praat", ""), ("ratio", ".2f")))])
        return table(["target", "preparing (ms)", "Qt drawing the same points (ms)", "own share",
                      "whole process (ms)", "Praat, whole process (ms)", "Pellion / Praat"], rows)

    def steps_table(self):
        return table(["target", *STEPS],
                     [[self.label(target), *self.cells(target, dict.fromkeys(STEPS, ""))]
                      for target in self.targets])

    def shares_table(self):
        counters = {"own": "", "own: system": "", "C library": "", "own share": ".0%",
                    "own code's share": ".1%"}
        rows = []
        for target in self.targets:
            memory = self.memory(target)
            rows.append([self.label(target), *self.cells(target, counters),
                         "–" if memory is None else f"{memory:.2f}"])
        return table(["target", "own (ms)", "of it in the kernel", "of it in the C library",
                      "own share", "share without these two", "peak memory / buffers"], rows)

    def pages_table(self):
        rows = []
        for target in (name for name in self.targets if FIRST_FORMAT in name):
            for order in ("first", "second"):
                both = [f"{pages}, {order}" for pages in ("huge pages", "small pages")]
                kinds = {"": "", ": system": "", ": faults": ".0f"}
                rows.append([duration(target.split("/")[2]), order, *self.cells(target, {
                    pages + kind: spec for kind, spec in kinds.items() for pages in both}),
                    f"{self.ratio(target, *both):.2f}"])
        return table(["target", "preparation", "with (ms)", "without (ms)", "kernel, with (ms)",
                      "kernel, without (ms)", "page faults, with", "page faults, without",
                      "with / without"], rows)

    def loading_table(self):
        counters = {"ours": "", "libsndfile": "", "ratio": ".2f"}
        return table(["file", "ours (ms)", "libsndfile (ms)", "ratio"],
                     [[self.label(file), *self.cells(file, counters)] for file in self.files])

    def in_transforms(self, target):
        """Returns the program's own time, in units of FFTW's transform of 2^18 values."""
        return measured(self.runs, lambda run: (
            1000 * run["preparation"][target]["own"] / run["fft"]["repeated/18"]["fftw estimate"]))

    def goals(self):
        values = {"own_code": {target: self.value(target, "own code's share")
                               for target in self.targets},
                  "own_in_transforms": {target: self.in_transforms(target)
                                        for target in self.targets if target.endswith("/5000")
                                        and "repeated/18" in self.runs[0]["fft"]},
                  "memory": {target: self.memory(target) for target in self.targets},
                  "loading": {file: self.value(file, "ratio") for file in self.files}}
        return {goal: {self.label(name): value for name, value in found.items()
                       if value is not None} for goal, found in values.items()}


class Programs:
    """The results of measure_programs.py."""

    def __init__(self, runs):
        self.runs = [run["programs"] for run in runs]

    def over_peers(self, kind, counter):
        """Our value divided by the smallest other program's; None if a run measured no other."""
        if any(len(run.get(kind, {})) < 2 for run in self.runs):
            return None
        return measured(self.runs, lambda run: run[kind]["Pellion"][counter] / min(
            numbers[counter] for name, numbers in run[kind].items() if name != "Pellion"))

    def waiting_table(self):
        rows = []
        for name in self.runs[0]["warm"]:
            ratio = measured(self.runs, lambda run: (
                run["warm"]["Pellion"]["painted_ms"] / run["warm"][name]["painted_ms"]))
            value = measured(self.runs, lambda run: run["warm"][name]["painted_ms"])
            rows.append([name, f"{value:.0f}", "" if name == "Pellion" else f"{ratio:.2f}"])
        return table(["program", "painted (ms)", "Pellion / this"], rows)

    def starts_table(self):
        columns = [("warm", counter) for counter in START_MEASURES]
        if all("cold" in run for run in self.runs):
            columns.insert(1, ("cold", "painted_ms"))
        titles = [START_MEASURES[counter] + (", from the disk" if kind == "cold" else "")
                  for kind, counter in columns]
        return table(["program", *titles], [[name, *(
            f"{measured(self.runs, lambda run: run[kind][name][counter] / self.unit(counter)):.0f}"
            for kind, counter in columns)] for name in self.runs[0]["warm"]])

    @staticmethod
    def unit(counter):
        return 1024 if counter.endswith("_kib") else 1

    def steps_table(self):
        whole = measured(self.runs, lambda run: sum(run["steps"].values()))
        rows = []
        for step, text in START_STEPS.items():
            taken = measured(self.runs, lambda run: run["steps"][step])
            share = measured(self.runs, lambda run: run["steps"][step] / sum(run["steps"].values()))
            rows.append([text, f"{taken:.1f}", f"{share:.0%}"])
        return table(["step", "ms", "share"], [*rows, ["whole", f"{whole:.1f}", ""]])

    def goals(self):
        aims = {"start": ("warm", "painted_ms"), "start_cold": ("cold", "painted_ms"),
                "start_pss": ("warm", "pss_kib"), "start_rss": ("warm", "rss_kib")}
        found = {name: self.over_peers(*aim) for name, aim in aims.items()}
        return {name: {} if ratio is None else {"": ratio} for name, ratio in found.items()} | {
            "picture": {duration(1000 * float(seconds)): measured(
                self.runs, lambda run: run["drawing"][seconds]["ratio"])
                for seconds, numbers in self.runs[0]["drawing"].items() if "ratio" in numbers}}


def responses(reliability):
    """Returns the rows of the document on reliability about the cost of a response, by the number
    of responses: by column the median and the maximum."""
    _, _, section = reliability.partition(RESPONSES_TITLE)
    rows, titles = {}, []
    for line in section.split("\n## ")[0].splitlines():
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if cells[0] == "responses":
            titles = cells
        elif titles and cells[0].isdigit():
            rows[int(cells[0])] = dict(zip(titles, cells))
    if not rows or not {"click (ms)", "own time (ms)"} <= set(titles):
        raise LookupError("docs/reliability.md does not give what a response costs")
    return rows


def responses_table(rows):
    cells = []
    for count in (10, 100, 1000, 2000):
        if count in rows:
            median, maximum = map(float, rows[count]["click (ms)"].split("/"))
            cells.append([str(count), f"{median:.3g} (up to {maximum:.3g})",
                          f"{median / PAUSE_MS:.1%} (up to {maximum / PAUSE_MS:.1%})".replace(
                              "%", " %")])
    return table(["responses so far", "one response (ms)", "of the pause before the sound"], cells)


def response_goals(rows):
    """Returns the values of the goals: those of the longest responses."""
    longest = {count: float(row["own time (ms)"].split("/")[1]) for count, row in rows.items()}
    return {f"response_{count}": {"": Measured([longest[count]])} if count in longest else {}
            for count in (10, 2000)}


def machines(runs):
    """Describes where and when the runs were made."""
    found = {}
    for run in runs:
        found.setdefault(run["programs"]["processor"], []).append(run["programs"]["date"])
    return "; ".join(
        f"{processor} ({len(dates)} on {' and '.join(sorted(set(dates)))})"
        for processor, dates in found.items())


def runs_text(count):
    """Returns the number of runs as text, with "only" if they are too few for a range."""
    return f"{'only ' if count < 5 else ''}{count} run{'s' if count != 1 else ''}"


def huge_pages_text(runs):
    return " or ".join(f"`{setting}`" for setting in sorted(
        {run["programs"]["huge pages"] for run in runs}))


def beside_text(runs):
    names = sorted({name for run in runs for name in run["programs"]["beside"]})
    return (f" While this was measured, {', '.join(names)} had Qt's libraries in memory: without "
            "that, starts from the disk take longer, and the PSS is larger." if names else "")


def main():
    folder, docs, page = map(pathlib.Path, sys.argv[1:4])
    runs = [read_run(run) for run in sorted(folder.iterdir()) if run.is_dir()]
    if not runs:
        sys.exit(f"report: {folder} holds no runs")
    transforms, preparations, programs = Transforms(runs), Preparations(runs), Programs(runs)
    rows = responses((docs / "reliability.md").read_text(encoding="utf-8"))
    texts = {
        "machines": machines(runs), "runs": runs_text(len(runs)), "beside": beside_text(runs),
        "load": f"{measured(runs, lambda run: run['load']):.1f}",
        "huge_pages": huge_pages_text(runs),
        "qt": version("libqt5core5a"), "fftw": version("libfftw3-dev"),
        "gsl": version("libgsl-dev"), "kissfft": version("libkissfft-dev"),
        "sndfile": version("libsndfile1-dev"), "praat": version("praat"),
        "sonic_visualiser": version("sonic-visualiser"),
        "start_table": programs.waiting_table(), "preparing_table": preparations.waiting_table(),
        "responses_table": responses_table(rows), "fft_table": transforms.peers_table(),
        "fft_ways_table": transforms.ways_table(), "steps_table": preparations.steps_table(),
        "shares_table": preparations.shares_table(), "pages_table": preparations.pages_table(),
        "loading_table": preparations.loading_table(), "starts_table": programs.starts_table(),
        "start_steps_table": programs.steps_table()}
    goals = transforms.goals() | preparations.goals() | programs.goals() | response_goals(rows)

    def fill(place):
        name, limit = place.groups()
        if limit is None:
            return texts[name]
        return goal_cells(goals[name], limit, ".0%" if name == "own_code" else ".3g")
    page.write_text(PLACE.sub(fill, TEMPLATE.read_text(encoding="utf-8")), encoding="utf-8")
    picture = page.parent / "pictures" / "fft-ratios.svg"
    picture.write_text(transforms.picture(), encoding="utf-8")


main()
