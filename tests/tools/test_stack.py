"""varnoth-tools stack plan: baselines against a calculation of the test's own, networks, and stacks that are none."""

import csv
import json
import math
import subprocess
from datetime import date, timedelta

import pytest

from varnoth_run import TOOLS

pytestmark = pytest.mark.skipif(not TOOLS.exists(), reason="varnoth-tools is not built")

EARTH, HEIGHT, ORBIT, LIGHT, TURN = 6370e3, 130.0, 7070e3, 299792458.0, 1.07e-3  # m, m, m, m/s, rad/s
START = date(2019, 11, 27)
# Days after the start, and the path: higher, to the north of the first one's (m), and turned to it (rad).
SCENES = {"a": (0, 0, 0, 0), "b": (12, 45, -130, 2e-6), "c": (36, -20, 75, -3e-6), "d": (48, 60, 210, 1e-6),
          "e": (400, 30, -5, 0)}


def state(time, higher, north, turned):
    """On a circle, flown towards the east over the equator, seconds after noon."""
    angle, radius = TURN * time, ORBIT + higher
    x, y = radius * math.cos(angle), radius * math.sin(angle)
    return [x, y - turned * north, north + turned * y]


def write_scene(folder, name, days, path, extra="", later=0.0, farther=0.0):
    day = (START + timedelta(days)).strftime("%d-%b-%Y").upper()
    lists = {f"orbit_{axis}": [repr(state(10.0 * i - 100, *path)[k]) for i in range(21)] for k, axis in enumerate("xyz")}
    lists["epochs"] = [f'"{day}/{11 + (i >= 10)}:{(58 + (10 * i + 20) // 60) % 60:02}:{(10 * i + 20) % 60:02}.000000"'
                       for i in range(21)]
    text = f"""orbit_representation STR "orbit_pool_double_utc"
orbit_interpolation STR "everett_8"
orbit_param_key STR "epochs"
orbit_value_key STR "orbit_x, orbit_y, orbit_z"
orbit_reference_time STR "{day}/00:00:00.000000"
n_lines INT_32 2001
n_samples INT_32 3001
first_az_time FLT_15 {43200.0 - 1.25 + later}
first_rg_time FLT_15 {5.3e-3 + farther}
prf FLT_15 800
az_bandwidth FLT_15 700
range_sampling_frequency FLT_15 5e7
radar_frequency FLT_15 5.3e9
antenna_look_direction STR "right"
scene_name STR "{name}"
ellipsoid_parameters FLT_15_V 0 9
 {{
{"".join(f"  {value}{chr(10)}" for value in [0] * 7 + [EARTH, EARTH])} }}
{extra}"""
    for key, values in lists.items():
        kind = "STR_V" if key == "epochs" else "FLT_15_V"
        text += f"{key} {kind} 0 {len(values)}\n {{\n" + "".join(f"  {value}\n" for value in values) + " }\n"
    folder.mkdir(exist_ok=True)
    (folder / f"{name}.pool").write_text(text)


@pytest.fixture(name="folder")
def scenes(tmp_path):
    for name, (days, *path) in SCENES.items():
        write_scene(tmp_path / "scenes", name, days, path)
    return tmp_path / "scenes"


def plan(folder, *arguments, status=0):
    out = folder.parent / "plan"
    done = subprocess.run([TOOLS, "stack", "plan", folder, "--out", out, *arguments], capture_output=True, text=True,
                          check=False)
    assert done.returncode == status, done.stderr
    read = json.loads((out / "plan.json").read_text()) if out.exists() else {}
    return read, done.stderr


def dot(a, b):
    return sum(x * y for x, y in zip(a, b))


def minus(a, b):
    return [x - y for x, y in zip(a, b)]


