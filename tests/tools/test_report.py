"""varnoth-tools report: what stands in the page, what is told of bad input, and what a browser shows."""

import ctypes
import json
import math
import os
import re
import resource
import shutil
import signal
import subprocess
from pathlib import Path

import pytest

import browser
import make
from varnoth_run import EXAMPLES, TOOLS, Pair, arguments, run

pytestmark = pytest.mark.skipif(not TOOLS.exists(), reason="varnoth-tools is not built")
needs_browser = pytest.mark.skipif(browser.PROGRAM is None, reason="there is no chromium: scripts/report_check installs it")
REMEDIES = (EXAMPLES.parent / "docs" / "troubleshooting.md").read_text()
HOSTILE = """<img src=x onerror="alert(1)"> & 'b' </script>"""


def report(directory, *places, out="report.html", **options):
    """What the command told, and the data of its page."""
    done = subprocess.run([TOOLS, "report", *places, "--out", out], cwd=directory, capture_output=True, text=True,
                          check=False, **options)
    page = directory / out
    if not page.exists():
        return done, None
    data, = re.findall(r'<script type="application/json" id="data">([^<]*)</script>', page.read_text())
    return done, json.loads(data)


def made_pair(directory, **example):
    """A pair with results; `aside` is the slave's distance in m and `days` the time between the scenes."""
    aside, days = example.pop("aside", 100.0), example.pop("days", 12)
    pair = make.Example(kind="utc", **example)
    pair.days["slave"] = pair.days["master"] + days
    pair.orbits["slave"] = make.Circle(aside=aside, higher=0.3 * aside)
    pair.write(directory)
    return run(directory)


def contents(directory):
    return {path: (path.read_bytes(), path.stat().st_mtime_ns) for path in directory.rglob("*") if path.is_file() and not path.is_symlink() and
            os.access(path, os.R_OK)}


def without_privileges():
    """What the next program may not do even for the superuser: pass over the rights of files."""
    PR_CAPBSET_DROP = 24
    for capability in (1, 2):
        ctypes.CDLL(None).prctl(PR_CAPBSET_DROP, capability)


def test_real_pair(tmp_path):
    done = run(shutil.copytree(EXAMPLES / "real_pair", tmp_path / "pair"), arguments(lfl="INFO"))
    before = contents(tmp_path)
    told, data = report(tmp_path, "pair")
    assert (told.returncode, told.stderr, told.stdout) == (0, "", "")
    (tmp_path / "report.html").unlink()
    assert contents(tmp_path) == before
    pair, pool = data["pairs"][0], done.pool()
    assert not data["is_stack"] and [time[0][:19] for time in pair["times"]] == ["2025-04-06T02:20:09", "2025-04-18T02:20:09"]
    assert pair["times"][1][1] - pair["times"][0][1] == pytest.approx(12 * 86400 - 0.126034, abs=1e-3)
    for key, value in zip(data["keys"], pair["numbers"]):
        assert value == pytest.approx(pool[key], rel=1e-8, abs=1e-12)
    rows = [[float(x) for x in row] for row in re.findall(r"\| *(\d+)\|[\d.e+-]+\|.*?\|.*?\| *([\d.-]+) *\| *([\d.]+)\|", "\n".join(done.log))]
    for line in (0, 1):
        for i, (sample, metres, phase) in enumerate(rows[11 * line:][:11]):
            assert pair["samples"][i] == pytest.approx(sample, abs=0.51)
            assert pair["curves"]["metres_per_cycle"][line][i] == pytest.approx(metres, abs=0.0051)
            misfit = pair["curves"]["misfit"][line][i]
            assert pair["curves"]["phase"][line][i] - misfit == pytest.approx(phase, abs=0.0051)
    assert max(abs(x) for line in pair["curves"]["misfit"] for x in line) == pytest.approx(pair["log"]["misfit"], abs=5e-5)
    assert sum(map(sum, pair["curves"]["range_difference"])) / 22 == pytest.approx(pool["varnoth_deltaR"], abs=1e-3)
    assert max(pair["curves"][f"{angle}_difference"][0][0] for angle in ("incidence", "look")) < 0 < pool["eff_baseline"]  # the slave has the smaller one
    effective, baseline = pair["grids"]
    assert (effective["samples"], effective["lines"]) == ([0, 10179, 20358], [0, 4025, 8050])
    assert (effective["values"][0], baseline["values"][2]) == ([133.27, 129.47, 125.93], [153.80] * 3)
    # Open sea, the mainland, and the large island in the south.
    assert [inside(data["land"], *at) for at in ((-133.0, 51.5), (-124.5, 52.0), (-127.5, 50.5))] == [False, True, True]


