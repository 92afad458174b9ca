"""varnoth-tools import: scenes of other processors, ephemerides and pairs, made of the examples' circular orbits and
run, so that results can be compared with those of pools that were written without the tools."""

import datetime
import json
import math
import os
import re
import subprocess

import pytest

import test_import_sentinel1 as sentinel1
from varnoth_run import BINARY, EXAMPLES, TOOLS, Pair, Run, make, run

pytestmark = pytest.mark.skipif(not TOOLS.exists(), reason="varnoth-tools is not built")
LIGHT = 299792458.0
EXAMPLE = make.Example(kind="utc")
STEPS = range(-6, 7)  # of 10 s around 01:00, and
PART = 0.125  # seconds more


def vectors(orbit, scale=1.0):
    return [(10 * i + PART, *([scale * x for x in orbit.state(10 * i + PART, k)] for k in (0, 1))) for i in STEPS]


def numbers(*lists):
    return " ".join(f"{x:.9f}" for values in lists for x in values)


def day_of(name):
    return make.FIRST_DAY + datetime.timedelta(EXAMPLE.days[name])


def gmtsar(folder, name, orbit):
    day = day_of(name)
    number = (day - datetime.date(day.year, 1, 1)).days
    rows = [f"{day.year} {number} {3600 + t:.6f} {numbers(p, v)}\n" for t, p, v in vectors(orbit)]
    (folder / f"{name}.LED").write_text(f"13 {day.year} {number} 3540.125000 10.000\n" + "".join(rows))
    clock = number + 3601.25 / 86400
    (folder / f"{name}.PRM").write_text(
        f"SC_identity = 10\nnum_valid_az = 2001\nnum_patches = 1\nnum_rng_bins = 5001\nPRF = 500.0\nfd1 = 0.0\n"
        f"SC_clock_start = {day.year * 1000 + clock:.10f}\nclock_start = {clock:.12f}\nlookdir = R\n"
        f"near_range = {LIGHT * 0.0055 / 2:.6f}\nrng_samp_rate = 1.0D8\nradar_wavelength = {LIGHT / 5.405e9:.12f}\n"
        f"equatorial_radius = 6378137.0\npolar_radius = 6356752.314245\nled_file = {name}.LED\n")
    return folder / f"{name}.PRM"


def gamma(folder, name, orbit):
    day = day_of(name)
    rows = "".join(f"state_vector_position_{i}: {numbers(p)} m m m\nstate_vector_velocity_{i}: {numbers(v)} m/s\n"
                   for i, (_, p, v) in enumerate(vectors(orbit), 1))
    (folder / f"{name}.par").write_text(
        f"title: {name}.tiff S1A-IW-IW1-VV-101 (x)\nsensor: S1A IW1\ndate: {day:%Y %m %d}\nstart_time: "
        f"3601.25 s\nazimuth_line_time: 2.0e-03 s\nazimuth_lines: 2001\nrange_samples: 5001\nrange_looks: 1\n"
        f"image_geometry: SLANT_RANGE\nazimuth_deskew: ON\nrange_pixel_spacing: {LIGHT / 2e8:.9f} m\n"
        f"near_range_slc: {LIGHT * 0.0055 / 2:.6f} m\nazimuth_angle: 90.0 degrees\nradar_frequency: 5.405e9 Hz\n"
        f"adc_sampling_rate: 1.0e8 Hz\nprf: 500.00001 Hz\nazimuth_proc_bandwidth: 400.0 Hz\n"
        f"earth_semi_major_axis: 6378137.0 m\nearth_semi_minor_axis: 6356752.314245 m\nnumber_of_state_vectors: 13\n"
        f"time_of_first_state_vector: {3540 + PART} s\nstate_vector_interval: 10.0 s\n{rows}")
    return folder / f"{name}.par"


