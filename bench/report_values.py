"""What the parts of the report share: results, goals and tables."""
# SPDX-License-Identifier: GPL-3.0-or-later
import json
import statistics
import subprocess


def read(*paths):
    """Returns the benchmarks by name, and what is known of the machine; of several files the medians
    of the numbers, and the first one's machine."""
    documents = [json.loads(path.read_text(encoding="utf-8")) for path in paths]
    repeated = {}
    for document in documents:
        for run in document["benchmarks"]:
            repeated.setdefault(run["name"], []).append(run)
    found = {}
    for name, runs in repeated.items():
        numbers = [key for key, value in runs[0].items() if isinstance(value, (int, float))]
        found[name] = {**runs[0], **{key: median(runs, key) for key in numbers}}
    return found, documents[0]["context"]


def load_of(context):
    """Returns the machine's load when a benchmark began; NaN where it is not known."""
    return context["load_avg"][0] if context.get("load_avg") else float("nan")


def median(runs, value):
    return statistics.median(run[value] for run in runs)


def number_text(value):
    """Returns a number with three digits, or with all in front of the point."""
    return f"{value:.3g}" if abs(value) < 999.5 else f"{value:.0f}"


def version(package):
    """Returns the version of an installed package as its authors count; what Debian adds is cut."""
    asked = subprocess.run(["dpkg-query", "-W", "-f", "${source:Upstream-Version}", package],
                           stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                           check=False)
    return asked.stdout.split("+")[0] or "of unknown version"


def table(titles, rows):
    """A table whose rows are lists of cells."""
    return "\n".join("| " + " | ".join(cells) + " |"
                     for cells in [titles, ["---"] * len(titles), *rows])


def goals_table(goals):
    """Reports whether each goal is met: (what is measured, the limit aimed at, pairs of a label
    and a value). A goal without values is left out."""
    rows = []
    for what, limit, values in goals:
        if not values:
            continue
        label, worst = max(values, key=lambda pair: pair[1])
        missed = [label for label, value in values if value > limit]
        where = f" ({label})" if label else ""
        at = f" at {'; '.join(missed)}" if label and missed else ""
        rows.append([what, f"{limit:g}", f"{worst:.4g}{where}",
                     f"**missed**{at}" if missed else "met"])
    return table(["", "aimed at", "maximum", ""], rows) if rows else ""
