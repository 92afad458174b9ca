"""The ways to end: exit status, marks, the supervisor's line and the log; and the lookup of the
configuration up to the keyboard."""

import datetime
import os
import pty
import re
import signal
import subprocess
import time

import pytest

from varnoth_run import BINARY, FAILED, Run, arguments, run


@pytest.fixture
def terminal():
    """The two ends of a terminal: the keyboard and what a run reads from."""
    ends = pty.openpty()
    yield ends
    for end in ends:
        os.close(end)


def test_success(ready):
    """Its times are local ones."""
    start = time.time()
    done = run(ready, environment={"TZ": "EAST-5:30"})
    for end in ("start", "end"):
        in_log = re.search(rf"{end} time: (.{{24}})", "\n".join(done.log))[1]
        for form, text in [("%Y-%m-%dT%H:%M:%S", done.pool("log.pool")[f"software_{end}_times"][0]),
                           ("%a %b %d %H:%M:%S %Y", in_log)]:
            moment = datetime.datetime.strptime(text + " +0530", form + " %z").timestamp()
            assert start - 1 < moment <= time.time()
    assert (done.status, done.marks) == (0, {"OK": "0"})
    assert done.log[-1] == "INFO  : varnoth : " + "*" * 59
    assert (ready / "current_process.pid").read_text().strip().isdigit()
    assert (ready / "parent_process.pid").read_text() == f"{os.getpid()}\n"


def test_stop_file_leaves_everything_alone(ready):
    (ready / "STOP.varnoth").touch()
    (ready / "OK.varnoth").write_text("old")
    done = run(ready)
    assert (done.status, done.marks) == (2, {"OK": "old", "STOP": ""})
    assert done.levels("INFO ") == ["=" * 52, "Program execution interrupted - STOP file was found!",
                                    "=" * 52, "found file: STOP.varnoth"]


def test_log_that_can_not_be_opened(ready):
    done = run(ready, arguments(lfn="no/such/place"))
    assert (done.status, done.marks) == (255, {})
    assert done.screen.endswith("ALARM : varnoth :  :   can not open logging file: no/such/place\n")


@pytest.mark.parametrize("path", ["state", "state/"])
def test_status_path_and_process_name(ready, path):
    (ready / "state").mkdir()
    assert run(ready, arguments(pid="7", status=path)).status == 0
    assert [p.name for p in (ready / "state").iterdir()] == ["OK.7"]
    assert (ready / "log.7").exists()


def test_configuration_file_and_environment(ready):
    words = arguments(MasterPar=None, SlavePar=None, log_pp=None)
    (ready / "own.cfg").write_text("MasterPar master.pool and more\n\nSlavePar\tslave.pool\n"
                                   "lfn own.log\nlfl TRACE\npid 7\n")
    done = run(ready, [*words, "-pcf", "own.cfg"], {"log_pp": "log.pool"})
    assert (done.status, done.marks) == (0, {"OK": "0"})  # the process has no name from there
    log = (ready / "own.log").read_text()
    for line in ("TRACE : varnoth : ", "Found parameter MasterPar=master.pool\n",
                 "Found parameter in UNIX environment log_pp=log.pool\n"):
        assert line in log


@pytest.mark.parametrize("words, shown", [
    ({"LocalHeight": "12.34"}, "fixed local height: ..... 12.3"),
    ({"LocalHeight": "no number"}, "fixed local height: ..... 0.0"),
    ({"FlatEarthPolyDegree": "010"}, "flat earth poly degree: . 10"),
    ({"FlatEarthPolyDegree": "4abc"}, "flat earth poly degree: . 4"),
])
def test_numbers_of_the_configuration(ready, pair, words, shown):
    del pair.insar["local_height"]  # is asked for without LocalHeight alone
    done = run(pair.write(ready), arguments(**{"LocalHeight": "0", **words}))
    assert shown in done.levels("INFO ")


def test_configuration_file_that_can_not_be_read_is_not_a_missing_one(ready):
    (ready / "folder").mkdir()
    (ready / "loop").symlink_to("loop")
    for name, reason in {"folder": "Is a directory", "loop": "Too many levels of symbolic links"}.items():
        done = run(ready, arguments(pcf=name))
        assert (done.status, done.marks) == (1, {"ERROR": "1"})
        assert f"Can not read configuration file {name}: {reason}" in done.screen
    (ready / "log.varnoth").unlink()
    done = run(ready, arguments(pcf="master.pool/none"))
    assert (done.status, done.told) == (0, ["WARN  Configuration file master.pool/none does not exist!"])


FILES = {"MasterPar": "master.pool", "SlavePar": "slave.pool", "ParameterPool": "insar.pool",
         "log_pp": "log.pool", "lfn": "own.log", "pcf": "own.cfg", "status": "marks/"}


