# Copies of the tree in which mutants are built and tested.
# SPDX-License-Identifier: GPL-3.0-or-later
import dataclasses
import hashlib
import json
import os
import re
import shlex
import shutil
import subprocess
import time

from mutation.mutants import ENCODING, ROOT, Problem

WORK_FOLDER = ROOT / "build-mutants"
# The path of every copy in its sandbox, so that the compiler cache serves all copies.
PLACE = WORK_FOLDER / "copy"
# With a separate process namespace, so that no compiler continues after an interruption.
BUILDING = shlex.split("bwrap --die-with-parent --unshare-pid --bind / / --dev-bind /dev /dev "
                       "--proc /proc")
# A mutant may write anywhere and leave processes: here it can write only to /tmp and its copy, and
# has no network.
TESTING = shlex.split("bwrap --die-with-parent --unshare-pid --unshare-ipc --unshare-net "
                      "--ro-bind / / --dev /dev --proc /proc --perms 1777 --tmpfs /tmp")
FUNCTION_LIMIT_SECONDS = 60
FIXTURE_FUNCTIONS = {"init", "cleanup", "initTestCase", "cleanupTestCase"}
# Folders of tests whose names differ from the product's.
TEST_FOLDERS = {"base": "app", "window": "app", "xResources": "fft"}
# The tools are separate programs: only these tests run the code of tools/.
RELEVANT_TESTS = {"tools": "_tool|example_targets|try_kills|analysis"}
PROGRAMS = ["pellion", "pellion-session", "pellion-target"]

# Optimised, so that more of the mutants that change nothing give the same code, and without debug
# information, which would differ. Tests need not be linked again when only a library changes.
CMAKE_OPTIONS = [
    "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O1", "-DBUILD_SHARED_LIBS=ON",
    "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON", "-DPELLION_WARNINGS_AS_ERRORS=OFF"]


@dataclasses.dataclass
class Test:
    """A test as CTest knows it."""

    name: str
    command: list
    properties: dict
    folders: set  # of its sources, below tests/
    seconds: float = 0.0  # without a mutant

    @property
    def is_qt_test(self):
        return "/tests/test_" in self.command[0]

    def shell_line(self, functions, stops):
        """Runs the test. Writes its output to NAME.log, and to NAME.end 0 if it passed, else 1,
        and the times of begin and end. If it fails and `stops` is true, the shell exits."""
        command = ["env", *self.properties.get("ENVIRONMENT", []), *self.command]
        if self.is_qt_test:
            command += ["-v1", *functions]
        # Qt stops a function that hangs; a slow run on a busy machine must not count as caught.
        limit = int(60 + 10 * self.seconds) if self.seconds else 300
        judge = f"[[ $? == 0 || $? == {self.properties.get('SKIP_RETURN_CODE', 0)} ]]"
        for expression in self.properties.get("PASS_REGULAR_EXPRESSION", []):
            judge = f"grep -qE {shlex.quote(expression)} {self.name}.log"
        return (f"begin=$EPOCHREALTIME\n"
                f"timeout --kill-after=5 {limit} {shlex.join(command)} >{self.name}.log 2>&1\n"
                f"{judge}; failed=$?\n"
                f"echo $failed $begin $EPOCHREALTIME >{self.name}.end\n"
                f"((failed && {int(stops)})) && exit\n")


@dataclasses.dataclass
class Run:
    """The result of a test."""

    test: Test
    passed: bool
    seconds: float
    failed: list  # Class::function

    def names(self):
        return [f"{self.test.name}/{function}" for function in self.failed or ["ended"]]


def failed_functions(log, has_ended_well):
    """The functions of a Qt test that failed, also one that was running when the test ended."""
    failed, under_way = [], ""
    for word, function in re.findall(r"^([A-Z!]+) *: (\w+::\w+)\(", log, re.MULTILINE):
        if word in ("FAIL!", "XPASS", "QFATAL") and function not in failed:
            failed.append(function)
        under_way = function if word == "INFO" else ""
    return failed if failed or has_ended_well or not under_way else [under_way]