def inside(rings, longitude, latitude):
    """By the even-odd rule."""
    crossings = 0
    for ring in rings:
        points = [(x / 100, y / 100) for x, y in zip(ring[::2], ring[1::2])]
        for (x0, y0), (x1, y1) in zip(points, points[1:] + points[:1]):
            if (y0 > latitude) != (y1 > latitude):
                crossings += longitude < x0 + (latitude - y0) / (y1 - y0) * (x1 - x0)
    return crossings % 2 == 1


def test_land_beyond_the_date_line(tmp_path):
    pool = made_pair(tmp_path, node=3.04, start=-0.3).pool()
    assert 180 < pool["early_az_near_rg_longitude"] < 181 and -17 < pool["center_latitude"] < -15
    data = report(tmp_path, ".")[1]
    assert [inside(data["land"], *at) for at in ((-180.7, -16.6), (-179.0, -15.0))] == [True, False]  # an island, the sea


@pytest.mark.parametrize("others, half", [([], 0.2), ([1.0], 59), ([0.8, -1.3, -2.4], 121)])
def test_land_around_the_date_line(tmp_path, others, half):
    """Pairs at 179.9 and -179.9, and others, with which the map shows the world."""
    starts = {made_pair(tmp_path / "r" / f"p{i}", node=node, start=-0.3).pool()["early_az_near_rg_longitude"]
              for i, node in enumerate([3.0315, 3.0342, *others])}
    assert min(starts) < 180 < max(starts)
    data = report(tmp_path, "r")[1]
    points = [list(zip(ring[::2], ring[1::2])) for ring in data["land"]]
    ys = [y for ring in points for _, y in ring]
    jumps = [(a, b) for ring in points for a, b in zip(ring, ring[1:] + ring[:1])
             if abs(a[0] - b[0]) > 1500 and not (a[1] == b[1] and a[1] in (min(ys), max(ys)))]
    middle = data["middle_longitude"]
    assert jumps == [] and all(abs(math.remainder(start - middle, 360)) < half for start in starts)
    # The sea, an island across the line, and two continents across it.
    for at, is_land in {(180.4, -16.6): False, (179.95, -16.92): True, (180.05, -16.85): True, **({(181.0, 67.5): True, (178.0, 67.5): True,
                        (181.0, -86.0): True, (179.0, -86.0): True, (60.0, -86.0): True} if len(others) > 1 else {})}.items():
        assert inside(data["land"], middle + math.remainder(at[0] - middle, 360), at[1]) is is_land, at


@pytest.mark.parametrize("mode, level, has_misfit, has_grids", [
    ("dual_pass", "WARNING", True, False), ("single_pass", "INFO", True, True), ("single_pass", "WARNING", False, False)])
def test_what_the_log_has(tmp_path, mode, level, has_misfit, has_grids):
    make.Example(mode=mode).write(tmp_path)
    run(tmp_path, arguments(lfl=level))
    pair = report(tmp_path, ".")[1]["pairs"][0]
    misfit = pair["curves"]["misfit"]
    assert ([len(line) for line in misfit], [bool(grid) for grid in pair["grids"]]) == ([11 * has_misfit] * 2, [has_grids] * 2)
    assert all(abs(value) < 0.006 for line in misfit for value in line) and len(pair["curves"]["phase"][0]) == 11
    assert pair["times"] == [["0", None], ["0", None]]  # seconds of no date


