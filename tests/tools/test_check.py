"""varnoth-tools check: every finding with its place, the same verdict as the run, and nothing touched."""

import json
import math
import os
import re
import subprocess

import pytest

import make
from varnoth_run import EXAMPLES, TOOLS, Pair, arguments, run

pytestmark = pytest.mark.skipif(not TOOLS.exists(), reason="varnoth-tools is not built")


def tool(directory, *words, **options):
    return subprocess.run([TOOLS, "check", *words], cwd=directory, capture_output=True, text=True, check=False,
                          stdin=subprocess.DEVNULL, **options)


def moved(key, index, value):
    """A list with one value moved."""
    return lambda entry: (entry[0], [value(x) if i == index else x for i, x in enumerate(entry[1])])


def halved(entry):
    return entry[0], entry[1] / 2


def scaled(factor):
    return lambda entry: (entry[0], [factor * x for x in entry[1]])


def cut(entry):
    return entry[0], entry[1][2:11]


SEVEN = {f"slave.orbit_{c}": lambda entry: (entry[0], entry[1][3:10]) for c in ("epoch", "x", "y", "z")}

# Entries of the example's pools, an other value or what changes the old one; then words of the command
# line; then the findings as level, code, file and line.
CASES = {
    "good": ({}, {}, []),
    "zero rates": ({"master.prf": 0.0, "slave.radar_frequency": 0.0}, {}, [
        "e value-unusual master.pool 14", "e value-unusual slave.pool 20", "w frequencies slave.pool 20"]),
    "pulse rate": ({"master.prf": 1717.1}, {}, ["w line-rate master.pool 14"]),
    "bandwidth above the line rate": ({"slave.az_bandwidth": 501.0}, {}, ["w line-rate slave.pool 14"]),
    "keys missing, mistyped": ({"insar.n_lines": None, "insar.n_samples": ("FLT_15", 5001.0), "slave.prf": None},
        {}, [
        "e key-missing insar.pool -", "e key-missing slave.pool -", "e key-type insar.pool 1"]),
    "words": ({"master.antenna_look_direction": "Left", "slave.orbit_interpolation": "everet",
        "insar.observation_mode": "dual",
               "master.orbit_representation": "orbit_pool"}, {}, [
        "e word-unknown insar.pool 13", "e word-unknown master.pool 22", "e word-unknown master.pool 24",
        "e word-unknown slave.pool 26"]),
    "misread": ({"master.radar_frequency": ("FLT_15", "5.405D+09")}, {}, [
        "w frequencies slave.pool 20", "w value-misread master.pool 20", "w value-unusual master.pool 20"]),
    "one way": ({"insar.master_first_rg_time": halved, "insar.slave_first_rg_time": halved}, {},
        ["e range-short insar.pool 9 | this looks like one way"]),
    "one way in the slave": ({"insar.slave_first_rg_time": halved}, {}, ["w ranges insar.pool 11"]),
    "beyond the horizon": ({"insar.master_first_rg_time": 0.0221}, {}, [
        "w range-long insar.pool 9", "w ranges insar.pool 11"]),
    "last line on a sample": ({"insar.master_first_az_time": 3596.0}, {}, ["e time-on-sample insar.pool 5"]),
    "search from a sample": ({"insar.slave_first_az_time": 3600.0}, {}, ["e time-on-sample insar.pool 7"]),
    "early": ({"insar.master_first_az_time": 3579.0}, {}, ["w orbit-coverage insar.pool 5",
        "w orbit-coverage insar.pool 7"]),
    "seven samples": (SEVEN | {"slave.orbit_interpolation": "everett_4"}, {}, []),
    "a day late": (SEVEN | {"slave.orbit_interpolation": "polynom", "insar.slave_first_az_time": 90001.0}, {}, [
        "e orbit-coverage insar.pool 7", "w run-warning - -"]),
    "last covered": ({"insar.master_first_az_time": 3615.99}, {}, []),
    "odd order": ({"slave.orbit_interpolation": "everett_7"}, {}, ["e order-odd slave.pool 26"]),
    "uneven": ({"master.orbit_epoch": moved("orbit_epoch", 6, lambda x: x + 1e-3)}, {},
        ["e grid-uneven master.pool 42"]),
    "unordered": ({"master.orbit_epoch": moved("orbit_epoch", 3, lambda x: x + 25),
        "master.orbit_interpolation": "chebyshev_4"}, {},
                  ["w epochs-unordered master.pool 40"]),
    "an epoch twice": ({"master.orbit_epoch": moved("orbit_epoch", 3, lambda x: x - 10),
        "master.orbit_interpolation": "chebyshev_4"}, {}, ["w epoch-twice master.pool 39"]),
    "seconds halved": ({"slave.orbit_epoch": lambda entry: (entry[0], [x / 2 + 1800 for x in entry[1]])}, {}, [
        "w speed slave.pool 54 | is reached at 15014."]),
    "few samples": ({f"slave.orbit_{c}": cut for c in ("epoch", "x", "y", "z")}, {}, ["w orbit-short slave.pool 26"]),
    "too high": ({f"master.orbit_{c}": scaled(1.2) for c in "xyz"}, {}, [
        "e radius master.pool 53 | 8485.2 km", "e range-short insar.pool 9"]),
    "middle line on a sample": ({"insar.master_first_az_time": 3598.0}, {}, ["e time-on-sample insar.pool 5 | middle"]),
    "two columns": ({"slave.orbit_value_key": "orbit_x, orbit_y"}, {}, [
        "e columns slave.pool 30", "e radius slave.pool 53"]),
    "velocities missing": ({"slave.orbit_interpolation": "localhermite_0_4",
        "slave.orbit_velocity_key": ("STR", "orbit_vx, orbit_vy, orbit_vz")}, {}, ["e key-missing slave.pool -"] * 3),
    "centre on the other side": ({"master.center_latitude": ("FLT_6", 29.2), "master.center_longitude": (
        "FLT_6", 7.5)}, {}, ["w scene-center master.pool 102"]),
    "keys in other words": ({"insar.n_lines": None, "insar.n_samples": None,
        "insar.+": "N_LINES INT_32 5\n n_samples INT_32 5\n"}, {}, [
        "e key-missing insar.pool - | line 14 has a blank before it", "e key-missing insar.pool - | line 13 has N_LINES"]),
    "key twice, no line end": ({"slave.+": "prf FLT_15 9\n", "insar.+": "#end"}, {}, [
        "w key-twice slave.pool 14", "w last-line insar.pool 17"]),
    "radii swapped": ({"master.ellipsoid_parameters": lambda entry: (entry[0], [*entry[1][:7], *entry[1][:6:-1]])},
        {}, ["w ellipsoid-unusual master.pool 1"]),
    "eight ellipsoid parameters": ({"master.ellipsoid_parameters": lambda entry: (entry[0], entry[1][1:])}, {}, [
        "e ellipsoid-short master.pool 1"]),
    "other frequency, longer list": ({"slave.radar_frequency": 5.5e9,
        "slave.orbit_y": lambda entry: (entry[0], entry[1] + [0.0])}, {}, [
        "w frequencies slave.pool 20", "w list-length slave.pool 68"]),
    "height as an argument": ({"insar.local_height": None}, {"LocalHeight": "5"}, []),
    "height without end, a device": ({}, {"LocalHeight": "inf", "log_pp": "/dev/null"}, [
        "e height-no-number - -", "e update-impossible /dev/null -"]),
    "too short a range": ({"insar.master_first_rg_time": 0.0021}, {}, [
        "e range-short insar.pool 9 | check the time and its unit", "w ranges insar.pool 11"]),
    "mountain": ({"insar.local_height": 1e4}, {}, ["w value-unusual insar.pool 15"]),
    "a list too short": ({"slave.orbit_y": lambda entry: (entry[0], entry[1][:-1])}, {},
        ["e list-length slave.pool 68"]),
    "kilometres": ({f"master.orbit_{c}": scaled(1e-3) for c in "xyz"}, {}, [
        "e no-ground master.pool 30", "e radius master.pool 53", "e range-long insar.pool 9"]),
    "coarse fit": ({"master.orbit_interpolation": "spline"}, {}, ["w interpolation-inexact master.pool 26"]),
    "degree": ({}, {"FlatEarthPolyDegree": "4.5"}, ["w degree-no-number - -"]),
    "high degree, decimal comma": ({}, {"FlatEarthPolyDegree": "11", "LocalHeight": "12,5"}, [
        "w degree-high - -", "w height-no-number - -"]),
    "negative degree": ({}, {"FlatEarthPolyDegree": "-2"}, ["e degree-negative - -"]),
    "no degree, no pool": ({}, {"FlatEarthPolyDegree": None, "SlavePar": None}, ["e value-missing - -",
        "w value-missing - -"]),
    "other files": ({}, {"MasterPar": "none.pool", "log_pp": "none/log.pool", "lfn": "none/log",
        "DurableUpdate": "yes"}, [
        "e log-unwritable - -", "e pool-unreadable none.pool -", "e pool-unwritable none/log.pool -",
            "e value-unknown - -"]),
    "too long": ({}, {"log_pp": "x" * 256}, ["e pool-unwritable " + "x" * 256 + " -", "e value-too-long - -"]),
}
SINGLE_PASS = {"insar.observation_mode": "single_pass"}


