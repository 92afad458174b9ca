"""The ways to end: exit status, marks, the supervisor's line and the log; and the lookup of the
configuration up to the keyboard."""

import os
import pty
import re
import shutil
import signal
import subprocess
import time
from datetime import datetime

import pytest

from varnoth_run import BINARY, FAILED, Run, arguments, run

MARKS = {0: {"OK": "0"}, 1: {"ERROR": "1"}, 2: {"OK": "old", "STOP": ""}, 255: {}}

# name: what the shell does before, changed arguments, environment, exit status, and texts on the screen
ENDINGS = {
    "stop file": ("touch STOP.varnoth; printf old > OK.varnoth", {}, {}, 2, [
        "=" * 52, "INFO  : varnoth : Program execution interrupted - STOP file was found!\n",
        "INFO  : varnoth : found file: STOP.varnoth\n"]),
    "log that can not be opened": ("echo lfn no/such/place > own", {"pcf": "own"}, {}, 255, [
        "ALARM : varnoth :  :   can not open logging file: no/such/place\n"]),
    "log that takes no line": ("", {"lfn": "/dev/full"}, {}, 0, []),
    "id file that can not be written": ("mkdir current_process.pid", {}, {}, 1, [
        "ALARM : varnoth : Error opening file current_process.pid\n", "can not open file\n", FAILED]),
    "configuration file and environment": (
        "printf 'pid 7\n\nMasterPar\tmaster.pool and more\n' > own",
        {"MasterPar": None, "log_pp": None, "pcf": "own"}, {"log_pp": "log.pool", "MasterPar": "none"}, 0,
        ["DEBUG : varnoth : Found parameter MasterPar=master.pool\n",
         "DEBUG : varnoth : Found parameter in UNIX environment log_pp=log.pool\n"]),
    "configuration file that is a directory": ("mkdir folder", {"pcf": "folder"}, {}, 1, [
        "ALARM : varnoth : Can not read configuration file folder: Is a directory\n"]),
    "configuration file that is a loop": ("ln -s loop loop", {"pcf": "loop"}, {}, 1, [
        "ALARM : varnoth : Can not read configuration file loop: Too many levels of symbolic links\n"]),
    "configuration file below a file": ("", {"pcf": "master.pool/none"}, {}, 0, [
        "WARN  : varnoth : Configuration file master.pool/none does not exist!\n"]),
    "height": ("sed -i /local_height/d insar.pool", {"LocalHeight": "12.34"}, {}, 0, ["..... 12.3\n"]),
    "height of no number": ("", {"LocalHeight": "no number"}, {}, 0, ["local height: ..... 0.0\n"]),
    "durable by the configuration file": ("echo DurableUpdate TRUE > own", {"pcf": "own"}, {"DurableUpdate": "no"}, 0, [
        "INFO  : varnoth : updates wait until the disk holds them\n"]),
    "durable by a word that is none": ("", {}, {"DurableUpdate": "yes"}, 1, [
        "ALARM : varnoth : value of parameter DurableUpdate is neither TRUE nor FALSE\n", FAILED]),
    "degree with a zero ahead": ("", {"FlatEarthPolyDegree": "010"}, {}, 0, ["poly degree: . 10\n"]),
    "degree with letters behind": ("", {"FlatEarthPolyDegree": "4abc"}, {}, 0, ["poly degree: . 4\n"]),
    "degree from a closed keyboard": ("", {"FlatEarthPolyDegree": None}, {}, 0, ["poly degree: . 0\n"]),
    "name from a closed keyboard": ("", {"MasterPar": None}, {}, 1, [
        "WARN  : varnoth : No configuration file or parameter not found!\n",
        "WARN  : varnoth : \t  Please input value of parameter : <MasterPar>\n", "MasterPar := "]),
    "starter": ("", {}, {"PROC_NAME": "chain", "chain_VERSION": "2.1"}, 0, ["started by: chain 2.1\n"]),
}


@pytest.mark.parametrize("name", ENDINGS)
def test_ending(ready, name):
    ahead, words, environment, status, shown = ENDINGS[name]
    subprocess.run(ahead, cwd=ready, shell=True, check=True)
    done = run(ready, arguments(lsl="TRACE", **words), environment)
    assert (done.status, done.marks) == (status, MARKS[status])
    assert [text for text in shown if text not in done.screen] == []


def test_success(ready):
    """The times of a run are local ones."""
    start = time.time()
    done = run(ready, environment={"TZ": "EAST-5:30"})
    for end in ("start", "end"):
        in_pool = done.pool("log.pool")[f"software_{end}_times"][0]
        in_log = re.search(rf"{end} time: (.{{24}})", "\n".join(done.log))[1]
        for text, form in ((in_pool, "%Y-%m-%dT%H:%M:%S %z"), (in_log, "%a %b %d %H:%M:%S %Y %z")):
            assert start - 1 < datetime.strptime(f"{text} +0530", form).timestamp() <= time.time()
    assert (done.status, done.marks) == (0, {"OK": "0"})
    assert (ready / "current_process.pid").read_text().strip().isdigit()
    assert (ready / "parent_process.pid").read_text() == f"{os.getpid()}\n"


def test_status_path_and_process_name(ready):
    (ready / "state").mkdir()
    assert run(ready, arguments(pid="7", status="state")).status == 0
    assert (ready / "state" / "OK.7").exists() and (ready / "log.7").exists()


