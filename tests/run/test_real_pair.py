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


def on_ellipsoid(latitude, longitude, height=0.0):
    a, b = 6378137.0, 6356752.31424499955
    e2 = 1 - b * b / (a * a)
    phi, lam = math.radians(latitude), math.radians(longitude)
    n = a / math.sqrt(1 - e2 * math.sin(phi) ** 2)
    return [(n + height) * math.cos(phi) * math.cos(lam), (n + height) * math.cos(phi) *
            math.sin(lam), (n * (1 - e2) + height) * math.sin(phi)]


class TestPublished:
    def test_position_at_the_lines_time(self, results):
        vectors = earth_vectors(results, "insar.pool")
        for p in points():
            truth = on_ellipsoid(p["latitude_at_line_time_deg"], p["longitude_at_line_time_deg"])
            # 0.01 m, and half a unit of the log's last digit per axis
            assert math.dist(vectors[p["k"]][p["i"]], truth) < 0.01 + 0.0087

    def test_corners_are_the_positions_in_single_precision(self, results):
        pool = results["insar.pool"].pool()
        metres = math.radians(1) * 6371000
        for p in points():
            if p["i"] != 5:
                prefix = f"{LINES[p['k']]}_{'near' if p['i'] == 0 else 'far'}_rg_"
                north = pool[prefix + "latitude"] - p["latitude_at_line_time_deg"]
                east = pool[prefix + "longitude"] - p["longitude_at_line_time_deg"]
                assert abs(north) * metres < 0.21
                assert abs(east) * metres * math.cos(math.radians(p["latitude_deg"])) < 0.51

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
            # 0.01 m, and half a unit of the table's last digit
            assert abs(perpendicular - abs(line["perpendicular_m"])) < 0.015
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
class TestIndependent:
    @pytest.mark.parametrize("scene_name, quantity, key, tolerance", [
        ("master", "range_distance", "master_range_m", 1e-6),
        ("slave", "range_distance", "slave_range_m", 1e-6),
        ("master", "look_angle", "master_look_deg", 1e-9),
        ("slave", "look_angle", "slave_look_deg", 1e-9),
        ("master", "incidence_angle", "master_incidence_deg", 1e-9),
        ("slave", "incidence_angle", "slave_incidence_deg", 1e-9),
    ])
    def test_swept_values(self, results, name, scene_name, quantity, key, tolerance):
        found = swept(results, name, scene_name, quantity)
        worst = max(abs(found[k][i] - scene(name)["derived"][key][k][i])
                    for k in (0, 1) for i in range(11))
        assert worst < tolerance

    def test_metres_per_cycle(self, results, name):
        pool = results[name].pool()
        derived = scene(name)["derived"]
        for k, line in enumerate(LINES):
            for found, truth in zip(pool[line + "_phase_to_height_conv"],
                                    derived["metres_per_cycle"][k]):
                assert abs(found / truth - 1) < 1e-7
        assert abs(pool["height_conversion_factor"] / derived["mean_metres_per_cycle"] - 1) < 1e-7

    def test_means(self, results, name):
        pool, derived = results[name].pool(), scene(name)["derived"]
        assert abs(pool["varnoth_deltaR"] - derived["mean_delta_r_m"]) < 1e-6
        # proportional to 1e-7 of the metres per cycle at 130 m, and a single-precision incidence
        assert abs(abs(pool["eff_baseline"]) -
                   abs(derived["predicted_effective_baseline_m"])) < 2e-5
        simulated = next(float(t.split(":")[1]) for t in results[name].levels("INFO ")
                         if "simulation" in t)
        mean = sum(sum(line) for line in derived["effective_baseline_m"]) / 22
        assert abs(abs(simulated) - abs(mean)) < 1e-4
        # Both have the sign that the metres per cycle have not.
        assert max(simulated, pool["eff_baseline"]) * pool["height_conversion_factor"] < 0
        assert min(simulated, pool["eff_baseline"]) * pool["height_conversion_factor"] < 0

    def test_single_values(self, results, name):
        pool, own = results[name].pool(), scene(name)
        derived = own["derived"]
        angle, phase = derived["master_incidence_deg"], derived["phase_cycles"]
        fringes = sum(line[10] - line[0] for line in phase) / 2
        wanted = {
            "incidence_angle_near_range": angle[0][0], "incidence_angle_mid_range": angle[1][5],
            "incidence_angle_far_range": angle[0][10],
            "ssc_pixel_spacing_ground_range": 299792458 / (2 * own["range_sampling_hz"]) /
            math.sin(math.radians(angle[1][10])),  # of the last sample
            "fringe_frequency_range": fringes / (own["n_samples"] - 1),
            "fringe_frequency_azimuth": (phase[1][5] - phase[0][5]) / own["n_lines"],
            **{f"center_{axis}": sum(pool[f"{line}_{side}_rg_{axis}"] for line in LINES
                                     for side in ("near", "far")) / 4
               for axis in ("latitude", "longitude")},
        }
        for key, value in wanted.items():
            # single precision, or fringes over 1500 lines of ranges that agree to 1e-6 m
            assert abs(pool[key] - value) < max(1e-6 * abs(value), 1e-7), key

    def test_phase_by_its_polynomial_and_misfit(self, results, name):
        # The largest distance of the polynomials from the sweep's phase is the misfit in the log.
        pool, derived = results[name].pool(), scene(name)["derived"]
        stated = next(float(t.split(":")[1]) for t in results[name].levels("INFO ")
                      if t.startswith("Maximum error"))
        step = (scene(name)["n_samples"] - 1) / 10
        worst = 0.0
        for k, line in enumerate(LINES):
            p = pool[f"flat_phase_poly_{line}"]
            for i, truth in enumerate(derived["phase_cycles"][k]):
                value = sum(c * (i * step) ** j for j, c in enumerate(p))
                worst = max(worst, abs(value - truth))
        assert abs(worst - stated) < 2e-4  # the phase's, and the log's last digit