def oem(folder, name, orbit, ahead=0.0, system="UTC"):
    start = datetime.datetime.combine(day_of(name), datetime.time(1))
    times = [(start + datetime.timedelta(seconds=t + ahead), p, v) for t, p, v in vectors(orbit, 1e-3)]
    rows = "".join(f"{t:%Y-%jT%H:%M:%S.%f} {numbers(p, v)}\n" for t, p, v in times)
    (folder / f"{name}.oem").write_text(
        f"CCSDS_OEM_VERS = 2.0\nMETA_START\nOBJECT_NAME = SAT\nOBJECT_ID = 1\nCENTER_NAME = Earth\n"
        f"REF_FRAME = ITRF2014\nTIME_SYSTEM = {system}\nSTART_TIME = {times[0][0].isoformat()}\n"
        f"INTERPOLATION = LAGRANGE\nINTERPOLATION_DEGREE = 7\nMETA_STOP\n\n{rows}COVARIANCE_START\n1\nCOVARIANCE_STOP\n")
    return folder / f"{name}.oem"


def replaced(path, *edits):
    text = path.read_text()
    for old, new in edits:
        assert old in text
        text = text.replace(old, new)
    path.write_text(text)


def tool(*words):
    return subprocess.run([TOOLS, "import", *words], capture_output=True, text=True, check=False)


def scene(folder, name="master", orbit=None, write=gamma):
    """Imports the scene of an example, and gives its pool."""
    source, pool = write(folder, name, orbit or EXAMPLE.orbits[name]), folder / f"{name}.pool"
    done = tool(write.__name__, source, "--out", pool)
    assert (done.returncode, done.stderr) == (0, ""), done.stderr
    return pool


@pytest.mark.parametrize("source", ["gmtsar", "gamma", "oem"])
def test_a_pair_gives_the_results_of_pools_made_by_hand(tmp_path, source):
    example, made = EXAMPLE, tmp_path / "made"
    pools = []
    for name in ("master", "slave"):
        if source == "oem":  # of a scene whose own orbit is 300 m off
            wrong = scene(tmp_path, name, make.Circle(aside=300.0))
            pools.append(tmp_path / f"{name}_new.pool")
            file = oem(tmp_path, name, example.orbits[name], *((37.0, "TAI") if name == "slave" else ()))
            done = tool("oem", file, "--scene", wrong, "--out", pools[-1])
            assert done.returncode == 0 and "by everett_6" in done.stdout and "12" not in done.stderr
        else:
            pools.append(scene(tmp_path, name, write={"gmtsar": gmtsar, "gamma": gamma}[source]))
    done = tool("pair", *pools, "--out", made, "--height", "-12.5", "--lines", "500:1499", "--samples", "1000:3999")
    assert (done.returncode, done.stderr) == (0, "")
    shown = [TOOLS, "pool", "show", "--json", *made.glob("*.pool")]
    for pool in json.loads(subprocess.run(shown, capture_output=True, check=True).stdout):
        assert [entry["key"] for entry in pool["entries"] if not entry["comment"]] == []
    wanted = Pair(example)
    wanted.insar.update(n_lines=("INT_32", 1000), n_samples=("INT_32", 3000), local_height=("FLT_15", -12.5))
    for name in ("master", "slave"):
        wanted.insar[f"{name}_first_az_time"] = ("FLT_15", 3602.25)
        wanted.insar[f"{name}_first_rg_time"] = ("FLT_15", 0.0055 + 1000 / 1.0e8)
    (tmp_path / "wanted").mkdir()
    first = run(wanted.write(tmp_path / "wanted"))
    second = run(made, ["-lsl", "INFO"])  # by the configuration that was written
    assert (first.status, second.status) == (0, 0)
    a, b = first.pool(), second.pool()
    assert set(a) == set(b)
    for key, value in a.items():
        if key.endswith(("_conv", "fringe_frequency_azimuth")) or "poly" in key:
            continue  # differences that amplify rounded digits; the ranges and baselines below hold them
        same = value == b[key] if isinstance(value, str) else value == pytest.approx(b[key], rel=2e-9, abs=2e-6)
        assert same, (key, value, b[key])
    again = tool("pair", *pools, "--out", made)
    assert again.returncode == 1 and "not empty" in again.stderr
    assert not list(tmp_path.glob("*.??????")), "something is left behind"


