"""Pairs of a stack, by run_pair and by varnoth-tools: the endings that engines tell apart, and results that are whole or
not there."""

import os
import re
import signal
import subprocess
import time
from pathlib import Path

import pytest

from varnoth_run import BINARY, EXAMPLES

STACK = EXAMPLES / "stack"
TOOLS = Path(os.environ.get("VARNOTH_TOOLS_BINARY", BINARY.parents[2] / "tools" / "varnoth-tools"))
WITH_TOOLS = pytest.mark.skipif(not TOOLS.exists(), reason="varnoth-tools is not built")


@pytest.fixture
def pairs(tmp_path):
    subprocess.run([STACK / "make_pairs", "2", tmp_path / "pairs"], check=True)
    return tmp_path / "pairs"


@pytest.fixture(params=["run_pair", pytest.param("tools", marks=WITH_TOOLS)])
def runner(request):
    def command(pair, results):
        return [STACK / "run_pair", pair, results] if request.param == "run_pair" else [
            TOOLS, "stack", "run", pair, "--results", results]

    def run(pair, program=BINARY, results="../results"):
        done = subprocess.run(command(pair, pair.parent / results), check=False, capture_output=True,
                              env={**os.environ, "VARNOTH": str(program)}, text=True, timeout=60)
        return done.returncode, done.stderr
    run.command = command
    run.stopped = 2 if request.param == "run_pair" else 1
    return run


def test_endings(pairs, runner):
    results = pairs.parent / "results"
    (pairs / "pair_00000" / "master.pool").rename(pairs / "common.pool")
    (pairs / "pair_00000" / "master.pool").symlink_to("../common.pool")
    again = subprocess.run([STACK / "make_pairs", "3", pairs], check=False, capture_output=True, text=True)
    assert again.returncode == 1 and again.stderr.endswith("pair_00000 exists: take another directory\n")
    before = (pairs / "pair_00000" / "insar.pool").read_bytes()
    assert runner(pairs / "pair_00000") == (0, "")
    assert "eff_baseline" in (results / "pair_00000" / "insar.pool").read_text(encoding="latin-1")
    assert (pairs / "pair_00000" / "insar.pool").read_bytes() == before
    (pairs / "pair_00001" / "STOP.varnoth").touch()
    status, told = runner(pairs / "pair_00001")
    assert status == runner.stopped and told.endswith("pair_00001: stop requested\n")
    (pairs / "pair_00001" / "STOP.varnoth").unlink()
    (pairs / "pair_00001" / "master.pool").write_text("")
    status, told = runner(pairs / "pair_00001")
    assert status == 1 and "status 1: ALARM : varnoth : parameter pool" in told
    assert sorted(path.name for path in results.iterdir()) == ["failed", "pair_00000", "stopped"]
    assert told.split("ALARM")[1] in (results / "failed" / "pair_00001.log").read_text()
    assert not list((results / "stopped").iterdir())
    status, told = runner(pairs / "pair_00000", "/bin/false")
    assert status == 1 and re.search(r"pair_00000: status 1: (no ALARM line in the log)?\n$", told)
    assert (results / "pair_00000" / "OK.varnoth").exists(), "a result goes only for a better one"
    (pairs / "pair_00000" / "new").touch()
    (results / "pair_00000" / "old").touch()
    assert runner(pairs / "pair_00000") == (0, "")
    assert (results / "pair_00000" / "new").exists() and not (results / "pair_00000" / "old").exists()
    assert [path.name for path in results.iterdir() if path.name.startswith(".")] == []
    assert not list((results / "failed").glob("pair_00000*"))


@pytest.mark.parametrize("pair, program, results, told", [
    ("pair_00009", BINARY, "r", "is no pair"), ("pair_00000", "no", "r", "there is no program no"),
    ("pair_00000", BINARY, ".", "would replace"), ("pair_00000", BINARY, "pair_00000/r", "replace")])
def test_refused(pairs, runner, pair, program, results, told):
    status, errors = runner(pairs / pair, program, results)
    assert sum(path.is_file() for path in pairs.rglob("*")) == 2 * 3
    assert [path.name for path in (pairs / "pair_00000").iterdir() if path.is_dir()] == []
    assert status == 1 and told in errors and len(errors.splitlines()) == 1


@WITH_TOOLS
@pytest.mark.parametrize("number", [signal.SIGTERM, signal.SIGKILL])
def test_killed_between(pairs, number):
    """A chunk that is killed in a run leaves no result of that pair, and the next call tidies up."""
    results = pairs.parent / "results"
    slow = pairs.parent / "slow"
    slow.write_text(f'#!/bin/sh\ncase $PWD in *pair_00001*) echo >"{results}/is_on"; exec sleep 50 ;; esac\nexec "{BINARY}" "$@"\n')
    slow.chmod(0o755)
    command = [TOOLS, "stack", "run", pairs / "pair_00000", pairs / "pair_00001", "--results", results]
    with subprocess.Popen(command, env={**os.environ, "VARNOTH": str(slow)}, stdout=subprocess.DEVNULL,
                          start_new_session=True) as process:
        while not (results / "is_on").exists():
            time.sleep(0.01)
        (results / "is_on").unlink()
        os.killpg(process.pid, number) if number == signal.SIGKILL else process.send_signal(number)
        assert process.wait(timeout=20) == -number
    left = sorted(path.name for path in results.iterdir())
    assert left[-1] == "pair_00000" and len(left) == (2 if number == signal.SIGKILL else 1)
    done = subprocess.run(command, env={**os.environ, "VARNOTH": str(BINARY)}, capture_output=True, text=True, check=True)
    assert done.stdout == "done 2, failed 0, stopped 0\n"
    assert sorted(path.name for path in results.iterdir()) == ["pair_00000", "pair_00001"]


@WITH_TOOLS
def test_names_that_results_cant_have(pairs, tmp_path):
    for name in ("failed", ".hidden", "twice/pair_00000"):
        (pairs / name).parent.mkdir(exist_ok=True)
        (pairs / "pair_00001").rename(pairs / name)
        command = [TOOLS, "stack", "run", pairs / "pair_00000", pairs / name, "--results", tmp_path / "r"]
        done = subprocess.run(command, env={**os.environ, "VARNOTH": str(BINARY)}, capture_output=True, text=True, check=False)
        assert done.returncode == 1 and "name" in done.stderr and done.stdout == "done 1, failed 1, stopped 0\n"
        assert [path.name for path in (tmp_path / "r").iterdir()] == ["pair_00000"]
        (pairs / name).rename(pairs / "pair_00001")
    done = subprocess.run([TOOLS, "stack", "run", pairs / "pair_00001", "--results", tmp_path / "r"],
                          env={**os.environ, "VARNOTH": "/bin/true"}, capture_output=True, text=True, check=False)
    assert done.returncode == 1 and (tmp_path / "r" / "failed" / "pair_00001.log").exists(), "without its mark nothing is done"