class Copy:
    """A copy of the tree, with its build, for one mutant at a time."""

    def __init__(self, directory):
        self.directory = directory
        self.source = directory / "source"
        self.logs = directory / "logs"
        self.tests = []
        self.objects = {}  # path -> time of change and digest
        self.original_digests = {}

    def prepare(self, pattern):
        """Brings the copy up to date; a new one is made from the copy `pattern`."""
        PLACE.mkdir(parents=True, exist_ok=True)
        if not self.directory.exists() and pattern.directory.exists():
            shutil.copytree(pattern.directory, self.directory, symlinks=True)
        self.directory.mkdir(exist_ok=True)
        self.copy_tree()
        options = list(CMAKE_OPTIONS)
        if shutil.which("ccache"):
            options.append("-DCMAKE_CXX_COMPILER_LAUNCHER=ccache")
        for step in (["-G", "Ninja", "-S", PLACE / "source", "-B", PLACE / "build", *options],
                     ["--build", PLACE / "build"]):
            done = self.call(BUILDING, ["cmake", *step])
            if done.returncode != 0:
                raise Problem(f"{shlex.join(map(str, done.args))}\n{done.stdout[-4000:]}")
        self.tests = self.list_tests()
        self.original_digests = self.digest_objects()

    def copy_tree(self):
        """Makes the copy equal to this tree. Equal files keep their times, so nothing is built
        twice, and a mutant left by an interrupted run is removed."""
        command = ["git", "-C", ROOT, "ls-files", "-z", "--cached", "--others",
                   "--exclude-standard"]
        listed = subprocess.run(command, check=True, capture_output=True, text=True).stdout
        wanted = {name for name in listed.split("\0") if name and (ROOT / name).is_file()}
        for name in sorted(wanted):
            copy = self.source / name
            if not copy.is_file() or copy.read_bytes() != (ROOT / name).read_bytes():
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(ROOT / name, copy)
                os.utime(copy)
        for copy in list(self.source.rglob("*")):
            if copy.is_file() and str(copy.relative_to(self.source)) not in wanted:
                copy.unlink()

    def sandboxed(self, sandbox, command):
        return [*sandbox, "--bind", self.directory, PLACE, "--chdir", PLACE / "build", *command]

    def call(self, sandbox, command):
        (self.directory / "build").mkdir(exist_ok=True)
        return subprocess.run(self.sandboxed(sandbox, command), stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, errors="replace",
                              check=False, start_new_session=True)

    def list_tests(self):
        folders = self.folders_of_programs()
        shown = self.call(BUILDING, ["ctest", "--show-only=json-v1"])
        tests = []
        for test in json.loads(shown.stdout)["tests"]:
            properties = {entry["name"]: entry["value"] for entry in test["properties"]}
            program = os.path.basename(test["command"][0])
            tests.append(Test(test["name"], test["command"], properties,
                              folders.get(program, set())))
        return tests

    def folders_of_programs(self):
        """Returns the name of a test program -> the folders of tests/ that it is made of."""
        folders = {}
        commands = self.directory / "build" / "compile_commands.json"
        for entry in json.loads(commands.read_text(encoding="utf-8")):
            program = re.search(r"tests/CMakeFiles/(\w+)\.dir/(\w+)/", entry["command"])
            if program:
                folders.setdefault(program[1], set()).add(program[2])
        return folders

    def digest_objects(self):
        for path in (self.directory / "build").rglob("*.o"):
            changed = path.stat().st_mtime_ns
            if self.objects.get(path, (0, ""))[0] != changed:
                self.objects[path] = changed, hashlib.sha256(path.read_bytes()).digest()
        return {path: digest for path, (_, digest) in self.objects.items()}

    def run(self, tests, functions=(), stops=True):
        """Runs tests one after the other on a virtual desk, up to the first failure if `stops`
        is true. Returns the Run of each test that has begun."""
        shutil.rmtree(self.logs, ignore_errors=True)
        self.logs.mkdir()
        script = "\n".join(test.shell_line(functions, stops) for test in tests)
        script = f"cd {shlex.quote(str(PLACE / 'logs'))}\n{script}"
        command = [PLACE / "source" / "scripts" / "virtual-desk", "bash", "-c", script]
        limit = {"QTEST_FUNCTION_TIMEOUT": str(FUNCTION_LIMIT_SECONDS * 1000)}
        with (self.logs / "desk").open("w") as log:
            desk = subprocess.Popen(self.sandboxed(TESTING, command), env=os.environ | limit,
                                    stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                                    start_new_session=True)
            while desk.poll() is None:
                time.sleep(0.1)
                if stops and self.has_failed(tests):
                    desk.kill()
        runs = [self.read_run(test) for test in tests if (self.logs / f"{test.name}.log").exists()]
        if not runs:
            said = (self.logs / "desk").read_text(errors="replace")
            raise Problem(f"the tests could not be run: {said}")
        return runs

    def has_failed(self, tests):
        logs = [self.logs / f"{test.name}.log" for test in tests]
        begun = [log for log in logs if log.exists()]
        return begun and bool(failed_functions(begun[-1].read_text(errors="replace"), True))

    def read_run(self, test):
        end = self.logs / f"{test.name}.end"
        log = (self.logs / f"{test.name}.log").read_text(encoding="utf-8", errors="replace")
        # Without NAME.end it was stopped at a failure. Bash writes the locale's decimal comma.
        words = end.read_text().replace(",", ".").split() if end.exists() else ["1", "0", "0"]
        passed = words[0] == "0"
        return Run(test, passed, float(words[2]) - float(words[1]), failed_functions(log, passed))

    def try_mutant(self, mutant, catchers, stops):
        """Returns the outcome, the runs that failed twice, and those that failed once."""
        path = self.source / mutant.file
        original = path.read_text(encoding=ENCODING)
        path.write_text(mutant.put_into(original), encoding=ENCODING)
        confirmed, doubtful = [], []
        try:
            for tests in self.near_and_far_tests(mutant, catchers):
                if confirmed and stops:
                    break
                if not self.build(tests):
                    return "does not compile", [], []
                if self.digest_objects() == self.original_digests:
                    return "same code", [], []
                self.run_and_confirm(tests, stops, confirmed, doubtful)
        finally:
            path.write_text(original, encoding=ENCODING)
        return "caught" if confirmed else "survived", confirmed, doubtful

    def near_and_far_tests(self, mutant, catchers):
        """Returns two lists, each with the fastest tests first. The first has the tests of the
        same folder and those that have caught a mutant of the same file: if one of them fails, a
        change of a header need not be built into all tests."""
        folder = TEST_FOLDERS.get(mutant.subsystem, mutant.subsystem)
        relevant = re.compile(RELEVANT_TESTS.get(mutant.subsystem, ""))
        tests = [test for test in self.tests if relevant.search(test.name)]
        tests.sort(key=lambda test: (test.name not in catchers, test.seconds))
        near = [test for test in tests if test.name in catchers or folder in test.folders]
        return near, [test for test in tests if test not in near]

    def build(self, tests):
        """Builds the product and what the tests run; returns whether that succeeded."""
        paths = {os.path.relpath(word, PLACE) for test in tests for word in test.command}
        programs = {os.path.basename(path) for path in paths if path.startswith("build/")
                    and (self.directory / path).is_file()
                    and os.access(self.directory / path, os.X_OK)}
        command = ["cmake", "--build", PLACE / "build", "--target", *PROGRAMS, *sorted(programs)]
        return self.call(BUILDING, command).returncode == 0

    def run_and_confirm(self, tests, stops, confirmed, doubtful):
        """Runs tests; adds those that failed twice to the first list, else to the second."""
        while tests and not (confirmed and stops):
            runs = self.run(tests, stops=stops)
            tests = tests[len(runs):]
            for run in runs:
                if not run.passed:
                    is_sure = confirmed or self.fails_again(run)
                    (confirmed if is_sure else doubtful).append(run)

    def fails_again(self, run):
        """Whether a failure comes from the mutant, rather than from a machine that was busy."""
        functions = [name.split("::")[1] for name in run.failed[:1]]
        if functions and functions[0] not in FIXTURE_FUNCTIONS:
            if not self.run([run.test], functions)[0].passed:
                return True
        return not self.run([run.test])[0].passed
