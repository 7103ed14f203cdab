"""The report's part on starting."""
# SPDX-License-Identifier: GPL-3.0-or-later
import statistics

from report_values import goals_table, median, table, version

# Steps of bench/divide_start.cpp, and what a reader wants to know of them.
STEPS = {"libraries": "launch to `main()`: loading and linking the libraries",
         "screen": "Qt's start: its plug-ins, the X server",
         "icon": "icon, taken as pictures",
         "journals": "journals of earlier runs",
         "fonts": "looking up fonts",
         "sound device": "looking up the sound device",
         "window": "building the window and its charts",
         "painting": "showing it, until its charts are laid out and painted"}
MEASURES = {"mapped_ms": "window open (ms)", "painted_ms": "painted (ms)",
            "cpu_ms": "computing (ms)", "pss_kib": "PSS (MiB)", "rss_kib": "RSS (MiB)"}


def unit_of(value):
    return 1024 if value.endswith("_kib") else 1


def over_peers(runs, value):
    """Our median over the smallest of the peers'; None where there is no peer."""
    peers = [median(peer, value) for name, peer in runs.items() if name != "Pellion"]
    return median(runs["Pellion"], value) / min(peers) if peers else None


def ratio_text(ratio):
    return f"{ratio:.2f}" if ratio is not None else "–"


def starts_table(numbers):
    columns = [("warm", value) for value in MEASURES]
    if "cold" in numbers:
        columns.insert(3, ("cold", "painted_ms"))
    titles = [MEASURES[value] + (", from the disk" if kind == "cold" else "")
              for kind, value in columns]
    rows = [[name, *(f"{median(numbers[kind][name], value) / unit_of(value):.0f}"
                     for kind, value in columns)] for name in numbers["warm"]]
    rows.append(["Pellion / smallest of the others",
                 *(ratio_text(over_peers(numbers[kind], value)) for kind, value in columns)])
    return table(["program", *titles], rows)


def goals(numbers):
    """Of what has peers here."""
    aims = [("window open / fastest", 0.7, "warm", "mapped_ms"),
            ("painted / fastest", 0.7, "warm", "painted_ms"),
            ("painted / fastest, from the disk", 0.7, "cold", "painted_ms"),
            ("PSS / smallest", 0.8, "warm", "pss_kib"), ("RSS / smallest", 0.8, "warm", "rss_kib"),
            ("launch to picture / Praat", 1.0, "drawing", "ms")]
    reached = [(what, limit, over_peers(numbers[kind], value))
               for what, limit, kind, value in aims if kind in numbers]
    return goals_table([(what, limit, [("", ratio)] if ratio is not None else [])
                        for what, limit, ratio in reached])


def drawings_table(runs):
    rows = [[name, f"{median(own, 'ms'):.0f}", f"{median(own, 'cpu_ms'):.0f}"]
            for name, own in runs.items()]
    rows.append(["Pellion / Praat", ratio_text(over_peers(runs, "ms")),
                 ratio_text(over_peers(runs, "cpu_ms"))])
    return table(["program", "launch to picture (ms)", "computing (ms)"], rows)


def division_section(division):
    """What the start spends its time on, and what it does not."""
    runs = division["steps"]
    whole = statistics.median(sum(run[step] for step in STEPS) for run in runs)
    steps = [[text, f"{median(runs, step):.1f}", f"{100 * median(runs, step) / whole:.0f} %"]
             for step, text in STEPS.items()]
    left_out = [[name, *(f"{median(division[kind], value) / unit_of(value):.0f}"
                         for value in MEASURES)]
                for name, kind in (("as it is", "as it is"),
                                   ("with OpenGL looked up", "with OpenGL"))]
    files, pictures = median(division["icon as files"], "icon"), median(runs, "icon")
    return f"""### What the start spends its time on

The start's steps, timed from inside in the program's order (`bench/divide_start.cpp`; medians of
{len(runs)} rounds, all files in memory). Fonts and sound device, which the window's building and showing
would look up, are looked up on their own before. "Painting" waits longer than an observer does, for
all of the charts. The charts' building is in the window's; done once more, it takes {median(runs, 'charts once more'):.1f} ms.

{table(["step", "ms", "share"], [*steps, ["whole", f"{whole:.1f}", ""]])}

Left out of the start is the search for an OpenGL driver, with which nothing is drawn
(`QT_XCB_GL_INTEGRATION` is `none` unless a person has set it), as watched from outside in turns:

{table(["start", *MEASURES.values()], left_out)}

The icon takes {pictures:.1f} ms as the pictures that it consists of; handed to Qt as files, which then
searches its engines for drawings, {files:.1f} ms.
"""


def start_section(numbers):
    cold = (f' "From the disk" is with the page cache emptied before, {len(numbers["cold"]["Pellion"])} rounds.'
            if "cold" in numbers else "")
    beside = (f"""

While this was measured, {', '.join(numbers['beside'])} had Qt's libraries in memory: without that,
starts from the disk take longer, and the PSS is larger.""" if numbers["beside"] else "")
    return f"""## Starting

Beside Sonic Visualiser {version("sonic-visualiser")} and Praat {version("praat")}: medians of {len(numbers['warm']['Pellion'])} rounds in turns on one virtual
screen, as an observer outside sees them (`bench/watch_start.cpp`), at a load of {numbers['load']:.1f}: from launch
until the main window is open, and until it is painted. It counts as painted when the commonest colour
covers less than 99 % of the rows of pixels looked at. Praat opens two windows; the later one counts. Of
Sonic Visualiser the main window counts, not its splash screen. "Computing" is the processors' time
until then; memory is that of one second later.{cold}{beside}

{starts_table(numbers)}

From launch to a PNG file with the waveform and the spectrum of a target of five seconds, no window
shown: `bench/draw_target.cpp` beside the Praat script `bench/draw_target.praat`, medians of {len(numbers['drawing']['Pellion'])}.

{drawings_table(numbers['drawing'])}

{goals(numbers)}

{division_section(numbers['division'])}"""
