# A copy of the tree in which deliberate faults are made, built and tested.
# SPDX-License-Identifier: GPL-3.0-or-later
"""What scripts/mutate does with a fault: build, run, note the outcome."""
import dataclasses
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import time

from mutation_table import ROOT, Problem, Result, Stale

FUNCTION_LIMIT_SECONDS = 90
FIXTURES = {"init", "cleanup", "initTestCase", "cleanupTestCase"}


def say(text):
    print(text, flush=True)


@dataclasses.dataclass
class TestProgram:
    """A test as CTest knows it."""

    name: str
    command: list
    environment: list
    needs_desk: bool

    def target(self, build_directory):
        """What has to be built: the first of the command's words that is a file of the build."""
        paths = [pathlib.Path(word) for word in self.command]
        built = [path.name for path in paths if build_directory in path.parents]
        if not built:
            raise Problem(f"{self.name} runs nothing that is built")
        return built[0]


@dataclasses.dataclass
class TestRun:
    """How a test program ended and what its functions said."""

    status: int
    seconds: float
    functions: list
    failed: list

    @property
    def passed(self):
        return self.status == 0


class Workshop:
    """The copy of the tree, its build, and the results. All of it lies in one directory."""

    def __init__(self, directory):
        self.directory = directory
        self.source = directory / "source"
        self.build_directory = directory / "build"
        self.results_file = directory / "results.tsv"
        self.functions_file = directory / "functions.tsv"
        self.programs = {}
        self.build_limits = {}

    def set_up(self):
        self.directory.mkdir(parents=True, exist_ok=True)
        say(f"copying this tree to {self.source} and building it")
        self.copy_tree()
        self.build_all()
        self.programs = self.list_programs()

    def copy_tree(self):
        """Makes the copy equal to this tree. Equal files keep their times, so nothing is built
        twice, and a fault left behind by an interrupted run goes."""
        command = ["git", "-C", ROOT, "ls-files", "-z", "--cached", "--others", "--exclude-standard"]
        listed = subprocess.run(command, check=True, capture_output=True, text=True).stdout
        wanted = {name for name in listed.split("\0") if name and (ROOT / name).is_file()}
        for name in sorted(wanted):
            copy = self.source / name
            content = (ROOT / name).read_bytes()
            if not copy.is_file() or copy.read_bytes() != content:
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(ROOT / name, copy)
                os.utime(copy)
        for copy in list(self.source.rglob("*")):
            if copy.is_file() and str(copy.relative_to(self.source)) not in wanted:
                copy.unlink()

    def build_all(self):
        options = ["-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug", "-DPELLION_WARNINGS_AS_ERRORS=OFF"]
        options.append("-DCMAKE_CXX_FLAGS_DEBUG=")  # nobody debugs a fault
        if shutil.which("ccache"):
            options.append("-DCMAKE_CXX_COMPILER_LAUNCHER=ccache")
        if shutil.which("mold"):
            options.append("-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=mold")
        self.call_cmake("-S", self.source, "-B", self.build_directory, *options)
        # All of it: CTest keeps the command of a test to itself until its program is there.
        self.call_cmake("--build", self.build_directory)

    def call_cmake(self, *arguments):
        done = subprocess.run(["cmake", *arguments], capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise Problem(f"{shlex.join(map(str, done.args))}\n{done.stdout[-4000:]}{done.stderr}")

    def list_programs(self):
        command = ["ctest", "--show-only=json-v1"]
        shown = subprocess.run(
            command, cwd=self.build_directory, check=True, capture_output=True, text=True
        )
        programs = {}
        for test in json.loads(shown.stdout)["tests"]:
            if "command" not in test:
                continue  # its program is not built
            properties = {entry["name"]: entry["value"] for entry in test.get("properties", [])}
            programs[test["name"]] = TestProgram(
                test["name"],
                test["command"],
                properties.get("ENVIRONMENT", []),
                "desk" in properties.get("RESOURCE_LOCK", []),
            )
        return programs

    def build(self, names):
        """Builds test programs; returns the compiler's complaints, empty when there are none."""
        targets = sorted({self.programs[name].target(self.build_directory) for name in names})
        command = ["cmake", "--build", self.build_directory, "--target", *targets]
        built = subprocess.run(command, capture_output=True, text=True, check=False)
        return "" if built.returncode == 0 else built.stdout[-4000:] or "the build failed"

    def run(self, names, limits=None):
        """Runs test programs one after the other; returns name -> TestRun. They have to be programs
        of Qt Test: each is told to name its functions as it goes."""
        logs = self.directory / "logs"
        logs.mkdir(exist_ok=True)
        lines = []
        for name in names:
            program = self.programs[name]
            limit = limits[name] if limits else 300
            command = ["env", *program.environment, *program.command, "-v1"]
            lines += [
                "started=$EPOCHREALTIME",
                f"timeout --kill-after=5 {limit} {shlex.join(command)} >{name}.log 2>&1",
                f'echo "$? $started $EPOCHREALTIME" >{name}.status',
            ]
            for ending in ("log", "status"):
                (logs / f"{name}.{ending}").unlink(missing_ok=True)
        command = ["bash", "-c", "\n".join(lines)]
        if any(self.programs[name].needs_desk for name in names):
            command.insert(0, self.source / "scripts" / "virtual-desk")
        environment = {"QTEST_FUNCTION_TIMEOUT": str(FUNCTION_LIMIT_SECONDS * 1000)}
        desk = subprocess.run(
            command,
            cwd=logs,
            env=os.environ | environment,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            check=False,
        )
        if not (logs / f"{names[-1]}.status").is_file():
            raise Problem(f"the tests could not be run: {desk.stderr}")
        return {name: self.read_run(name) for name in names}

    def read_run(self, name):
        """Reads what a program has left. Where it ended without a word about the function that was
        under way, that one has failed."""
        logs = self.directory / "logs"
        # Bash writes times with the locale's decimal point.
        status, started, ended = (logs / f"{name}.status").read_text().replace(",", ".").split()
        functions, failed, under_way = {}, {}, ""
        text = (logs / f"{name}.log").read_text(encoding="utf-8", errors="replace")
        for word, function in re.findall(r"^([A-Z!]+) *: (\w+::\w+)\(", text, re.MULTILINE):
            functions[function] = True
            if word in ("FAIL!", "XPASS", "QFATAL"):
                failed[function] = True
            under_way = function if word == "INFO" else ""
        if int(status) != 0 and not failed and under_way:
            failed[under_way] = True
        return TestRun(int(status), float(ended) - float(started), list(functions), list(failed))

    def functions(self):
        """Returns program -> (seconds, functions) of the programs that have passed without
        a fault."""
        if not self.functions_file.is_file():
            return {}
        known = {}
        for line in self.functions_file.read_text().splitlines():
            name, seconds, *functions = line.split("\t")
            known[name] = (float(seconds), functions)
        return known

    def run_without_fault(self, names):
        """Builds and runs what the faults to come need: only tests that pass can catch one. Returns
        the time limit of each program in seconds."""
        unknown = sorted(set(names) - set(self.programs))
        if unknown:
            raise Problem(f"no such tests: {' '.join(unknown)}")
        say(f"running {len(names)} tests without a fault")
        known = self.functions()
        for name, run in self.run(sorted(names)).items():
            if not run.functions:
                raise Problem(f"{name} names no function as a program of Qt Test does")
            if not run.passed:
                raise Problem(f"{name} fails without a fault: {' '.join(run.failed)}")
            tests = [f for f in run.functions if f.split("::")[1] not in FIXTURES]
            known[name] = (run.seconds, tests)
        with self.functions_file.open("w") as file:
            for name, (seconds, tests) in sorted(known.items()):
                file.write("\t".join([name, f"{seconds:.1f}", *tests]) + "\n")
        return {name: int(60 + 3 * known[name][0]) for name in names}

    def results(self):
        """Returns name -> Result; of several for one name the last counts."""
        if not self.results_file.is_file():
            return {}
        found = {}
        for line in self.results_file.read_text().splitlines():
            name, digest, outcome, seconds, failed, note = line.split("\t")
            found[name] = Result(digest, outcome, float(seconds), failed.split(), note)
        return found

    def try_fault(self, fault, limits):
        """Puts a fault into the copy, builds, runs the tests, and takes it out again."""
        started = time.monotonic()
        path = self.source / fault.file
        outcome, failed, note = "survived", [], ""
        original = path.read_text(encoding="utf-8") if path.is_file() else ""
        try:
            path.write_text(fault.put_into(original), encoding="utf-8")
            complaints = self.build(fault.tests)
            if complaints:
                outcome, note = "invalid", first_error(complaints)
            else:
                runs = self.run(fault.tests, limits)
                failed = [function for run in runs.values() for function in run.failed]
                overtime = [name for name, run in runs.items() if run.status in (124, 137)]
                if not all(run.passed for run in runs.values()):
                    outcome = "caught"
                    note = "timed out: " + " ".join(overtime) if overtime else ""
        except Stale as stale:
            outcome, note = "stale", str(stale)
        finally:
            if original:
                path.write_text(original, encoding="utf-8")
        result = Result(fault.digest(), outcome, time.monotonic() - started, failed, note)
        with self.results_file.open("a") as file:
            file.write(result.line(fault.name))
        return result


def first_error(complaints):
    errors = [line for line in complaints.splitlines() if "error" in line]
    return (errors or ["does not compile"])[0]
