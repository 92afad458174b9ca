"""Disks that fill up, and directories in which somebody has made names beforehand."""

import os
import resource
import shutil
import subprocess
from collections import Counter

import pytest

from survive import Stage, expect_clean_rerun, marks
from varnoth_run import BINARY, arguments, run


def look(stage, directory, status):
    """No pool is lost; with the success mark all is new, or the failing last update is told."""
    states = tuple(stage.state(directory, pool) for pool in stage.UPDATED)
    assert "lost" not in states, (status, states)
    log = directory / "log.varnoth"
    told = log.exists() and "ALARM" in log.read_text(errors="replace")
    assert marks(directory).get("OK") != "0" or states == ("new", "new") or told, (status, states)
    return f"status {status}", *states


def test_limit_of_a_file_s_size(tmp_path):
    stage = Stage(tmp_path)

    def one(directory, limit):
        done = run(directory, stage.WORDS, preexec_fn=lambda: resource.setrlimit(
            resource.RLIMIT_FSIZE, (limit, limit)))
        return look(stage, directory, done.status)

    seen = stage.sweep([(limit,) for limit in range(0, 26000, 200)], one)
    print(f"\nfile size limits: {dict(seen)}")
    assert ("status 0", "new", "new") in seen and ("status 1", "old", "old") in seen


MOUNT = """mount -t tmpfs -o size=$1k tmpfs "$2" && cp "$3"/* "$2" && cd "$2" || exit 99
shift 3; TMPDIR=. "$@" >/dev/null; echo $? >../status; cp -a . ../left"""


def test_disk_that_fills_up(tmp_path):
    stage = Stage(tmp_path)
    (tmp_path / "disk").mkdir()
    seen = Counter()
    for size in range(28, 100, 4):
        words = ["unshare", "--mount", "sh", "-c", MOUNT, "sh", str(size), tmp_path / "disk",
                 stage.start, BINARY, *stage.WORDS]
        if os.getuid() != 0 or subprocess.run(words, check=False, timeout=20,
                                              stderr=subprocess.PIPE).returncode != 0:
            pytest.skip("LEFT OUT: no right to mount a small disk")
        seen[look(stage, tmp_path / "left", int((tmp_path / "status").read_text()))] += 1
        shutil.rmtree(tmp_path / "left")
    print(f"\nfull disks: {dict(seen)}")
    assert any(s[0] == "status 0" for s in seen) and any(s[0] == "status 1" for s in seen)


KNOWN_NAMES = ["OK.varnoth", "ERROR.varnoth", "current_process.pid", "parent_process.pid",
               "pcf.varnoth", "STOP.varnoth", "log.varnoth"]


@pytest.mark.parametrize("name", KNOWN_NAMES)
@pytest.mark.parametrize("kind", ["link", "second name", "pipe"])
def test_names_made_beforehand(ready, name, kind):
    victim = ready / "victim"
    victim.write_text("precious\n")
    {"link": lambda: (ready / name).symlink_to("victim"), "pipe": lambda: os.mkfifo(ready / name),
     "second name": lambda: os.link(victim, ready / name)}[kind]()
    done = run(ready)
    # A log may be a link on purpose, and is only added to.
    assert victim.read_text().startswith("precious\n") and \
        (name == "log.varnoth" or victim.read_text() == "precious\n")
    # Marks and ids are replaced; the others are read.
    status = {("STOP.varnoth", kind): 2, ("log.varnoth", "pipe"): 255, ("pcf.varnoth", "pipe"): 1}
    assert done.status == status.get((name, kind), 0)
    if (ready / name).is_fifo():
        (ready / name).unlink()  # this test must not wait for it either
    if done.status in (0, 1) and name != "log.varnoth":
        wanted = {"OK": "0"} if done.status == 0 else {"ERROR": "1"}
        assert {m: t for m, t in done.marks.items() if m in ("OK", "ERROR")} == wanted


@pytest.mark.parametrize("kind", ["missing", "file", "link to nothing", "pipe", "link"])
def test_temporary_directory_made_beforehand(ready, kind):
    """What is no directory is passed over; a link to one is one."""
    make = {"file": lambda tmp: tmp.touch(), "pipe": os.mkfifo,
            "link to nothing": lambda tmp: tmp.symlink_to("nothing"),
            "link": lambda tmp: tmp.symlink_to(".")}
    make.get(kind, lambda tmp: None)(ready / "tmp")
    done = run(ready, environment={"TMPDIR": "tmp"})
    assert (done.status, done.marks) == (0, {"OK": "0"})
    assert not list(ready.glob("table_*")) and not list(ready.glob("log.??????"))


def test_what_a_pool_is_survives_its_update(ready):
    target = ready / "kept" / "target.pool"
    target.parent.mkdir()
    target.write_bytes((ready / "insar.pool").read_bytes())
    (ready / "insar.pool").unlink()
    (ready / "insar.pool").symlink_to("kept/target.pool")
    os.link(target, ready / "second name")
    target.chmod(0o640)
    if os.getuid() == 0:
        os.chown(target, 65534, 65534)
    before = target.stat()
    expect_clean_rerun(ready)
    after = target.stat()
    for field in ("st_ino", "st_mode", "st_uid", "st_gid", "st_nlink"):
        assert getattr(after, field) == getattr(before, field), field
    assert os.readlink(ready / "insar.pool") == "kept/target.pool"
    assert after.st_size > before.st_size


def test_temporary_files_are_private(ready):
    done = subprocess.run(["strace", "-e", "trace=openat", BINARY, *arguments()], cwd=ready,
                          capture_output=True, check=False, timeout=20)
    if done.returncode != 0:
        pytest.skip("LEFT OUT: no right to trace a process")
    made = [line for line in done.stderr.decode().splitlines() if "O_EXCL" in line]
    assert len(made) > 3 and all("O_RDWR|O_CREAT|O_EXCL, 0600" in line for line in made)
    assert not list(ready.glob("pool_*"))
