"""Two runs at once on one pool. Nothing locks it but whoever starts them: flock on the pool itself."""

import subprocess
from collections import Counter

from varnoth_run import BINARY, Pair, arguments, read_pool

ROUNDS = 100


def race(directory, prefix):
    """What the pool holds after two runs that start together, over many rounds."""
    seen = Counter()
    Pair().write(directory)
    content = (directory / "insar.pool").read_bytes()
    for _ in range(ROUNDS):
        (directory / "insar.pool").write_bytes(content)
        runs = [subprocess.Popen([*prefix, BINARY, *arguments(pid=str(i), log_pp="insar.pool")],
                                 cwd=directory, stdout=subprocess.DEVNULL) for i in range(2)]
        statuses = [run.wait(20) for run in runs]
        try:
            pool = read_pool(directory / "insar.pool")
            whole = "observation_mode" in pool and "varnoth_deltaR" in pool
            rows = len(pool.get("software_names", [])) if whole else None
        except Exception:  # a broken pool may break its reader in any way
            rows = None
        seen["broken" if rows is None else f"{rows} of 2 rows", *sorted(statuses)] += 1
    return seen


def test_with_a_lock_both_runs_count(tmp_path):
    seen = race(tmp_path, ["flock", "insar.pool"])
    print(f"\ntwo runs with flock: {dict(seen)}")
    assert seen == {("2 of 2 rows", 0, 0): ROUNDS}