def replaced(name, old, new):
    def change(directory):
        text = (directory / name).read_text(encoding="latin-1")
        assert re.search(old, text)
        (directory / name).write_text(re.sub(old, new, text), encoding="latin-1")
    return change


def in_place(name, make_other):
    def change(directory):
        (directory / name).unlink()
        make_other(directory / name)
    return change


# What is done to a pair with results; status; what is told, as file, severity and words; its ending.
BAD = {
    "no results": (lambda d: Pair().write(d), 1, ["insar.pool:1: error: has no results"], "without results"),
    "half the results": (replaced("insar.pool", r"(?s)\n\S+ +FLT_15_V +0\t11.*?\}\n", "\n"), 1, ["insar.pool:1: error: lacks"], "without results"),
    "no pool": (in_place("insar.pool", lambda path: path.symlink_to("nowhere")), 1, ["insar.pool:1: error: No such file"], "without results"),
    "a directory": (in_place("insar.pool", Path.mkdir), 1, ["insar.pool:1: error: Is a directory"], "without results"),
    "NaN": (replaced("insar.pool", r"(eff_baseline +FLT_15 +)\S+", r"\1nan"), 0, [r"insar.pool:\d+: warning: eff_baseline is not a number"], "done"),
    "infinite": (replaced("insar.pool", r"(eff_baseline +FLT_15 +)\S+", r"\1-inf"), 0, [r"insar.pool:\d+: warning: eff_baseline is infinite"], "done"),
    "unreadable": (replaced("insar.pool", r"(flat_phase_poly_early_az .*\n\s*\{\s*)\S+", r"\g<1>1e999"), 1, [r"insar.pool:\d+: warning: flat_phase_poly_early_az can't be read: ", "insar.pool:1: error: lacks flat_phase_poly_early_az, 1 of"], "without results"),
    "half a log": (lambda d: (d / "log.varnoth").write_text((d / "log.varnoth").read_text()[:9000]), 0, ["log.varnoth:1: warning: does not tell the end"], "done"),
    "no log": (in_place("log.varnoth", lambda path: None), 0, [r"log.varnoth:1: warning: can't be read \(No such file"], "done"),
    "a pipe for a log": (in_place("log.varnoth", os.mkfifo), 0, [r"log.varnoth:1: warning: can't be read \(is no file\)"], "done"),
    "a directory for a log": (in_place("log.varnoth", Path.mkdir), 0, [r"log.varnoth:1: warning: can't be read \(is a directory\)"], "done"),
    "a log without rights": (lambda d: (d / "log.varnoth").chmod(0), 0, [r"log.varnoth:1: warning: can't be read \(Permission denied\)"], "done"),
    "a log that fails": (in_place("log.varnoth", lambda path: path.symlink_to("/proc/self/mem")), 0, [r"log.varnoth:1: warning: can't be read \(Input/output error\)"], "done"),
    "no scene": (in_place("slave.pool", lambda path: None), 0, ["slave.pool:1: warning: No such file"], "done"),
}


@pytest.mark.parametrize("name", BAD)
def test_bad_input(tmp_path, name):
    change, status, wanted, ending = BAD[name]
    made_pair(tmp_path / "p")
    change(tmp_path / "p")
    before = contents(tmp_path)
    done, data = report(tmp_path, "p", timeout=20, preexec_fn=without_privileges)
    told = done.stderr.splitlines()
    assert (done.returncode, len(told), data["pairs"][0]["ending"]) == (status, len(wanted), ending), told
    assert all(re.match("p/" + pattern, line) for pattern, line in zip(wanted, told)), told
    assert {path: value for path, value in contents(tmp_path).items() if path.suffix != ".html"} == before


