"""varnoth-tools geometry: the numbers against others' and the step's own, all formats, all points, nothing touched."""

import csv
import io
import json
import math
import random
import re
import resource
import shutil
import signal
import subprocess
from pathlib import Path

import pytest

import make
from varnoth_run import EXAMPLES, TOOLS, Pair, arguments, run

pytestmark = pytest.mark.skipif(not TOOLS.exists(), reason="varnoth-tools is not built")
TRUTH = json.loads((Path(__file__).parents[1] / "run" / "expected" / "real_pair_truth.json").read_text())
STEP = arguments(FlatEarthPolyDegree=None, log_pp=None)


def tool(directory, *words, step=STEP, given=""):
    return subprocess.run([TOOLS, "geometry", *step, *words], cwd=directory, capture_output=True, text=True,
                          check=False, input=given, timeout=60)


def rows(directory, *words, step=STEP):
    done = tool(directory, *words, "--format", "json", step=step)
    assert (done.returncode, done.stderr) == (0, "")
    return json.loads(done.stdout)["points"]


@pytest.fixture
def real(tmp_path):
    return shutil.copytree(EXAMPLES / "real_pair", tmp_path / "pair")


# Columns by the independent calculation's names: the sign of the third party's perpendicular is its own.
TRUE_COLUMNS = {
    "latitude_deg": ("latitude_deg", 1, 1e-9), "longitude_deg": ("longitude_deg", 1, 1e-9),
    "range_m": ("master_range_m", 1, 1e-6), "slave_range_m": ("slave_range_m", 1, 1e-6),
    "range_difference_m": ("delta_r_m", 1, 1e-6), "baseline_m": ("baseline_m", 1, 1e-4),
    "perpendicular_m": ("perpendicular_m", -1, 1e-3), "parallel_m": ("parallel_m", 1, 1e-3),
    "along_track_m": ("along_track_m", 1, 1e-3), "incidence_deg": ("master_incidence_deg", 1, 2e-9),
    "slave_incidence_deg": ("slave_incidence_deg", 1, 2e-9), "look_angle_deg": ("master_look_deg", 1, 2e-9),
    "slave_look_angle_deg": ("slave_look_deg", 1, 2e-9), "phase_cycles": ("phase_cycles", 1, 1e-4),
    "metres_per_cycle": ("metres_per_cycle", 1, 2e-5)}


@pytest.mark.parametrize("scene", TRUTH["scenes"], ids=lambda scene: scene["insar_pool"])
def test_independent_calculation(real, scene):
    found = rows(real, "--grid", "2x11", step=arguments(ParameterPool=scene["insar_pool"]))
    first = {key: float(re.search(rf"^{key} .*?([\d.E+-]+)$", (real / name).read_text("latin-1"), re.MULTILINE)[1])
             for name, key in [("slave.pool", "prf"), ("slave.pool", "range_sampling_frequency"),
                               (scene["insar_pool"], "slave_first_az_time"),
                               (scene["insar_pool"], "slave_first_rg_time")]}
    for k in range(2):
        for i in range(11):
            row, truth = found[11 * k + i], {key: values[k][i] for key, values in scene["derived"].items()
                                             if isinstance(values, list)}
            for name, (key, sign, tolerance) in TRUE_COLUMNS.items():
                assert row[name] == pytest.approx(sign * truth[key], abs=tolerance), (name, k, i)
            line = (truth["slave_zero_doppler_s"] - first["slave_first_az_time"]) * first["prf"]
            sample = (2 * truth["slave_range_m"] / 299792458 - first["slave_first_rg_time"])
            assert row["slave_line"] == pytest.approx(line, abs=1e-5)  # of some 14 m
            assert row["slave_sample"] == pytest.approx(sample * first["range_sampling_frequency"], abs=1e-6)


EXAMPLE_PAIRS = {
    "real": None, "even": {}, "single pass": {"mode": "single_pass"}, "hermite": {"method": "hermite"},
    "pieces with steps": {"method": "localpolyfit_2_4"}, "spline": {"method": "spline"},
    "left": {"node": 1.0, "start": 3.5, "kind": "utc"}}


