"""The real pair against what others published about it, and against an independent calculation."""

import json
import math
import re
import shutil
from pathlib import Path

import pytest

from varnoth_run import EXAMPLES, arguments, run

DATA = EXAMPLES / "real_pair"
TRUTH = json.loads((Path(__file__).parent / "expected" / "real_pair_truth.json").read_text())
LINES = ("early_az", "late_az")
SCENES = ("insar.pool", "insar_baseline.pool")


def run_pair(tmp_path_factory, insar_pool, **changed):
    directory = tmp_path_factory.mktemp("real")
    for pool in ("master.pool", "slave.pool"):
        shutil.copy(DATA / pool, directory)
    shutil.copy(DATA / insar_pool, directory / "insar.pool")
    done = run(directory, arguments(lfl="TRACE", **changed))
    assert done.status == 0, done.alarms
    return done


@pytest.fixture(scope="module")
def results(tmp_path_factory):
    """Results by InSAR pool; each run has a directory of its own."""
    return {name: run_pair(tmp_path_factory, name) for name in SCENES}


@pytest.fixture(scope="module")
def at_height_of(tmp_path_factory):
    """Results at the heights of the published points, which differ along a line and show in angles."""
    return {i: run_pair(tmp_path_factory, "insar.pool", LocalHeight=repr(p["height_m"]))
            for p in points() if p["k"] == 0 for i in (p["i"],)}


def scene(name):
    return next(s for s in TRUTH["scenes"] if s["insar_pool"] == name)


def points():
    return scene("insar.pool")["points"]


def swept(results, name, scene_name, quantity):
    """The two times eleven values of a vector result."""
    pool = results[name].pool()
    return [pool[f"{scene_name}_{line}_{quantity}"] for line in LINES]


def earth_vectors(results, name):
    """Target positions of the sweep as the log tells them, to the centimetre."""
    rows = [text.split("(")[1].rstrip(")").split() for text in results[name].levels("DEBUG")
            if "Earth vector" in text]
    return [[[float(x) for x in r] for r in rows[11 * k:11 * k + 11]] for k in (0, 1)]


def on_ellipsoid(latitude, longitude):
    a, b = 6378137.0, 6356752.31424499955
    e2 = 1 - b * b / (a * a)
    phi, lam = math.radians(latitude), math.radians(longitude)
    n = a / math.sqrt(1 - e2 * math.sin(phi) ** 2)
    across = n * math.cos(phi)
    return [across * math.cos(lam), across * math.sin(lam), n * (1 - e2) * math.sin(phi)]


class TestPublished:
    def test_position_at_the_lines_time(self, results):
        vectors = earth_vectors(results, "insar.pool")
        for p in points():
            truth = on_ellipsoid(p["latitude_at_line_time_deg"], p["longitude_at_line_time_deg"])
            # 0.01 m, and half a unit of the log's last digit per axis
            assert math.dist(vectors[p["k"]][p["i"]], truth) < 0.01 + 0.0087

    @pytest.mark.parametrize("quantity, key, tolerance", [
        ("look_angle", "look_angle_deg", 2e-7),
        ("incidence_angle", "incidence_geodetic_deg", 2e-7),
        ("range_distance", "slant_range_m", 1e-6),
    ])
    def test_angles_and_range(self, at_height_of, quantity, key, tolerance):
        for p in points():
            values = swept(at_height_of, p["i"], "master", quantity)
            assert abs(values[p["k"]][p["i"]] - p[key]) < tolerance

    def test_perpendicular_and_parallel_baseline(self, results):
        name = "insar_baseline.pool"
        derived = scene(name)["derived"]
        master = swept(results, name, "master", "range_distance")
        slave = swept(results, name, "slave", "range_distance")
        table = [[float(cell) for cell in text.strip("|").split("|")]
                 for text in results[name].levels("INFO ") if re.match(r"\| *\d+\|.*e[-+]", text)]
        for line in TRUTH["third_party_baseline"]:
            k, i = line["k"], line["i"]
            # The effective baseline still holds the part along the track.
            perpendicular = math.sqrt(table[11 * k + i][3]**2 - derived["along_track_m"][k][i]**2)
            assert abs(perpendicular - abs(line["perpendicular_m"])) < 0.015  # 0.01 and half a digit
            # The difference of two ranges is the projection but for the square of the other part.
            difference = master[k][i] - slave[k][i]
            parallel = difference + perpendicular**2 / (2 * master[k][i])
            assert abs(parallel - line["parallel_m"]) < 0.02

    def test_heading_and_spacing(self, results):
        pool = results["insar.pool"].pool()
        assert abs(pool["heading_angle"] - TRUTH["annotated_platform_heading_deg"]) < 0.2
        annotated = TRUTH["annotated_azimuth_pixel_spacing_m"]
        assert abs(pool["ssc_pixel_spacing_azimuth"] / annotated - 1) < 0.01
        assert pool["equator_crossing_direction"] == TRUTH["pass_direction"]
        assert pool["sensor_look_direction"] == TRUTH["look_direction"]


@pytest.mark.parametrize("name", SCENES)
def test_independent(results, name):
    """A pair of the size that is flown; test_generic_pair.py holds the rest of the results."""
    derived = scene(name)["derived"]
    for quantity, key, tolerance in (
            ("range_distance", "range_m", 1e-6),  # orbits of samples that are rounded to 1e-6 m
            ("look_angle", "look_deg", 1e-9), ("incidence_angle", "incidence_deg", 1e-9)):  # 1e-5 m
        for who in ("master", "slave"):
            found = swept(results, name, who, quantity)
            assert max(abs(found[k][i] - derived[f"{who}_{key}"][k][i])
                       for k in (0, 1) for i in range(11)) < tolerance, (who, quantity)
