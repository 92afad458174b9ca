"""Bad input: the line that tells the fault, exit status 1, the failure mark, and an InSAR pool that
still is what it was."""

import pytest

from varnoth_run import FAILED, Pair, arguments, make, run

KEY = "parameter pool: parameter key >> "
NOT_A_NUMBER = "pool error - no or invalid parameter value in file"


def replace(pool, key, kind, value):
    return lambda pair: getattr(pair, pool).__setitem__(key, (kind, value))


# name: (change of the pair, arguments, lines ahead of the supervisor's, at ALARM where no label is told)
CASES = {
    "wrong type": (replace("insar", "n_lines", "FLT_15", 3.0), {}, [
        f"{KEY}n_lines << type INT_32 expected", "pool error - wrong parameter type"]),
    "odd order": (replace("master", "orbit_interpolation", "STR", "everett_7"), {}, [
        "EVERETT::Create: Everett interpolation only possible with even order, not for given "
        "order 7.", NOT_A_NUMBER]),
    "too few samples": (replace("master", "orbit_interpolation", "STR", "everett_40"), {}, [
        "WARN  EVERETT::GetXi: Forced interpolation left hand side.",
        "WARN  EVERETT::GetXi: Forced interpolation right hand side.",
        "EVERETT::GetXi: 13 samples are too few for order 40.", NOT_A_NUMBER]),
    "unknown interpolation": (replace("slave", "orbit_interpolation", "STR", "Everett"), {}, [
        "GENERAL_ORBIT: can not convert Everett to interpolation_id", "wrong argument"]),
    "unknown orbit type": (replace("slave", "orbit_representation", "STR", "orbit"), {}, [
        "GENERAL_ORBIT: can not convert orbit to orbit_type_id", "wrong argument"]),
    "unknown look direction": (replace("master", "antenna_look_direction", "STR", "Left"), {}, [
        "can not convert >>Left<< to look direction", "wrong argument"]),
    "unknown mode": (replace("insar", "observation_mode", "STR", " dual_pass"), {}, [
        "can not convert >> dual_pass<< to observation mode", "wrong argument"]),
    "reference time of another kind": (
        replace("master", "orbit_reference_time", "STR", "01-JAN-2000/00:00:00.000000"), {}, [
            "not allowed time conversion"]),
    "reference time that is none": (
        replace("master", "orbit_reference_time", "STR", "2004-13-14T10:11:12"), {}, [
            "EXCEP UTC_SCANNER: Invalid date: 14.13.2004",
            "EXCEP UTC_SCANNER: Error during scan of: 2004-13-14T10:11:12", "data error"]),
    "two coordinates": (replace("master", "orbit_value_key", "STR", "orbit_x, orbit_y"), {}, [
        "ORBIT: the result takes 3 coordinates, there are 2", "wrong argument"]),
    "short value list": (replace("slave", "orbit_y", "FLT_15_V", [1.0] * 12), {}, [
        "POOL_ORBIT: list orbit_y has 12 values for 13 epochs", "data error"]),
    "ellipsoid of seven elements": (
        replace("master", "ellipsoid_parameters", "FLT_15_V", [0.0] * 7), {}, [
            "ellipsoid_parameters has 7 elements, 9 are needed", "data error"]),
    "target that the range does not reach": (
        replace("insar", "master_first_rg_time", "FLT_15", 0.0045), {}, [
            "geolocation_fast: No intersection of earth ellipsoid and sphere around the satellite",
            "geolocation_fast: during iteration in step: 1", "data error"]),
    "degree below -1": (lambda pair: None, {"FlatEarthPolyDegree": "-2"}, [
        "ARRAY : can not copy array"]),
}


@pytest.mark.parametrize("name", CASES)
def test_refused_with_its_line(ready, pair, name):
    change, words, told = CASES[name]
    change(pair)
    pair.write(ready)
    before = (ready / "insar.pool").read_bytes()
    (ready / "log.pool").write_text("kept BOL TRUE\n\n")
    (ready / "OK.varnoth").write_text("0")
    done = run(ready, arguments(**words))
    assert [line.removeprefix("ALARM ") for line in done.told] == [*told, FAILED] and FAILED in done.screen
    assert (done.status, done.marks) == (1, {"ERROR": "1"})
    assert (ready / "insar.pool").read_bytes() == before
    assert sorted(p.name for p in ready.glob("pool_*")) == []
    assert not any(t.endswith(" to log.pool") for t in done.levels("DEBUG"))


@pytest.mark.parametrize("word, told", [
    ("polyfit_20", ["WARN  POLYFIT: reduce polynomial fit order 20 -> 12"]),
    ("localpolynom_0_20", ["WARN  LOCAL_INTERPOLATION: change support_point_count from 20 to 13"]),
    (None, ["WARN  input scenes have different look directions", "WARN  master:  right", "WARN  slave:   left",
            "WARN  try to detect look direction by myself.."])])
def test_warned_of(ready, word, told):
    pair = Pair(None if word else make.examples()["look_directions"])
    if word:
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


@pytest.mark.parametrize("pool, key, value", [
    ("master", "prf", 0.0),                  # division by zero at the end times
    ("slave", "radar_frequency", 0.0),       # no wavelength
    ("master", "center_latitude", float("nan")),  # an ordered comparison with a NaN
    ("insar", "master_first_az_time", 3600.0),  # derivatives exactly on a sample
])
def test_traps_end_through_the_handler(ready, pool, key, value):
    pair = Pair(make.examples()["look_directions"])  # so that the centres are compared
    kind = getattr(pair, pool)[key][0]
    getattr(pair, pool)[key] = (kind, value)
    pair.write(ready)
    before = (ready / "insar.pool").read_bytes()
    done = run(ready)
    what = "got fatal signal 8: floating point exception"
    assert done.alarms[-2:] == [what, f"ZOD_MSG|ERROR|varnoth {what}"]
    assert (done.status, done.marks) == (1, {"ERROR": "1"})
    assert (ready / "insar.pool").read_bytes() == before