@pytest.mark.parametrize("name", EXAMPLE_PAIRS)
def test_step(tmp_path, name):
    """All that the step prints of its sweep and its nine points, to the last digit."""
    if name == "real":
        shutil.copytree(EXAMPLES / "real_pair", tmp_path, dirs_exist_ok=True)
    else:
        example = make.Example(**EXAMPLE_PAIRS[name])
        if name == "left":
            example.look = {"master": "left", "slave": "left"}
        Pair(example).write(tmp_path)
    height = ["-LocalHeight", "321.5"]
    sweep = rows(tmp_path, "--grid", "2x11", step=STEP + height)
    nine = rows(tmp_path, "--grid", "3x3", step=STEP + height)
    done = run(tmp_path, arguments() + height + ["-lfl", "DEBUG"])
    single = "single" in name
    for row in sweep + nine:
        row["effective"] = math.sqrt(row["baseline_m"]**2 - row["range_difference_m"]**2) * (0.5 if single else 1)
    log = "\n".join(done.levels("DEBUG", "INFO "))
    wanted = {
        r"Earth lat = *(\S+) lon = *(\S+) Incid = (\S+)":
            ["%3.2f %3.2f %f" % (r["latitude_deg"], r["longitude_deg"], r["incidence_deg"]) for r in sweep],
        r"^\| *(\d+)\|\S+e\S\d+\| *(\S+) *\| *(\S+) *\| *(\S+) *\| *([^|\s]+) *\|$":
            ["%d %4.2f %4.2f %+4.2f %4.2f" % (r["sample"] + 0.5, r["baseline_m"], r["effective"],
                                              r["metres_per_cycle"], r["phase_cycles"]) for r in sweep],
        r"^\| *(\d+) *\| *([^|\s]+) *\| *([^|\s]+) *\| *([^|\s]+) *\|$":
            ["%d %4.2f %4.2f %4.2f" % (nine[i]["line"], *(r[key] for r in nine[i:i + 3]))
             for key in ("effective", "baseline_m") for i in (0, 3, 6)]}
    if not single:  # else the log has the bistatic time
        pool = {**done.pool("slave.pool"), **done.pool()}
        wanted[r"corresponding az_time in slave = (\S+)"] = [
            "%f" % (pool["slave_first_az_time"] + r["slave_line"] / pool["prf"]) for r in sweep]
    for pattern, lines in wanted.items():
        found = [" ".join(m.groups()) for m in re.finditer(pattern, log, re.MULTILINE)]
        assert found == lines, pattern
    results = done.pool()
    for key, column in [("master_{}_range_distance", "range_m"), ("slave_{}_look_angle", "slave_look_angle_deg"),
                        ("slave_{}_incidence_angle", "slave_incidence_deg")]:
        values = [v for line in ("early_az", "late_az") for v in results[key.format(line)]]
        assert [r[column] for r in sweep] == pytest.approx(values, abs=1e-6), key


POINTS_FILES = {
    "plain": ("0,0,0\n\n1000.25, 2500.5 ,12.5\n", []),
    "head, BOM, CR LF": ("\ufeffheight_m,name,sample,line\r\n# note\r\n0,a,0,0\r\n12.5,b,+2500.5,1000.25\r\n", []),
    "quoted": ('"height","a, ""b"", c","sample","line"\r\n"0","1,2","0","0"\r\n"12.5","","2500.5" ,"1000.25"\r\n', []),
    "bad numbers": ("line,sample,height\n0,0,0\n0,x,0\n0,0,nan\n0,0,1e999\n0,0,\n0,-,0\n.,0,0\n", [3, 4, 5, 6, 7, 8]),
    "decimal commas": ("0,5,0,5,0,5\n", [1]), "columns": ("line,sample,height,name\n0,0,0\n0,0\n", [2, 3]),
    "other order": ("sample,line,height\n0,0,0\n2500.5,1000.25,12.5\n", []),
    "no head": ("point,line\n0,0,0\n", [1]), "empty": ("", [1]), "head alone": ("line,sample,height\n", [1])}


@pytest.mark.parametrize("name", POINTS_FILES)
def test_points_file(ready, name):
    text, faults = POINTS_FILES[name]
    (ready / "p.csv").write_bytes(text.encode())
    done = tool(ready, "--points", "p.csv", "--format", "csv", "--out", "out.csv")
    told = [line.split(":", 2)[:2] for line in done.stderr.splitlines()]
    assert (done.returncode, told) == (int(bool(faults)), [["p.csv", str(line)] for line in faults])
    assert (ready / "out.csv").exists() != bool(faults)
    piped = tool(ready, "--points", "-", "--format", "csv", given=text)
    assert piped.stderr == done.stderr.replace("p.csv:", "-:")
    if not faults:
        assert piped.stdout == (ready / "out.csv").read_text()
        found = list(csv.DictReader((ready / "out.csv").open()))
        assert [float(found[1][key]) for key in ("line", "sample", "height_m")] == [1000.25, 2500.5, 12.5]
        assert float(found[1]["slave_line"]) == pytest.approx(1000.25, abs=5)


