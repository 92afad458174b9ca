"""Thousands of signals at random moments of a run, and of a program that logs and allocates all the
time. Whatever it was doing, the process is gone within two seconds and its marks are right."""

import os
import random
import shutil
import signal
import subprocess
import time
from collections import Counter
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import pytest

from varnoth_run import BINARY, Pair, arguments, run

STORM_TARGET = os.environ["STORM_TARGET"]
SIGNALS = int(os.environ.get("STORM_SIGNALS", "2000"))
CAUGHT = [1, 2, 3, 4, 6, 7, 8, 11, 15, 24, 25, 31]
IGNORED_WITHOUT_HANDLER = [signal.SIGURG]
MARKS = ("OK", "ERROR")


def marks(directory, name):
    return {m: (directory / f"{m}.{name}").read_text() for m in MARKS
            if (directory / f"{m}.{name}").exists()}


def hit(command, directory, delays):
    """Starts a program, sends it random signals and gives the outcome."""
    name = Path(command[0]).name
    (directory / f"OK.{name}").write_text("0")
    (directory / f"ERROR.{name}").unlink(missing_ok=True)
    (directory / f"log.{name}").unlink(missing_ok=True)
    process = subprocess.Popen(command, cwd=directory, stdin=subprocess.DEVNULL,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    sent = [random.choice(CAUGHT + IGNORED_WITHOUT_HANDLER) for _ in delays]
    sent[-1] = random.choice(CAUGHT)
    for number, delay in zip(sent, delays):
        time.sleep(delay)
        process.send_signal(number)
    try:
        status = process.wait(2.5)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()
        return "hung"
    left = marks(directory, name)
    if status == 0 and left == {"OK": "0"}:
        return "right: done before"
    if status == 1 and left == {"ERROR": "1"}:
        return "right: told and marked"
    if status == -signal.SIGALRM and left == {"ERROR": "1"}:
        return "right: marked, ended by its guard"
    if status == -signal.SIGSEGV and left == {"ERROR": "1"}:
        return "right: marked, ended by a fault of its handler"
    if -status in sent and left == {"OK": "0"}:
        return "right: before the handlers"
    return f"wrong: signals {sent}, status {status}, marks {left}"


def storm(tmp_path, make_command, delays):
    def worker(number):
        directory = tmp_path / str(number)
        directory.mkdir()
        Pair().write(directory)
        originals = {p: p.read_bytes() for p in directory.glob("*.pool")}
        outcomes = Counter()
        for _ in range(SIGNALS // 2):
            for path, content in originals.items():
                path.write_bytes(content)
            outcomes[hit(make_command, directory, delays())] += 1
            for path in directory.glob("pool_*"):
                path.unlink()
        shutil.rmtree(directory)
        return outcomes

    with ThreadPoolExecutor(2) as pool:
        outcomes = sum(pool.map(worker, range(2)), Counter())
    print(f"\nsignal storm: {dict(outcomes)}")
    assert outcomes["hung"] == 0
    assert not [o for o in outcomes if o.startswith("wrong")], outcomes


def test_on_runs(tmp_path):
    start = time.monotonic()
    run(Pair().write(tmp_path))
    duration = time.monotonic() - start
    storm(tmp_path, [BINARY, *arguments()], lambda: [random.uniform(0, duration)])


def test_on_a_program_that_logs_and_allocates(tmp_path):
    storm(tmp_path, [STORM_TARGET], lambda: [random.uniform(0, 0.012), random.uniform(0, 0.001)])


def test_stack_overflow(tmp_path):
    done = subprocess.run([STORM_TARGET, "-overflow"], cwd=tmp_path, timeout=5, check=False,
                          capture_output=True)
    assert (done.returncode, marks(tmp_path, "storm_target")) == (1, {"ERROR": "1"})
    assert "got fatal signal 11: segmentation violation" in done.stdout.decode()
