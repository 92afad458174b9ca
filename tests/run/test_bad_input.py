"""Bad input: the line that names the fault, exit status 1, the failure mark, and an InSAR pool that
still is what it was."""

import pytest

from varnoth_run import FAILED, Pair, arguments, make, run

LOOKS = ["WARN  input scenes have different look directions", "WARN  master:  right", "WARN  slave:   left",
         "WARN  try to detect look direction by myself.."]
TRAP = "got fatal signal 8: floating point exception"
TRAPPED = [TRAP, f"ZOD_MSG|ERROR|varnoth {TRAP}"]

# name: (pool or words of the run, key, new entry, lines before the supervisor's, at ALARM without a label)
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
    "two coordinates": ("master", "orbit_value_key", ("STR", "orbit_x, orbit_y"), [
        *LOOKS, "ORBIT: the result takes 3 coordinates, there are 2", "wrong argument"]),
    "short value list": ("slave", "orbit_y", ("FLT_15_V", [1.0] * 12), [
        "POOL_ORBIT: list orbit_y has 12 values for 13 epochs", "data error"]),
    "ellipsoid of seven elements": ("master", "ellipsoid_parameters", ("FLT_15_V", [0.0] * 7), [
        "ellipsoid_parameters has 7 elements, 9 are needed", "data error"]),
    "target that the range does not reach": ("insar", "master_first_rg_time", ("FLT_15", 0.0045), [
        *LOOKS, "geolocation_fast: No intersection of earth ellipsoid and sphere around the satellite",
        "geolocation_fast: during iteration in step: 1", "data error"]),
    "degree below -1": ("words", "FlatEarthPolyDegree", "-2", [*LOOKS, "ARRAY : can not copy array"]),
    "division by zero at the end times": ("master", "prf", ("FLT_15", 0.0), TRAPPED),
    "no wavelength": ("slave", "radar_frequency", ("FLT_15", 0.0), LOOKS + TRAPPED),
    "ordered comparison with a NaN": ("master", "center_latitude", ("FLT_6", float("nan")), LOOKS + TRAPPED),
    "derivatives exactly on a sample": ("insar", "master_first_az_time", ("FLT_15", 3600.0), LOOKS + TRAPPED),
}


@pytest.fixture
def pair():
    """A pair for which a run compares the centres of the scenes."""
    return Pair(make.examples()["look_directions"])


@pytest.mark.parametrize("name", CASES)
def test_refused_with_its_line(ready, pair, name):
    place, key, entry, told = CASES[name]
    words = {}
    (words if place == "words" else getattr(pair, place))[key] = entry
    pair.write(ready)
    before = (ready / "insar.pool").read_bytes()
    (ready / "log.pool").write_text("kept BOL TRUE\n\n")
    (ready / "OK.varnoth").write_text("0")
    done = run(ready, arguments(**words))
    last = [] if "signal" in told[-1] else [FAILED]
    assert [line.removeprefix("ALARM ") for line in done.told] == told + last
    assert done.alarms[-1] in done.screen
    assert (done.status, done.marks) == (1, {"ERROR": "1"})
    assert (ready / "insar.pool").read_bytes() == before
    assert sorted(p.name for p in ready.glob("pool_*")) == []
    assert not any(t.endswith(" to log.pool") for t in done.levels("DEBUG"))


def test_degree_of_minus_one(ready):
    """The kernel of the fit ends the process itself."""
    done = run(ready, arguments(FlatEarthPolyDegree="-1"))
    assert (done.status, done.marks) == (1, {"ERROR": "1"})
    assert done.errors == ("Numerical Recipes run-time error...\nlfit: no parameters to be fitted\n"
                           "...now exiting to system...\n")
    assert "eff_baseline" not in done.pool()
