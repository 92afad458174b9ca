"""varnoth-tools import: scenes of other processors, ephemerides and pairs, made of the examples' circular orbits and
run, so that results can be compared with those of pools that were written without the tools."""

import datetime
import math
import os
import subprocess
from pathlib import Path

import pytest

from varnoth_run import BINARY, EXAMPLES, Pair, make, run

TOOLS = Path(os.environ.get("VARNOTH_TOOLS_BINARY", BINARY.parents[2] / "tools" / "varnoth-tools"))
pytestmark = pytest.mark.skipif(not TOOLS.exists(), reason="varnoth-tools is not built")
LIGHT = 299792458.0
EXAMPLE = make.Example(kind="utc")
STEPS = range(-6, 7)  # of 10 s around 01:00


def vectors(orbit, scale=1.0):
    return [(10 * i, *([scale * x for x in orbit.state(10.0 * i, k)] for k in (0, 1))) for i in STEPS]


def numbers(*lists):
    return " ".join(f"{x:.9f}" for values in lists for x in values)


def day_of(name):
    return make.FIRST_DAY + datetime.timedelta(EXAMPLE.days[name])


def gmtsar(folder, name, orbit):
    day = day_of(name)
    number = (day - datetime.date(day.year, 1, 1)).days
    rows = [f"{day.year} {number} {3600 + t:.6f} {numbers(p, v)}\n" for t, p, v in vectors(orbit)]
    (folder / f"{name}.LED").write_text(f"13 {day.year} {number} 3540.000000 10.000\n" + "".join(rows))
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
        f"time_of_first_state_vector: 3540.0 s\nstate_vector_interval: 10.0 s\n{rows}")
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
            assert done.returncode == 0 and "by everett_8" in done.stdout and "12" not in done.stderr
        else:
            pools.append(scene(tmp_path, name, write={"gmtsar": gmtsar, "gamma": gamma}[source]))
    done = tool("pair", *pools, "--out", made, "--height", "-12.5", "--lines", "500:1499", "--samples", "1000:3999")
    assert (done.returncode, done.stderr) == (0, "")
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
    "gmtsar clocks": ("clock_start = 313", "clock_start = 314", "differs from SC_clock_start"),
    "gmtsar side": ("lookdir = R", "lookdir = N", "neither R nor L"),
    "gmtsar no file": (".LED", ".XYZ", "master.XYZ:1: error: No such"),
    "gmtsar key": ("num_patches", "patches", "has no num_patches"),
    "gmtsar wavelength": ("radar_wavelength = 0", "radar_wavelength = 5", "radar frequency"),
    "gmtsar far away": (" = 2026313.", " = 2026312.", "differs"),
    "gamma looks": ("range_looks: 1", "range_looks: 4", ":8: error: range_looks: a multi-looked"),
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
    "oem useable": ("META_STOP", "USEABLE_STOP_TIME = 2026-11-10T01:00:04\nMETA_STOP", "not within"),
    "oem order": ("T01:00:10", "T00:59:50", ":20: error: is not later"),
    "oem number": ("T01:00:10.000000 ", "T01:00:10.000000 x", "is no number"),
    "oem keyword within": ("2026-314T01:00:10.000000", "KEY = ", "a vector has a time"),
    "oem degree": ("DEGREE = 7", "DEGREE = 0", "degree of 1 to 15"),
    "oem cut": ("META_STOP", "", "neither a keyword"),
}


@pytest.mark.parametrize("name", BAD)
def test_bad_input_ends_with_one_line_and_nothing_written(tmp_path, name):
    kind, (old, new, wanted) = name.split()[0], BAD[name]
    write = {"gmtsar": gmtsar, "gamma": gamma, "oem": oem}[kind]
    more = ["--scene", scene(tmp_path)] if kind == "oem" else []
    source = write(tmp_path, "master", EXAMPLE.orbits["master"])
    text = source.read_text()
    assert old in text
    source.write_text(text.replace(old, new))
    before = sorted(tmp_path.iterdir())
    done = tool(kind, source, *more, "--out", tmp_path / "new.pool")
    assert done.returncode == 1 and wanted in done.stderr and ": error: " in done.stderr
    assert done.stderr.count("error:") == 1 and sorted(tmp_path.iterdir()) == before