def test_results_directory(tmp_path):
    results = tmp_path / "r"
    for name in ("b", "a"):
        made_pair(results / name)
    shutil.copytree(results / "a", results / ".c.Xyz123")
    (results / "notes\x1b[2J").mkdir()
    failed = Pair()
    failed.master.pop("prf")
    (tmp_path / "f").mkdir()
    log = "\n".join(run(failed.write(tmp_path / "f")).log)
    for kind, name, text in (("failed", "f", log), ("failed", "e", ""), ("stopped", "s", "found file")):
        (results / kind).mkdir(exist_ok=True)
        (results / kind / f"{name}.log").write_text(text)
    done, data = report(tmp_path, "r")
    assert done.returncode == 0 and re.fullmatch(r"r/notes\?\[2J:1: warning: is no pair: .*\n", done.stderr)
    assert [(pair["name"], pair["ending"]) for pair in data["pairs"]] == [
        ("e", "failed"), ("f", "failed"), ("s", "stopped"), ("a", "done"), ("b", "done")]
    level, text, line, remedy = data["pairs"][1]["notices"][0]
    assert (level, text, log.splitlines()[line - 1][18:]) == ("ALARM", "parameter pool: parameter key >> prf << not found", text)
    assert data["remedies"][remedy][1] == "add the key; look for an empty pool"
    (results / "failed" / "d.log").mkdir()
    done, data = report(tmp_path, "r")
    assert done.returncode == 1 and "r/failed/d.log:1: error: can't be read: is a directory\n" in done.stderr
    assert data["pairs"][0]["log"]["fault"] == "is a directory"
    assert report(tmp_path, "nowhere", "r/a")[0].returncode == 1


# Lines of logs, and what the page on messages says to do.
LINES = {
    "WARN  : EVERETT::GetXi: Forced interpolation left hand side.": "use more samples, or a lower order",
    "WARN  : iterations count 100 exceeded in CalcSlaveTime( t=1, Residuals: dt =2, v_sat.r =3)": "check the slave's orbit and first times",
    "ALARM : parameter pool: parameter key >> x << no value for index 3 due to end of file": "correct the count, or restore the file if its end is missing",
    "ALARM : ZOD_MSG|ERROR|Varnoth Estimations terminated with error!": "the lines before it name the cause",
    "ALARM : got fatal signal 8: floating point exception": "look at the lines before it; correct the pool or the limit",
    "ALARM : >>POLYNOM<< has never been told": None,
    "WARN  : parameter pool: parameter key >> x << not found": None,
}


def test_remedies_of_the_last_run(tmp_path):
    log = made_pair(tmp_path / "p").directory / "log.varnoth"
    log.write_text("WARN  : varnoth : reason: of a run before\n" + log.read_text())
    run(tmp_path / "p", arguments(MasterPar="none.pool", lfl="INFO"))
    (tmp_path / "p" / "none.pool").unlink()
    failed = report(tmp_path, "p")[1]["pairs"][0]
    assert len(failed["notices"]) == 3 and failed["notices"][0][1].endswith("<< not found") and failed["log"]["is_ended"]
    run(tmp_path / "p")
    with log.open("a") as file:
        file.writelines(f"{line[:8]}varnoth : {line[8:]}\n" for line in LINES)
    pair = (data := report(tmp_path, "p")[1])["pairs"][0]
    assert [text for _, text, _, _ in pair["notices"]] == [line[8:] for line in LINES]
    for (_, text, _, place), action in zip(pair["notices"], LINES.values()):
        assert (data["remedies"][place][1] if place is not None else None) == action, text
        assert action is None or action in re.sub(r"[`*]|\[(.*?)\]\(.*?\)", r"\1", REMEDIES)