def test_points_without_geometry(ready):
    """Rows of NaN, one line that tells of them; beyond the scene there is geometry as long as the orbit lasts."""
    bad = {"short range": "0,-200000,0", "before the orbit": "-30626,0,0", "behind the orbit": "29376,0,0",
           "behind all": "1e300,0,0", "in the Earth": "0,0,-6400000"}
    good = ["-29000,0,0", "29374,-500,8000", "0,9000,-400"]
    (ready / "p.csv").write_text("\n".join([good[0], *bad.values(), *good[1:]]))
    done = tool(ready, "--points", "p.csv", "--format", "csv")
    found = list(csv.reader(io.StringIO(done.stdout)))[1:]
    assert [row[3:].count("nan") for row in found] == [0] + [17] * len(bad) + [0, 0]
    assert done.returncode == 1 and done.stderr.count("\n") == 1
    assert done.stderr.startswith("p.csv:2: error: 5 of 8 points have no geometry; the first, line 0, sample -200000")
    as_json = json.loads(tool(ready, "--points", "p.csv", "--format", "json").stdout)
    assert as_json["points"][1]["range_m"] is None and as_json["points"][0]["range_m"] > 8e5


def test_digits(ready):
    long = f"1.{'0' * 30}"
    (ready / "p.csv").write_text("0.9999999,4999.9999996,-0.00001\n-0.25,7.0500004,-12.04995001\n-.5,5.,5\n"
                                 f"1234.56789012345,{long},-{long}\n1e3,0012.250000000,9007199254740993e-12\n")
    lines = tool(ready, "--points", "p.csv", "--format", "csv").stdout.splitlines()[1:]
    assert [line.split(",")[:3] for line in lines] == [
        ["1.000000", "5000.000000", "0.0000"], ["-0.250000", "7.050000", "-12.0500"],
        ["-0.500000", "5.000000", "5.0000"], ["1234.567890", "1.000000", "-1.0000"],
        ["1000.000000", "12.250000", "9007.1993"]]


def test_grouping_changes_no_digit(ready):
    words = ("--grid", "81x251", "--heights", "-10,2500", "--format", "csv")  # six blocks, coordinates without a fraction
    one, three = (tool(ready, *words, "--jobs", jobs).stdout for jobs in ("1", "3"))
    assert one == three and one.count("\n") == 2 * 81 * 251 + 1
    head, *lines = one.splitlines()
    random.Random(1).shuffle(lines)
    (ready / "p.csv").write_text("\n".join([head, *lines[:500]]))
    assert tool(ready, "--points", "p.csv", "--format", "csv").stdout.splitlines() == [head, *lines[:500]]


def test_formats_say_the_same(real):
    places = {"grid": ["--grid", "3x4", "--heights", "1000,0"], "points": ["--points", "p.csv"]}
    (real / "p.csv").write_text("0,0,0\n0,-9e6,0\n8050,20358,100\n")
    xarray = pytest.importorskip("xarray")
    pytest.importorskip("netCDF4")
    for name, words in places.items():
        found = json.loads(tool(real, *words, "--format", "json").stdout)
        done = tool(real, *words, "--out", f"{name}.nc")
        assert done.returncode == int(name == "points")
        data = xarray.open_dataset(real / f"{name}.nc", engine="netcdf4")
        assert data.attrs["master_pool"] == "master.pool" and data.attrs["Conventions"].startswith("CF-1.")
        assert name == "points" or list(data["height"]) == [0, 1000]
        for column in found["definitions"]:
            values = data[column.removesuffix("_m") if name == "grid" and column == "height_m" else column]
            unit = values.attrs["units"].replace("metre", "m")
            assert found["definitions"][column] == values.attrs["long_name"] + (f", {unit}" if unit != "1" else "")
            values, *_ = xarray.broadcast(values, data["range_m"])
            dimensions = ["height", "line", "sample"] if name == "grid" else ["point"]
            flat = values.transpose(*dimensions).values.ravel()
            wanted = [math.nan if row[column] is None else row[column] for row in found["points"]]
            assert flat == pytest.approx(wanted, abs=1e-6, nan_ok=True), column
    plain = re.findall(r"^range_m +(\S+) ", tool(real, *places["grid"]).stdout, re.MULTILINE)
    assert [float(x) for x in plain] == [row["range_m"] for row in json.loads(
        tool(real, *places["grid"], "--format", "json").stdout)["points"]]


