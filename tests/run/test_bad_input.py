"""Bad input: the line that tells the fault, exit status 1, the failure mark, and an InSAR pool that
still is what it was."""

import pytest

from varnoth_run import FAILED, Pair, arguments, make, run

LOOKS = ["WARN  input scenes have different look directions", "WARN  master:  right", "WARN  slave:   left",
         "WARN  try to detect look direction by myself.."]
TRAP = "got fatal signal 8: floating point exception"
TRAPPED = [TRAP, f"ZOD_MSG|ERROR|varnoth {TRAP}"]

# name: (pool or arguments, key, new entry, all lines told, at ALARM without a label, but the
# supervisor's last one)
CASES = {
    "wrong type": ("insar", "n_lines", ("FLT_15", 3.0), [
        "parameter pool: parameter key >> n_lines << type INT_32 expected",
        "pool error - wrong parameter type"]),
    "too few samples": ("master", "orbit_interpolation", ("STR", "everett_40"), [
        *LOOKS, "WARN  EVERETT::GetXi: Forced interpolation left hand side.",
        "WARN  EVERETT::GetXi: Forced interpolation right hand side.",
        "EVERETT::GetXi: 13 samples are too few for order 40.",
        "pool error - no or invalid parameter value in file"]),
    "unknown interpolation": ("slave", "orbit_interpolation", ("STR", "Everett"), [
        "GENERAL_ORBIT: can not convert Everett to interpolation_id", "wrong argument"]),
    "unknown orbit type": ("slave", "orbit_representation", ("STR", "orbit"), [
        "GENERAL_ORBIT: can not convert orbit to orbit_type_id", "wrong argument"]),
    "unknown look direction": ("master", "antenna_look_direction", ("STR", "Left"), [
        "can not convert >>Left<< to look direction", "wrong argument"]),
    "unknown mode": ("insar", "observation_mode", ("STR", " dual_pass"), [
        "can not convert >> dual_pass<< to observation mode", "wrong argument"]),
    "reference time of another kind": ("master", "orbit_reference_time", ("STR", "01-JAN-2000/00:00:00.0"), [
        "not allowed time conversion"]),
    "reference time that is none": ("master", "orbit_reference_time", ("STR", "2004-13-14T10:11:12"), [
        "EXCEP UTC_SCANNER: Invalid date: 14.13.2004",
        "EXCEP UTC_SCANNER: Error during scan of: 2004-13-14T10:11:12", "data error"]),
    "two coordinates": ("master", "orbit_value_key", ("STR", "orbit_x, orbit_y"), [
        *LOOKS, "ORBIT: the result takes 3 coordinates, there are 2", "wrong argument"]),
    "short value list": ("slave", "orbit_y", ("FLT_15_V", [1.0] * 12), [
        "POOL_ORBIT: list orbit_y has 12 values for 13 epochs", "data error"]),
    "ellipsoid of seven elements": ("master", "ellipsoid_parameters", ("FLT_15_V", [0.0] * 7), [
        "ellipsoid_parameters has 7 elements, 9 are needed", "data error"]),
    "target that the range does not reach": ("insar", "master_first_rg_time", ("FLT_15", 0.0045), [
        *LOOKS, "geolocation_fast: No intersection of earth ellipsoid and sphere around the satellite",
        "geolocation_fast: during iteration in step: 1", "data error"]),
    "degree below -1": ("arguments", "FlatEarthPolyDegree", "-2", [*LOOKS, "ARRAY : can not copy array"]),
    "division by zero at the end times": ("master", "prf", ("FLT_15", 0.0), TRAPPED),
    "no wavelength": ("slave", "radar_frequency", ("FLT_15", 0.0), LOOKS + TRAPPED),
    "ordered comparison with a NaN": ("master", "center_latitude", ("FLT_6", float("nan")), LOOKS + TRAPPED),
    "derivatives exactly on a sample": ("insar", "master_first_az_time", ("FLT_15", 3600.0), LOOKS + TRAPPED),
}


@pytest.fixture
def pair():
    """A pair whose scenes' centres are compared."""
    return Pair(make.examples()["look_directions"])


@pytest.mark.parametrize("name", CASES)
def test_refused_with_its_line(ready, pair, name):
    place, key, entry, told = CASES[name]
    words = {key: entry} if place == "arguments" else {}
    getattr(pair, place, {})[key] = entry
    pair.write(ready)
    before = (ready / "insar.pool").read_bytes()
    (ready / "log.pool").write_text("kept BOL TRUE\n\n")
    (ready / "OK.varnoth").write_text("0")
    done = run(ready, arguments(**words))
    if "signal" not in told[-1]:
        told = [*told, FAILED]
    assert [line.removeprefix("ALARM ") for line in done.told] == told and told[-1] in done.screen
    assert (done.status, done.marks) == (1, {"ERROR": "1"})
    assert (ready / "insar.pool").read_bytes() == before
    assert sorted(p.name for p in ready.glob("pool_*")) == []
    assert not any(t.endswith(" to log.pool") for t in done.levels("DEBUG"))


@pytest.mark.parametrize("word, told", [
    ("everett_8", LOOKS),
    ("polyfit_20", ["WARN  POLYFIT: reduce polynomial fit order 20 -> 12", *LOOKS]),
    ("localpolynom_0_20", ["WARN  LOCAL_INTERPOLATION: change support_point_count from 20 to 13", *LOOKS])])
def test_warned_of(ready, pair, word, told):
    pair.slave["orbit_interpolation"] = ("STR", word)
    done = run(pair.write(ready))
    assert done.status == 0 and [*dict.fromkeys(done.told)] == told


def test_degree_of_minus_one(ready):
    """The kernel of the fit ends the process itself."""
    done = run(ready, arguments(FlatEarthPolyDegree="-1"))
    assert (done.status, done.marks) == (1, {"ERROR": "1"})
    assert done.errors == ("Numerical Recipes run-time error...\nlfit: no parameters to be fitted\n"
                           "...now exiting to system...\n")
    assert "eff_baseline" not in done.pool()
