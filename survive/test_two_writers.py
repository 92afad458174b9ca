"""Two runs that end on one pool at the same time: both leave their results and their rows."""

import os
import shutil
import signal
import subprocess
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import pytest

from survive import masked
from varnoth_run import BINARY, Pair, Run, arguments

PAIRS = int(os.environ.get("TWO_WRITERS", "200"))
DEGREES = {"a": {"FlatEarthPolyDegree": "2", "LocalHeight": "0"}, "b": {"FlatEarthPolyDegree": "5"}}


def start(directory, name, *tracer, log_pool=None):
    """A run under a name of its own; its screen goes nowhere."""
    words = arguments(**DEGREES[name], pid=name, status=f"{name}.marks", log_pp=log_pool or f"{name}.log.pool")
    return subprocess.Popen([*tracer, BINARY, *words], cwd=directory, stdin=subprocess.DEVNULL,
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def expect_success(directory, name, process):
    assert process.wait(60) == 0
    assert {p.name: p.read_text() for p in (directory / f"{name}.marks").iterdir()} == {f"OK.{name}": "0"}


def read_pool(path):
    return Run(path.parent, 0, "", "").pool(path.name)


def content(directory):
    return masked((directory / "insar.pool").read_bytes())


@pytest.fixture(scope="module")
def begin(tmp_path_factory):
    directory = Pair().write(tmp_path_factory.mktemp("begin"))
    for name in DEGREES:
        (directory / f"{name}.marks").mkdir()
        (directory / f"{name}.log.pool").touch()
    return directory


@pytest.fixture
def fresh(begin, tmp_path):
    return shutil.copytree(begin, tmp_path / "runs")


@pytest.fixture(scope="module")
def serial(begin, tmp_path_factory):
    """The InSAR pool after both runs, by their order."""
    outcomes = {}
    for order in ("ab", "ba"):
        directory = shutil.copytree(begin, tmp_path_factory.mktemp("serial") / order)
        for name in order:
            expect_success(directory, name, start(directory, name))
        outcomes[order] = content(directory)
    assert outcomes["ab"] != outcomes["ba"]
    return outcomes


@pytest.mark.parametrize("log_pool", [None, "log.pool"])
def test_pairs(begin, serial, tmp_path, log_pool):
    def one(number):
        directory = shutil.copytree(begin, tmp_path / str(number))
        for name, process in [(name, start(directory, name, log_pool=log_pool)) for name in ("ab", "ba")[number % 2]]:
            expect_success(directory, name, process)
        if log_pool:
            assert sorted(read_pool(directory / log_pool)["software_names"]) == ["a", "b"]
        assert not list(directory.glob("pool_*"))
        order, = (order for order, pool in serial.items() if pool == content(directory))
        shutil.rmtree(directory)
        return order
    begun = time.monotonic()
    with ThreadPoolExecutor(2) as pool:
        seen = list(pool.map(one, range(PAIRS)))
    print(f"two writers, log pool {log_pool or 'of each'}: {PAIRS} pairs in {time.monotonic() - begun:.0f} s,",
          {order: seen.count(order) for order in serial})


def hold(directory, name, file, **options):
    """A run that stands still after it has cut a pool: its tracer, and its own id."""
    tracer = start(directory, name, "strace", "-o", f"{name}.trace", "-P", file,
                   "-e", "inject=ftruncate:signal=STOP:when=1", **options)
    trace, until = directory / f"{name}.trace", time.monotonic() + 20
    while not trace.exists() or "SIGSTOP" not in trace.read_text():
        if tracer.poll() is not None:
            pytest.skip("LEFT OUT: no right to trace a process")
        assert time.monotonic() < until
        time.sleep(0.01)
    return tracer, int(Path(f"/proc/{tracer.pid}/task/{tracer.pid}/children").read_text())


@pytest.mark.parametrize("file", ["insar.pool", "log.pool"])
@pytest.mark.parametrize("end", [signal.SIGCONT, signal.SIGKILL])
def test_held_to_meet(fresh, serial, file, end):
    """The second run waits for the first. If the first dies instead, what it was to write lies beside the pool."""
    (fresh / "log.pool").write_text('other STR "x"\n\n')
    tracer, held = hold(fresh, "a", file, log_pool="log.pool")
    other = start(fresh, "b", log_pool="log.pool")
    time.sleep(0.5)
    assert other.poll() is None and (fresh / file).stat().st_size == 0
    os.kill(held, end)
    if end == signal.SIGCONT:
        for name, process in (("a", tracer), ("b", other)):
            expect_success(fresh, name, process)
        assert content(fresh) in serial.values()
        assert read_pool(fresh / "log.pool")["software_names"] == ["a", "b"]
        assert not list(fresh.glob("pool_*"))
        return
    tracer.wait(60)
    assert other.wait(60) == (1 if file == "insar.pool" else 0)  # an InSAR pool without entries is no input
    kept, = map(read_pool, fresh.glob("pool_*"))
    assert {"insar.pool": "n_samples", "log.pool": "other"}[file] in kept


def test_death_between_reading_and_update(fresh):
    """A pool that a run has cut meanwhile, before it died, does not get the results alone."""
    waiting, waiter = hold(fresh, "b", "b.log.pool")
    tracer, held = hold(fresh, "a", "insar.pool")
    os.kill(waiter, signal.SIGCONT)
    time.sleep(0.5)
    assert waiting.poll() is None
    os.kill(held, signal.SIGKILL)
    tracer.wait(60)
    assert waiting.wait(60) == 0  # as for every failing update of this pool
    assert "n_samples" in read_pool(next(fresh.glob("pool_*")))
    assert (fresh / "insar.pool").stat().st_size == 0
    assert "ALARM : varnoth : parameter pool insar.pool was emptied" in (fresh / "log.b").read_text(encoding="latin-1")


def test_file_system_without_locks(fresh):
    expect_success(fresh, "a", start(fresh, "a", "strace", "-o", "trace", "-e", "inject=fcntl:error=ENOLCK"))
    assert "WARN  : varnoth : can not lock parameter pool insar.pool" in (fresh / "log.a").read_text("latin-1")