def closest(path, point):
    """Place and direction of flight where a path comes no nearer to a point, by halving."""
    low, high = -50.0, 50.0
    for _ in range(60):
        time = (low + high) / 2
        flight = minus(state(time + 0.01, *path), state(time - 0.01, *path))
        ahead = dot(flight, minus(point, state(time, *path))) > 0
        low, high = (time, high) if ahead else (low, time)
    return state(low, *path), [x / math.hypot(*flight) for x in flight]


def baseline(point, master, slave):
    (here, flight), (there, _) = closest(master, point), closest(slave, point)
    ray = minus(point, here)
    sight = [x / math.hypot(*ray) for x in ray]
    up = minus(here, [dot(here, sight) * s + dot(here, flight) * f for s, f in zip(sight, flight)])
    parts = minus(there, here)
    return dot(parts, up) / math.hypot(*up), dot(parts, sight), dot(parts, flight)


def test_baselines(folder):
    read, _ = plan(folder, "--height", str(HEIGHT), "--reference", "2020-01-02")
    dates = {name: str(START + timedelta(SCENES[name][0])) for name in SCENES}
    assert read["reference"] == dates["c"] and read["connected"]
    longitude, latitude = (math.radians(read["point"][key]) for key in ("longitude", "latitude"))
    point = [(EARTH + HEIGHT) * x for x in (math.cos(latitude) * math.cos(longitude),
                                            math.cos(latitude) * math.sin(longitude), math.sin(latitude))]
    # In the middle of one of the images: 1000 lines and 1500 samples behind its first.
    assert math.dist(closest(SCENES["a"][1:], point)[0], point) == pytest.approx(
        LIGHT / 2 * (5.3e-3 + 1500 / 5e7), abs=150)
    with open(folder.parent / "plan" / "pairs.csv", encoding="utf-8") as file:
        rows = {(row["master"], row["slave"]): row for row in csv.DictReader(file)}
    assert len(rows) == len(read["pairs"]) == 10
    of_date = {dates[name]: name for name in SCENES}
    for row, entry in zip(rows.values(), read["pairs"], strict=True):
        a, b = (SCENES[of_date[row[key]]] for key in ("master", "slave"))
        assert int(row["days"]) == entry["days"] == b[0] - a[0] > 0
        for key, value in zip(("perpendicular_m", "parallel_m", "along_track_m"), baseline(point, a[1:], b[1:])):
            assert float(row[key]) == entry[key] == pytest.approx(value, abs=2e-4), (row, key)
    for scene in read["scenes"]:
        parts = baseline(point, SCENES["c"][1:], SCENES[of_date[scene["date"]]][1:])
        assert scene["perpendicular_m"] == pytest.approx(parts[0], abs=2e-4)
        assert 0.97 < scene["overlap"] <= 1


def test_reference_and_overlap(folder):
    """By the model's own formulas; a scene 500 lines later and 1200 samples farther has 0.75 times 0.6 in common."""
    before, _ = plan(folder)
    write_scene(folder, "f", 60, (10, 80, 0), later=500 / 800, farther=1200 / 5e7)
    read, _ = plan(folder)
    assert read["point"]["latitude"] == pytest.approx(before["point"]["latitude"], abs=2e-3)  # not f's middle
    longitude, latitude = (math.radians(read["point"][key]) for key in ("longitude", "latitude"))
    up = [math.cos(latitude) * math.cos(longitude), math.cos(latitude) * math.sin(longitude), math.sin(latitude)]
    ray = minus(closest((0, 0, 0), [EARTH * x for x in up])[0], [EARTH * x for x in up])
    cosine = dot(ray, up) / math.hypot(*ray)
    critical = math.hypot(*ray) * 5e7 * math.sqrt(1 / cosine ** 2 - 1) / 5.3e9
    left = {}
    for pair in read["pairs"]:
        for date_ in (pair["master"], pair["slave"]):
            left[date_] = left.get(date_, 0) + (1 - abs(pair["perpendicular_m"]) / critical) * (
                1 - pair["days"] / (5 * 365.25))
    assert read["reference"] == max(left, key=left.get)
    assert {scene["date"]: scene["overlap"] for scene in read["scenes"]}[str(START + timedelta(60))] == pytest.approx(
        0.75 * 0.6, abs=0.02)