# key: (file, what a refusal calls it)
FILES = {"MasterPar": ("master.pool", "value of parameter MasterPar"), "log_pp": ("log.pool", "of parameter log_pp"),
         "SlavePar": ("slave.pool", "of parameter SlavePar"), "lfn": ("own.log", "name of the log file"),
         "ParameterPool": ("insar.pool", "of parameter ParameterPool"), "status": ("marks/", "of the failure mark"),
         "pcf": ("own.cfg", "name of the configuration file")}


@pytest.mark.parametrize("excess", [0, 1])
@pytest.mark.parametrize("key", FILES)
def test_names_of_255_characters_and_no_more(ready, key, excess):
    (ready / "marks").mkdir()
    # The marks' names are longer than their directory's.
    longest = 255 - len("ERROR.varnoth") if key == "status" else 255
    file, what = FILES[key]
    ahead = longest + excess - len(file)
    done = run(ready, arguments(**{key: "./" * (ahead // 2) + "/" * (ahead % 2) + file}))
    assert (done.status, f"{what} is longer than 255 characters" in done.screen) == (excess, excess == 1)
    assert done.marks == MARKS[excess] or key == "status"
    assert (ready / "own.log").exists() == (key == "lfn" and excess == 0)
    assert (ready / "marks" / "OK.varnoth").exists() == (key == "status" and excess == 0)


@pytest.mark.parametrize("key, length, what", [
    ("status", 255, "parameter status"), ("status", 243, "path of the STOP file"), ("pid", 256, "parameter pid")])
def test_marks_with_names_too_long(ready, key, length, what):
    assert f"ALARM : varnoth : {what} is longer than 255" in run(ready, arguments(**{key: "x" * length})).screen


@pytest.fixture
def terminal():
    """The two ends of a terminal: the keyboard and what a run reads from."""
    ends = pty.openpty()
    yield ends
    for end in ends:
        os.close(end)


def test_answer_at_a_terminal(ready, terminal):
    os.write(terminal[0], b"slave.pool\n")
    done = run(ready, arguments(SlavePar=None), stdin=terminal[1])
    assert done.status == 0
    assert {"waiting 120 seconds for input", "Read from keyboard parameter SlavePar = slave.pool"} <= {
        *done.levels("DEBUG")}


def test_time_out_at_a_terminal(ready, terminal):
    done = run(ready, arguments(SlavePar=None), {"SECONDS_ON_PARAMETER_INPUT": "1"}, stdin=terminal[1])
    assert (done.status, done.marks) == (-signal.SIGALRM, {"ERROR": "1"})
    assert done.log[-1] == "DEBUG : varnoth : waiting 1 seconds for input"


SIGNALS = {1: "hangup", 2: "interrupt (rubout)", 3: "quit (ASCII FS)",
           4: "illegal instruction (not reset when caught)", 6: "IOT instruction", 7: "bus error",
           8: "floating point exception", 11: "segmentation violation",
           15: "software termination signal from kill", 23: "urgent socket condition",
           24: "exceeded cpu limit", 25: "exceeded file size limit", 31: "bad argument to system call",
           10: None, 13: None}  # the program does not catch the last two


@pytest.mark.parametrize("number", SIGNALS)
def test_fatal_signal_while_a_value_is_waited_for(ready, terminal, number):
    with subprocess.Popen([BINARY, *arguments(SlavePar=None)], cwd=ready, stdout=subprocess.PIPE,
                          stdin=terminal[1], env={**os.environ, "SECONDS_ON_PARAMETER_INPUT": "9"}) as job:
        while b"SlavePar := " not in job.stdout.read1():
            assert job.poll() is None
        job.send_signal(number)
    done = Run(ready, job.returncode, "", "")
    caught, what = SIGNALS[number] is not None, f"got fatal signal {number}: {SIGNALS[number]}"
    assert (done.status, done.marks) == (1 if caught else -number, {"ERROR": "1"})
    assert done.alarms == ([what, f"ZOD_MSG|ERROR|varnoth {what}"] if caught else [])


def test_marks_that_are_directories(ready):
    """They stay, and the log says so in the order of the attempts."""
    for name in ("OK.varnoth", "ERROR.varnoth"):
        (ready / name / "kept").mkdir(parents=True)
    assert run(ready).told == [f"WARN  Can not {what}.varnoth!" for what in (
        "create file ERROR", "remove file OK", "remove file ERROR", "create file OK")]


def test_closed_standard_output(ready):
    """The first pool must not take the place of the screen."""
    done = run(ready, preexec_fn=lambda: os.close(1))
    assert (done.status, done.marks) == (0, {"OK": "0"})
    assert done.pool()["n_samples"] == 5001


@pytest.mark.parametrize("key, log, status, other_pool, updated", [
    ("ParameterPool", "own.log", 0, "log.pool", "software_names"),
    ("ParameterPool", "/dev/full", 1, "log.pool", "software_names"),  # a fault that no log has fails the run
    ("log_pp", "own.log", 1, "insar.pool", "eff_baseline")])
def test_update_that_fails(ready, key, log, status, other_pool, updated):
    """A pool that is reached by its descriptor has no directory that takes the temporary file."""
    descriptor = os.open(shutil.copy(ready / "insar.pool", ready / "held.pool"), os.O_RDWR)
    name = f"/proc/self/fd/{descriptor}"
    done = run(ready, arguments(**{key: name}, lfn=log), pass_fds=[descriptor])
    os.close(descriptor)
    assert f"no permission to change pool file: {name}" in done.screen
    assert (done.status, done.marks) == (status, MARKS[status])
    assert (FAILED in done.screen) == (status == 1)
    assert updated in done.pool(other_pool) and len(done.pool("held.pool")) == 8
