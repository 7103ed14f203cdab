# The table of deliberate faults in tests/mutations/, and the outcomes of trying them.
# SPDX-License-Identifier: GPL-3.0-or-later
"""What scripts/mutate knows about faults; how the table is written is told in its help."""
import collections
import dataclasses
import hashlib
import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parent.parent
TABLE = ROOT / "tests" / "mutations"


class Problem(Exception):
    """What stops the whole run, in words for the person who started it."""


class Stale(Exception):
    """The lines of a fault do not stand in its file exactly once."""


@dataclasses.dataclass
class Fault:
    """One deliberate fault. `hunk` holds its lines, each with its mark in front."""

    name: str
    file: str = ""
    tests: list = dataclasses.field(default_factory=list)
    hunk: list = dataclasses.field(default_factory=list)
    reason: str = ""

    @property
    def subsystem(self):
        return self.name.split("/")[0]

    def put_into(self, text):
        """Returns the text with the fault in it."""
        lines = text.split("\n")
        sought = [line[1:].strip() for line in self.hunk if line[0] != "+"]
        stripped = [line.strip() for line in lines]
        places = [
            start
            for start in range(len(lines) - len(sought) + 1)
            if stripped[start : start + len(sought)] == sought
        ]
        if not sought or len(places) != 1:
            raise Stale(f"its lines stand {len(places)} times in {self.file}")
        start = places[0]
        put_in = [line[1:] for line in self.hunk if line[0] != "-"]
        return "\n".join(lines[:start] + put_in + lines[start + len(sought) :])

    def digest(self):
        """Tells whether a result still belongs to this fault and to its file as it is now, comments
        and line breaks apart."""
        path = ROOT / self.file
        code = path.read_text(encoding="utf-8") if path.is_file() else ""
        code = "".join(re.sub("//.*", "", code).split())
        whole = "\0".join([self.file, *self.tests, *self.hunk, code])
        return hashlib.sha256(whole.encode()).hexdigest()[:16]


def read_table():
    """Returns the faults of every subsystem in the order of the table."""
    faults = []
    for path in sorted(TABLE.glob("*.txt")):
        fault = None
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            key, colon, value = line.partition(": ")
            if not line.strip() or line.startswith("#"):
                continue
            if key == "fault":
                fault = Fault(f"{path.stem}/{value.strip()}")
                faults.append(fault)
            elif fault and line[0] in " -+":
                fault.hunk.append(line)
            elif fault and colon and key in ("file", "tests", "survives"):
                set_field(fault, key, value.strip())
            else:
                raise Problem(f"{path}:{number}: neither a field nor a line of a fault")
    for name, count in collections.Counter(fault.name for fault in faults).items():
        if count > 1:
            raise Problem(f"{name} is there {count} times")
    for fault in faults:
        for field, content in (("file", fault.file), ("tests", fault.tests), ("lines", fault.hunk)):
            if not content:
                raise Problem(f"{fault.name} has no {field}")
    return faults


def set_field(fault, key, value):
    if key == "file":
        fault.file = value
    elif key == "tests":
        fault.tests = value.split()
    else:
        fault.reason = value


@dataclasses.dataclass
class Result:
    digest: str
    outcome: str  # caught, survived, invalid, stale
    seconds: float
    failed: list  # Class::function
    note: str

    def line(self, name):
        fields = [name, self.digest, self.outcome, f"{self.seconds:.1f}", " ".join(self.failed)]
        return "\t".join([*fields, self.note.replace("\t", " ")]) + "\n"