# An edit of the file's text (its LED file's where the name says so), and what is told. Nothing is written then.
BAD = {
    "gmtsar no number": ("PRF = 500.0", "PRF = nan", ":5: error: PRF"),
    "gmtsar clocks": ("\nclock_start = 313.041", "\nclock_start = 313.042", "differs from SC_clock_start"),
    "gmtsar uneven": (None, None, "uneven", "--interpolation", "everett_8"),
    "gmtsar side": ("lookdir = R", "lookdir = N", "neither R nor L"),
    "gmtsar no file": (".LED", ".XYZ", "master.XYZ:1: error: No such"),
    "gmtsar key": ("num_patches", "patches", "has no num_patches"),
    "gmtsar wavelength": ("radar_wavelength = 0", "radar_wavelength = 5", "radar frequency"),
    "gmtsar far away": (" = 2026313.", " = 2026312.", "differs"),
    "gamma looks": ("range_looks: 1", "range_looks: 4", ":8: error: range_looks: a multi-looked"),
    "gamma looks along the track": ("range_looks: 1", "azimuth_looks: 4", ":8: error: azimuth_looks: a multi-looked"),
    "gamma spacing": ("spacing: 1.49", "spacing: 2.99", "is not c / (2 adc_sampling_rate)"),
    "gamma day": ("start_time: 3601", "start_time: 36010000", "is not within days"),
    "gamma length": ("2.0e-03 s\nazimuth_lines: 2001", "0.09 s\nazimuth_lines: 200000", "scene length in s"),
    "gamma latitude": ("title:", "center_latitude: 95\ncenter_longitude: 0\ntitle:", "latitude in degrees"),
    "gamma bandwidth": ("bandwidth: 400", "bandwidth: 4", "azimuth bandwidth"),
    "gamma geometry": ("SLANT", "GROUND", "no slant range grid"),
    "gamma Doppler": ("deskew: ON", "deskew: OFF", "zero Doppler"),
    "gamma vectors": ("vectors: 13", "vectors: 14", "has no state_vector_position_14"),
    "gamma slow": ("azimuth_line_time: 2.0e-03", "azimuth_line_time: 1e300", "line rate in Hz of 1e-300"),
    "gamma date": ("date: 2026", "date: 1.0e300", "no year"),
    "gamma not covered": ("start_time: 3601", "start_time: 3801", "not covered"),
    "gamma radius": ("position_7: ", "position_7: 9", "km from the Earth's centre"),
    "gamma speed": ("velocity_7: ", "velocity_7: 9e3 0 0 ", "has a speed"),
    "gamma swapped": ("state_vector_position_7: ", "state_vector_position_7: 0 0 7e6 m\nx: ", "off the derivative"),
    "oem": ("CCSDS_OEM_VERS", "<oem", "no CCSDS ephemeris in text form"),
    "oem frame": ("ITRF2014", "EME2000", ":2: error: REF_FRAME EME2000 is not Earth-fixed"),
    "oem polar motion": ("ITRF2014", "TDR", "motion of the pole"),
    "oem centre": ("= Earth", "= MARS", "CENTER_NAME is MARS"),
    "oem time system": ("= UTC", "= MRT", "TIME_SYSTEM MRT"),
    "oem said to be GPS": ("= UTC", "= GPS", "m from the scene's former orbit"),
    "oem useable start": ("META_STOP", "USEABLE_START_TIME = 2026-11-10T01:00:02\nMETA_STOP", "not within"),
    "oem useable": ("META_STOP", "USEABLE_STOP_TIME = 2026-11-10T01:00:04\nMETA_STOP", "not within"),
    "oem order": ("T01:00:10", "T00:59:50", ":20: error: is not later"),
    "oem number": ("T01:00:10.125000 ", "T01:00:10.125000 x\0", "'x?"),
    "oem keyword within": ("2026-314T01:00:10.125000", "KEY = ", "a vector has a time"),
    "oem degree": ("DEGREE = 7", "DEGREE = 0", "degree of 1 to 15"),
    "oem cut": ("META_STOP", "", "neither a keyword"),
}