@pytest.mark.parametrize("name, old, new, wanted", [
    ("centre", "title:", "center_latitude: 60 x\ncenter_longitude: 100 x\ntitle:", "the stated centre is"),
    ("few vectors", "number_of_state_vectors: 13", "number_of_state_vectors: 8", ""),
    ("velocities", "adc_", "adc_", "15.0 mm/s off the derivative"),
    ("resampled", "range_pixel_spacing: 1.49", "range_pixel_spacing: 1.499", ""),
    ("long title", "title: ", "title: " + 1000 * '"', ""),
])
def test_gamma_in_doubt(tmp_path, name, old, new, wanted):
    orbit = EXAMPLE.orbits["master"]
    source = gamma(tmp_path, "master", orbit)
    text = source.read_text().replace(old, new)
    if name == "velocities":  # 15 mm/s to the east of the satellite, which is along the line of sight in part
        east = [-math.sin(1.0), math.cos(1.0), 0.0]
        for i, (_, _, v) in enumerate(vectors(orbit), 1):
            text = text.replace(numbers(v), numbers([a + 0.015 * b for a, b in zip(v, east)]))
    source.write_text(text)
    done = tool("gamma", source, "--out", tmp_path / "a.pool")
    assert done.returncode == 0 and wanted in done.stderr and bool(wanted) == bool(done.stderr)
    pool = (tmp_path / "a.pool").read_text()
    assert ('"polynom"' in pool) == (name == "few vectors") and ("resampled" in pool) == (name == "resampled")
    assert max(map(len, pool.splitlines())) < 1024  # a run reads on in the next line


def test_hermites_line_takes_the_vectors_at_both_its_ends(tmp_path):
    source = oem(tmp_path, "master", EXAMPLE.orbits["master"])
    source.write_text(source.read_text().replace("LAGRANGE", "HERMITE").replace("DEGREE = 7", "DEGREE = 1"))
    done = tool("oem", source, "--scene", scene(tmp_path), "--out", tmp_path / "a.pool")
    assert (done.returncode, done.stderr) == (0, "") and "by localhermite_0_2" in done.stdout


def test_a_vector_beside_the_scene_that_no_satellite_has(tmp_path):
    source = gmtsar(tmp_path, "master", EXAMPLE.orbits["master"])
    led = tmp_path / "master.LED"
    rows = led.read_text().splitlines(keepends=True)
    led.write_text("".join([rows[0], *(f"2026 313 {3490 + 10 * i} 9e6 0 0 0 7e3 0\n" for i in range(5)), *rows[1:]]))
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
    "frequency": ([("5.405", "5.505")], {}, [], 0, "radar frequencies"),
    "lines": ([], {}, ["--lines", "0:2001"], 1, "the scene has 0:2000"),
    "no lines": ([], {}, ["--lines", "5"], 2, "FIRST:LAST"),
    "key": ([("n_lines", "lines")], {}, [], 1, "has no n_lines"),
}


@pytest.mark.parametrize("name", SHIFT)
def test_scenes_that_make_no_pair(tmp_path, name):
    changes, orbit, words, status, wanted = SHIFT[name]
    master = scene(tmp_path)
    slave = scene(tmp_path, "slave", make.Circle(**{"aside": 120.0, **orbit}))
    text = slave.read_text()
    for old, new in changes:
        assert old in text
        text = text.replace(old, new)
    slave.write_text(text)
    done = tool("pair", master, slave, "--out", tmp_path / "pair", *words)
    assert done.returncode == status and wanted in done.stderr and bool(wanted) == bool(done.stderr), done.stderr
    assert (tmp_path / "pair").exists() == (status == 0)


def test_a_scene_with_itself_goes_through_a_stack(tmp_path):
    master = scene(tmp_path)
    done = tool("pair", master, master, "--out", tmp_path / "pair")
    assert done.returncode == 0 and "the master's own scene" in done.stderr
    subprocess.run([EXAMPLES / "stack" / "run_pair", "pair", "results"], cwd=tmp_path, check=True,
                   env={**os.environ, "VARNOTH": str(BINARY)})
    assert (tmp_path / "results" / "pair" / "insar.pool").read_text("latin-1").count("eff_baseline") == 1