@pytest.mark.parametrize("reader", ["ncdump -h {}", "gdalinfo {}", "gdalinfo -checksum NETCDF:{}:range_m", "ncdump -h points-{}", "ogrinfo -al points-{}"])
def test_netcdf_opens_without_a_warning(ready, reader):
    words = reader.format("g.nc").split()
    if shutil.which(words[0]) is None:
        pytest.skip(f"{words[0]} is not installed")
    (ready / "p.csv").write_text("0,0,0\n1,2,3\n")
    assert tool(ready, "--points", "p.csv", "--out", "points-g.nc").returncode == 0
    assert tool(ready, "--grid", "5x7", "--heights", "0,100", "--out", "g.nc").returncode == 0
    done = subprocess.run(words, cwd=ready, capture_output=True, text=True, check=False)
    assert (done.returncode, done.stderr) == (0, "") and "range_m" in done.stdout
    assert words[0] != "ogrinfo" or re.search(r"POINT Z \(\S+ \S+ 3\)", done.stdout)


FAILURES = {
    "no place": (2, []), "two places": (2, ["--grid", "2x2", "--points", "p"]), "small grid": (2, ["--grid", "1x2"]),
    "no grid": (2, ["--grid", "2x2x2"]), "an empty height": (2, ["--grid", "2x2", "--heights", "0,,9"]),
    "no height": (2, ["--grid", "2x2", "--heights", "nan"]), "a low height": (2, ["--grid", "2x2", "--heights", "-1001"]),
    "a height twice": (2, ["--grid", "2x2", "--heights", "0,9,0"]), "heights of points": (2, ["--points", "p", "--heights", "1"]),
    "format": (2, ["--grid", "2x2", "--format", "xml"]), "netcdf to the screen": (2, ["--grid", "2x2", "--format", "netcdf"]),
    "jobs": (2, ["--grid", "2x2", "--jobs", "0"]), "no points": (1, ["--points", "missing.csv"]),
    "points from a device": (1, ["--points", "/dev/null"]), "over an input": (1, ["--grid", "2x2", "--out", "slave.pool"]),
    "no folder": (1, ["--grid", "2x2", "--out", "no/x.csv"]), "netcdf to a device": (
        1, ["--grid", "2x2", "--format", "netcdf", "--out", "/dev/full"]),
    "no slave": (1, ["--grid", "2x2", "-SlavePar", "missing.pool"]),
    "an orbit missing": (1, ["--grid", "2x2", "-MasterPar", "insar.pool"])}


@pytest.mark.parametrize("name", FAILURES)
def test_failures(ready, name):
    status, words = FAILURES[name]
    before = {p.name: (p.read_bytes(), p.stat().st_mtime_ns) for p in ready.iterdir()}
    done = tool(ready, *words)
    assert (done.returncode, done.stdout if status == 1 else "") == (status, "")
    assert done.stderr.startswith("missing.pool:1: error: " if name == "no slave" else "") and done.stderr
    assert {p.name: (p.read_bytes(), p.stat().st_mtime_ns) for p in ready.iterdir()} == before


def test_without_the_netcdf_library(ready):
    name = re.search(rb"libnetcdf[.\w]+", TOOLS.read_bytes())[0].decode()
    (ready / name).touch()
    done = subprocess.run([TOOLS, "geometry", *STEP, "--grid", "2x2", "--out", "x.nc"], cwd=ready, check=False, text=True,
                          capture_output=True, env={"LD_LIBRARY_PATH": str(ready)})
    assert done.returncode == 1 and f"x.nc:1: error: netCDF files need the library {name}: " in done.stderr


def test_full_disk(ready):
    with open("/dev/full", "w") as full:
        done = subprocess.run([TOOLS, "geometry", *STEP, "--grid", "99x99", "--format", "csv"], cwd=ready, stdout=full,
                              stderr=subprocess.PIPE, text=True, check=False)
    assert done.returncode == 1 and "No space left" in done.stderr


@pytest.mark.parametrize("out", ["x.csv", "x.json", "x.nc"])
def test_whole_file_or_none(ready, out):
    def small_files():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (100000, 100000))
    before = sorted(ready.iterdir())
    done = subprocess.run([TOOLS, "geometry", *STEP, "--grid", "99x99", "--out", out], cwd=ready, preexec_fn=small_files,
                          capture_output=True, text=True, check=False)
    assert (done.returncode, sorted(ready.iterdir())) == (1, before)
    assert done.stderr.startswith(f"{out}:1: error: ")
