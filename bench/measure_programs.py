"""Measures the program and others: measure_programs.py BUILD FOLDER, on a virtual desk.

Starts the program and the others in turns, with all files in memory and, if run by root, with none.
watch_start times each start until its windows are painted. Divides the program's start into steps
by divide_start. Then hyperfine times whole processes from launch to a picture of a target:
draw_target and a Praat script in turns. The medians go into programs.json.
"""
# SPDX-License-Identifier: GPL-3.0-or-later
import array
import datetime
import json
import math
import os
import pathlib
import platform
import re
import shlex
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
import wave

IS_TRIAL = "BENCH_TRIAL" in os.environ
WARM_ROUNDS, COLD_ROUNDS, DIVIDING_ROUNDS = (1, 1, 1) if IS_TRIAL else (7, 3, 7)
# By the seconds of the target.
DRAWING_ROUNDS = {0.25: 1, 5: 1} if IS_TRIAL else {0.25: 7, 5: 7, 60: 5, 600: 3}
SAMPLING_RATE = 40000
HUGE_PAGES = pathlib.Path("/sys/kernel/mm/transparent_hugepage/enabled")
DROP_CACHES = pathlib.Path("/proc/sys/vm/drop_caches")


def print_error(message):
    print(f"measure_programs: {message}", file=sys.stderr)


def empty_page_cache():
    """Empties the page cache; raises OSError where that is not allowed."""
    os.sync()
    DROP_CACHES.write_text("3\n", encoding="ascii")


def processes_with_qt():
    """Returns the names of the processes that hold Qt's libraries in memory."""
    names = []
    for process in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            if "libQt5Core" in (process / "maps").read_text(encoding="utf-8", errors="replace"):
                names.append((process / "comm").read_text(encoding="utf-8").strip())
        except OSError:  # ended by now, or another user's
            continue
    return names


def processor():
    lines = pathlib.Path("/proc/cpuinfo").read_text(encoding="utf-8").splitlines()
    model = next((line.split(":")[1].strip() for line in lines if line.startswith("model name")),
                 platform.machine())
    return f"{model}, {os.cpu_count()} processors"


def huge_pages():
    """Returns when the kernel uses huge pages: "always", "madvise" or "never"."""
    if not HUGE_PAGES.exists():
        return "never"
    return re.search(r"\[(\w+)\]", HUGE_PAGES.read_text(encoding="ascii"))[1]


def answer_first_questions(home):
    """Sonic Visualiser asks at its first start whether it may use the network."""
    folder = home / ".config" / "sonic-visualiser"
    folder.mkdir(parents=True, exist_ok=True)
    version = subprocess.run(["dpkg-query", "-W", "-f", "${source:Upstream-Version}",
                              "sonic-visualiser"], stdout=subprocess.PIPE, text=True,
                             check=True).stdout
    (folder / "Sonic Visualiser.conf").write_text(
        f"[Preferences]\nnetwork-permission-{version}=false\n", encoding="utf-8")


def end_earlier_praat(home):
    """A Praat that was killed leaves its process id, to which a new one would hand over."""
    (home / ".praat-dir" / "pid").unlink(missing_ok=True)


def numbers_of(command, environment):
    """Returns what a command prints as JSON."""
    return json.loads(subprocess.run(command, env=environment, stdout=subprocess.PIPE,
                                     check=True).stdout)


def medians(rounds):
    """Returns the median of each number of a list of rounds."""
    return {name: statistics.median(numbers[name] for numbers in rounds) for name in rounds[0]}


