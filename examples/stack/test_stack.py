"""One pair of a stack: the endings that engines tell apart, and results that are whole or not there."""

import os
import subprocess

import pytest

from varnoth_run import BINARY, EXAMPLES

STACK = EXAMPLES / "stack"


@pytest.fixture
def pairs(tmp_path):
    subprocess.run([STACK / "make_pairs", "2", tmp_path / "pairs"], check=True)
    return tmp_path / "pairs"


def run_pair(pair, program=BINARY, results="../results"):
    done = subprocess.run([STACK / "run_pair", pair, pair.parent / results], check=False, capture_output=True,
                          env={**os.environ, "VARNOTH": str(program)}, text=True, timeout=60)
    return done.returncode, done.stderr


def test_endings(pairs):
    results = pairs.parent / "results"
    (pairs / "pair_00000" / "master.pool").rename(pairs / "common.pool")
    (pairs / "pair_00000" / "master.pool").symlink_to("../common.pool")
    before = (pairs / "pair_00000" / "insar.pool").read_bytes()
    assert run_pair(pairs / "pair_00000") == (0, "")
    assert "eff_baseline" in (results / "pair_00000" / "insar.pool").read_text(encoding="latin-1")
    assert (pairs / "pair_00000" / "insar.pool").read_bytes() == before
    (pairs / "pair_00001" / "STOP.varnoth").touch()
    assert run_pair(pairs / "pair_00001") == (2, "pair_00001: stop requested\n")
    (pairs / "pair_00001" / "STOP.varnoth").unlink()
    (pairs / "pair_00001" / "master.pool").write_text("")
    status, told = run_pair(pairs / "pair_00001")
    assert status == 1 and "status 1: ALARM : varnoth : parameter pool" in told
    assert sorted(path.name for path in results.iterdir()) == ["failed", "pair_00000", "stopped"]
    assert told.split("ALARM")[1] in (results / "failed" / "pair_00001.log").read_text()
    assert not list((results / "stopped").iterdir())
    assert run_pair(pairs / "pair_00000", "/bin/false") == (1, "pair_00000: status 1: \n")
    assert (results / "pair_00000" / "OK.varnoth").exists(), "a result goes only for a better one"


@pytest.mark.parametrize("pair, program, results, told", [
    ("pair_00009", BINARY, "r", "is no pair"), ("pair_00000", "no", "r", "there is no program no"),
    ("pair_00000", BINARY, ".", "would replace"), ("pair_00000", BINARY, "pair_00000", "replace")])
def test_refused(pairs, pair, program, results, told):
    status, errors = run_pair(pairs / pair, program, results)
    assert sum(path.is_file() for path in pairs.rglob("*")) == 2 * 3
    assert status == 1 and told in errors and len(errors.splitlines()) == 1