def test_writes_whole_or_not_at_all(tmp_path):
    made_pair(tmp_path / "p")
    (tmp_path / "report.html").write_text("<!doctype html>an older page")
    before = contents(tmp_path)

    def small_files():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (100000, 100000))
    done = subprocess.run([TOOLS, "report", "p", "--out", "report.html"], cwd=tmp_path, preexec_fn=small_files, capture_output=True, text=True, check=False)
    assert (done.returncode, done.stderr) == (1, "report.html:1: error: File too large\n")
    done = report(tmp_path, "p", out="p/insar.pool.html")[0]
    assert done.returncode == 0
    (tmp_path / "p" / "insar.pool.html").unlink()
    done = subprocess.run([TOOLS, "report", "p", "--out", "p/insar.pool"], cwd=tmp_path, capture_output=True, text=True, check=False)
    assert (done.returncode, done.stderr) == (1, "p/insar.pool:1: error: is no page of a report, and stays as it is\n")
    assert contents(tmp_path) == before


@pytest.fixture(scope="module")
def shown(tmp_path_factory):
    """A browser, and the pages of a pair and of a stack with what is hostile and broken."""
    if browser.PROGRAM is None:
        pytest.skip("there is no chromium")
    root = tmp_path_factory.mktemp("pages")
    results = root / "results"
    for i in range(9):
        made_pair(results / f"pair {i}", aside=(-1) ** i * (20.0 + 13 * i), days=12 * (i + 1))
    names = HOSTILE.replace("/", "∕")  # a name can't have the real one
    (results / "pair 8").rename(results / names)
    replaced("insar.pool", r"(eff_baseline +FLT_15 +)\S+", r"\1nan")(results / "pair 7")
    (results / "failed").mkdir()
    alarm = "ALARM : varnoth : parameter pool: parameter key >> <b onclick='x'>bold</b></script> << not found\n"
    for i in range(300):
        (results / "failed" / f"failed {names} {i}.log").write_text(alarm)
    shutil.copytree(EXAMPLES / "real_pair", root / "pair")
    run(root / "pair", arguments(lfl="INFO"))
    assert report(root, "pair", out="pair.html")[0].returncode == report(root, "results", out="stack.html")[0].returncode == 0
    page = browser.Browser(root / "profile")
    page.root, page.hostile = root, names
    yield page
    page.close()


OVERFLOW = """[...document.querySelectorAll('body *')].filter((node) => !node.closest('.wide *, svg, .plot *') && node.offsetParent &&
  node.getBoundingClientRect().right > innerWidth + 0.5).map((node) => node.outerHTML.slice(0, 80))"""
# Points of each curve: how many values there are, and how many have their colour at their place on the canvas.
POINTS = """[...charts].filter((chart) => chart.host.isConnected).map((chart) => {
  const canvas = chart.host.querySelectorAll('canvas')[0];
  const pixels = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height).data;
  const isInked = (x, y) => [-1, 0, 1].some((i) => [-1, 0, 1].some((j) => pixels[4 * ((Math.round(y) + j) * canvas.width + Math.round(x) + i) + 3] > 150));
  let values = 0, drawn = 0;
  for (let row = 0; row < chart.numRows(); ++row) for (let i = 1; i < chart.numColumns(); ++i) {
    const value = chart.getValue(row, i), isBar = chart.getOption('includeZero');
    if (value === null || (isBar && value === 0)) continue;
    ++values;
    const [x, y] = chart.toDomCoords(chart.getValue(row, 0), value);
    if (isInked(x, y)) ++drawn;
  }
  return [values, drawn];
})"""