def make_pair(directory, changes, example=None):
    pair = Pair(example)
    for place, change in changes.items():
        pool, key = place.split(".")
        entries = getattr(pair, pool)
        if key == "+":
            continue
        old = entries.pop(key) if change is None else entries.get(key)
        if change is not None:
            entries[key] = change(old) if callable(change) else change if isinstance(change, tuple) else (old[0],
                change)
    pair.write(directory)
    for pool in ("slave", "insar"):
        with (directory / f"{pool}.pool").open("a") as file:
            file.write(changes.get(pool + ".+", ""))
    text = (directory / "master.pool").read_text()
    (directory / "master.pool").write_text(text.replace('"5.405D+09"', "5.405D+09"))


def told(directory, words, environment=None):
    before = {p: (p.stat().st_mtime_ns, p.read_bytes()) for p in directory.iterdir() if p.is_file()}
    done = tool(directory, "--json", *words, env={**os.environ, **(environment or {})})
    assert before == {p: (p.stat().st_mtime_ns, p.read_bytes()) for p in directory.iterdir() if p.is_file()}
    shown = json.loads(done.stdout)
    assert (done.returncode == 0) == shown["would_succeed"] == (run(directory, words, environment).status == 0)
    return shown["findings"]


def short(findings):
    return sorted(f'{f["level"][0]} {f["code"]} {f["file"] or "-"} {f["line"] or "-"}' for f in findings)


