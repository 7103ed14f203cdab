"""The report's part on the transform."""
# SPDX-License-Identifier: GPL-3.0-or-later
from report_values import Measured, table

ESTIMATE, MEASURE = "fftw estimate", "fftw measure"
PEERS = {MEASURE: "/ FFTW_MEASURE", ESTIMATE: "/ FFTW_ESTIMATE", "gsl": "/ GSL",
         "kissfft": "/ KISS FFT"}
HIGHEST_RATIO = 2.5


class Transforms:
    """The results of bench_fft by length."""

    def __init__(self, runs):
        self.runs = [run["fft"] for run in runs]
        self.lengths = [int(name.split("/")[1]) for name in self.runs[0]
                        if name.startswith("repeated/")]

    def value(self, way, bits, counter):
        """None if that was not measured."""
        found = [run[f"{way}/{bits}"] for run in self.runs]
        return Measured(one[counter] for one in found) if counter in found[0] else None

    def ratios(self, way, counter, first, last):
        values = {f"2^{bits}": self.value(way, bits, counter) for bits in self.lengths
                  if first <= bits <= last}
        return {label: value for label, value in values.items() if value is not None}

    def text(self, way, bits, counter, spec=".2f"):
        value = self.value(way, bits, counter)
        return "–" if value is None else f"{value:{spec}}"

    def peers_table(self):
        return table(["length", "µs", *PEERS.values()],
                     [[f"2^{bits}", self.text("repeated", bits, "ours", ""),
                       *(self.text("repeated", bits, f"ours / {peer}") for peer in PEERS)]
                      for bits in self.lengths])

    def ways_table(self):
        return table(["length", "in pairs (SSE2)", "pass by pass", "once", "once, planner warm"],
                     [[f"2^{bits}", self.text("repeated", bits, f"in two pairs / {ESTIMATE}"),
                       self.text("repeated", bits, f"pass by pass / {ESTIMATE}"),
                       self.text("once", bits, "ours / fftw", ".3f"),
                       self.text("once", bits, "ours / fftw warm")] for bits in self.lengths])

    def goals(self):
        beside_measure, beside_estimate = f"ours / {MEASURE}", f"ours / {ESTIMATE}"
        once = "ours / fftw"
        return {
            "measure_short": self.ratios("repeated", beside_measure, 3, 14),
            "measure_long": self.ratios("repeated", beside_measure, 15, 20),
            "estimate_short": self.ratios("repeated", beside_estimate, 3, 14) |
            self.ratios("repeated", beside_estimate, 17, 17),
            "estimate_middle": self.ratios("repeated", beside_estimate, 15, 16),
            "estimate_long": self.ratios("repeated", beside_estimate, 18, 22),
            "pairs": self.ratios("repeated", f"in two pairs / {ESTIMATE}", 3, 22),
            "once_short": self.ratios("once", once, 3, 13),
            "once_middle": self.ratios("once", once, 14, 17),
            "once_long": self.ratios("once", once, 18, 22)}

    def picture(self):
        """An SVG of the ratios over the length: lines of medians, the ranges shaded."""
        width, height, margin = 720, 360, 50
        first, last = min(self.lengths), max(self.lengths)

        def scale(bits, value):
            x = margin + (bits - first) / (last - first) * (width - 2 * margin)
            y = height - margin - min(value, HIGHEST_RATIO) / HIGHEST_RATIO * (height - 2 * margin)
            return f"{x:.1f}", f"{y:.1f}"

        def points(values):
            return " ".join(",".join(scale(bits, value)) for bits, value in values)
        parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" '
                 'font-family="sans-serif" font-size="12">',
                 f'<rect width="{width}" height="{height}" fill="white"/>']
        for tenths in range(0, 26, 5):
            x, y = scale(first, tenths / 10)
            colour = "black" if tenths == 10 else "#ccc"
            parts.append(f'<line x1="{x}" y1="{y}" x2="{width - margin}" y2="{y}" '
                         f'stroke="{colour}"/><text x="42" y="{y}" text-anchor="end">'
                         f'{tenths / 10}</text>')
        for bits in range(last, first, -2):
            parts.append(f'<text x="{scale(bits, 0)[0]}" y="{height - margin + 18}" '
                         f'text-anchor="middle">2^{bits}</text>')
        curves = [(f"ours / {MEASURE}", "#c33", "ours / FFTW_MEASURE"),
                  (f"ours / {ESTIMATE}", "#39c", "ours / FFTW_ESTIMATE"),
                  ("ours / gsl", "#393", "ours / GSL")]
        for row, (counter, colour, title) in enumerate(curves):
            values = [(bits, self.value("repeated", bits, counter)) for bits in self.lengths]
            values = [(bits, value) for bits, value in values if value is not None]
            outline = ([(bits, value.low) for bits, value in values] +
                       [(bits, value.high) for bits, value in reversed(values)])
            parts.append(
                f'<polygon points="{points(outline)}" fill="{colour}" fill-opacity="0.2"/>'
                f'<polyline points="{points(values)}" fill="none" stroke="{colour}" '
                f'stroke-width="2"/><text x="{width - 230}" y="{margin + 20 + 16 * row}" '
                f'fill="{colour}">{title}</text>')
        return "\n".join(parts + ["</svg>", ""])
