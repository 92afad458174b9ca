"""Compares the numbers on the pages on geometry and results with runs, and tries the scripts beside them."""

import math
import os
import re
import shutil
import subprocess
import sys

import pytest

import test_real_pair as real_pair
from varnoth_run import BINARY, EXAMPLES, arguments, make, run

DOCS = EXAMPLES.parent / "docs"
sys.path.insert(0, str(DOCS))
import costs  # noqa: E402 (stands beside the pages)

PAGES = {path.stem: path.read_text() for path in DOCS.glob("*.md")}
PRF, STEPS, MIDDLE = 486.48631029955294, 8050, 10179
MIDTIME = 8409.449181 + STEPS / 2 / PRF
IDLE = [("slave", "prf", 400), ("slave", "range_sampling_frequency", 5e7), ("slave", "az_bandwidth", 100),
        ("master", "az_bandwidth", 100), ("insar", "slave_first_az_time", 8400), ("insar", "slave_first_rg_time", 4e-3)]


def real(tmp_path, *changes):
    """A run on the real pair with other texts for some keys of its pools."""
    directory = shutil.copytree(EXAMPLES / "real_pair", tmp_path / f"run {len(list(tmp_path.iterdir()))}")
    for name, key, value in changes:
        path = directory / f"{name}.pool"
        text, count = re.subn(rf"^({key} +\S+ +).*", rf"\g<1>{value}", path.read_text(), flags=re.MULTILINE)
        assert count == 1
        path.write_text(text)
    return run(directory, arguments(lfl="TRACE", FlatEarthPolyDegree="10"))


def cells(page, first):
    """The numbers of the table row that starts with a text."""
    row, = re.findall(rf"^\| {re.escape(first)} \| (.*) \|$", PAGES[page], re.MULTILINE)
    return [float(cell) for cell in re.findall(r"-?\d+\.?\d*(?= \||$)", row)]


def targets(done):
    vectors = re.findall(r"Earth vector : \((.*)\)", "\n".join(done.log))
    return [[float(x) for x in vector.split()] for vector in vectors]


def flat(pool, k):
    return sum(c * MIDDLE**i for i, c in enumerate(pool[f"flat_phase_poly_{real_pair.LINES[k]}"]))


@pytest.mark.parametrize("east, above", [(120, 40), (0, 200), (120, -200)])
def test_parts_of_the_baseline(tmp_path, east, above):
    pair = make.Example()
    pair.orbits["slave"] = make.Circle(0.0, float(above), float(east))
    pair.write(tmp_path)
    p = run(tmp_path).pool()
    found = p["eff_baseline"], p["height_conversion_factor"], p["flat_phase_poly_early_az"][0], p["varnoth_deltaR"]
    assert cells("geometry", f"{east} | {above}") == [round(x, 1) for x in found]


def test_the_real_pair(tmp_path):
    done = real(tmp_path)
    pool, found = done.pool(), targets(done)
    steps = [math.dist(found[i], found[11 + i]) / STEPS for i in (0, 5, 10)]
    assert cells("geometry", "azimuth, from target to target") == pytest.approx(
        [pool["ssc_pixel_spacing_azimuth"], *steps], abs=7e-4)
    found = {"range": pool["master_early_az_range_distance"][5], "eff_baseline": pool["eff_baseline"],
             "incidence": pool["master_early_az_incidence_angle"][5], "heading": pool["heading_angle"],
             "metres_per_cycle": pool["height_conversion_factor"], "spacing": steps[1]}
    assert costs.PAIR | found == pytest.approx(costs.PAIR, abs=6e-3)
    assert f"{-2 * pool['varnoth_deltaR'] * 64345238.1257 / 299792458:.1f} in the real pair" in PAGES["results"]
    centre = real_pair.on_ellipsoid(pool["center_latitude"], pool["center_longitude"])
    halfway = real(tmp_path, ("insar", "master_first_az_time", MIDTIME))
    assert 1650 < math.dist(centre, targets(halfway)[5]) < 1750
    angles = [pool[f"master_{line}_az_incidence_angle"][i] for line, i in (("early", 0), ("late", 5), ("early", 10))]
    ground = [299792458 / 2 / 64345238.1257 / math.sin(math.radians(angle)) for angle in angles]
    assert cells("geometry", "ground range, by the formula") == pytest.approx(
        [pool["ssc_pixel_spacing_ground_range"], *ground], abs=6e-4)
    stated = real_pair.TRUTH["annotated_azimuth_pixel_spacing_m"]
    assert pool["ssc_pixel_spacing_azimuth"] == pytest.approx(stated, rel=0.01)
    per_cycle = pool["early_az_phase_to_height_conv"]
    assert f"{per_cycle[0]:.1f} m at near range and {per_cycle[10]:.1f} m at far range" in PAGES["results"]


def test_degrees(tmp_path):
    told = re.search(r"is ([\d., ]+) cycles for the degrees 1, 2, 3, 4", PAGES["geometry"])[1]
    shutil.copytree(EXAMPLES / "real_pair", tmp_path / "run")
    for degree, misfit in enumerate(told.split(", "), 1):
        done = run(tmp_path / "run", arguments(FlatEarthPolyDegree=str(degree)))
        found = re.findall(r"Maximum error through ellipsoid appr. \[cycl\] : (.*)", "\n".join(done.log))[-1]
        assert float(misfit) == pytest.approx(float(found), rel=0.02)
    coefficients = run(tmp_path / "run").pool()["flat_phase_poly_early_az"]
    assert f"({sum(c * MIDDLE**i for i, c in enumerate(coefficients)):.4f} with all digits" in PAGES["geometry"]