def compare(findings, wanted):
    """Findings against wanted ones, some of which have a part of the text behind a bar."""
    assert short(findings) == [w.partition(" | ")[0] for w in wanted], findings
    for finding, text in zip(sorted(findings, key=lambda f: short([f])), wanted):
        assert text.partition(" | ")[2] in finding["message"] + finding["remedy"]


@pytest.mark.parametrize("name", CASES)
def test_findings(tmp_path, name):
    changes, words, wanted = CASES[name]
    make_pair(tmp_path, changes)
    compare(told(tmp_path, arguments(**words)), wanted)


def test_single_pass_references(tmp_path):
    later = {"slave.orbit_reference_time": "2026-11-10T00:00:01.000000"}
    make_pair(tmp_path, SINGLE_PASS | later, make.Example(kind="utc"))
    (finding,) = [f for f in told(tmp_path, arguments()) if f["code"] == "reference-times"]
    assert "is 1 s after" in finding["message"]


@pytest.mark.parametrize("wrong", [0.002, 0.0025, 0.011])  # m/s along two axes; 3 mm/s are told
def test_velocities(tmp_path, wrong):
    slower = lambda entry: (entry[0], [x + wrong for x in entry[1]])  # noqa: E731
    make_pair(tmp_path, {f"slave.orbit_v{c}": slower for c in "xy"}, make.Example(method="localhermite_0_4"))
    found = [f["message"] for f in told(tmp_path, arguments()) if f["code"] == "velocities"]
    assert len(found) == (wrong * math.sqrt(2) > 0.003)
    for message in found:
        speed, shift, unit = re.search(r"is (\S+) mm/s off .* up to (\S+) (mm|m) along", message).groups()
        assert float(speed) == pytest.approx(wrong * math.sqrt(2) * 1e3, rel=1e-4)
        along = wrong * math.sqrt(2) / (make.RADIUS * make.RATE) * 0.0055 / 2 * 299792458
        assert float(shift) / {"m": 1, "mm": 1e3}[unit] == pytest.approx(along, rel=1e-4)


