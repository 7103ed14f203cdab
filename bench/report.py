"""Turns the benchmarks' results into docs/performance.md: report.py RESULTS DOCS."""
# SPDX-License-Identifier: GPL-3.0-or-later
import datetime
import json
import pathlib
import platform
import statistics
import sys

FIRST_BITS, LAST_BITS = 3, 22


def read(path):
    """Returns the benchmarks of a file by name, and what is known of the machine."""
    document = json.loads(path.read_text())
    return {run["name"]: run for run in document["benchmarks"]}, document["context"]


def fft_run(runs, way, bits):
    return next(run for name, run in runs.items() if name.startswith(f"{way}/2^{bits}/"))


def machine(context):
    model = next((line.split(":")[1].strip() for line in open("/proc/cpuinfo", encoding="utf-8")
                  if line.startswith("model name")), platform.machine())
    caches = ", ".join(f"{cache['size'] // 1024} KiB L{cache['level']}"
                       for cache in context["caches"] if cache["type"] != "Instruction")
    load = context["load_avg"][0] if context.get("load_avg") else float("nan")
    return (f"{model}, {context['num_cpus']} processors, {caches}; load {load:.1f} at the start; "
            f"{datetime.date.today()}")


def fft_table(runs):
    lines = ["| length | µs | / FFTW | in pairs (SSE2) / FFTW | pass by pass / FFTW | / GSL | / KISS FFT "
             "| once / FFTW | once / FFTW, planner warm |", "|---|" + "---|" * 8]
    for bits in range(FIRST_BITS, LAST_BITS + 1):
        ours = fft_run(runs, "repeated", bits)
        pairs = fft_run(runs, "repeated in two pairs", bits)
        plain = fft_run(runs, "repeated pass by pass", bits)
        once = fft_run(runs, "once", bits)
        lines.append(f"| 2^{bits} | {ours['median_us']:.3g} | {ours['x_fftw']:.2f} "
                     f"| {pairs['x_fftw']:.2f} | {plain['x_fftw']:.2f} | {ours['x_gsl']:.2f} "
                     f"| {ours['x_kissfft']:.2f} | {once['x_fftw']:.3f} "
                     f"| {once['x_fftw_warm']:.2f} |")
    return "\n".join(lines)


def polyline(values, colour, scale):
    points = " ".join(f"{x:.1f},{y:.1f}" for x, y in (scale(bits, value) for bits, value in values))
    return f'<polyline points="{points}" fill="none" stroke="{colour}" stroke-width="2"/>'


def fft_picture(runs):
    """An SVG of the ratios over the length."""
    width, height, margin, most = 720, 360, 50, 2.5

    def scale(bits, value):
        return (margin + (bits - FIRST_BITS) / (LAST_BITS - FIRST_BITS) * (width - 2 * margin),
                height - margin - min(value, most) / most * (height - 2 * margin))
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" '
             'font-family="sans-serif" font-size="12">',
             f'<rect width="{width}" height="{height}" fill="white"/>']
    for tenths in range(0, 26, 5):
        x, y = scale(FIRST_BITS, tenths / 10)
        colour = "black" if tenths == 10 else "#ccc"
        parts.append(f'<line x1="{x}" y1="{y}" x2="{width - margin}" y2="{y}" stroke="{colour}"/>'
                     f'<text x="{x - 8}" y="{y + 4}" text-anchor="end">{tenths / 10}</text>')
    for bits in range(LAST_BITS, FIRST_BITS, -2):
        x, y = scale(bits, 0)
        parts.append(f'<text x="{x}" y="{y + 18}" text-anchor="middle">2^{bits}</text>')
    curves = [("repeated", "x_fftw", "#c33", "four at a time / FFTW"),
              ("repeated in two pairs", "x_fftw", "#39c", "in pairs (SSE2) / FFTW"),
              ("repeated", "x_gsl", "#393", "four at a time / GSL")]
    for row, (way, counter, colour, title) in enumerate(curves):
        values = [(bits, fft_run(runs, way, bits)[counter])
                  for bits in range(FIRST_BITS, LAST_BITS + 1)]
        parts.append(polyline(values, colour, scale))
        parts.append(f'<text x="{width - 230}" y="{margin + 20 + 16 * row}" fill="{colour}">{title}'
                     '</text>')
    return "\n".join(parts + ["</svg>", ""])


def preparations(runs):
    """Returns what is known of each preparation: (name of the target, counters)."""
    found = []
    for name, run in runs.items():
        if name.startswith("prepare/"):
            _, kind, milliseconds, *_ = name.split("/")
            found.append((f"{kind}, {int(milliseconds) / 1000:g} s", run))
    return found


def preparation_table(runs):
    steps = ["load", "convert", "buffers", "points, ranges", "transform", "amplitudes, phases",
             "chart update", "painting"]
    lines = ["| target | " + " | ".join(steps) + " |", "|---|" + "---|" * len(steps)]
    for target, run in preparations(runs):
        cells = " | ".join(f"{max(run[step], 0):.3g}" for step in steps)
        lines.append(f"| {target} | {cells} |")
    return "\n".join(lines)


def share_table(runs):
    unit = runs["transformByFftw/262144"]["real_time"]
    lines = ["| target | own (ms) | of it in the kernel | own share | own share, kernel apart "
             "| own, in transforms of 2^18 by FFTW | peak memory / buffers |", "|---|" + "---|" * 6]
    for target, run in preparations(runs):
        own, total = run["own"], run["total"]
        own_user, total_user = own - run["own, system"], total - run["total, system"]
        memory = run["peak bytes"] / run["required bytes"]
        lines.append(f"| {target} | {own:.3g} | {run['own, system']:.3g} | {100 * own / total:.0f} % "
                     f"| {100 * own_user / total_user:.0f} % | {own / unit:.1f} "
                     f"| {f'{memory:.2f}' if run['required bytes'] > 1e8 else '–'} |")
    return "\n".join(lines)