# Of each curve the least distance of a point to the frame, and its dates or samples with their distances to both ends.
MARGINS = """[...charts].filter((chart) => chart.host.isConnected && !chart.getOption('includeZero')).map((chart) => {
  const area = chart.getArea(), host = chart.host.getBoundingClientRect(), gaps = [];
  for (let row = 0; row < chart.numRows(); ++row) for (let i = 1; i < chart.numColumns(); ++i) {
    const [x, y] = chart.toDomCoords(chart.getValue(row, 0), chart.getValue(row, i));
    if (chart.getValue(row, i) !== null) gaps.push(x - area.x, area.x + area.w - x, y - area.y, area.y + area.h - y);
  }
  return [Math.min(...gaps), [...chart.host.querySelectorAll('.dygraph-axis-label-x')].map((label) => {
    const range = document.createRange();
    range.selectNodeContents(label);
    const text = range.getBoundingClientRect();
    return [label.textContent, text.left - host.left, host.right - text.right];
  })];
})"""


@needs_browser
@pytest.mark.parametrize("page", ["pair.html", "stack.html", "stack.html#p302"])
@pytest.mark.parametrize("width, dark", [(360, False), (360, True), (1600, False), (1600, True)])
def test_shows_at_every_width(shown, page, width, dark):
    shown.open(f"file://{shown.root}/{page}", width=width, dark=dark)
    assert shown.run("document.documentElement.scrollWidth") <= width and shown.run(OVERFLOW) == []
    points = shown.run(POINTS)
    assert [drawn for _, drawn in points] == [values for values, _ in points]
    assert [p[0] for p in points] == ([22, 22, 22, 44, 44, 22] if page != "stack.html" else [9, 8, points[2][0]])
    if page == "stack.html":
        shown.run("document.querySelector('.charts').append(baselineChart([DATA.pairs[302]])), runWaiting()")
    margins = shown.run(MARGINS)
    assert all(gap > 10 and labels and min(ends[1:]) > -0.5 for gap, labels in margins for ends in labels), margins
    assert page != "stack.html" or [label[0] for label in margins[-1][1]] == [shown.run("dayText(secondsOf(DATA.pairs[302], 1))")]
    assert shown.run("getComputedStyle(document.body).backgroundColor") == ("rgb(20, 24, 28)" if dark else "rgb(255, 255, 255)")
    assert shown.run("[...document.querySelectorAll('.footprint')].map((path) => path.getBBox().width > 20)") == [True]
    assert not shown.told


@needs_browser
def test_hostile_names_show_as_text(shown):
    shown.open(shown.root / "stack.html")
    texts = shown.run("[...document.querySelectorAll('a')].map((a) => a.textContent)")
    assert texts.count(f"failed {shown.hostile} 0") == 2  # under its cause, and in the table
    assert "<b onclick='x'>bold</b></script>" in shown.run("document.querySelector('article.failed code').textContent")
    assert shown.run("document.querySelectorAll('img, main b[onclick], main script').length") == 0
    index = shown.run(f"DATA.pairs.find((pair) => pair.name === {json.dumps(shown.hostile)}).index")
    shown.run(f"location.hash = 'p{index}'")
    shown.settle()
    assert shown.run("document.querySelector('#pair h1').textContent") == shown.hostile
    assert shown.hostile in shown.run("document.title") and not shown.told


