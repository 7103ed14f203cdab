"""Turns the benchmarks' results into docs/performance.md: report.py RESULTS DOCS.

What a response costs is taken over from docs/reliability.md, which is read in DOCS.
"""
# SPDX-License-Identifier: GPL-3.0-or-later
import datetime
import json
import pathlib
import platform
import sys

from report_fft import fft_picture, fft_section
from report_preparation import loading_section, preparation_section, response_section
from report_start import start_section
from report_values import read, version


def machine(context):
    model = next((line.split(":")[1].strip() for line in open("/proc/cpuinfo", encoding="utf-8")
                  if line.startswith("model name")), platform.machine())
    caches = ", ".join(f"{cache['size'] // 1024} KiB L{cache['level']}"
                       for cache in context["caches"] if cache["type"] != "Instruction")
    return (f"{model}, {context['num_cpus']} processors, {caches}, with Qt "
            f"{version('libqt5core5a')}; {datetime.date.today()}")


def main():
    results, docs = map(pathlib.Path, sys.argv[1:3])
    fft, fft_context = read(*sorted(results.glob("fft-*.json")))
    preparation, preparation_context = read(results / "preparation.json")
    start = json.loads((results / "start.json").read_text(encoding="utf-8"))
    reliability = (docs / "reliability.md").read_text(encoding="utf-8")
    (docs / "pictures" / "fft-ratios.svg").write_text(fft_picture(fft), encoding="utf-8")
    (docs / "performance.md").write_text(f"""# Speed

Written by `scripts/bench` on {machine(fft_context)}. All
times and ratios are medians, never means or best ones. Ratios below 1 are in our favour. A load is
the machine's over the minute before a part was begun, in which an earlier part counts 1.

{fft_section(fft, fft_context)}
{preparation_section(preparation, preparation_context)}
{loading_section(preparation)}
{response_section(reliability)}
{start_section(start)}""", encoding="utf-8")


main()
