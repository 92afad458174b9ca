"""A run that is killed at every one of its system calls, and one in which every call on a file fails once,
in every way that it can. No pool is lost, no mark lies, nothing hangs, and no log lacks lines without a
word on the screen."""

import re
from collections import Counter

import pytest

from survive import Stage, marks
from varnoth_run import run

ERRORS = {
    "openat": ("EACCES", "EMFILE", "EINTR", "EIO", "ENOSPC"),
    "read": ("EIO", "EINTR"), "pread64": ("EIO", "EINTR"),
    "write": ("EIO", "ENOSPC", "EINTR"), "pwrite64": ("EIO", "ENOSPC", "EINTR"),
    "lseek": ("EIO",), "ftruncate": ("EIO", "EACCES", "EINTR"), "close": ("EIO", "EINTR"),
    "unlink": ("EACCES", "EIO"), "newfstatat": ("EIO", "EACCES"), "fcntl": ("EBADF",),
}
LOADER = 127


@pytest.fixture
def stage(tmp_path):
    return Stage(tmp_path)


def points(stage, faults):
    """Every call of a run with each of the faults that its name has."""
    calls = Counter(name for name, _, _ in stage.calls)
    return [(name, fault, n) for name in calls for fault in faults(name) for n in range(1, calls[name] + 1)]


def mark_that_must_stand(calls):
    """What the marks must be after these calls; None between the two marks of the end."""
    stands = {}
    for name, words, result in calls:
        if name == "write" and words.endswith('"1", 1') and result == "1":
            stands = {"ERROR": "1"}
        elif name == "unlink" and "ERROR.varnoth" in words and result == "0":
            stands = None
        elif name == "write" and words.endswith('"0", 1') and result == "1":
            stands = {"OK": "0"}
    return stands


def test_kill_at_every_call(stage):
    def look(directory, name, fault, number):
        _, calls = stage.traced(directory, "-e", f"inject={name}:{fault}:when={number}")
        _, *states = stage.outcome(directory, "killed")
        for pool in ("master.pool", "slave.pool"):
            assert (directory / pool).read_bytes() == stage.before[pool]
        wanted, found = mark_that_must_stand(calls), marks(directory)
        if wanted is None:
            assert found in ({}, {"OK": ""})
        elif wanted or "ERROR" not in found:
            assert found == wanted
        # A pool that was cut has its content beside it; put it back, and the next run succeeds.
        for pool, state in zip(stage.UPDATED, states):
            if state == "kept":
                complete = max(directory.glob("pool_*"), key=lambda p: p.stat().st_size)
                (directory / pool).write_bytes(complete.read_bytes())
        again = run(directory)
        assert (again.status, again.marks) == (0, {"OK": "0"}), again.alarms
        return tuple(states)

    seen = stage.sweep(points(stage, lambda name: ["signal=KILL"] if name != "execve" else []), look)
    print(f"\nkill sweep: {seen.total()} points, lost 0; InSAR and log pool: {dict(seen)}")
    assert all(any(state in states for states in seen) for state in ("old", "new", "kept"))


def test_every_error(stage):
    def look(directory, name, error, number):
        status, _ = stage.traced(directory, "-e", f"inject={name}:error={error}:when={number}")
        outcome, found = stage.outcome(directory, status), marks(directory)
        log = directory / "log.varnoth"
        text = log.read_text(errors="replace") if log.exists() else ""
        screen = (directory / "screen").read_text(errors="replace")
        mark_fault_is_told = re.search("Can not (create|remove) file", text + screen)
        if error == "EINTR" and status != LOADER:
            assert outcome == (0, "new", "new")
        if status == 0:
            assert found == {"OK": "0"} or mark_fault_is_told
            assert outcome[2] == "new"
            whole = text.count("\n") >= len(stage.log)
            assert whole or re.search("log file is incomplete|tmp logging file", screen)
        elif status == 1:
            assert found == {"ERROR": "1"} or mark_fault_is_told
            assert "ALARM" in text + screen
        else:
            assert found == {} and status in (255, LOADER)
        return outcome

    seen = stage.sweep(points(stage, lambda name: ERRORS.get(name, ())), look)
    print(f"\nerror sweep: {seen.total()} points, lost 0: {dict(seen)}")
    assert seen.total() > 500