# What a part of the page says of a pair that differs from a good one in some of its data.
WORDS = {
    "a log that can't be read": ("causeOf(pair)[0]", "{notices: [], log: {fault: 'is a directory'}}", "the log can't be read: is a directory"),
    "a log without an ALARM": ("causeOf(pair)[0]", "{notices: [], log: {fault: ''}}", "no ALARM line in the log"),
    "times that are no dates": ("element('p', {}, scenesWords(pair)).textContent", "{times: [['0', null], ['', null]]}", "Master of unknown date, slave of unknown date."),
    "their tooltip": ("element('p', {}, scenesWords(pair)).querySelector('[title]').title", "{times: [['0', null], ['', null]]}", "orbit_reference_time 0"),
    "in the table": ("[2, 3].map((i) => new PairTable([pair]).body.rows[0].cells[i]).map((cell) => cell.textContent + cell.title).join('/')",
                     "{times: [['0', null], ['', null]]}", "unknown dateorbit_reference_time 0/–"),
    "a shorter time": ("element('p', {}, scenesWords(pair)).textContent", "{times: [['2026-01-02T03:04:05', 864e5], ['2025-12-31T23:59:59', 0]]}",
                       "Master 1972-09-27 03:04:05, slave 1970-01-01 23:59:59: 1000 days earlier."),
    "warnings of its own": ("tiles([pair]).querySelector('.warned')?.textContent", "{remarks: ['x:1: y']}", "1done with warnings"),
    "no warnings": ("tiles([pair]).querySelector('.warned')?.textContent", "{}", None),
    "columns": ("[...new PairTable([pair]).body.rows[0].cells].slice(5, 9).map((cell) => cell.textContent).join()", "{numbers: DATA.keys.map((key) =>"
                "['eff_baseline', 'height_conversion_factor', 'varnoth_deltaR', 'incidence_angle_mid_range'].indexOf(key))}", "0.0,1.0,2.0,3.00"),
    "infinite": ("new PairTable([pair]).body.rows[0].cells[6].textContent", "{numbers: DATA.keys.map(() => '-inf')}", "-inf"),
    "not a number": ("new PairTable([pair]).body.rows[0].cells[6].textContent", "{numbers: DATA.keys.map(() => null)}", "–"),
}


@needs_browser
def test_words(shown):
    shown.open(shown.root / "stack.html")
    for name, (expression, change, wanted) in WORDS.items():
        words = shown.run(f"((pair) => {expression})({{...DATA.pairs.find((pair) => pair.name === 'pair 1'), ...{change}}})")
        assert words == wanted, name


@needs_browser
def test_histogram_and_scale_of_the_map(shown):
    shown.open(shown.root / "stack.html")
    baselines = shown.run("DATA.pairs.map((pair) => numberOf(pair, 'eff_baseline')).filter(isNumber)")
    bars = shown.run("(([chart]) => Array.from({length: chart.numRows()}, (_, i) => [chart.getValue(i, 0), chart.getValue(i, 1)]))([...charts].slice(2))")
    half = (bars[1][0] - bars[0][0]) / 2
    assert sum(count for _, count in bars) == len(baselines) == 8
    assert all(count == sum(x - half <= value < x + half for value in baselines) for x, count in bars)
    shown.open(shown.root / "pair.html")
    (west, south), (east, north) = shown.run("((ring) => [Math.min, Math.max].map((end) => [0, 1].map((i) => end(...ring.map((point) => point[i])))))(footprintOf(DATA.pairs[0]))")
    box = shown.run("(({width, height}) => [width, height])(document.querySelector('.footprint').getBBox())")
    assert box[0] / box[1] == pytest.approx((east - west) * math.cos(math.radians((north + south) / 2)) / (north - south), rel=0.01)


def column(shown, place):
    return shown.run(f"[...document.querySelectorAll('.pairs tbody tr:not([hidden])')].map((row) => row.cells[{place}].textContent)")


@needs_browser
def test_sorts_and_filters(shown):
    shown.open(shown.root / "stack.html")
    assert column(shown, 1) == ["failed"] * 200  # before all others, and no more at once
    shown.run("document.querySelector('.more').click()")
    assert column(shown, 1) == ["failed"] * 300 + ["done"] * 9
    for direction in (1, -1):
        shown.run("document.querySelectorAll('.pairs thead button')[5].click()")
        numbers = [float(text) for text in column(shown, 5)[:8]]
        assert numbers == sorted(numbers, key=lambda x: direction * x) and set(column(shown, 5)[8:]) == {"–"}
    shown.run("document.querySelectorAll('.pairs thead button')[0].click()")
    assert column(shown, 0)[-8:] == [f"pair {i}" for i in range(8)]
    expected = shown.run("DATA.pairs.filter((pair) => Math.abs(numberOf(pair, 'eff_baseline') ?? 1e9) <= 60).length")
    for field, value, count in (("filter-baseline", "60", expected), ("filter-baseline", "", 309), ("filter-ending", "failed", 300),
                                ("filter-text", "NOT bold 77", 3), ("filter-ending", "", 3), ("filter-text", "pair 3", 1)):
        shown.run(f"(() => {{ const field = document.getElementById('{field}'); field.value = '{value}';"
                  "field.dispatchEvent(new Event('input')); field.dispatchEvent(new Event('change')); })()")
        assert (len(column(shown, 0)), shown.run("document.querySelector('.filters output').textContent")) == (count, f"{count} of 309 pairs")
    assert 0 < expected < 8 and not shown.told


