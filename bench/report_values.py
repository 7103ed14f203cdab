"""What the parts of the report share: results, goals and tables."""
# SPDX-License-Identifier: GPL-3.0-or-later
import json
import statistics
import subprocess


def read(path):
    """Returns the benchmarks of a file by name, and what is known of the machine."""
    document = json.loads(path.read_text(encoding="utf-8"))
    return {run["name"]: run for run in document["benchmarks"]}, document["context"]


def load_of(context):
    """Returns the machine's load when a benchmark began; NaN where it is not known."""
    return context["load_avg"][0] if context.get("load_avg") else float("nan")


def median(runs, value):
    return statistics.median(run[value] for run in runs)


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
    """Tells of each goal whether it is met: (what is measured, the most aimed at, pairs of a label
    and a value). A goal without values is left out."""
    rows = []
    for what, most, values in goals:
        if not values:
            continue
        label, worst = max(values, key=lambda pair: pair[1])
        missed = [label for label, value in values if value > most]
        where = f" ({label})" if label else ""
        at = f" at {'; '.join(missed)}" if label and missed else ""
        rows.append([what, f"{most:g}", f"{worst:.4g}{where}",
                     f"**missed**{at}" if missed else "met"])
    return table(["", "aimed at", "most", ""], rows) if rows else ""
