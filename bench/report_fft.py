"""The report's part on the transform."""
# SPDX-License-Identifier: GPL-3.0-or-later
from report_values import goals_table, load_of, number_text, table, version

FIRST_BITS, LAST_BITS = 3, 22


def fft_run(runs, way, bits):
    return next(run for name, run in runs.items() if name.startswith(f"{way}/2^{bits}/"))


def lengths_table(runs):
    rows = []
    for bits in range(FIRST_BITS, LAST_BITS + 1):
        ours = fft_run(runs, "repeated", bits)
        pairs = fft_run(runs, "repeated in two pairs", bits)
        plain = fft_run(runs, "repeated pass by pass", bits)
        once = fft_run(runs, "once", bits)
        rows.append([f"2^{bits}", number_text(ours['median_us']), f"{ours['x_fftw']:.2f}",
                     f"{pairs['x_fftw']:.2f}", f"{plain['x_fftw']:.2f}", f"{ours['x_gsl']:.2f}",
                     f"{ours['x_kissfft']:.2f}", f"{once['x_fftw']:.3f}",
                     f"{once['x_fftw_warm']:.2f}"])
    return table(["length", "µs", "/ FFTW", "in pairs (SSE2) / FFTW", "pass by pass / FFTW", "/ GSL",
                  "/ KISS FFT", "once / FFTW", "once / FFTW, planner warm"], rows)


def goals(runs):
    def ratios(way, lengths):
        return [(f"2^{bits}", fft_run(runs, way, bits)["x_fftw"]) for bits in lengths]
    last = LAST_BITS + 1
    return goals_table([
        ("/ FFTW, to 2^14 and at 2^17", 1.0, ratios("repeated", [*range(FIRST_BITS, 15), 17])),
        ("/ FFTW, at 2^15 and 2^16", 1.2, ratios("repeated", [15, 16])),
        ("/ FFTW, from 2^18 on", 0.8, ratios("repeated", range(18, last))),
        ("in pairs (SSE2) / FFTW", 2.1, ratios("repeated in two pairs", range(FIRST_BITS, last))),
        ("once / FFTW, to 2^13", 0.05, ratios("once", range(FIRST_BITS, 14))),
        ("once / FFTW, from 2^14 to 2^17", 0.4, ratios("once", range(14, 18))),
        ("once / FFTW, from 2^18 on", 1.0, ratios("once", range(18, last)))])


def polyline(values, colour, scale):
    points = " ".join(f"{x:.1f},{y:.1f}" for x, y in (scale(bits, value) for bits, value in values))
    return f'<polyline points="{points}" fill="none" stroke="{colour}" stroke-width="2"/>'


def fft_picture(runs):
    """An SVG of the ratios over the length."""
    width, height, margin, highest = 720, 360, 50, 2.5

    def scale(bits, value):
        return (margin + (bits - FIRST_BITS) / (LAST_BITS - FIRST_BITS) * (width - 2 * margin),
                height - margin - min(value, highest) / highest * (height - 2 * margin))
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


def fft_section(runs, context):
    return f"""## The real FFT

Ours beside FFTW {version("libfftw3-dev")} in double precision (real to complex, out of place, `FFTW_ESTIMATE`), GSL
{version("libgsl-dev")} (in place, its copy counted) and KISS FFT {version("libkissfft-dev")} (packaged in single precision: half of
the work), at a load of {load_of(context):.1f}. All transform in turns of half a millisecond. Each ratio is the
median over the turns and over three processes, because the place of the arrays in memory is random.
"Once" includes the tables and, for FFTW, a new plan; "planner warm" keeps what its planner has
learnt. Every output value is, bit for bit, that of the plain passes in
`FFTReal.h`, which "pass by pass" times.

![Ratios over the length](pictures/fft-ratios.svg)

{lengths_table(runs)}

{goals(runs)}
"""
