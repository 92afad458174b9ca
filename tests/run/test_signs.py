"""The table of signs in the description of the geometry, cell by cell."""

import math
import re

import pytest

from varnoth_run import EXAMPLES, make, run

PAGE = EXAMPLES.parent / "docs" / "geometry.md"
TABLE = re.findall(r"^\| (right|left) \| (\w+) \| (east|swapped) \| (.*) \|$",
                   PAGE.read_text(), re.MULTILINE)

assert len({row[:3] for row in TABLE}) == 8


@pytest.mark.parametrize("look, way, slave, signs", TABLE)
def test_row(tmp_path, look, way, slave, signs):
    pair = make.Example(start=0.5 if way == "ascending" else math.pi - 0.5)
    pair.look = {"master": look, "slave": look}
    if slave == "swapped":
        pair.orbits = {"master": pair.orbits["slave"], "slave": pair.orbits["master"]}
    pair.write(tmp_path)
    pool = run(tmp_path).pool()
    assert (pool["sensor_look_direction"], pool["equator_crossing_direction"]) == (look, way)
    found = (pool["eff_baseline"], pool["height_conversion_factor"],
             pool["flat_phase_poly_early_az"][0], pool["varnoth_deltaR"])
    assert " | ".join("+" if value > 0 else "-" for value in found) == signs


def test_identical_orbits_have_no_height_conversion(ready, pair):
    pair.slave = pair.master
    pool = run(pair.write(ready)).pool()
    assert pool["height_conversion_factor"] == 999999999999999.0 / 22
    assert pool["early_az_phase_to_height_conv"] == [999999999999999.0] * 11
    assert abs(pool["varnoth_deltaR"]) < 1e-8  # the slave search stops at 1e-9 s
