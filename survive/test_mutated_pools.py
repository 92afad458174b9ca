"""Whole runs over the real pair's pools with random faults: finite results, or a failure with its
reason; never a crash, a hang or a silent wrong number. With sanitizers if there is such a build."""

import os
import random
import re
from pathlib import Path

from survive import sweep
from varnoth_run import BINARY, EXAMPLES, run
import varnoth_run

RUNS = int(os.environ.get("MUTATED_RUNS", "1500"))
NUMBERS = [b"0", b"-1", b"1E308", b"-1E-308", b"1E999", b"nan", b"inf", b"", b"7" * 400, b"1e", b"0x1p3"]
RESULT = re.compile(rb"^eff_baseline +FLT_15 ", re.MULTILINE)
NO_NUMBER = re.compile(rb"[\s-](nan|inf)\b", re.IGNORECASE)


def mutated(content, chance):
    """A pool with one to three faults."""
    lines = content.split(b"\n")
    for _ in range(chance.randint(1, 3)):
        at = chance.randrange(len(lines))
        line, position = lines[at], chance.randrange(len(lines[at]) + 1)
        faults = {
            "no line": [],
            "a line too many": [chance.choice(lines), line],
            "another byte": [line[:position] + bytes([chance.randrange(256)]) + line[position + 1:]],
            "another number": [line.rpartition(b" ")[0] + b" " + chance.choice(NUMBERS)],
        }
        lines[at:at + 1] = faults[chance.choice([*faults, "another number"])]
    return b"\n".join(lines)


def look(directory, seed):
    chance = random.Random(seed)
    pool = directory / chance.choice(["master.pool", "slave.pool", "insar.pool"])
    pool.write_bytes(mutated(pool.read_bytes(), chance))
    is_given = NO_NUMBER.search(pool.read_bytes()) is not None
    done = run(directory)
    assert done.status in (0, 1) and "Sanitizer" not in done.errors, done
    results = (directory / "insar.pool").read_bytes()
    if done.status == 0 and RESULT.search(results):
        assert is_given or not NO_NUMBER.search(results), done
    else:  # also success, if the last update failed with a line in the log
        assert done.alarms or done.status == 1 and "run-time error" in done.errors, done
    return done.status


def test_mutated_pools(tmp_path, monkeypatch):
    monkeypatch.setattr(varnoth_run, "BINARY", Path(os.environ.get("VARNOTH_ASAN", BINARY)))
    seen = sweep(EXAMPLES / "real_pair", tmp_path, [(seed,) for seed in range(RUNS)], look)
    print(f"\nmutated pools: exit statuses {dict(seen)}")
    assert seen[0] and seen[1]
