"""Pairs in which no two things are equal, against an independent calculation: every result, and every
number that the log tells of the sweep, the fits and the grids."""

import re
from decimal import Decimal
from types import SimpleNamespace

import pytest

from independent import Orbit, reference, seen
from varnoth_run import arguments, make, run

NUMBER = re.compile(r"(?<![\w.])[-+]?\d+(?:\.\d+)?(?:e[-+]\d+)?(?![\w.-])")
CASES = {
    "dual_left": dict(mode="dual_pass", side="left", stated=(" l e\tft ", "left"), start=0.47,
                      degree="4".zfill(255), log_pp="log.pool"),
    "dual_right": dict(mode="dual_pass", side="right", stated=("left", "right"), start=2.59,
                       degree="3", log_pp="insar.pool", LocalHeight="1543.75"),
    "single_left": dict(mode="single_pass", side="left", stated=("left", "left"), start=2.71,
                        degree="2", log_pp="./insar.pool", LocalHeight="-87.5"),
    "single_right": dict(mode="single_pass", side="right", stated=("right", "right"), start=0.61,
                         degree="4", log_pp="log.pool"),
    "one_line": dict(mode="dual_pass", side="right", stated=("right", "right"), start=0.83,
                     degree="2", log_pp="log.pool", lines=1, samples=2, node=0.4),
}


def generic_pair(mode, side, stated, start, degree, LocalHeight=None, node=3.2, lines=9378,
                 samples=6844, **_):
    """Values of the pools; the scenes of a single pass have one axis of time, their epochs do not."""
    later = 0.0 if mode == "single_pass" else 2345.625
    orbits = (Orbit(7.0713e6, 1.1e-3, 1.713, node, start, 1.0617e-3, 7.29e-5, 3611.0),
              Orbit(7.0718e6, 1.15e-3, 1.7131, node + 1e-4, start - 8e-4, 1.0613e-3, 7.31e-5, 3611.0 + later))
    master = {"prf": 1652.75, "az_bandwidth": 1378.5, "range_sampling_frequency": 2.0**25,
              "radar_frequency": 1.2575e9,
              "ellipsoid_parameters": [2.5, 3.5, 4.5, 5.5, 6.5, 7.5, 8.5, 6378249.25, 6356515.5]}
    slave = {"prf": 1871.5, "az_bandwidth": 2914.25, "range_sampling_frequency": 2.725e7,
             "radar_frequency": 1.2365e9, "ellipsoid_parameters": [float(i) for i in range(20, 29)]}
    insar = {"n_samples": samples, "n_lines": lines, "master_first_az_time": 3607.6875,
             "slave_first_az_time": 3609.1875 + later, "master_first_rg_time": 23 / 4096,
             "slave_first_rg_time": 0.005875, "observation_mode": mode, "local_height": 731.25}
    for scene, text in zip((master, slave), stated):
        scene["antenna_look_direction"] = text
    pair = SimpleNamespace(
        orbits=orbits, master=master, slave=slave, insar=insar, single=mode == "single_pass",
        side={"left": -1, "right": 1}[side], degree=int(degree), height=float(LocalHeight or 731.25))
    wrong, right = (seen(pair, lines / 2, samples / 2, look) for look in (-pair.side, pair.side))
    master |= {"center_longitude": right.longitude, "center_latitude": right.latitude}
    slave |= {"center_longitude": wrong.longitude,  # misleads
              "center_latitude": wrong.latitude + 30 * (wrong.latitude - right.latitude)}
    return pair


def write(pair, directory):
    pools = {"insar": pair.insar}
    for name, orbit, ahead, zone in (("master", pair.orbits[0], 83.25, 512.5),
                                     ("slave", pair.orbits[1], 86.75, 204.125)):
        times = [orbit.zero - ahead + 10 * i for i in range(18)]
        states = list(zip(*map(orbit.position, times)))
        pools[name] = getattr(pair, name) | {
            "orbit_representation": "orbit_pool_double_double", "orbit_interpolation": "everett_8",
            "orbit_param_key": "orbit_epoch", "orbit_value_key": "orbit_x, orbit_y, orbit_z",
            "orbit_reference_time": str(zone), "orbit_epoch": [t + zone for t in times],
            **{f"orbit_{axis}": list(column) for axis, column in zip("xyz", states)}}
    kinds = {str: "STR", int: "INT_32", float: "FLT_15", list: "FLT_15_V"}
    make.write_pools(directory, {
        name: {key: ("FLT_6" if key.startswith("center") else kinds[type(value)], value)
               for key, value in entries.items()} for name, entries in pools.items()})


