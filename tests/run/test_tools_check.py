"""varnoth-tools check: every finding with its place, the same verdict as the run, and nothing touched."""

import json
import os
import subprocess
from pathlib import Path

import pytest

import make
from varnoth_run import BINARY, EXAMPLES, Pair, arguments, run

TOOLS = Path(os.environ.get("VARNOTH_TOOLS_BINARY", BINARY.parents[2] / "tools" / "varnoth-tools"))
pytestmark = pytest.mark.skipif(not TOOLS.exists(), reason="varnoth-tools is not built")


def tool(directory, *words, **options):
    return subprocess.run([TOOLS, "check", *words], cwd=directory, capture_output=True, text=True, check=False,
                          stdin=subprocess.DEVNULL, **options)


def moved(key, index, value):
    """A list with one value moved."""
    return lambda entry: (entry[0], [value(x) if i == index else x for i, x in enumerate(entry[1])])


def halved(entry):
    return entry[0], entry[1] / 2


def slower(entry):
    return entry[0], [x + 0.011 for x in entry[1]]


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
        ["e range-short insar.pool 9"]),
    "one way in the slave": ({"insar.slave_first_rg_time": halved}, {}, ["w ranges insar.pool 11"]),
    "beyond the horizon": ({"insar.master_first_rg_time": 0.0221}, {}, [
        "w range-long insar.pool 9", "w ranges insar.pool 11"]),
    "last line on a sample": ({"insar.master_first_az_time": 3596.0}, {}, ["e time-on-sample insar.pool 5"]),
    "search from a sample": ({"insar.slave_first_az_time": 3600.0}, {}, ["e time-on-sample insar.pool 7"]),
    "early": ({"insar.master_first_az_time": 3579.0}, {}, ["w orbit-coverage insar.pool 5",
        "w orbit-coverage insar.pool 7"]),
    "last covered": ({"insar.master_first_az_time": 3615.99}, {}, []),
    "odd order": ({"slave.orbit_interpolation": "everett_7"}, {}, ["e order-odd slave.pool 26"]),
    "uneven": ({"master.orbit_epoch": moved("orbit_epoch", 6, lambda x: x + 1e-3)}, {},
        ["e grid-uneven master.pool 42"]),
    "unordered": ({"master.orbit_epoch": moved("orbit_epoch", 3, lambda x: x + 25),
        "master.orbit_interpolation": "chebyshev_4"}, {},
                  ["w epochs-unordered master.pool 40"]),
    "a list too short": ({"slave.orbit_y": lambda entry: (entry[0], entry[1][:-1])}, {},
        ["e list-length slave.pool 68"]),
    "kilometres": ({f"master.orbit_{c}": lambda entry: (entry[0], [x / 1e3 for x in entry[1]]) for c in "xyz"}, {}, [
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
        old = entries.pop(key) if change is None else entries[key]
        if change is not None:
            entries[key] = change(old) if callable(change) else change if isinstance(change, tuple) else (old[0],
                change)
    pair.write(directory)
    text = (directory / "master.pool").read_text()
    (directory / "master.pool").write_text(text.replace('"5.405D+09"', "5.405D+09"))


def told(directory, words):
    before = {p: (p.stat().st_mtime_ns, p.read_bytes()) for p in directory.iterdir() if p.is_file()}
    done = tool(directory, "--json", *words)
    assert before == {p: (p.stat().st_mtime_ns, p.read_bytes()) for p in directory.iterdir() if p.is_file()}
    shown = json.loads(done.stdout)
    assert (done.returncode == 0) == shown["would_succeed"] == (run(directory, words).status == 0)
    return shown["findings"]


def short(findings):
    return sorted(f'{f["level"][0]} {f["code"]} {f["file"] or "-"} {f["line"] or "-"}' for f in findings)


@pytest.mark.parametrize("name", CASES)
def test_findings(tmp_path, name):
    changes, words, wanted = CASES[name]
    make_pair(tmp_path, changes)
    assert short(told(tmp_path, arguments(**words))) == wanted


def test_single_pass_references(tmp_path):
    later = {"slave.orbit_reference_time": "2026-11-10T00:00:01.000000"}
    make_pair(tmp_path, SINGLE_PASS | later, make.Example(kind="utc"))
    findings = told(tmp_path, arguments())
    assert "reference-times" in [f["code"] for f in findings], findings


def test_velocities(tmp_path):
    make_pair(tmp_path, {f"slave.orbit_v{c}": slower for c in "xy"}, make.Example(method="localhermite_0_4"))
    (velocity,) = [f for f in told(tmp_path, arguments()) if f["code"] == "velocities"]
    assert "15.55" in velocity["message"]  # 11 mm/s along two axes


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
