"""Every way to die that a pool, a limit of time or the screen can bring about. The marks tell the truth,
and the end of the log names the reason."""

import fcntl
import os
import resource
import subprocess
from pathlib import Path

import pytest

from varnoth_run import BINARY, FAILED, Pair, Run, arguments, run


def expect_told_failure(done):
    """The failure mark, and a reason at the log's end."""
    assert (done.status, done.marks) == (1, {"ERROR": "1"})
    assert done.alarms[-1] == FAILED and len(done.alarms) > 1 or "signal" in done.alarms[-1]


KEYS = [(name, key) for name, pool in vars(Pair()).items() for key in pool
        if (name, key) != ("slave", "ellipsoid_parameters")]  # the master's counts for both


@pytest.mark.parametrize("name, key", KEYS)
@pytest.mark.parametrize("fault", ["missing", "mistyped"])
def test_each_key(tmp_path, name, key, fault):
    pair = Pair()
    getattr(pair, name).pop(key)
    if fault == "mistyped":
        getattr(pair, name)[key] = ("BOL", "TRUE")
    done = run(pair.write(tmp_path))
    expect_told_failure(done)
    assert f">> {key} <<" in done.alarms[0]


NO_FILES = {"directory": Path.mkdir, "pipe": os.mkfifo, "forbidden": lambda path: path.touch(0),
            "dangling": lambda path: path.symlink_to("no/such/place")}


@pytest.mark.parametrize("pool", ["master.pool", "slave.pool", "insar.pool", "log.pool"])
@pytest.mark.parametrize("kind", NO_FILES)
def test_each_pool_that_is_no_readable_file(ready, pool, kind):
    (ready / pool).unlink(missing_ok=True)
    for other in (ready, *ready.iterdir()):
        other.chmod(0o777)
    NO_FILES[kind](ready / pool)
    done = run(ready, preexec_fn=lambda: os.setuid(os.getuid() or 65534))  # nothing is forbidden to root
    expect_told_failure(done)
    assert pool in " ".join(done.alarms)


def test_limit_of_the_cpu(ready, pair):
    """A Hermite polynomial through many samples takes minutes."""
    samples = ("FLT_15_V", [1000.0 + i for i in range(150)])
    pair.master.update(dict.fromkeys(["orbit_epoch", "orbit_x", "orbit_y", "orbit_z"], samples),
                       orbit_interpolation=("STR", "hermite"),
                       orbit_velocity_key=("STR", "orbit_x, orbit_y, orbit_z"))
    pair.insar["master_first_az_time"] = ("FLT_15", 1005.5)
    done = run(pair.write(ready), preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_CPU, (1, 3)))
    expect_told_failure(done)
    assert "got fatal signal 24: exceeded cpu limit" in done.alarms


def run_on(screen, directory, **words):
    """A run that is asked to end after a second."""
    command = ["timeout", "--preserve-status", "1", BINARY, *arguments(**words)]
    status = subprocess.run(command, cwd=directory, stdout=screen, check=False, timeout=20).returncode
    os.close(screen)
    return Run(directory, status, "", "")


def test_screen_that_nobody_reads(ready):
    """Nothing catches the signal of a broken pipe; the failure mark of the start stands."""
    reader, writer = os.pipe()
    os.close(reader)
    (ready / "own.cfg").touch()  # without it, a warning comes before the screen is quiet
    done = run_on(writer, ready, pcf="own.cfg", lsl="ALARM", MasterPar="no/such.pool")
    assert (done.status, done.marks) == (-13, {"ERROR": "1"})


def test_screen_that_is_held(ready):
    """A pipe that nobody reads takes no more lines; a signal ends the run all the same."""
    reader, writer = os.pipe()
    fcntl.fcntl(writer, fcntl.F_SETPIPE_SZ, 4096)
    done = run_on(writer, ready, lsl="TRACE")
    os.close(reader)
    expect_told_failure(done)
    assert "got fatal signal 15" in done.alarms[0]
