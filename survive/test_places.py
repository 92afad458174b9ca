"""Limits that the system sets, disks that fill up, and names that somebody has made beforehand."""

import os
import subprocess
from resource import RLIMIT_AS, RLIMIT_FSIZE, RLIMIT_NOFILE, RLIMIT_STACK, setrlimit

import pytest

from survive import Stage
from varnoth_run import BINARY, run

LIMITS = {
    "open files": (RLIMIT_NOFILE, range(3, 16)),
    "memory": (RLIMIT_AS, range(1 << 20, 15 << 20, 1 << 19)),
    "stack": (RLIMIT_STACK, range(1 << 12, 40 << 12, 6 << 12)),
    "file size": (RLIMIT_FSIZE, range(0, 26000, 200)),
}


@pytest.mark.parametrize("name", LIMITS)
def test_limit(tmp_path, name):
    limit, values = LIMITS[name]
    stage = Stage(tmp_path)

    def look(directory, value):
        done = run(directory, stage.WORDS, preexec_fn=lambda: setrlimit(limit, (value, value)))
        if done.status == 1:
            assert done.marks == {"ERROR": "1"} or "Can not create file ERROR" in done.screen
            assert "ALARM" in done.screen
            if limit == RLIMIT_AS:  # such a run adds the results that it has as it unwinds
                return "not enough memory"
        return stage.outcome(directory, done.status)

    seen = stage.sweep([(value,) for value in values], look)
    print(f"\nlimit of {name}: {dict(seen)}")
    assert seen[0, "new", "new"] and len(seen) > 1


MOUNT = """mount -t tmpfs -o size=$1k tmpfs disk && cp * disk 2>/dev/null; cd disk || exit 99
shift; TMPDIR=. "$@" >/dev/null; echo $? >../status; cp -a . ../left"""


def test_disk_that_fills_up(tmp_path):
    stage = Stage(tmp_path)
    (stage.start / "disk").mkdir()

    def look(directory, size):
        words = ["unshare", "--mount", "sh", "-c", MOUNT, "sh", str(size), BINARY, *stage.WORDS]
        subprocess.run(words, cwd=directory, check=False, timeout=20, stderr=subprocess.DEVNULL)
        return stage.outcome(directory / "left", int((directory / "status").read_text()))

    if subprocess.run(["unshare", "--mount", "true"], check=False, stderr=subprocess.DEVNULL).returncode != 0:
        pytest.skip("LEFT OUT: no right to mount a small disk")
    seen = stage.sweep([(size,) for size in range(28, 100, 4)], look)
    print(f"\nfull disks: {dict(seen)}")
    assert {status for status, *_ in seen} == {0, 1}


@pytest.mark.parametrize("name, status", {
    "OK.varnoth": 0, "ERROR.varnoth": 0, "current_process.pid": 0, "parent_process.pid": 0, "tmp": 0,
    "pcf.varnoth": 1, "STOP.varnoth": 2, "log.varnoth": 255}.items())
def test_no_pipe_is_waited_for(ready, name, status):
    """Marks and ids replace the pipe; a run passes over a temporary directory and refuses what it reads."""
    os.mkfifo(ready / name)
    assert run(ready, environment={"TMPDIR": "tmp"}).status == status


def test_temporary_files_are_private(tmp_path):
    made = [words for name, words, _ in Stage(tmp_path).calls if name == "openat" and "O_EXCL" in words]
    assert len(made) > 3 and all("|O_CREAT|O_EXCL" in words and words.endswith(", 0600") for words in made)
