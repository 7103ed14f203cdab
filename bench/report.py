"""Turns the benchmarks' results into docs/performance.md: report.py RESULTS DOCS."""
# SPDX-License-Identifier: GPL-3.0-or-later
import datetime
import json
import pathlib
import platform
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
    for bits in range(FIRST_BITS, LAST_BITS + 1):
        x, y = scale(bits, 0)
        parts.append(f'<text x="{x}" y="{y + 18}" text-anchor="middle">2^{bits}</text>')
    curves = [("repeated", "x_fftw", "#c33", "four at a time / FFTW"),
              ("repeated in two pairs", "x_fftw", "#39c", "in pairs (SSE2) / FFTW"),
              ("repeated", "x_gsl", "#393", "four at a time / GSL")]
    for row, (way, counter, colour, title) in enumerate(curves):
        values = [(bits, fft_run(runs, way, bits)[counter])
                  for bits in range(FIRST_BITS, LAST_BITS + 1)]
        parts.append(polyline(values, colour, scale))
        parts.append(f'<text x="{margin + 20}" y="{margin - 10 + 16 * row}" fill="{colour}">{title}'
                     '</text>')
    return "\n".join(parts + ["</svg>", ""])


def preparation_table(runs):
    steps = ["1 load, convert, buffers", "2 transform, amplitudes", "3 points and chart update",
             "4 of which points and ranges", "5 painting", "own"]
    unit = runs["transformByFftw/262144"]["real_time"]
    lines = ["| target | " + " | ".join(step.lstrip("12345 ") for step in steps) +
             " | own share | own, in transforms of 2^18 by FFTW |", "|---|" + "---|" * 8]
    for name, run in runs.items():
        if name.startswith("prepare/"):
            _, kind, milliseconds = name.split("/")
            cells = " | ".join(f"{run[step]:.3g}" for step in steps)
            lines.append(f"| {kind}, {int(milliseconds) / 1000:g} s | {cells} "
                         f"| {100 * run['own share']:.0f} % | {run['own'] / unit:.1f} |")
    return "\n".join(lines)


def loading_table(runs):
    lines = ["| file | ours (ms) | libsndfile (ms) | ratio |", "|---|---|---|---|"]
    for name, run in runs.items():
        if name.startswith("load/"):
            peer = runs[name.replace("load/", "loadBySndfile/")]
            _, kind, milliseconds = name.split("/")
            lines.append(f"| {kind}, {int(milliseconds) / 1000:g} s | {run['real_time']:.3g} "
                         f"| {peer['real_time']:.3g} | {run['real_time'] / peer['real_time']:.2f} |")
    return "\n".join(lines)


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

From the chosen file to both charts painted, in milliseconds. "Own" is all but the toolkit's chart
update and painting; the last column compares it with one transform of 2^18 values by FFTW, so that
machines can be compared.

{preparation_table(preparation)}

## Loading

`CWav` reads and converts beside libsndfile's reading into doubles.

{loading_table(preparation)}
""", encoding="utf-8")


main()