@pytest.mark.parametrize("name", BAD)
def test_bad_input_ends_with_one_line_and_nothing_written(tmp_path, name):
    kind, (old, new, wanted, *more) = name.split()[0], BAD[name]
    write = {"gmtsar": gmtsar, "gamma": gamma, "oem": oem}[kind]
    more += ["--scene", scene(tmp_path)] if kind == "oem" else []
    source = write(tmp_path, "master", EXAMPLE.orbits["master"])
    if old is None:  # the LED file then
        replaced(tmp_path / "master.LED", ("3610.125", "3610.126"))
    else:
        replaced(source, (old, new))
    before = sorted(tmp_path.iterdir())
    done = tool(kind, source, *more, "--out", tmp_path / "new.pool")
    assert done.returncode == 1 and wanted in done.stderr and ": error: " in done.stderr
    assert done.stderr.count("error:") == 1 and sorted(tmp_path.iterdir()) == before


MIDDLE = {side: sentinel1.target(3.25, 0.0055 + 2500e-8, side=side) for side in (1, -1)}
LATER = sentinel1.target(10.25, 0.0055 + 2500e-8)
RIGHT, LEFT = ({"antenna_look_direction": word, "center_latitude": MIDDLE[side][0], "center_longitude": MIDDLE[side][1]}
               for word, side in (("right", 1), ("left", -1)))
BASE = {"n_lines": 2001, "n_samples": 5001, "first_az_time": 3601.25, "first_rg_time": 0.0055, "prf": 500.0,
        "range_sampling_frequency": 1e8, "radar_frequency": 5.405e9, "orbit_interpolation": "everett_8",
        "orbit_reference_time": "10-NOV-2026/00:00:00.000000", "scene_name": "master", **RIGHT}
# Edits of the file, what differs in the pool then, what is told, and more words.
TAKEN = {
    "gmtsar": ([], {"satellite": "SC_identity 10", "az_bandwidth": 500.0}, ""),
    "gmtsar left": ([("lookdir = R", "lookdir = L")], LEFT, ""),
    "gmtsar patches": ([("az = 2001", "az = 1001"), ("patches = 1", "patches = 2")], {"n_lines": 2002}, ""),
    "gmtsar Doppler slope": ([("fd1 = 0.0", "fdd1 = 0.1")], {}, "Doppler of fdd1 = 0.1"),
    "gamma": ([], {"satellite": "S1A", "absolute_orbit": 101, "az_bandwidth": 400.0}, ""),
    "gamma left": ([("angle: 90", "angle: -90")], LEFT, ""),
    "gamma pulse rate": ([("prf: 500.00001", "prf: 700")], {}, ""),
    "gamma centre": ([("title:", "center_latitude: 28 x\ncenter_longitude: 100 x\ntitle:")], {
        "center_latitude": 28, "center_longitude": 100}, "the stated centre is"),
    "gamma few vectors": ([("vectors: 13", "vectors: 8")], {"orbit_interpolation": "polynom"}, ""),
    "gamma few behind": ([("vectors: 13", "vectors: 9"), ("start_time: 3601", "start_time: 3608")], {
        "first_az_time": 3608.25, "center_latitude": LATER[0], "center_longitude": LATER[1]},
        "7 state vectors lie ahead of the scene and 1 behind", "--interpolation", "everett_8"),
    "gamma empty": ([("prf: 500.00001 Hz", "prf: ")], {}, ""),
    "gamma resampled": ([("spacing: 1.49", "spacing: 1.499")], {
        "range_sampling_frequency": LIGHT / 2 / 1.49989622900}, ""),
}


@pytest.mark.parametrize("name", TAKEN)
def test_what_a_pool_takes_over(tmp_path, name):
    edits, differs, wanted, *more = TAKEN[name]
    kind = name.split()[0]
    source = {"gmtsar": gmtsar, "gamma": gamma}[kind](tmp_path, "master", EXAMPLE.orbits["master"])
    replaced(source, *edits)
    done = tool(kind, source, "--out", tmp_path / "a.pool", *more)
    assert done.returncode == 0 and wanted in done.stderr and bool(wanted) == bool(done.stderr), done.stderr
    pool = Run(tmp_path, 0, "", "").pool("a.pool")
    for key, value in (BASE | differs).items():
        near = abs(pool[key] - value) < 2e-3 if "center" in key else pool[key] == pytest.approx(value, rel=2e-8)
        assert near, (key, pool[key], value)
    assert pool["orbit_epoch"][0] == "10-NOV-2026/00:59:00.125000"