@pytest.mark.parametrize("arguments, wanted, parts", [
    ("--nearest 1", "ab bc cd de", 1), ("--nearest 2", "ab ac bc bd cd ce de", 1),
    ("--star --reference 2019-12-09", "ba bc bd be", 1), ("--max-days 36", "ab ac bc bd cd", 2),
    ("--max-days 35.9", "ab bc cd", 2), ("--max-days 11", "", 5), ("--delaunay --max-days 48", "ab ac ad bc cd", 2),
    ("--delaunay", "ab ac ad bc be cd ce de", 1)])
def test_networks(folder, arguments, wanted, parts):
    read, told = plan(folder, *arguments.split())
    of_date = {str(START + timedelta(SCENES[name][0])): name for name in SCENES}
    got = " ".join(of_date[pair["master"]] + of_date[pair["slave"]] for pair in read["pairs"])
    assert got == wanted
    assert read["connected"] == (parts == 1) and (parts == 1 or f"it has {parts} parts: 2019-11-27" in told)


def test_limit_of_the_baseline(folder):
    read, _ = plan(folder)
    amounts = sorted(abs(pair["perpendicular_m"]) for pair in read["pairs"])
    assert amounts[4] < amounts[5] and min(pair["perpendicular_m"] for pair in read["pairs"]) < -amounts[5]
    less, _ = plan(folder, "--max-baseline", str((amounts[4] + amounts[5]) / 2))
    assert sorted(abs(pair["perpendicular_m"]) for pair in less["pairs"]) == amounts[:5]


def test_directories_of_pairs(folder):
    for name in "abc":  # twice, and with a scene more: what is there stays
        (folder / f"{name}.pool").touch()
        plan(folder, "--nearest", "1", "--make", folder.parent / "pairs", "--height", "21.5")
    made = sorted((folder.parent / "pairs").iterdir())
    assert [path.name for path in made][:2] == ["pair_2019-11-27_2019-12-09", "pair_2019-12-09_2020-01-02"]
    assert (made[1] / "master.pool").read_bytes() == (folder / "b.pool").read_bytes()
    assert "local_height" in (made[1] / "insar.pool").read_text() and "2.15" in (made[1] / "insar.pool").read_text()
    (made[1] / "slave.pool").write_text("another")
    _, told = plan(folder, "--nearest", "1", "--make", folder.parent / "pairs", status=1)
    assert "pair_2019-12-09_2020-01-02:1: error: is there and not empty, and its slave.pool is not" in told
    (folder.parent / "file").touch()
    _, told = plan(folder, "--make", folder.parent / "file" / "x", status=1)
    assert told == f"{folder.parent}/file/x:1: error: Not a directory\n"


@pytest.mark.parametrize("days, path, extra, told", [
    (12, (0, 0, 0), "", "f.pool:1: error: is of 2019-12-09, as "), (90, (0, 21e3, 0), "", "another track"),
    (90, (0, 0, 0), "relative_orbit INT_32 7\n", None), (90, (0, 0, 0), "n_lines INT_32 5\n", None),
    (90, (0, 0, 0), "orbit_x FLT_15 1\n", "f.pool:28: error: orbit_x: is no vector"), (-1e5, (0, 0, 0), "", "no day")])
def test_no_stack(folder, days, path, extra, told):
    write_scene(folder, "f", days, path, extra)
    read, errors = plan(folder, status=0 if told is None else 1)
    assert told is None or (told in errors and read == {})


def test_two_tracks(folder):
    for name, (days, *path) in SCENES.items():
        write_scene(folder, name, days, path, f"relative_orbit INT_32 {'81' if name == 'd' else '108'}\n")
    read, told = plan(folder, status=1)
    assert read == {} and "d.pool:1: error: is of relative orbit 81, and 4 scenes are of relative orbit 108" in told