@needs_browser
def test_pointer_and_keys(shown):
    shown.open(shown.root / "pair.html")
    curve = "[...charts][0]"
    x, y = shown.run(f"(() => {{ const box = {curve}.host.getBoundingClientRect(), at = {curve}.toDomCoords({curve}.getValue(3, 0), {curve}.getValue(3, 1));"
                     "return [box.x + at[0], box.y + at[1]]; })()")
    shown.run(f"window.scrollTo(0, {y} - 300)")
    shown.point_at(x, y - shown.run("scrollY"))
    shown.settle()
    key = "document.querySelector('.charts .key').textContent"
    assert "first line -91.8" in shown.run(key) and "at sample 6107.4" in shown.run(key)
    shown.run("document.querySelector('.plot').focus()")
    for _ in range(2):
        shown.press("ArrowLeft")
    assert "at sample 18322.2" in shown.run(key) or "at sample 2035.8" in shown.run(key)
    shown.open(shown.root / "stack.html")
    for _ in range(3):
        shown.press("Tab")
    name = shown.run("document.activeElement.textContent")
    shown.press("Enter")
    shown.settle()
    assert shown.run("[document.querySelector('#pair h1').firstChild.textContent, document.querySelector('#stack').hidden]") == [name, True]
    shown.run("document.querySelector('nav a').click()")
    shown.settle()
    assert shown.run("[document.querySelector('#stack').hidden, document.activeElement.tagName]") == [False, "H1"] and not shown.told


@needs_browser
@pytest.mark.parametrize("page, least, most", [("pair.html", 2, 5), ("stack.html", 15, 22)])
def test_prints_whole_pages(shown, page, least, most):
    shown.open(shown.root / page, dark=True)
    pdf = shown.pdf()
    boxes = [[float(x) for x in box.split()] for box in re.findall(rb"/MediaBox \[([\d. ]+)\]", pdf)]
    assert least <= len(re.findall(rb"/Type\s*/Page\b", pdf)) <= most and boxes
    assert all(math.dist(box, [0, 0, 595, 842]) < 2 for box in boxes)
    shown.open(shown.root / page, width=680)  # what the margins of A4 leave
    shown.call("Emulation.setEmulatedMedia", media="print")
    if page == "stack.html":
        shown.run("window.dispatchEvent(new Event('beforeprint'))")
        assert len(column(shown, 0)) == 309
        shown.run("window.dispatchEvent(new Event('afterprint'))")
        assert len(column(shown, 0)) == 200
        shown.run("document.querySelector('main').append(new PairTable(new Array(2003).fill(DATA.pairs[302])).node)")
        shown.run("window.dispatchEvent(new Event('beforeprint'))")
        assert len(column(shown, 0)) == 2309 and shown.run("[...document.querySelectorAll('.printed')].map((line) => line.hidden ? null : line.textContent.slice(0, 18))") == [None, "3 more pairs left "]
        shown.run("document.querySelector('main').lastChild.remove()")
    shown.run("for (const field of document.querySelectorAll('#filter-ending')) { field.value = 'done'; field.dispatchEvent(new Event('change')); }")
    shown.settle()
    assert shown.run("document.documentElement.scrollWidth") <= 680 and shown.run(OVERFLOW) == [] and not shown.told