class Starts:
    """The programs' starts, by name: how many windows make a start, and the command."""

    def __init__(self, build, home):
        self.watcher = build / "bench" / "watch_start"
        self.home = home
        # As on a desktop: the virtual desk disables OpenGL for every program.
        self.environment = {name: value for name, value in os.environ.items()
                            if name != "QT_XCB_GL_INTEGRATION"}
        programs = {"Pellion": (1, build / "bin" / "pellion"),
                    "Sonic Visualiser": (1, shutil.which("sonic-visualiser")),
                    "Praat": (2, shutil.which("praat"))}
        self.programs = {name: program for name, program in programs.items() if program[1]}
        if "Sonic Visualiser" in self.programs:
            answer_first_questions(home)

    def once(self, name):
        windows, program = self.programs[name]
        end_earlier_praat(self.home)
        return numbers_of([self.watcher, str(windows), program], self.environment)

    def rounds(self, count, prepare=lambda: None):
        """Starts all programs `count` times, each round beginning with another one."""
        runs = {name: [] for name in self.programs}
        for number in range(count):
            names = list(self.programs)
            first = number % len(names)
            for name in names[first:] + names[:first]:
                prepare()
                runs[name].append(self.once(name))
        return {name: medians(run) for name, run in runs.items()}

    def steps(self, divider):
        rounds = [numbers_of([divider, str(time.monotonic_ns())], self.environment)
                  for _ in range(DIVIDING_ROUNDS + 1)]
        return medians(rounds[1:])


def write_target(path, seconds):
    """A harmonic sound, 16 bits and one channel; a long one repeats its first seconds."""
    block = array.array("h", (
        int(32767 * (0.5 * math.sin(i * 0.0691) + 0.3 * math.sin(i * 0.1382 + 1)))
        for i in range(int(SAMPLING_RATE * min(seconds, 5)))))
    with wave.open(str(path), "wb") as file:
        file.setparams((1, 2, SAMPLING_RATE, 0, "NONE", ""))
        for _ in range(max(1, int(seconds / 5))):
            file.writeframes(block.tobytes())


def time_in_turns(commands, rounds, folder):
    """Returns the median of each command's milliseconds, and of the first one's ratio to the
    second one's in the same round."""
    result = folder / "hyperfine.json"
    times = []
    for number in range(rounds):
        subprocess.run(["hyperfine", "--shell=none", "--style=none", "--runs=1",
                        f"--warmup={1 if number == 0 else 0}", f"--export-json={result}",
                        *(shlex.join(map(str, command)) for command in commands.values())],
                       check=True)
        numbers = json.loads(result.read_text(encoding="utf-8"))["results"]
        times.append({name: 1000 * one["median"] for name, one in zip(commands, numbers)})
        if len(commands) > 1:
            first, second, *_ = times[-1].values()
            times[-1]["ratio"] = first / second
    return medians(times)


def drawings(build, folder):
    """Returns the times of drawing targets, by their seconds."""
    target, picture = folder / "target.wav", folder / "picture.png"
    script = pathlib.Path(__file__).with_name("draw_target.praat")
    commands = {"Pellion": [build / "bench" / "draw_target", target, picture]}
    if shutil.which("praat"):
        commands["Praat"] = ["praat", "--run", script, target, picture]
    found = {}
    for seconds, rounds in DRAWING_ROUNDS.items():
        write_target(target, seconds)
        found[f"{seconds:g}"] = time_in_turns(commands, rounds, folder)
    return found


def main():
    build, folder = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    starts = Starts(build, pathlib.Path.home())
    numbers = {"processor": processor(), "date": str(datetime.date.today()),
               "huge pages": huge_pages(), "beside": processes_with_qt()}
    if numbers["beside"]:
        print_error(f"Qt is in use and in memory: {', '.join(numbers['beside'])}")
    starts.rounds(1)
    numbers["warm"] = starts.rounds(WARM_ROUNDS)
    numbers["steps"] = starts.steps(build / "bench" / "divide_start")
    with tempfile.TemporaryDirectory() as temporary:
        numbers["drawing"] = drawings(build, pathlib.Path(temporary))
    try:
        numbers["cold"] = starts.rounds(COLD_ROUNDS, empty_page_cache)
    except OSError as error:
        print_error(f"no cold starts, for only root can empty the page cache: {error}")
    (folder / "programs.json").write_text(json.dumps(numbers, indent=1), encoding="utf-8")


main()