@pytest.mark.parametrize("method", [
    "everett_4", "localpolynom_0_9", "localpolynom_0_5", "localchebyshev_6_9", "localhermite_0_2", "localhermite_0_4",
    "hermite", "polyfit_4", "localpolyfit_4_5", "spline", "polyfit_6"])
def test_methods(tmp_path, method):
    changes = [(name, "orbit_interpolation", f'"{method}"') for name in ("master", "slave")]
    usual, other = real(tmp_path), real(tmp_path, *changes)
    pools = [{key: value if isinstance(value, list) else [value] for key, value in done.pool().items()
              if key == "eff_baseline" or "range_distance" in key} for done in (usual, other)]
    moved = max(math.dist(*ends) for ends in zip(targets(usual), targets(other)))
    changed = max(abs(a - b) for key in pools[0] for a, b in zip(pools[0][key], pools[1][key]))
    scene, pair = re.search(rf"^\| `{method}` \|.*\| (.*) \| (.*) \| .*\|$", PAGES["geometry"], re.MULTILINE).groups()
    assert float(pair) == pytest.approx(changed, rel=0.25)
    assert float(re.search(r"[\d.e-]+", scene)[0]) == pytest.approx(moved, rel=0.25, abs=0.02)  # the log has hundredths


@pytest.mark.parametrize("length", ["4", "8", "16.5", "25", "50"])
def test_between_the_lines(tmp_path, length):
    half = round(float(length) * PRF / 2)
    ends, bent = (real(tmp_path, ("insar", "n_lines", 2 * half + 1), ("insar", "master_first_az_time", t)).pool()
                  for t in (MIDTIME - half / PRF, MIDTIME))
    missed = abs((flat(ends, 0) + flat(ends, 1)) / 2 - flat(bent, 0))
    assert cells("geometry", length)[1] == pytest.approx(missed, abs=1.1e-3)
    assert cells("geometry", length)[2] == pytest.approx(-missed * ends["height_conversion_factor"], abs=0.11)


def test_what_no_run_notices(tmp_path):  # in dual pass
    usual = real(tmp_path).pool()
    for change in IDLE:
        assert real(tmp_path, change).pool() | {change[1]: 0} == usual | {change[1]: 0}, change
    wrong = real(tmp_path, *((name, "radar_frequency", "5.405D+09") for name in ("master", "slave")))
    assert not wrong.told and wrong.pool()["height_conversion_factor"] < -9e10
    moved = wrong.directory / "slave.pool"
    for method, status in (("everett_8", 1), ("localpolynom_0_9", 0)):
        text = (EXAMPLES / "real_pair" / "slave.pool").read_text().replace("20:33.206813", "20:33.206814")
        moved.write_text(text.replace("everett_8", method))
        assert run(wrong.directory).status == status


def test_single_pass(tmp_path):
    rows = []
    for mode in ("dual_pass", "single_pass"):
        make.Example(mode=mode, kind="utc").write(tmp_path / mode)  # the dates are twelve days apart
        rows.append(run(tmp_path / mode))
    assert not any(done.status or done.told for done in rows)
    for name in ("`flat_phase_poly_early_az`, p[0] (cycles)", "`fringe_frequency_range`", "`eff_baseline` (m)",
                 "`height_conversion_factor` (m)", "`varnoth_deltaR` (m)"):
        found = [done.pool()[name.split("`")[1]] for done in rows]
        found = [value[0] if isinstance(value, list) else value for value in found]
        assert cells("results", name)[:2] == pytest.approx(found, abs=1e-6, rel=5e-5)


def test_tour(tmp_path):
    page = (EXAMPLES / "README.md").read_text()
    for example, text in re.findall(r"^\| `(\w+)` \| (.*) \|$", page.split("## 3.")[1], re.MULTILINE):
        numbers = re.findall(r"-?\d+\.\d+", text)
        assert not set(numbers) - set(re.findall(r"-?\d+\.\d+", (EXAMPLES / example / "output.txt").read_text()))
    recipes = "".join(re.findall(r"^    .*\n", page[page.index("## 4."):page.index("## 6.")], re.MULTILINE))
    for place, tried in (("$PWD/build/release/src/driver/varnoth", str(BINARY)),
                         ('run "$broken"', f'run "$broken" {BINARY}')):
        assert place in recipes
        recipes = recipes.replace(place, tried)
    done = subprocess.run(["bash"], input=recipes, cwd=EXAMPLES.parent, env=os.environ | {"TMPDIR": str(tmp_path)},
                          capture_output=True, text=True, check=True)
    assert "only possible with even order, not for given order 7" in done.stderr and done.stdout == ""
    assert len(list(tmp_path.glob("*/pair_*/OK.varnoth"))) == 20 and not list(tmp_path.glob("*/failed*"))


@pytest.mark.parametrize("page, script", [("limits", ["costs.py"]), ("results", ["flatten.py", BINARY])])
def test_script(page, script):
    out = subprocess.check_output([sys.executable, "-B", DOCS / script[0], *script[1:]], text=True)
    assert not [line for line in out.splitlines() if line not in PAGES[page]]
    for height, hill in re.findall(r"([\d.-]+) +([\d.]+)$", out, re.MULTILINE):
        assert abs(float(height) - float(hill)) < 0.65  # a straight line between the lines, and two roundings
