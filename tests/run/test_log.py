"""The log of a run: order, levels and wording of its lines, and the layout of its tables."""

import re
from pathlib import Path

import pytest

from varnoth_run import arguments, difference, run

EXPECTED = Path(__file__).parent / "expected" / "log.txt"
# Lines of the libraries below.
APART = re.compile(r"TRACE : varnoth : (PP\.|geolocation_fast:)")


def test_whole_log(ready):
    lines = [line for line in run(ready, arguments(lfl="TRACE")).log if not APART.match(line)]
    assert difference(EXPECTED.read_text(), "\n".join(lines) + "\n") is None


def test_single_pass_halves_the_effective_baseline(ready, pair):
    both = run(ready)
    pair.insar["observation_mode"] = ("STR", "single_pass")
    (ready / "single").mkdir()
    single = run(pair.write(ready / "single"), arguments(lfl="TRACE"))

    def grids(done):
        rows = [t for t in done.levels("INFO ") if re.match(r"\| +\d+ +\|", t)]
        return [[float(c) for c in t.strip("|").split("|")[1:]] for t in rows]
    for row, (halved, whole) in enumerate(zip(grids(single), grids(both))):
        factor = 0.5 if row < 3 else 1.0
        assert all(abs(h - factor * w) <= 0.01 for h, w in zip(halved, whole))
    # The reported one is half of what twice the metres per cycle predict.
    assert single.pool()["eff_baseline"] * 4 == pytest.approx(both.pool()["eff_baseline"], 1e-3)
    # every light-time search is counted: 22 samples, two targets, three times each
    counts = [int(t.split()[2]) for t in single.levels("TRACE") if t.endswith("occurrences")]
    assert sum(counts) == 22 * 2 * 3


def test_identical_orbits_have_no_height_conversion(ready, pair):
    pair.slave = pair.master
    pool = run(pair.write(ready)).pool()
    assert pool["height_conversion_factor"] == 999999999999999.0 / 22
    assert pool["early_az_phase_to_height_conv"] == [999999999999999.0] * 11
    assert abs(pool["varnoth_deltaR"]) < 1e-8  # the slave search stops at 1e-9 s