@pytest.mark.parametrize("excess", [0, 1])
@pytest.mark.parametrize("key", FILES)
def test_names_of_255_characters_and_no_more(ready, key, excess):
    name = FILES[key]
    # The marks' names are longer than their directory's, "ERROR.varnoth" the longest.
    length = (255 - 13 if key == "status" else 255) + excess - len(name)
    path = "a/" * (length // 2 - 1) + "b" * (length % 2 + 1) + "/" + name
    (ready / path).parent.mkdir(parents=True)
    if key == "status":
        (ready / path).mkdir()
    elif (ready / name).exists():
        (ready / path).write_bytes((ready / name).read_bytes())
    done = run(ready, arguments(**{key: path}))
    assert done.status == excess, done
    if excess:
        assert " is longer than 255 characters" in done.screen
        assert done.marks == {"ERROR": "1"} or key == "status"
    assert key != "lfn" or (ready / path).exists() != bool(excess)


def test_banner_names_the_starter_and_levels_are_taken_by_name(ready):
    starter = {"PROC_NAME": "chain", "chain_VERSION": "2.1"}
    assert "started by: chain 2.1" in run(ready, environment=starter).levels("INFO ")
    quiet = run(ready, arguments(lfl="LOUD", lsl="ALARM", lfn="quiet"))
    # An unknown name is above all levels.
    assert "start time" not in (ready / "quiet").read_text()
    assert "start time" not in quiet.screen


class TestMissingKey:
    def test_closed_keyboard(self, ready):
        done = run(ready, arguments(MasterPar=None))
        # The value stays the empty text, which is no file.
        assert (done.status, done.marks) == (1, {"ERROR": "1"})
        assert done.told[:2] == ["WARN  No configuration file or parameter not found!",
                                 "WARN  \t  Please input value of parameter : <MasterPar>"]
        assert "MasterPar := " in done.screen

    def test_closed_keyboard_for_the_degree(self, ready):
        done = run(ready, arguments(FlatEarthPolyDegree=None))
        assert done.status == 0 and len(done.pool()["flat_phase_poly_early_az"]) == 1

    def test_answer_at_a_terminal(self, ready, terminal):
        os.write(terminal[0], b"slave.pool\n")
        done = run(ready, arguments(SlavePar=None), stdin=terminal[1])
        assert done.status == 0
        log = done.levels("DEBUG")
        assert "waiting 120 seconds for input" in log
        assert "Read from keyboard parameter SlavePar = slave.pool" in log

    def test_time_out(self, ready, terminal):
        done = run(ready, arguments(SlavePar=None), {"SECONDS_ON_PARAMETER_INPUT": "1"},
                   stdin=terminal[1])
        assert (done.status, done.marks) == (-signal.SIGALRM, {"ERROR": "1"})
        assert done.log[-1] == "DEBUG : varnoth : waiting 1 seconds for input"


def signal_at(terminal, directory, number):
    """Sends a signal to a run that waits for a value."""
    process = subprocess.Popen([BINARY, *arguments(SlavePar=None)], cwd=directory,
                               stdin=terminal[1], stdout=subprocess.PIPE)
    log = directory / "log.varnoth"
    for _ in range(500):
        if log.exists() and "waiting" in log.read_text():
            break
        time.sleep(0.02)
    process.send_signal(number)
    process.communicate(timeout=60)
    return Run(directory, process.returncode, "", "")


CAUGHT = {1: "hangup", 2: "interrupt (rubout)", 3: "quit (ASCII FS)",
          4: "illegal instruction (not reset when caught)", 6: "IOT instruction", 7: "bus error",
          8: "floating point exception", 11: "segmentation violation",
          15: "software termination signal from kill", 23: "urgent socket condition",
          24: "exceeded cpu limit", 25: "exceeded file size limit", 31: "bad argument to system call"}


@pytest.mark.parametrize("number", [*CAUGHT, 10, 13])
def test_fatal_signal(ready, terminal, number):
    done = signal_at(terminal, ready, number)
    assert (done.status, done.marks) == (1 if number in CAUGHT else -number, {"ERROR": "1"})
    what = f"got fatal signal {number}: {CAUGHT.get(number)}"
    assert done.alarms == ([what, f"ZOD_MSG|ERROR|varnoth {what}"] if number in CAUGHT else [])


def test_marks_that_are_directories(ready):
    """They stay, and that is told in the order of the attempts."""
    for name in ("OK.varnoth", "ERROR.varnoth"):
        (ready / name / "kept").mkdir(parents=True)
    assert run(ready).told == [f"WARN  Can not {what}.varnoth!" for what in (
        "create file ERROR", "remove file OK", "remove file ERROR", "create file OK")]


def test_closed_standard_output(ready):
    """The first pool must not be opened in its place."""
    done = run(ready, preexec_fn=lambda: os.close(1))
    assert (done.status, done.marks) == (0, {"OK": "0"})
    assert done.pool()["n_samples"] == 5001


def test_id_file_that_can_not_be_written(ready):
    (ready / "current_process.pid").mkdir()
    done = run(ready)
    assert done.status == 1
    assert done.alarms == ["Error opening file current_process.pid", "can not open file", FAILED]


class TestFailingUpdate:
    """A pool that is reached by its descriptor has no directory that takes the temporary file."""

    @staticmethod
    def run_with(ready, key, **words):
        (ready / "held.pool").write_bytes((ready / "insar.pool").read_bytes())
        descriptor = os.open(ready / "held.pool", os.O_RDWR)
        name = f"/proc/self/fd/{descriptor}"
        done = run(ready, arguments(**{key: name}, **words), pass_fds=[descriptor])
        os.close(descriptor)
        assert f"no permission to change pool file: {name}" in done.screen
        return done

    def test_of_the_results_is_told_and_the_run_ends_well(self, ready):
        done = self.run_with(ready, "ParameterPool")
        assert (done.status, done.marks) == (0, {"OK": "0"})
        assert "eff_baseline" not in done.pool("held.pool")
        assert done.pool("log.pool")["software_names"] == ["varnoth"]

    def test_that_no_log_tells_of_fails_the_run(self, ready):
        assert run(ready, arguments(lfn="/dev/full")).status == 0
        done = self.run_with(ready, "ParameterPool", lfn="/dev/full")
        assert (done.status, done.marks) == (1, {"ERROR": "1"}) and FAILED in done.screen

    def test_of_the_log_pool_fails_the_run_with_its_results(self, ready):
        done = self.run_with(ready, "log_pp")
        assert (done.status, done.marks) == (1, {"ERROR": "1"})
        assert "eff_baseline" in done.pool()
