"""Runs of the built program in many fresh directories, killed at a system call or with one that fails, and
what is left behind."""

import re
import shutil
import subprocess
from collections import Counter
from concurrent.futures import ThreadPoolExecutor

import pytest

from varnoth_run import BINARY, Pair, Run, arguments

CALL = re.compile(r"(\w+)\((.*)\) += (-?\w+|\?)")
TIMES = re.compile(rb"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d|(?<=execution_times)[^{]*{[^}]*")


def masked(content):
    """A pool's content without the times of the run."""
    return TIMES.sub(b"", content)


def marks(directory):
    return Run(directory, 0, "", "").marks


def sweep(start, root, points, look):
    """Gives each point a fresh copy of a directory; counts what `look` returns for it."""
    def one(numbered):
        number, point = numbered
        directory = shutil.copytree(start, root / str(number))
        try:
            seen = look(directory, *point)
        except AssertionError as error:
            raise AssertionError(f"at {point}: {error}") from error
        shutil.rmtree(directory)
        return seen
    with ThreadPoolExecutor(2) as pool:
        return Counter(pool.map(one, enumerate(points)))


class Stage:
    """A pair with two pools that a run updates, their old content and what the run makes of it. The degree
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
        _, self.calls = self.traced(first)
        if not self.calls:
            pytest.skip("LEFT OUT: no right to trace a process")
        self.after = {name: masked((first / name).read_bytes()) for name in self.UPDATED}
        self.log = Run(first, 0, "", "").log

    def fresh(self, name):
        return shutil.copytree(self.start, self.root / name)

    def sweep(self, points, look):
        return sweep(self.start, self.root, points, look)

    def traced(self, directory, *injection, words=WORDS):
        """The status of a run under strace and its calls, as name, arguments and result. The screen
        goes into a file."""
        command = ["strace", "-o", "trace", *injection, BINARY, *words]
        with (directory / "screen").open("wb") as screen:
            status = subprocess.run(command, cwd=directory, stdin=subprocess.DEVNULL, timeout=20,
                                    stdout=screen, stderr=subprocess.DEVNULL, check=False).returncode
        path = directory / "trace"
        trace = path.read_text(errors="replace").splitlines() if path.exists() else []
        return status, [m.groups() for m in map(CALL.match, trace) if m]

    def state(self, directory, name):
        """What became of a pool: old, new, or kept (incomplete, the complete one beside it)."""
        content = (directory / name).read_bytes()
        if content == self.before[name]:
            return "old"
        if masked(content) == self.after[name]:
            return "new"
        beside = [p.read_bytes() for p in directory.glob("pool_*")]
        assert any(masked(whole) == self.after[name] and whole.startswith(content) for whole in beside), \
            f"{name} is lost"
        return "kept"

    def outcome(self, directory, status):
        """The exit status and what became of the pools: none is lost, and the success mark does not lie."""
        states = tuple(self.state(directory, name) for name in self.UPDATED)
        log = directory / "log.varnoth"
        told = log.exists() and "ALARM" in log.read_text(errors="replace")
        assert marks(directory).get("OK") in (None, "old") or states == ("new", "new") or told, states
        return status, *states