def loading_table(runs):
    lines = ["| file | ours (ms) | libsndfile (ms) | ratio |", "|---|---|---|---|"]
    for name, run in runs.items():
        if name.startswith("load/"):
            _, kind, milliseconds, *_ = name.split("/")
            lines.append(f"| {kind}, {int(milliseconds) / 1000:g} s | {run['ours']:.3g} "
                         f"| {run['sndfile']:.3g} | {run['x_sndfile']:.2f} |")
    return "\n".join(lines)


def median(runs, value):
    return statistics.median(run[value] for run in runs)


def over_peers(runs, value):
    """Our median over the least of the peers'; a dash where there is no peer."""
    peers = [median(peer, value) for name, peer in runs.items() if name != "Pellion"]
    return f"{median(runs['Pellion'], value) / min(peers):.2f}" if peers else "–"


def starts_table(numbers):
    columns = [("warm", "mapped_ms", 1), ("warm", "painted_ms", 1), ("warm", "cpu_ms", 1),
               ("cold", "painted_ms", 1), ("warm", "pss_kib", 1024), ("warm", "rss_kib", 1024)]
    columns = [column for column in columns if column[0] in numbers]
    titles = {"mapped_ms": "window open", "painted_ms": "painted", "cpu_ms": "computing",
              "pss_kib": "PSS", "rss_kib": "RSS"}
    lines = ["| program | " + " | ".join(
        titles[value] + (" (MiB)" if unit > 1 else " (ms)") +
        (", from the disk" if kind == "cold" else "") for kind, value, unit in columns) + " |",
        "|---|" + "---|" * len(columns)]
    for name in numbers["warm"]:
        cells = (f"{median(numbers[kind][name], value) / unit:.0f}"
                 for kind, value, unit in columns)
        lines.append(f"| {name} | " + " | ".join(cells) + " |")
    cells = (over_peers(numbers[kind], value) for kind, value, _ in columns)
    return "\n".join(lines + ["| Pellion / least of the others | " + " | ".join(cells) + " |"])


def drawings_table(runs):
    lines = ["| program | launch to picture (ms) | computing (ms) |", "|---|---|---|"]
    for name, own in runs.items():
        lines.append(f"| {name} | {median(own, 'ms'):.0f} | {median(own, 'cpu_ms'):.0f} |")
    return "\n".join(lines + [f"| Pellion / Praat | {over_peers(runs, 'ms')} "
                              f"| {over_peers(runs, 'cpu_ms')} |"])


def starting(results):
    """The section on starting."""
    numbers = json.loads((results / "start.json").read_text())
    cold = (f"\"From the disk\" is with the page cache emptied before, "
            f"{len(numbers['cold']['Pellion'])} rounds." if "cold" in numbers else "")
    return f"""## Starting

Medians of {len(numbers['warm']['Pellion'])} rounds in turns on one virtual screen, as an observer outside sees them
(`bench/watch_start.cpp`), at a load of {numbers['load']:.1f}: from launch until the main window is open, and until it
shows more than one colour. Praat opens two windows; the later one counts. Of Sonic Visualiser the
main window counts, not its splash screen. "Computing" is the processors' time until then; memory
is that of one second later. Aimed at: 0.7 of the fastest, 0.8 of the smallest. {cold}

{starts_table(numbers)}

From launch to a PNG file with the waveform and the spectrum of a target of five seconds, no window
shown: `bench/draw_target.cpp` beside the Praat script `bench/draw_target.praat`. Aimed at: 1.

{drawings_table(numbers['drawing'])}
"""


def main():
    results, docs = map(pathlib.Path, sys.argv[1:3])
    fft, context = read(results / "fft.json")
    preparation, _ = read(results / "preparation.json")
    (docs / "pictures" / "fft-ratios.svg").write_text(fft_picture(fft), encoding="utf-8")
    (docs / "performance.md").write_text(f"""# Speed

Written by `scripts/bench` on {machine(context)}. Ratios below 1 are in our favour.

## The real FFT

Ours beside FFTW 3.3 in double precision (real to complex, out of place, `FFTW_ESTIMATE`), GSL
(in place, its copy counted) and KISS FFT (packaged in single precision: half of the work). All
transform in turns of half a millisecond; each ratio is the median over the turns. "Once" is all
from the tables on for one transform, FFTW planning anew; "planner warm" keeps what its planner has
learnt. Every output value is, bit for bit, that of the plain passes in `FFTReal.h`, which "pass by
pass" times.

![Ratios over the length](pictures/fft-ratios.svg)

{fft_table(fft)}

## Preparing a target

From the chosen file to both charts painted in a new window, in milliseconds:

{preparation_table(preparation)}

"Own" is all but the toolkit's chart update and painting; aimed at is a quarter of the whole at
every length, so that what one waits for is the drawing. Targets of seconds stay far below it, those
of minutes do not: each of their millions of bins has its square root and its arctangent, to the bit
those of the C library and on the program's one thread. "In the kernel" is the part of "own" that the
system takes to hand out memory; on a virtual machine, whose host lends it the memory anew each time,
that is most of a long target's time and differs from run to run. Memory is the peak of the whole
preparation over the bytes of the buffers that stand at the same time while the spectrum is
computed; aimed at is 1.3.

{share_table(preparation)}

## Loading

`CWav` reads and converts beside libsndfile's reading into doubles, in turns. `CWav` keeps the bytes
as well.

{loading_table(preparation)}

{starting(results)}""", encoding="utf-8")


main()
