"""Whole runs over the real pair's pools with random faults: finite results, or a failure with its
reason; never a crash, a hang or a silent wrong number. With sanitizers where such a build is there."""

import os
import random
import re
import shutil
import time
from collections import Counter
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from varnoth_run import BINARY, EXAMPLES, run
import varnoth_run

DATA = EXAMPLES / "real_pair"
SECONDS = float(os.environ.get("MUTATION_SECONDS", "30"))
NUMBERS = [b"0", b"-1", b"1E308", b"-1E-308", b"1E999", b"nan", b"inf", b"", b"7" * 400, b"1e", b"0x1p3"]


RESULT = re.compile(rb"^eff_baseline +FLT_15 ", re.MULTILINE)
NO_NUMBER = re.compile(rb"[\s-](nan|inf)\b", re.IGNORECASE)


def mutated(content, chance):
    """A pool with one to three faults: bytes, lines, or numbers."""
    for _ in range(chance.randint(1, 3)):
        lines = content.split(b"\n")
        at, kind = chance.randrange(len(lines)), chance.randrange(5)
        if kind == 0:
            position = chance.randrange(len(content))
            content = content[:position] + bytes([chance.randrange(256)]) + content[position + 1:]
            continue
        if kind == 1:
            del lines[at]
        elif kind == 2:
            lines.insert(at, chance.choice(lines))
        else:
            lines[at] = b" ".join([*lines[at].split(b" ")[:-1], chance.choice(NUMBERS)])
        content = b"\n".join(lines)
    return content


def mutated_runs(root, seed, end):
    """Runs until a moment; counts the exit statuses."""
    chance, seen = random.Random(seed), Counter()
    while time.monotonic() < end:
        directory = root / f"run_{seed}"
        shutil.copytree(DATA, directory)
        pool = directory / chance.choice(["master.pool", "slave.pool", "insar.pool"])
        pool.write_bytes(mutated(pool.read_bytes(), chance))
        given = NO_NUMBER.search(pool.read_bytes()) is not None
        done = run(directory)
        assert done.status in (0, 1) and "Sanitizer" not in done.errors, (done, pool.read_bytes())
        results = (directory / "insar.pool").read_bytes()
        if done.status == 0 and RESULT.search(results) is None:
            assert done.alarms, done  # no results only where the last update failed in words
        elif done.status == 0:
            assert not NO_NUMBER.search(results) or given, done
        else:
            assert done.alarms or "run-time error" in done.errors, done
        seen[done.status] += 1
        shutil.rmtree(directory)
    return seen


def test_mutated_pools(tmp_path, monkeypatch):
    monkeypatch.setattr(varnoth_run, "BINARY", Path(os.environ.get("VARNOTH_ASAN", BINARY)))
    end = time.monotonic() + SECONDS
    with ThreadPoolExecutor(2) as pool:
        workers = [pool.submit(mutated_runs, tmp_path, seed, end) for seed in (1, 2)]
        seen = sum((worker.result() for worker in workers), Counter())
    print(f"\nmutated pools: exit statuses {dict(seen)}")
    assert seen[0] and seen[1]
