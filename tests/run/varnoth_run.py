"""Drives the built program from outside: made-up pairs, runs in fresh directories, and a reader of
pools that shares nothing with the program's own."""

import atexit
import os
import re
import shutil
import subprocess
import sys
import tempfile
from dataclasses import dataclass
from itertools import zip_longest
from pathlib import Path

EXAMPLES = Path(__file__).parents[2] / "examples"
sys.path.insert(0, str(EXAMPLES))
import make  # noqa: E402 (stands beside the examples)

# Remove at the end all that pytest and the runs make on the way.
os.environ["TMPDIR"] = tempfile.tempdir = tempfile.mkdtemp()
atexit.register(shutil.rmtree, tempfile.tempdir, ignore_errors=True)

BINARY = Path(os.environ["VARNOTH_BINARY"])
TOOLS = Path(os.environ.get("VARNOTH_TOOLS_BINARY", BINARY.parent.parent.parent / "tools" / "varnoth-tools"))
FAILED = "ZOD_MSG|ERROR|Varnoth Estimations terminated with error!"
KEYS = {"FlatEarthPolyDegree": "4", "MasterPar": "master.pool", "SlavePar": "slave.pool",
        "ParameterPool": "insar.pool", "log_pp": "log.pool"}


def arguments(**changed):
    """The command line of a run; leaves out a key set to None."""
    return [word for key, value in {**KEYS, **changed}.items() if value is not None
            for word in ("-" + key, value)]


def plain(text):
    try:
        return float(text)
    except ValueError:
        return text.strip().strip('"')


@dataclass
class Run:
    directory: Path
    status: int
    screen: str
    errors: str

    @property
    def log(self):
        return (self.directory / "log.varnoth").read_text(encoding="latin-1").splitlines()

    def levels(self, *labels):
        """Texts of the log lines of some levels."""
        return [line[18:] for line in self.log if line[:5] in labels]

    @property
    def alarms(self):
        return self.levels("ALARM")

    @property
    def told(self):
        """Lines above INFO as "LABEL text", but for that of the missing configuration file."""
        return [line[:6] + line[18:] for line in self.log if line[:5] in ("QA_WA", "WARN ", "EXCEP", "ALARM")
                and not line.endswith("Configuration file pcf.varnoth does not exist!")]

    @property
    def marks(self):
        """Content of the marks that stand, by kind."""
        return {p.name.split(".")[0]: p.read_text() for p in self.directory.glob("*.varnoth")
                if not p.name.startswith("log")}

    def pool(self, name="insar.pool"):
        """Entries by key: a scalar, or a list for a vector."""
        entries, rows = {}, iter((self.directory / name).read_text(encoding="latin-1").split("\n"))
        for row in rows:
            if not row or row[0] in "# \t":
                continue
            key, kind, value = row.split(None, 2)
            entries[key] = plain(value)
            if kind.endswith("_V"):
                next(rows)
                entries[key] = [plain(next(rows)) for _ in range(int(value.split()[1]))]
        return entries


def run(directory, words=None, environment=None, stdin=subprocess.DEVNULL, **options):
    done = subprocess.run([BINARY, *(words or arguments())], cwd=directory, stdin=stdin, capture_output=True,
                          env={**os.environ, **(environment or {})}, encoding="latin-1", timeout=60,
                          check=False, **options)
    return Run(directory, done.returncode, done.stdout, done.stderr)


# What a stored text leaves open, as {name}; all else is literal.
MARKERS = {
    "e10": r"-?\d\.\d{10}E[+-]\d\d", "e17": r"-?\d\.\d{17}E[+-]\d\d", "int": r"-?\d+",
    "f2": r"[+-]?\d+\.\d{2}", "f4": r"-?\d+\.\d{4}", "f6": r"-?\d+\.\d{6}", "random": r"\w{6}",
    "ctime": r"\w{3} \w{3} [ \d]\d \d\d:\d\d:\d\d \d{4}", "host": r"\S+",
    "duration": r"less than 1 second|\d+ (?:day|hour|minute|second)\(s\)(?: \d+ \w+\(s\))*",
    "iso": r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d",
}


def difference(expected, found):
    """The first line in which a text differs from a stored one, or None."""
    lines = zip_longest(expected.split("\n"), found.split("\n"), fillvalue="no line")
    for number, (pattern, line) in enumerate(lines, 1):
        parts = re.split(r"\{(\w+)\}", pattern)
        regex = "".join(f"(?:{MARKERS[p]})" if i % 2 else re.escape(p) for i, p in enumerate(parts))
        if not re.fullmatch(regex, line):
            return f"line {number}: {line!r} instead of {pattern!r}"
    return None


class Pair:
    """The three pools of a made-up example; change their entries before `write`."""

    def __init__(self, example=None):
        for name, entries in (example or make.Example()).pools().items():
            setattr(self, name, entries)

    def write(self, directory):
        make.write_pools(directory, vars(self))
        return directory
