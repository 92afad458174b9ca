"""Thousands of signals at random moments of runs, and of a program that logs and allocates all the
time, the second while the first is dealt with. The process is gone in two seconds, its marks right."""

import os
import random
import signal
import subprocess
import time
from collections import Counter
from concurrent.futures import ThreadPoolExecutor

import pytest

from varnoth_run import BINARY, Pair, Run, arguments, run

STORM_TARGET = os.environ["STORM_TARGET"]
RUNS = int(os.environ.get("STORM_SIGNALS", "4000")) // 4
CAUGHT = [1, 2, 3, 4, 6, 7, 8, 11, 15, 24, 25, 31]  # and SIGURG, ignored without a handler
# Done before the signals, or told and marked; marked, and ended by the handler's guard or by a fault of
# its own. The mark of before stands where there were no handlers yet.
RIGHT = {0: {"OK": "0"}, 1: {"ERROR": "1"},
         -signal.SIGALRM: {"ERROR": "1"}, -signal.SIGSEGV: {"ERROR": "1"}}


def hit(command, directory, duration):
    """Starts a program, sends it two signals and gives the outcome."""
    for path in directory.glob("*.varnoth"):
        path.unlink()
    (directory / "OK.varnoth").write_text("0")
    process = subprocess.Popen(command, cwd=directory, stdin=subprocess.DEVNULL,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    sent = random.choice([signal.SIGURG, *CAUGHT]), random.choice(CAUGHT)
    for number, delay in zip(sent, (random.uniform(0, duration / 2), random.uniform(0, 0.001))):
        time.sleep(delay)
        process.send_signal(number)
    try:
        status = process.wait(2.5)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()
        return "hung"
    marks = Run(directory, status, "", "").marks
    right = [RIGHT.get(status)] + ([{"OK": "0"}] if -status in sent else [])
    return f"status {status}" if marks in right else f"wrong: {sent}, {status}, {marks}"


@pytest.mark.parametrize("command", [[BINARY, *arguments()], [STORM_TARGET, "-pid", "varnoth"]])
def test_storm(tmp_path, command):
    for number in (1, 2, 3):  # what the starter ignores, as nohup does, a child would ignore too
        signal.signal(number, signal.default_int_handler)
    start = time.monotonic()
    run(Pair().write(tmp_path))
    duration = time.monotonic() - start

    def worker(number):
        directory = tmp_path / str(number)
        directory.mkdir()
        outcomes = Counter()
        for _ in range(RUNS // 2):
            outcomes[hit(command, Pair().write(directory), duration)] += 1
            for path in directory.glob("pool_*"):
                path.unlink()
        return outcomes

    with ThreadPoolExecutor(2) as pool:
        outcomes = sum(pool.map(worker, range(2)), Counter())
    print(f"\nsignal storm: {dict(outcomes)}")
    assert outcomes["hung"] == 0 and outcomes["status 1"]
    assert not [o for o in outcomes if o.startswith("wrong")], outcomes
