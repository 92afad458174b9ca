"""Pairs in which no two things are equal, against an independent calculation: every result, and every
number in the log of the sweep, the fits and the grids."""

import re
from decimal import Decimal
from types import SimpleNamespace

import pytest

from independent import Orbit, reference, seen
from varnoth_run import arguments, make, run

NUMBER = re.compile(r"(?<![\w.])[-+]?\d+(?:\.\d+)?(?:e[-+]\d+)?(?![\w.-])")
# name: (mode, side, stated look directions, start, degree, log pool, LocalHeight, lines, samples, node)
CASES = {
    "dual_left": ("dual", "left", (" l e\tft ", "left"), 0.47, "04", "log.pool", None, 9378, 6844, 3.2),
    "dual_right": ("dual", "right", ("left", "right"), 2.59, "3", "insar.pool", "1543.75", 9378, 6844, 3.2),
    "single_left": ("single", "left", ("left", "left"), 2.71, "2", "./insar.pool", "-87.5", 9378, 6844, 3.2),
    "single_right": ("single", "right", ("right", "right"), 0.61, "4", "log.pool", None, 9378, 6844, 3.2),
    "one_line": ("dual", "right", ("right", "right"), 0.83, "2", "log.pool", None, 1, 2, 0.4),
}


def generic_pair(mode, side, stated, start, degree, log_pool, height, lines, samples, node):
    """Values of the pools; the scenes of a single pass have one axis of time, their epochs do not."""
    later = 0.0 if mode == "single" else 2345.625
    orbits = (Orbit(7.0713e6, 1.1e-3, 1.713, node, start, 1.0617e-3, 7.29e-5, 3611.0),
              Orbit(7.0718e6, 1.15e-3, 1.7131, node + 1e-4, start - 8e-4, 1.0613e-3, 7.31e-5, 3611.0 + later))
    master = {"prf": 1652.75, "az_bandwidth": 1378.5, "range_sampling_frequency": 2.0**25,
              "radar_frequency": 1.2575e9,
              "ellipsoid_parameters": [2.5, 3.5, 4.5, 5.5, 6.5, 7.5, 8.5, 6378249.25, 6356515.5]}
    slave = {"prf": 1871.5, "az_bandwidth": 2914.25, "range_sampling_frequency": 2.725e7,
             "radar_frequency": 1.2365e9, "ellipsoid_parameters": [float(i) for i in range(20, 29)]}
    insar = {"n_samples": samples, "n_lines": lines, "master_first_az_time": 3607.6875,
             "slave_first_az_time": 3609.1875 + later, "master_first_rg_time": 23 / 4096,
             "slave_first_rg_time": 0.005875, "observation_mode": f"{mode}_pass", "local_height": 731.25}
    for scene, text, orbit, ahead, zone in ((master, stated[0], orbits[0], 83.25, 512.5),
                                            (slave, stated[1], orbits[1], 86.75, 204.125)):
        times = [orbit.zero - ahead + 10 * i for i in range(18)]
        scene |= {"antenna_look_direction": text, "orbit_representation": "orbit_pool_double_double",
                  "orbit_interpolation": "everett_8", "orbit_param_key": "orbit_epoch",
                  "orbit_value_key": "orbit_x, orbit_y, orbit_z",
                  "orbit_reference_time": str(zone), "orbit_epoch": [t + zone for t in times]}
        scene |= {f"orbit_{axis}": [orbit.position(t)[i] for t in times] for i, axis in enumerate("xyz")}
    pair = SimpleNamespace(
        orbits=orbits, master=master, slave=slave, insar=insar, single=mode == "single",
        side={"left": -1, "right": 1}[side], degree=int(degree), height=float(height or 731.25),
        words={"FlatEarthPolyDegree": degree, "log_pp": log_pool, "LocalHeight": height})
    wrong, right = (seen(pair, lines / 2, samples / 2, look) for look in (-pair.side, pair.side))
    master |= {"center_longitude": right.longitude, "center_latitude": right.latitude}
    slave |= {"center_longitude": wrong.longitude,  # misleads
              "center_latitude": wrong.latitude + 30 * (wrong.latitude - right.latitude)}
    return pair


def write(pair, directory):
    kinds = {str: "STR", int: "INT_32", float: "FLT_15", list: "FLT_15_V"}
    make.write_pools(directory, {
        name: {key: ("FLT_6" if key.startswith("center") else kinds[type(value)], value)
               for key, value in getattr(pair, name).items()} for name in ("master", "slave", "insar")})


def elements(results):
    """The single texts and numbers of results, by key and index."""
    return {(key, i): element for key, value in results.items()
            for i, element in enumerate(value if isinstance(value, list) else [value])}


def tolerance(key, i, wanted, pair):
    """How far an element may be off. The ranges of both calculations agree to 1e-8 m, since an orbit's time
    is rounded to 5e-13 s at 7 km/s; a wave is 0.24 m."""
    cycles, reach = 1e-7, pair.insar["n_samples"] - 1
    return next(most for pattern, most in (
        (r"itude|^heading|^incidence|^ssc", 1.3e-7 * abs(wanted)),  # twice to single precision
        ("eff_baseline", 2e-8 * abs(wanted)),  # the ranges' part in 100 m of height
        ("range_distance|deltaR", 1e-8),
        ("angle", 2e-12),  # 1e-8 m at 800 km, in degrees
        ("height_conv", cycles * wanted * wanted / 100),
        ("frequency_range", cycles / reach),
        ("frequency_azimuth", cycles / pair.insar["n_lines"]),
        ("poly", 1e-9 * 10**pair.degree / reach**i),  # a power costs the fit a digit
    ) if re.search(pattern, key))


@pytest.mark.parametrize("name", CASES)
def test_results_and_numbers_of_the_log(tmp_path, name):
    pair = generic_pair(*CASES[name])
    write(pair, tmp_path)
    done, log_pool = run(tmp_path, arguments(lfl="TRACE", **pair.words)), pair.words["log_pp"]
    assert (done.status, done.marks, done.alarms) == (0, {"OK": "0"}, [])
    results, log = reference(pair)

    pool = done.pool()
    assert len(results) == 39
    assert log_pool != "log.pool" or pool.keys() == {*results, *pair.insar}
    found, wanted = elements({key: pool[key] for key in results}), elements(results)
    assert found.keys() == wanted.keys()
    assert {at: (found[at], value) for at, value in wanted.items() if found[at] != value and (
        isinstance(value, str) or not abs(found[at] - value) <= tolerance(*at, value, pair))} == {}
    assert done.pool(log_pool)["software_names"] == ["varnoth"]
    opened = [text for text in done.levels("DEBUG") if text.startswith("construct pool_rwc")]
    assert len(opened) == len({"insar.pool", log_pool})

    told = "\n".join(done.levels("INFO ", "PARAM", "DEBUG")).split("starting flat earth calculation")[1]
    numbers = NUMBER.findall(told.split("\nopen pool")[0])
    assert len(numbers) == len(log)
    # half a unit of the last digit, and what the two calculations differ by
    assert [(what, text, value) for text, (what, value) in zip(numbers, log)
            if abs(float(text) - value) > 0.9 * 10.0**Decimal(text).as_tuple().exponent] == []
    # every light-time search is counted: two targets, three times each
    counts = [int(t.split()[2]) for t in done.levels("TRACE") if t.endswith("occurrences")]
    assert sum(counts) == (22 * 2 * 3 if pair.single else 0)