def test_velocities_in_doubt(tmp_path):
    orbit, wrong = EXAMPLE.orbits["master"], 0.015
    source = gamma(tmp_path, "master", orbit)
    east = [-math.sin(1.0), math.cos(1.0), 0.0]  # along the line of sight in part
    replaced(source, *((numbers(v), numbers([a + wrong * b for a, b in zip(v, east)])) for _, _, v in vectors(orbit)))
    sight = [a - b for a, b in zip(MIDDLE[1][2], orbit.state(3.25))]
    shift = abs(sum(wrong * a * b for a, b in zip(east, sight))) / math.hypot(*orbit.state(3.25, 1))
    done = tool("gamma", source, "--out", tmp_path / "a.pool")
    assert done.returncode == 0 and "15.0 mm/s off the derivative" in done.stderr
    assert f"errors of up to {shift:.2f} m along" in done.stderr


# Seconds ahead of UTC and the time system; a pattern in the file and what takes its place; the interpolation; what is told.
EPHEMERIDES = {
    "TT": (69.184, "TT", "$^", "", "everett_6", ""),
    "GPS": (18.0, "GPS", "$^", "", "everett_6", ""),
    "degree 9": (0.0, "UTC", "DEGREE = 7", "DEGREE = 9", "everett_8", ""),
    "degree 13": (0.0, "UTC", "DEGREE = 7", "DEGREE = 13", "everett_10", ""),
    "even degree": (0.0, "UTC", "DEGREE = 7", "DEGREE = 6", "localpolynom_0_7", ""),
    "uneven": (0.0, "UTC", r".*T01:00:30.*\n", "", "localpolynom_0_8", ""),
    "Hermite": (0.0, "UTC", "LAGRANGE", "HERMITE", "localhermite_0_4", ""),
    "accelerations": (0.0, "UTC", r"(T0\d:.* .*)", r"\1 0 0 0", "everett_6", ""),
    "WGS84": (0.0, "UTC", "ITRF2014", "WGS84", "everett_6", ""),
    "keyword": (0.0, "UTC", "META_STOP", "COLOUR = 1\nMETA_STOP", "everett_6", "line 11: COLOUR is no keyword"),
    "second segment": (0.0, "UTC", "META_START", None, "everett_6", ""),
}


@pytest.mark.parametrize("name", EPHEMERIDES)
def test_ephemerides(tmp_path, name):
    ahead, system, pattern, new, interpolation, wanted = EPHEMERIDES[name]
    orbit, old = EXAMPLE.orbits["master"], scene(tmp_path)
    new = oem(tmp_path, "master", orbit, -1000.0).read_text().partition("\n")[2] + "META_START" if new is None else new
    file = oem(tmp_path, "master", orbit, ahead, system)
    file.write_text(re.sub(pattern, new, file.read_text()))
    done = tool("oem", file, "--scene", old, "--out", tmp_path / "a.pool")
    assert done.returncode == 0 and wanted in done.stderr and bool(wanted) == bool(done.stderr), done.stderr
    assert "up to 0.00" in done.stdout and f"by {interpolation}\n" in done.stdout
    pool = Run(tmp_path, 0, "", "").pool("a.pool")
    kept = [v for v in vectors(orbit) if name != "uneven" or v[0] != 30 + PART]
    midnight = datetime.datetime(2026, 11, 10)
    assert pool["orbit_epoch"] == [f"{midnight + datetime.timedelta(seconds=3600 + t):%d-NOV-%Y/%H:%M:%S.%f}" for t, *_ in kept]
    assert pool["orbit_x"] == pytest.approx([p[0] for _, p, _ in kept], abs=1e-5)
    assert (tmp_path / "a.pool").read_text().count("Earth fixed in") == 6  # the former orbit's comments went with it