@pytest.fixture(scope="module", params=CASES)
def ran(request, tmp_path_factory):
    """A run of a case, its configuration, its pair, and what it has to come to."""
    case, directory = CASES[request.param], tmp_path_factory.mktemp(request.param)
    pair = generic_pair(**case)
    write(pair, directory)
    done = run(directory, arguments(lfl="TRACE", FlatEarthPolyDegree=case["degree"],
                                    log_pp=case["log_pp"], LocalHeight=case.get("LocalHeight")))
    assert (done.status, done.marks, done.levels("ALARM")) == (0, {"OK": "0"}, [])
    return (done, case, pair, *reference(pair))


def tolerances(pair):
    """How far element i of a result w may be off. The ranges of both calculations agree to 1e-8 m, since
    an orbit's time is rounded to 5e-13 s at 7 km/s; a wave is 0.24 m."""
    cycles, reach = 1e-7, pair.insar["n_samples"] - 1
    return [
        (r"itude|^heading|^incidence|^ssc", lambda w, i: 1.3e-7 * abs(w)),  # twice to single precision
        ("eff_baseline", lambda w, i: 2e-8 * abs(w)),  # the ranges' part in 100 m of height
        ("range_distance|deltaR", lambda w, i: 1e-8),
        ("angle", lambda w, i: 2e-12),  # 1e-8 m at 800 km, in degrees
        ("height_conv", lambda w, i: cycles * w * w / 100),
        ("frequency_range", lambda w, i: cycles / reach),
        ("frequency_azimuth", lambda w, i: cycles / pair.insar["n_lines"]),
        ("poly", lambda w, i: 1e-9 * 10**pair.degree / reach**i)]  # a power costs the fit a digit


def misses(key, found, wanted, pair):
    if isinstance(wanted, str):
        return found != wanted
    wanted, found = (x if isinstance(x, list) else [x] for x in (wanted, found))
    most = next(function for pattern, function in tolerances(pair) if re.search(pattern, key))
    return len(found) != len(wanted) or any(
        not abs(f - w) <= most(w, i) for i, (f, w) in enumerate(zip(found, wanted)))


def test_results(ran):
    done, case, pair, wanted, _ = ran
    found = {key: value for key, value in done.pool().items() if key not in pair.insar}
    assert len(wanted) == 39 and set(wanted) <= set(found)
    assert case["log_pp"] != "log.pool" or len(found) == 39
    assert {key: (found[key], value) for key, value in wanted.items()
            if misses(key, found[key], value, pair)} == {}, "found, wanted"
    assert done.pool(case["log_pp"])["software_names"] == ["varnoth"]
    assert sum(t.startswith("construct pool_rwc") for t in done.levels("DEBUG")) == \
        len({"insar.pool", case["log_pp"]})


def test_numbers_of_the_log(ran):
    done, _, pair, _, wanted = ran
    texts = done.levels("INFO ", "PARAM", "DEBUG")
    texts = texts[texts.index("starting flat earth calculation"):]
    found = [number for text in texts[:next(i for i, t in enumerate(texts) if t.startswith("open pool"))]
             for number in NUMBER.findall(text)]
    assert len(found) == len(wanted)
    # half a unit of the last digit, and what the two calculations differ by
    assert [(name, text, value) for text, (name, value) in zip(found, wanted)
            if abs(float(text) - value) > 0.9 * 10.0**Decimal(text).as_tuple().exponent] == []
    # every light-time search is counted: two targets, three times each
    counts = [int(t.split()[2]) for t in done.levels("TRACE") if t.endswith("occurrences")]
    assert sum(counts) == (22 * 2 * 3 if pair.single else 0)