@pytest.mark.parametrize("step, changes, aside, wanted", [
    (100.0, {"insar.master_first_az_time": 3640.0}, 120.0, ["w samples-coarse master.pool 34"]),
    (10.0, {}, -45000.0, ["w baseline slave.pool -"]),
    (10.0, {f"slave.orbit_{c}": lambda entry: ("FLT_6_V", entry[1]) for c in "xyz"} | {
        "slave.orbit_representation": "orbit_pool_float_double"}, 120.0, ["w interpolation-inexact slave.pool 26"]),
])
def test_orbits(tmp_path, monkeypatch, step, changes, aside, wanted):
    monkeypatch.setattr(make, "STEP", step)
    example = make.Example()
    example.orbits["slave"] = make.Circle(aside=aside)
    make_pair(tmp_path, changes, example)
    compare([f for f in told(tmp_path, arguments()) if f["code"] != "run-warning"], wanted)


# Text of the configuration file, words of the command line, the environment, findings.
LONGEST = 255  # of a path
CONFIGURATIONS = {
    "screen": ("lsl LOUD\n", {}, {}, ["w level-unknown pcf.varnoth 1"]),
    "durable twice": ("DurableUpdate maybe\nMasterPar master.pool\nDurableUpdate TRUE\n", {"MasterPar": None}, {}, [
        "e value-unknown pcf.varnoth 1", "w key-twice pcf.varnoth 3"]),
    "other name": ("lfl LOUD\n", {"pid": "x"}, {}, ["w level-unknown pcf.x 1"]),
    "environment": ("", {"MasterPar": None}, {"MasterPar": "master.pool"}, []),
    "status": ("", {"status": "sub"}, {}, ["e stop-file - -"]),
    "longest": ("", {"SlavePar": "." + "slave.pool".rjust(LONGEST - 1, "/")}, {}, []),
    "too long": ("", {"SlavePar": "." + "slave.pool".rjust(LONGEST, "/")}, {}, ["e value-too-long - -"]),
}


@pytest.mark.parametrize("name", CONFIGURATIONS)
def test_configurations(tmp_path, name):
    text, words, environment, wanted = CONFIGURATIONS[name]
    make_pair(tmp_path, {})
    (tmp_path / f"pcf.{words.get('pid', 'varnoth')}").write_text(text)
    (tmp_path / "sub").mkdir()
    (tmp_path / "sub" / "STOP.varnoth").touch()
    compare(told(tmp_path, arguments(**words), environment), wanted)


@pytest.mark.parametrize("words", ["-h", "--json -h"])
def test_help_runs_nothing(tmp_path, words):
    assert tool(tmp_path, *words.split()).stdout.startswith("Tell whether a run would work")


def test_configuration_file(tmp_path):
    make_pair(tmp_path, {})
    (tmp_path / "pcf.varnoth").write_text(
        "MasterPar master.pool\n\nlog_pp insar.pool\nLocalHeight 1\nlfl LOUD\nLocalHeight 2,5\n")
    words = arguments(MasterPar=None, log_pp=None)
    # The run looks whether there is a height, and then reads the next one.
    assert short(told(tmp_path, words)) == [
        "w height-no-number pcf.varnoth 6", "w key-twice pcf.varnoth 6", "w level-unknown pcf.varnoth 5"]
    (tmp_path / "STOP.varnoth").touch()
    done = tool(tmp_path, *words)
    assert done.returncode == 1 and done.stdout == "the run would fail: 1 error, 3 warnings\n"
    assert done.stderr.splitlines()[1].startswith("pcf.varnoth:6: warning: LocalHeight: stands twice")


@pytest.mark.parametrize("example", sorted(p.parent.name for p in EXAMPLES.glob("*/insar.pool")))
def test_examples(tmp_path, example):
    for path in (EXAMPLES / example).rglob("*"):
        place = tmp_path / path.relative_to(EXAMPLES / example)
        place.mkdir(parents=True) if path.is_dir() else place.write_bytes(path.read_bytes())
    wanted = ["w look-directions slave.pool 22"] if example == "look_directions" else []
    assert short(told(tmp_path, arguments())) == wanted
