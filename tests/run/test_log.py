"""The log of a run: order, levels and wording of its lines, and the layout of its tables."""

import re
from pathlib import Path

from varnoth_run import arguments, difference, run

EXPECTED = Path(__file__).parent / "expected" / "log.txt"
# Lines of the libraries below.
APART = re.compile(r"TRACE : varnoth : (PP\.|geolocation_fast:)")


def test_whole_log(ready):
    lines = [line for line in run(ready, arguments(lfl="TRACE")).log if not APART.match(line)]
    assert difference(EXPECTED.read_text(), "\n".join(lines) + "\n") is None


def test_identical_orbits_have_no_height_conversion(ready, pair):
    pair.slave = pair.master
    pool = run(pair.write(ready)).pool()
    assert pool["height_conversion_factor"] == 999999999999999.0 / 22
    assert pool["early_az_phase_to_height_conv"] == [999999999999999.0] * 11
    assert abs(pool["varnoth_deltaR"]) < 1e-8  # the slave search stops at 1e-9 s