# An orbit aside in m, an edit of the scene's pool, and what is told. The tracks converge to cos 0.5 of that.
NO_ORBIT = {
    "near": (1100.0, "", "", ""), "far": (1200.0, "", "", "of another satellite"),
    "no rate": (0.0, "prf .*", "prf FLT_15 0", "line rate"),
    "other times": (0.0, "pool_double_utc", "pool_double", "must be orbit_pool_double_utc"),
    "days away": (0.0, "first_az_time .*", "first_az_time FLT_15 2e6", "is days away"),
    "two lists": (0.0, "orbit_x, orbit_y, orbit_z", "orbit_x, orbit_y", "names no three lists"),
}


@pytest.mark.parametrize("name", NO_ORBIT)
def test_scenes_that_take_no_orbit(tmp_path, name):
    aside, pattern, new, wanted = NO_ORBIT[name]
    pool = scene(tmp_path)
    pool.write_text(re.sub(pattern, new, pool.read_text()) if pattern else pool.read_text())
    done = tool("oem", oem(tmp_path, "master", make.Circle(aside=aside)), "--scene", pool, "--out", tmp_path / "a.pool")
    assert (done.returncode == 1) == bool(wanted) and wanted in done.stderr, done.stderr


def test_hermites_line_takes_the_vectors_at_both_its_ends(tmp_path):
    source = oem(tmp_path, "master", EXAMPLE.orbits["master"])
    source.write_text(source.read_text().replace("LAGRANGE", "HERMITE").replace("DEGREE = 7", "DEGREE = 1"))
    done = tool("oem", source, "--scene", scene(tmp_path), "--out", tmp_path / "a.pool")
    assert (done.returncode, done.stderr) == (0, "") and "by localhermite_0_2" in done.stdout


def test_an_ephemeris_that_is_coarse(tmp_path, monkeypatch):
    """A chord between vectors 10 s apart is a t (10 - t) / 2 inside of an orbit with the acceleration a."""
    orbit, old = EXAMPLE.orbits["master"], scene(tmp_path)
    file = oem(tmp_path, "master", orbit)
    replaced(file, ("DEGREE = 7", "DEGREE = 1"))
    done = tool("oem", file, "--scene", old, "--out", tmp_path / "a.pool")
    after = 5.25 - PART  # the last line
    inside = math.hypot(*orbit.state(5.25, 2)) * after * (10 - after) / 2
    assert float(re.search(r"up to (\S+) m from", done.stdout)[1]) == pytest.approx(inside, rel=1e-3)
    monkeypatch.setitem(globals(), "STEPS", range(-360, 361, 60))
    done = tool("oem", oem(tmp_path, "master", orbit), "--scene", old, "--out", tmp_path / "a.pool")
    assert done.returncode == 1 and "state vectors every 600 s are too far apart to interpolate" in done.stderr


def test_long_texts_stay_below_the_limit_of_a_line(tmp_path):
    source = gamma(tmp_path, "master", EXAMPLE.orbits["master"])
    replaced(source, ("title: ", "title: " + 1000 * '"'))
    assert tool("gamma", source, "--out", tmp_path / "a.pool").returncode == 0
    assert max(map(len, (tmp_path / "a.pool").read_text().splitlines())) < 1024  # a run reads on in the next line


def test_a_vector_beside_the_scene_that_no_satellite_has(tmp_path):
    source = gmtsar(tmp_path, "master", EXAMPLE.orbits["master"])
    led = tmp_path / "master.LED"
    rows = led.read_text().splitlines(keepends=True)
    led.write_text("".join([rows[0], *(f"2026 313 {3490 + PART + 10 * i} 9e6 0 0 0 7e3 0\n" for i in range(5)), *rows[1:]]))
    done = tool("gmtsar", source, "--out", tmp_path / "a.pool")
    assert done.returncode == 0 and "9000.0 km from the Earth's centre" in done.stderr
    assert "13 vectors are stated and 18 are there" in done.stderr


