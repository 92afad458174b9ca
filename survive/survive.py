"""Runs of the built program under strace, which kills it at a system call or lets one fail, and what
is left behind."""

import re
import shutil
import subprocess
from collections import Counter
from concurrent.futures import ThreadPoolExecutor

import pytest

from varnoth_run import BINARY, Pair, Run, arguments, run

CALL = re.compile(r"(\w+)\((.*)\) += (-?\w+|\?)")
TIMES = [(rb"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d", b"TIME"),
         (rb"(execution_times[^{]*{)[^}]*", rb"\1N")]


def masked(content):
    """A pool's content without the times of the run."""
    for pattern, replacement in TIMES:
        content = re.sub(pattern, replacement, content)
    return content


class Stage:
    """A pair with two pools to be updated, their old content and what a run makes of it. The degree
    and the height stand in the configuration file alone: a run that did not read it shows in the
    results."""

    UPDATED = ("insar.pool", "log.pool")
    WORDS = arguments(FlatEarthPolyDegree=None, pcf="own.cfg")

    def __init__(self, root):
        self.root, self.start = root, root / "start"
        self.start.mkdir()
        Pair().write(self.start)
        (self.start / "own.cfg").write_text("FlatEarthPolyDegree 3\nLocalHeight 250\n")
        (self.start / "log.pool").write_text('# of another step\nother STR "x"\n\n')
        self.before = {p.name: p.read_bytes() for p in self.start.glob("*.pool")}
        first = self.fresh("new")
        self.calls = Counter(name for name, _, _ in self.traced(first)[1])
        if not self.calls:
            pytest.skip("LEFT OUT: no right to trace a process")
        self.after = {name: masked((first / name).read_bytes()) for name in self.UPDATED}
        self.log_lines = len(Run(first, 0, "", "").log)

    def fresh(self, name):
        return shutil.copytree(self.start, self.root / name)

    def traced(self, directory, *injection):
        """The status of a run under strace and its calls, as name, arguments and result. The screen
        goes into a file."""
        words = ["strace", "-o", "trace", *injection, BINARY, *self.WORDS]
        with (directory / "screen").open("wb") as screen:
            status = subprocess.run(words, cwd=directory, stdin=subprocess.DEVNULL, timeout=20,
                                    stdout=screen, stderr=subprocess.DEVNULL,
                                    check=False).returncode
        path = directory / "trace"
        trace = path.read_text(errors="replace").splitlines() if path.exists() else []
        path.unlink(missing_ok=True)
        return status, [m.groups() for m in map(CALL.match, trace) if m]

    def state(self, directory, name):
        """What became of a pool: old, new, kept (incomplete, the complete one beside it) or lost."""
        path = directory / name
        content = path.read_bytes() if path.exists() else b""
        if content == self.before[name]:
            return "old"
        if masked(content) == self.after[name]:
            return "new"
        complete = [p for p in directory.glob("pool_*")
                    if masked(p.read_bytes()) == self.after[name]]
        return "kept" if complete and complete[0].read_bytes().startswith(content) else "lost"

    def sweep(self, points, look):
        """Gives each point a fresh directory; counts what `look` tells of it."""
        def one(numbered):
            number, point = numbered
            directory = self.fresh(str(number))
            seen = look(directory, *point)
            shutil.rmtree(directory)
            return seen
        with ThreadPoolExecutor(2) as pool:
            return Counter(pool.map(one, enumerate(points)))


def expect_clean_rerun(directory):
    done = run(directory)
    assert (done.status, done.marks) == (0, {"OK": "0"}), done.alarms


def marks(directory):
    return Run(directory, 0, "", "").marks
