"""Every way to die that a pool, a file, a limit or the screen can bring about. The marks tell the
truth, and the end of the log names the reason."""

import fcntl
import os
import resource
import subprocess
import termios
import time
from collections import Counter
from pathlib import Path

import pytest

from varnoth_run import BINARY, FAILED, Pair, Run, arguments, run



def expect_truth(done):
    """The success mark with status 0, else the failure mark and a reason at the log's end."""
    no_mark = "WARN  : varnoth : Can not create file ERROR.varnoth!" in done.log
    assert done.marks == ({"OK": "0"} if done.status == 0 else {} if no_mark else {"ERROR": "1"})
    if done.status == 1:
        assert done.alarms[-1] == FAILED and len(done.alarms) > 1 or "signal" in done.alarms[-1]


KEYS = [(name, key) for name, pool in vars(Pair()).items() for key in pool]


@pytest.mark.parametrize("name, key", KEYS)
@pytest.mark.parametrize("fault", ["missing", "mistyped", "of no type"])
def test_each_key(tmp_path, name, key, fault):
    pair = Pair()
    entries = getattr(pair, name)
    kind, value = entries[key]
    if fault == "missing":
        del entries[key]
    else:
        wrong = "FLT_15" if kind == "STR" else "STR"
        entries[key] = (wrong if fault == "mistyped" else kind.lower(), value)
    done = run(pair.write(tmp_path), stdin=subprocess.DEVNULL)
    expect_truth(done)
    assert done.status == (0 if (name, key) == ("slave", "ellipsoid_parameters") else 1)
    if done.status == 1:
        assert f">> {key} <<" in done.alarms[0]


POOLS = {"master.pool": "MasterPar", "slave.pool": "SlavePar", "insar.pool": "ParameterPool",
         "log.pool": "log_pp"}
DROP = {"preexec_fn": lambda: os.setuid(65534)} if os.getuid() == 0 else {}
NO_FILES = {"directory": Path.mkdir, "pipe": os.mkfifo, "forbidden": lambda path: path.touch(0),
            "dangling": lambda path: path.symlink_to("no/such/place")}


@pytest.mark.parametrize("pool", POOLS)
@pytest.mark.parametrize("kind", ["in no directory", *NO_FILES])
def test_each_pool_that_is_no_readable_file(ready, pool, kind):
    path = ready / pool
    path.unlink(missing_ok=True)
    words = {POOLS[pool]: "no/such/" + pool}
    if kind in NO_FILES:
        words = {}
        for other in (ready, *ready.iterdir()):
            other.chmod(0o777)
        NO_FILES[kind](path)
    done = run(ready, arguments(**words), **(DROP if kind == "forbidden" else {}))
    expect_truth(done)
    assert done.status == 1 and pool in " ".join(done.alarms)


@pytest.mark.parametrize("place", [".", "state"])
def test_a_directory_that_takes_no_file(ready, place):
    """Without a log there is nothing but the exit status; without a mark there is the log."""
    (ready / "state").mkdir()
    ready.chmod(0o777)
    (ready / place).chmod(0o555)
    done = run(ready, arguments(status="state"), **DROP)
    assert done.marks == {}
    if place == ".":
        assert done.status == 255 and "can not open logging file" in done.screen
    else:
        assert done.status == 1 and list((ready / "state").iterdir()) == []
        assert done.levels("WARN ")[-1] == "Can not create file state/ERROR.varnoth!"


LIMITS = [(resource.RLIMIT_NOFILE, n) for n in range(3, 16)]
LIMITS += [(resource.RLIMIT_AS, n << 17) for n in range(8, 120, 4)]
LIMITS += [(resource.RLIMIT_STACK, n << 12) for n in range(1, 40, 6)]


def test_limits_of_files_memory_and_stack(tmp_path):
    seen = Counter()
    for number, (limit, value) in enumerate(LIMITS):
        directory = tmp_path / str(number)
        directory.mkdir()
        Pair().write(directory)
        done = run(directory, preexec_fn=lambda k=limit, v=value: resource.setrlimit(k, (v, v)))
        seen[done.status] += 1
        if (directory / "log.varnoth").exists() and done.status in (0, 1):
            expect_truth(done)
        else:  # ended by the loader or the kernel, or without a log
            assert "OK" not in done.marks, (limit, value, done)
    print(f"\nlimits: exit statuses {dict(seen)}")
    assert seen[0] and seen[1]


def test_limit_of_the_cpu(ready, pair):
    """A Hermite polynomial through many samples takes minutes."""
    for scene in (pair.master, pair.slave):
        scene["orbit_interpolation"] = ("STR", "hermite")
        scene["orbit_velocity_key"] = ("STR", "orbit_x, orbit_y, orbit_z")
        for key in ("orbit_epoch", "orbit_x", "orbit_y", "orbit_z"):
            scene[key] = ("FLT_15_V", [1000.0 + i for i in range(150)])
    pair.insar["master_first_az_time"] = pair.insar["slave_first_az_time"] = ("FLT_15", 1005.5)
    done = run(pair.write(ready),
               preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_CPU, (1, 3)))
    expect_truth(done)
    assert "got fatal signal 24: exceeded cpu limit" in done.alarms


def test_screen_that_nobody_reads(ready):
    """The signal of a broken pipe is not caught; the failure mark of the start stands."""
    reader, writer = os.pipe()
    os.close(reader)
    (ready / "own.cfg").touch()  # its lack would be told before the screen is quiet
    words = arguments(pcf="own.cfg", lsl="ALARM", MasterPar="no/such.pool")
    status = subprocess.run([BINARY, *words], cwd=ready, stdout=writer, check=False,
                            timeout=20).returncode
    os.close(writer)
    assert (status, Run(ready, 0, "", "").marks) == (-13, {"ERROR": "1"})


def test_screen_that_is_held(ready):
    """A pipe that nobody reads takes no more lines; a signal ends the run all the same."""
    reader, writer = os.pipe()
    fcntl.fcntl(writer, fcntl.F_SETPIPE_SZ, 4096)
    with subprocess.Popen([BINARY, *arguments(lsl="TRACE")], cwd=ready, stdout=writer) as process:
        waiting = bytearray(4)
        while fcntl.ioctl(reader, termios.FIONREAD, waiting) or int.from_bytes(waiting, "little") < 3500:
            time.sleep(0.01)
        process.send_signal(15)
    done = Run(ready, process.returncode, "", "")
    for end in (reader, writer):
        os.close(end)
    expect_truth(done)
    assert done.status == 1 and "got fatal signal 15" in done.alarms[0]