# What is changed in the slave's pool, its orbit, more words, the status, and what is told.
SHIFT = {
    "satellite": ([("S1A", "S1B")], {}, [], 1, "is of S1B, and the master of S1A: the satellites' paths are 0.1 km"),
    "tandem": ([("S1A", "S1B"), ("22-NOV", "10-NOV")], {}, ["--mode", "single_pass"], 0, ""),
    "single pass of two days": ([], {}, ["--mode", "single_pass"], 1, "need one orbit_reference_time"),
    "along the track": ([], {"start": 0.6}, [], 1, "the footprints are 6"),
    "other side of the Earth": ([], {"start": 0.5 + math.pi}, [], 1, "the footprints are 12"),
    "next track": ([("5001", "50001")], {"aside": -45000.0}, [], 1, "is of another track: the satellites' paths are 39.1 km"),
    "relative orbits": ([("108\n", "109\n")], {}, [], 1, "is of relative orbit 109, and the master of 108"),
    "other side": ([('"right"', '"left"')], {}, [], 1, "looks to the other side than the master"),
    "swath": ([("-iw1-", "-iw2-")], {}, [], 0, "is of swath IW2, and the master of IW1"),
    "no image": ([("2001\n", "0\n")], {}, [], 1, "is usual\n"),
    "sampling": ([("frequency         FLT_15          1.0", "frequency         FLT_15          1.1")], {}, [], 0, "range sampling"),
    "frequency": ([("5.405", "5.505")], {}, [], 0, "radar frequencies"),
    "lines": ([], {}, ["--lines", "0:2001"], 1, "the scene has 0:2000"),
    "no lines": ([], {}, ["--lines", "5"], 2, "FIRST:LAST"),
    "one line": ([], {}, ["--lines", "5:5"], 2, "FIRST:LAST"),
    "before the first line": ([], {}, ["--lines=-5:5"], 2, "FIRST:LAST"),
    "key": ([("n_lines", "lines")], {}, [], 1, "has no n_lines"),
}


@pytest.mark.parametrize("name", SHIFT)
def test_scenes_that_make_no_pair(tmp_path, name):
    changes, orbit, words, status, wanted = SHIFT[name]
    master = scene(tmp_path)
    slave = scene(tmp_path, "slave", make.Circle(**{"aside": 120.0, **orbit}))
    for pool in (master, slave):
        replaced(pool, ("n_lines ", "relative_orbit INT_32 108\n\nn_lines "),
                 (f'"{pool.stem}"', f'"s1a-iw1-slc-vv-{pool.stem}"'))
    replaced(slave, *changes)
    done = tool("pair", master, slave, "--out", tmp_path / "pair", *words)
    assert done.returncode == status and wanted in done.stderr and bool(wanted) == bool(done.stderr), done.stderr
    assert (tmp_path / "pair").exists() == (status == 0)


def test_the_slave_has_its_own_grid(tmp_path):
    master, slave = scene(tmp_path), scene(tmp_path, "slave")
    slave.write_text(re.sub(r"(first_az_time|first_rg_time|prf) .*", lambda key: f"{key[1]} FLT_15 " + {
        "first_az_time": "3601.5", "first_rg_time": "0.00551", "prf": "480"}[key[1]], slave.read_text()))
    done = tool("pair", master, slave, "--out", tmp_path / "pair", "--lines", "500:1499", "--samples", "1000:3999")
    assert done.returncode == 0, done.stderr
    pool = Run(tmp_path, 0, "", "").pool("pair/insar.pool")
    assert [pool[f"{who}_first_{what}_time"] for who in ("master", "slave") for what in ("az", "rg")] == pytest.approx(
        [3601.25 + 500 / 500, 0.0055 + 1000 / 1e8, 3601.5 + 500 / 480, 0.00551 + 1000 / 1e8], abs=1e-7)


def test_a_scene_with_itself_goes_through_a_stack(tmp_path):
    master = scene(tmp_path)
    done = tool("pair", master, master, "--out", tmp_path / "pair")
    assert done.returncode == 0 and "the master's own scene" in done.stderr
    subprocess.run([EXAMPLES / "stack" / "run_pair", "pair", "results"], cwd=tmp_path, check=True,
                   env={**os.environ, "VARNOTH": str(BINARY)})
    assert (tmp_path / "results" / "pair" / "insar.pool").read_text("latin-1").count("eff_baseline") == 1
