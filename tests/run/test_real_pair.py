"""The real pair against what others published about it."""

import json
import math
import re
import shutil
from pathlib import Path

import pytest

from varnoth_run import EXAMPLES, arguments, run

TRUTH = json.loads((Path(__file__).parent / "expected" / "real_pair_truth.json").read_text())
SCENE, BASELINE_SCENE = TRUTH["scenes"]
LINES = ("early_az", "late_az")


def run_scene(directory, scene, **changed):
    pair = shutil.copytree(EXAMPLES / "real_pair", directory / "pair")
    done = run(pair, arguments(ParameterPool=scene["insar_pool"], **changed))
    return done, done.pool(scene["insar_pool"])


def on_ellipsoid(latitude, longitude):
    a, b = 6378137.0, 6356752.31424499955
    phi, lam = math.radians(latitude), math.radians(longitude)
    n = a * a / math.hypot(a * math.cos(phi), b * math.sin(phi))
    x, z = n * math.cos(phi), n * (b / a)**2 * math.sin(phi)
    return [x * math.cos(lam), x * math.sin(lam), z]


@pytest.mark.parametrize("point", SCENE["points"])
def test_published_point(tmp_path, point):
    """The points have heights of their own, which show in the angles."""
    done, pool = run_scene(tmp_path, SCENE, LocalHeight=repr(point["height_m"]))
    k, i = point["k"], point["i"]
    vectors = re.findall(r"Earth vector : \((.*)\)", "\n".join(done.log))
    truth = on_ellipsoid(point["latitude_at_line_time_deg"], point["longitude_at_line_time_deg"])
    # 0.01 m, and half a unit of the log's last digit per axis
    assert math.dist(map(float, vectors[11 * k + i].split()), truth) < 0.01 + 0.0087
    for quantity, key, tolerance in (("look_angle", "look_angle_deg", 2e-7),
                                     ("incidence_angle", "incidence_geodetic_deg", 2e-7),
                                     ("range_distance", "slant_range_m", 1e-6)):
        assert abs(pool[f"master_{LINES[k]}_{quantity}"][i] - point[key]) < tolerance, quantity


@pytest.mark.parametrize("point", TRUTH["third_party_baseline"])
def test_perpendicular_and_parallel_baseline(tmp_path, point):
    done, pool = run_scene(tmp_path, BASELINE_SCENE)
    k, i = point["k"], point["i"]
    effective = re.findall(r"\| *\d+\|[^|]*e[^|]*\|[^|]*\|([^|]*)\|", "\n".join(done.log))
    # The effective baseline still holds the part along the track.
    along_track = BASELINE_SCENE["derived"]["along_track_m"][k][i]
    perpendicular = math.sqrt(float(effective[11 * k + i])**2 - along_track**2)
    assert abs(perpendicular - abs(point["perpendicular_m"])) < 0.015  # 0.01 and half a digit
    # The difference of two ranges is the projection but for the square of the other part.
    master, slave = (pool[f"{who}_{LINES[k]}_range_distance"][i] for who in ("master", "slave"))
    parallel = master - slave + perpendicular**2 / (2 * master)
    assert abs(parallel - point["parallel_m"]) < 0.02
