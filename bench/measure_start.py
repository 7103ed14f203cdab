"""Measures starting beside other programs: measure_start.py BUILD RESULT, on a virtual desk.

Starts the program and its peers in turns, with all files in memory and, where this is root's
process, with none, and has watch_start time each until its windows are painted. Divides the
program's start into steps by divide_start, and starts it as it is and with what it leaves out in
turns. Then times whole processes from launch to a picture of a target of five seconds: draw_target
and a Praat script in turns. BUILD is the build tree, RESULT the file for the numbers.
"""
# SPDX-License-Identifier: GPL-3.0-or-later
import array
import json
import math
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time
import wave

WARM_ROUNDS = 11
COLD_ROUNDS = 5
DIVIDING_ROUNDS = 11
DRAWING_ROUNDS = 15
SAMPLING_RATE = 40000
TARGET_SECONDS = 5
DROP_CACHES = pathlib.Path("/proc/sys/vm/drop_caches")


def complain(message):
    print(f"measure_start: {message}", file=sys.stderr)


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
    """A new Praat hands over to an earlier process unless that has quit properly."""
    (home / ".praat-dir" / "pid").unlink(missing_ok=True)


def numbers_of(command, environment):
    """Returns what a command prints as JSON."""
    return json.loads(subprocess.run(command, env=environment, stdout=subprocess.PIPE,
                                     check=True).stdout)


class Starts:
    """The programs' starts, by name: how many windows make a start, and the command."""

    def __init__(self, build, home):
        self.watcher = build / "bench" / "watch_start"
        self.home = home
        # As it is on a desktop: the virtual desk keeps OpenGL away from every program.
        self.environment = {name: value for name, value in os.environ.items()
                            if name != "QT_XCB_GL_INTEGRATION"}
        programs = {"Pellion": (1, build / "bin" / "pellion"),
                    "Sonic Visualiser": (1, shutil.which("sonic-visualiser")),
                    "Praat": (2, shutil.which("praat"))}
        self.programs = {name: program for name, program in programs.items() if program[1]}
        if "Sonic Visualiser" in self.programs:
            answer_first_questions(home)

    def once(self, name, **variables):
        windows, program = self.programs[name]
        end_earlier_praat(self.home)
        return numbers_of([self.watcher, str(windows), program], self.environment | variables)

    def rounds(self, count, prepare=lambda: None):
        """Starts all programs so often, each round beginning with another one."""
        runs = {name: [] for name in self.programs}
        for number in range(count):
            names = list(self.programs)
            first = number % len(names)
            for name in names[first:] + names[:first]:
                prepare()
                runs[name].append(self.once(name))
        return runs


def divisions(starts, build):
    """The steps of the program's start, and starts without and with what the program leaves out."""
    divider = build / "bench" / "divide_start"
    runs = {"steps": [], "icon as files": [], "as it is": [], "with OpenGL": []}
    for number in range(DIVIDING_ROUNDS + 1):
        round_ = {
            "steps": numbers_of([divider, str(time.monotonic_ns())], starts.environment),
            "icon as files": numbers_of([divider, str(time.monotonic_ns()), "files"],
                                        starts.environment),
            "as it is": starts.once("Pellion"),
            # Qt's first choice unless it is set.
            "with OpenGL": starts.once("Pellion", QT_XCB_GL_INTEGRATION="xcb_glx")}
        if number > 0:
            for name, run in round_.items():
                runs[name].append(run)
    return runs


def write_target(path):
    """A harmonic sound, 16 bits and one channel."""
    samples = array.array("h", (
        int(32767 * (0.5 * math.sin(i * 0.0691) + 0.3 * math.sin(i * 0.1382 + 1)))
        for i in range(SAMPLING_RATE * TARGET_SECONDS)))
    with wave.open(str(path), "wb") as file:
        file.setparams((1, 2, SAMPLING_RATE, 0, "NONE", ""))
        file.writeframes(samples.tobytes())


def time_process(command, picture):
    """Returns the milliseconds from launch to exit and on the processors."""
    picture.unlink(missing_ok=True)
    start = time.perf_counter()
    with subprocess.Popen(command, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL) as process:
        _, status, usage = os.wait4(process.pid, 0)
        elapsed = time.perf_counter() - start
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0 or not picture.stat().st_size:
        raise RuntimeError(f"{command[0]} has drawn nothing")
    return {"ms": 1000 * elapsed, "cpu_ms": 1000 * (usage.ru_utime + usage.ru_stime)}


def drawings(build, folder):
    target, picture = folder / "target.wav", folder / "picture.png"
    write_target(target)
    script = pathlib.Path(__file__).with_name("draw_target.praat")
    commands = {"Pellion": [build / "bench" / "draw_target", target, picture]}
    if shutil.which("praat"):
        commands["Praat"] = ["praat", "--run", script, target, picture]
    runs = {name: [] for name in commands}
    for number in range(DRAWING_ROUNDS + 1):
        for name, command in sorted(commands.items(), reverse=number % 2 == 1):
            run = time_process(command, picture)
            if number > 0:
                runs[name].append(run)
    return runs


def main():
    build, result = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    starts = Starts(build, pathlib.Path.home())
    numbers = {"load": os.getloadavg()[0], "beside": processes_with_qt()}
    if numbers["beside"]:
        complain(f"Qt is in use and in memory: {', '.join(numbers['beside'])}")
    starts.rounds(1)
    numbers["warm"] = starts.rounds(WARM_ROUNDS)
    numbers["division"] = divisions(starts, build)
    with tempfile.TemporaryDirectory() as folder:
        numbers["drawing"] = drawings(build, pathlib.Path(folder))
    try:
        numbers["cold"] = starts.rounds(COLD_ROUNDS, empty_page_cache)
    except OSError as error:
        complain(f"no cold starts, for only root can empty the page cache: {error}")
    result.write_text(json.dumps(numbers, indent=1), encoding="utf-8")


main()
