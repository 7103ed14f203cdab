"""The report's parts on preparing and loading a target and on answering."""
# SPDX-License-Identifier: GPL-3.0-or-later
from report_values import goals_table, load_of, number_text, table, version

STEPS = ["read", "convert", "buffers", "points, ranges", "transform", "amplitudes, phases",
         "chart update", "painting"]
OWN_CODE = "own code's share"
RESPONSES_TITLE = "## Many sessions, many responses"


def runs_of(runs, kind):
    """Returns the runs of a kind with what they are called in tables, and their seconds."""
    found = []
    for name, run in runs.items():
        if name.startswith(f"{kind}/"):
            _, form, milliseconds, *_ = name.split("/")
            seconds = int(milliseconds) / 1000
            found.append((f"{form}, {seconds:g} s", seconds, run))
    return found


def steps_table(preparations):
    return table(["target", *STEPS],
                 [[target, *(number_text(run[step]) for step in STEPS)]
                  for target, _, run in preparations])


def memory_of(run):
    """Returns the peak over the buffers; of small targets it says nothing about them."""
    return run["peak bytes"] / run["required bytes"] if run["required bytes"] > 1e8 else None


def shares_table(preparations, unit):
    rows = []
    for target, seconds, run in preparations:
        memory = memory_of(run)
        # The system counts its time in ticks, of which short targets have too few.
        is_measurable = seconds >= 60
        rows.append([target, number_text(run["own"]),
                     number_text(run["own, system"]) if is_measurable else "–",
                     number_text(run["C library"]), f"{100 * run['own share']:.0f} %",
                     f"{100 * run[OWN_CODE]:.0f} %" if is_measurable else "–",
                     f"{run['own'] / unit:.1f}", f"{memory:.2f}" if memory else "–"])
    return table(["target", "own (ms)", "of it in the kernel", "of it in the C library",
                  "own share", "share without these two", "own, in transforms of 2^18 by FFTW",
                  "peak memory / buffers"], rows)


def goals(preparations, unit):
    return goals_table([
        ("own share of the whole", 0.25,
         [(target, run["own share"]) for target, _, run in preparations]),
        ("own of 5 s, in transforms of 2^18 by FFTW", 12,
         [(target, run["own"] / unit) for target, seconds, run in preparations if seconds == 5]),
        ("peak memory / buffers", 1.3,
         [(target, memory_of(run)) for target, _, run in preparations if memory_of(run)])])


def iterations_text(preparations):
    counts = {f"{seconds:g} s": run["iterations"] for _, seconds, run in preparations}
    return ", ".join(f"{count} of {duration}" for duration, count in counts.items())


def preparation_section(runs, context):
    preparations = runs_of(runs, "prepare")
    unit = next(run for name, run in runs.items()
                if name.startswith("transformByFftw/262144"))["median_ms"]
    return f"""## Preparing a target

From the chosen file to both charts painted in a new window, in milliseconds, at a load of {load_of(context):.1f}:
medians over the preparations ({iterations_text(preparations)}).

{steps_table(preparations)}

The parts of what the program does in one go are separated by doing some of them once more on the same
data, in memory that has been written to before. "Buffers", "transform" and "chart update" are the
remainder. So fresh memory is in "buffers", in "transform" and in Qt's steps.

"Own" is all but Qt's chart update and painting; aimed at is a quarter of the whole at
every length, so that most of the wait is drawing. "In the kernel" is the system's part of "own": most
of it hands out memory, which is given back before the next preparation; the rest reads the file and
takes memory back. On a virtual machine, whose host provides the memory each time, that differs much
from run to run. "In the C library" are the arctangents of the phases, one for each bin, and half as
many cosines for the transform's tables. They are measured apart: each has to have the library's value
to the bit, computed on the program's one thread. "Share without these two" is what the rest of
"own" takes of the whole.

One transform of 2^18 by FFTW took {unit:.3g} ms here, with its arrays as they come and not pinned to
a processor. Memory is the peak of the whole preparation over the bytes of the buffers that exist at
the same time while the spectrum is computed.

{shares_table(preparations, unit)}

{goals(preparations, unit)}
"""


def loading_section(runs):
    loadings = runs_of(runs, "load")
    rows = [[target, number_text(run["ours"]), number_text(run["sndfile"]),
             f"{run['x_sndfile']:.2f}"] for target, _, run in loadings]
    return f"""## Loading

`CWav` reads and converts beside the reading of libsndfile {version("libsndfile1-dev")} into doubles, in turns: medians, the
ratio's over the turns. `CWav` keeps the bytes as well.

{table(["file", "ours (ms)", "libsndfile (ms)", "ratio"], rows)}

{goals_table([("ours / libsndfile", 1, [(target, run["x_sndfile"])
                                        for target, _, run in loadings])])}
"""


def own_shares(reliability):
    """Returns the milliseconds (median, maximum) of a response by the number of responses, as a table
    of the document on reliability gives them."""
    _, found, section = reliability.partition(RESPONSES_TITLE)
    shares, column = {}, None
    for line in section.split("\n## ")[0].splitlines():
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if cells[0] == "responses" and "own share (ms)" in cells:
            column = cells.index("own share (ms)")
        elif column is not None and cells[0].isdigit():
            shares[int(cells[0])] = [float(part) for part in cells[column].split("/")]
    if not found or not {10, 2000} <= shares.keys():
        raise LookupError("docs/reliability.md does not give what a response costs")
    return shares


def response_section(reliability):
    shares = own_shares(reliability)
    few, many = shares[10], shares[2000]
    return f"""## The work of one response

Measured by `scripts/campaign endurance`, and described in
[Many sessions, many responses](reliability.md#many-sessions-many-responses): the program's own share
of a response, without the disk and Qt's drawing, is {few[0]:g} ms with 10 responses and {many[0]:g} ms with
2000 (medians).

{goals_table([("the longest with 10 responses (ms)", 2, [("", few[1])]),
              ("the longest with 2000 responses (ms)", 20, [("", many[1])])])}
"""
