"""Whole runs on the real pair with every interpolation, kind of time and source of samples: all agree
with Everett's formula of eighth order within what the method can do."""

import os
import re
import shutil
import subprocess
from pathlib import Path

import pytest

from varnoth_run import entry, run

WRITE_RECORDS = os.environ["WRITE_RECORDS"]
DATA = Path(__file__).parents[2] / "examples" / "real_pair"
# Days of the two scenes; a mission starts twelve days before the first.
MISSION_DAY = {"master": "0012", "slave": "0024"}

# Bounds in metres for the targets, which the log tells to the centimetre, and for the slave's ranges
# and the effective baseline, where both orbits' like errors cancel. A spline's velocity is 0.1 m/s
# off, which turns the zero-Doppler plane by 0.2 m at the target; the others are better than their
# digits. A fit in plain powers of up to 160 s is the worst conditioned: above order 5 it is lost.
METHODS = {
    "everett_4": (0.011, 1e-6), "polynom": (0.011, 2e-5), "polyfit_4": (0.02, 5e-4),
    "spline": (0.4, 2e-5), "localpolynom_0_9": (0.011, 2e-5), "localpolyfit_4_5": (0.02, 2e-5),
    "everett_8": (0.0, 1e-9), "chebyshev_10": (0.011, 1e-4), "localchebyshev_6_9": (0.011, 5e-5),
    "hermite": (0.011, 5e-5), "localhermite_0_4": (0.011, 2e-5),
}
RECORD_METHODS = [m for m in METHODS if "chebyshev" not in m and "hermite" not in m]
KINDS = ["double", "utc", "met"]
# Missions, tape sources and channels of the record files and their numbers, by kind of time.
PLACES = {"double": (("ZEL1", "AQAV", "sec"), "122"), "utc": (("KOVA1", "BRNR", "pri"), "431"),
          "met": (("ZEL3", "DTYR", "pri"), "361")}


def in_kind(text, scene, kind):
    """The scene's pool with its epochs in another kind of time; all count from the same midnight."""
    if kind == "utc":
        return text
    clock = r'"[^"]*[/T](\d\d):(\d\d):(\d\d\.\d+)"'
    if kind == "met":
        text = re.sub(r'"[^"]*00:00:00.000000"', f'"{MISSION_DAY[scene]}/00:00:00"', text)
        return re.sub(clock, rf'"{MISSION_DAY[scene]}/\1:\2:\3"', text)
    text = re.sub(r'"[^"]*00:00:00.000000"', '"0"', text)
    text = re.sub(r"(orbit_epoch +)STR_V   ", r"\1FLT_15_V", text)
    return re.sub(clock, lambda m: repr(int(m[1]) * 3600 + int(m[2]) * 60 + float(m[3])), text)


def write_records(directory, scene, kind):
    """The samples of a scene's pool as a record file, whose samples the pool then names."""
    path = directory / f"{scene}.pool"
    (mission, source, channel), numbers = PLACES[kind]
    subprocess.run([WRITE_RECORDS, path, directory, scene, kind, *numbers], check=True)
    text = path.read_text()
    path.write_text(text[:text.index("#UTC")].replace("orbit_pool", "orbit_mdb") + "".join(
        entry(key, "INT_32" if isinstance(value, int) else "STR", value) for key, value in {
            "root_path": str(directory), "mission_id": mission, "tape_id_number": 12,
            "tape_source_id": source, "major_data_take_id": 5, "minor_data_take_id": 7,
            "channel_id": channel, "mdb_orbit_data_file": scene}.items()))


def run_with(directory, method, kind, records=False):
    shutil.copy(DATA / "insar.pool", directory)
    for scene in ("master", "slave"):
        pool = directory / f"{scene}.pool"
        text = in_kind((DATA / pool.name).read_text(), scene, kind)
        text = text.replace("orbit_pool_double_utc", f"orbit_pool_double_{kind}")
        text = text.replace("everett_8", method)
        pool.write_text(text)
        if records:
            write_records(directory, scene, kind)
    done = run(directory)
    assert done.status == 0, done.alarms
    targets = [float(x) for text in done.levels("DEBUG") if "Earth vector" in text
               for x in text.split("(")[1].rstrip(")").split()]
    pool = done.pool()
    return targets, [*pool["slave_early_az_range_distance"],
                     *pool["slave_late_az_range_distance"], pool["eff_baseline"]]


@pytest.fixture(scope="module")
def wanted(tmp_path_factory):
    return run_with(tmp_path_factory.mktemp("wanted"), "everett_8", "utc")


CASES = [(method, kind, False) for method in METHODS for kind in KINDS]
CASES += [(method, kind, True) for method in RECORD_METHODS for kind in KINDS]


@pytest.mark.parametrize("method, kind, records", CASES)
def test_results_agree(wanted, tmp_path, method, kind, records):
    found = run_with(tmp_path, method, kind, records)
    errors = [max(abs(a - b) for a, b in zip(f, w)) for f, w in zip(found, wanted)]
    assert errors[0] <= METHODS[method][0] and errors[1] <= METHODS[method][1], errors
