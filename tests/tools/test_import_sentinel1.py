"""varnoth-tools import sentinel1: made-up annotation and orbit files of a satellite on a circle, whose scenes a run
places where the circle says."""

import gzip
import itertools
import math
import os
import re
import resource
import signal
import subprocess
import zipfile
from datetime import datetime, timedelta

import pytest

import make
from varnoth_run import TOOLS, Run, run

pytestmark = pytest.mark.skipif(not TOOLS.exists(), reason="varnoth-tools is not built")
A, B, LIGHT = 6378137.0, 6356752.314245, 299792458.0
CIRCLE = make.Circle()
START = datetime(2025, 4, 5, 23, 59, 1, 324203)  # of the circle; the scene is 60 s later, behind midnight
FIRST, RATE, SAMPLING, DELAY, SAMPLES = 60.125157, 50.0, 5e7, 5.5e-3, 2001
BURST, STEP, BURSTS = 100, 80, 4  # lines, lines from burst to burst
LINES = STEP * (BURSTS - 1) + BURST
NAME = "s1a-iw1-slc-{}-20250406t000001-20250406t000007-058630-07421f-004.xml"


def iso(seconds):
    return (START + timedelta(seconds=seconds)).isoformat(timespec="microseconds")


def unit(v):
    return [x / math.hypot(*v) for x in v]


def target(t, delay, height=0.0, side=1):
    """Latitude and longitude of an echo: velocity, position and the cross track of a circle stand at right angles, so
    the zero-Doppler points are the plane of the latter two."""
    r, v = circle(t)
    up, right = unit(r), unit([v[1] * r[2] - v[2] * r[1], v[2] * r[0] - v[0] * r[2], v[0] * r[1] - v[1] * r[0]])
    near, far = 0.0, 0.3
    for _ in range(60):
        angle = (near + far) / 2
        p = [math.cos(angle) * u + side * math.sin(angle) * x for u, x in zip(up, right)]
        size = 1 / math.sqrt((p[0] ** 2 + p[1] ** 2) / (A + height) ** 2 + p[2] ** 2 / (B + height) ** 2)
        p = [size * x for x in p]
        near, far = (angle, far) if math.dist(p, r) < delay * LIGHT / 2 else (near, angle)
    flat = ((B + height) / (A + height)) ** 2
    return math.degrees(math.atan2(p[2] / flat, math.hypot(*p[:2]))), math.degrees(math.atan2(p[1], p[0])), p


def circle(t):
    return CIRCLE.state(t), CIRCLE.state(t, 1)


def vectors(first, count, step=10.0, wrong=0.0):
    """Times, positions and velocities, these wrong by a speed (m/s) straight down."""
    for i in range(count):
        t = first + i * step
        r, v = circle(t)
        yield t, r, [x - wrong * u for x, u in zip(v, unit(r))]


def tag(name, *content, **attributes):
    head = "".join(f' {key}="{value}"' for key, value in attributes.items())
    return f"<{name}{head}>{''.join(str(c) for c in content)}</{name}>\n"


def annotation(orbit=None, side=1):
    orbit = list(vectors(-10, 17)) if orbit is None else orbit
    xyz = lambda name, v: tag(name, *(tag(axis, f"{x:.15e}") for axis, x in zip("xyz", v)))  # noqa: E731
    grid = ""
    for line, sample in itertools.product((0, LINES // 2, LINES - 1), (0, SAMPLES // 2, SAMPLES - 1)):
        t, delay = FIRST + line / RATE, DELAY + sample / SAMPLING
        latitude, longitude, _ = target(t, delay, side=side)
        grid += tag("geolocationGridPoint", tag("azimuthTime", iso(t)), tag("slantRangeTime", delay), tag("line", line),
                    tag("pixel", sample), tag("latitude", latitude), tag("longitude", longitude), tag("height", 0))
    return '<?xml version="1.0" encoding="UTF-8"?>\n' + tag(
        "product", tag("adsHeader", tag("missionId", "S1A"), tag("productType", "SLC"), tag("polarisation", "VV"),
                       tag("swath", "IW1"), tag("absoluteOrbitNumber", 58630)),
        tag("generalAnnotation", tag("productInformation", tag("projection", "Slant Range"),
                                     tag("rangeSamplingRate", SAMPLING), tag("radarFrequency", 5.4e9)),
            tag("orbitList", *(tag("orbit", tag("time", iso(t)), tag("frame", "Earth Fixed"), xyz("position", r),
                                   xyz("velocity", v)) for t, r, v in orbit), count=len(orbit))),
        tag("imageAnnotation", tag("imageInformation", tag("productFirstLineUtcTime", iso(FIRST)),
                                   tag("slantRangeTime", DELAY), tag("azimuthTimeInterval", 1 / RATE),
                                   tag("azimuthFrequency", RATE), tag("numberOfSamples", SAMPLES),
                                   tag("numberOfLines", BURST * BURSTS)),
            tag("processingInformation", tag("ellipsoidSemiMajorAxis", A), tag("ellipsoidSemiMinorAxis", B),
                tag("orbitSource", "Made up"), tag("swathProcParamsList", tag("swathProcParams", tag(
                    "azimuthProcessing", tag("processingBandwidth", 40), tag("totalBandwidth", 45)))))),
        tag("swathTiming", tag("linesPerBurst", BURST), tag("burstList", *(
            tag("burst", tag("azimuthTime", iso(FIRST + i * STEP / RATE))) for i in range(BURSTS)))),
        tag("geolocationGrid", tag("geolocationGridPointList", grid)))


def orbit_file(orbit, satellite="A", count=9361, tai=37, frame="EARTH_FIXED", kind="POE"):
    osv = lambda t, r, v: tag("OSV", tag("TAI", "TAI=" + iso(t + tai)), tag("UTC", "UTC=" + iso(t)), *(  # noqa: E731
        tag(key, f"{x:+.6f}") for key, x in zip(("X", "Y", "Z", "VX", "VY", "VZ"), [*r, *v])), tag("Quality", "NOMINAL"))
    return tag("Earth_Explorer_File", tag("Earth_Explorer_Header", tag(
        "Fixed_Header", tag("Mission", f"Sentinel-1{satellite}"), tag("File_Type", f"AUX_{kind}ORB")), tag(
        "Variable_Header", tag("Ref_Frame", frame), tag("Time_Reference", "UTC"))),
        tag("Data_Block", tag("List_of_OSVs", *(osv(*x) for x in orbit), count=count)))


def sentinel1(source, *options, out="scene.pool", **more):
    done = subprocess.run([TOOLS, "import", "sentinel1", source, "--out", source.parent / out, *options],
                          capture_output=True, text=True, **more)
    return done, Run(source.parent, 0, "", "").pool(out) if done.returncode == 0 else {}


def file_of(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text)
    return path


@pytest.mark.parametrize("side", [1, -1])
def test_a_run_places_the_scene_where_the_circle_says(tmp_path, side):
    done, pool = sentinel1(file_of(tmp_path / NAME.format("vv"), annotation(side=side)))
    assert (done.stderr, pool["scene_name"], pool["satellite"]) == ("", NAME.format("vv")[:-4], "S1A")
    assert (pool["n_lines"], pool["n_samples"], pool["absolute_orbit"], pool["relative_orbit"]) == (
        LINES, SAMPLES, 58630, 108)  # 108 as others number this pass
    assert (pool["prf"], pool["az_bandwidth"], pool["orbit_reference_time"]) == (RATE, 40, "06-APR-2025/00:00:00.000000")
    assert pool["antenna_look_direction"] == ("right" if side == 1 else "left")
    middle = target(FIRST + LINES // 2 / RATE, DELAY + SAMPLES // 2 / SAMPLING, side=side)
    assert [pool["center_latitude"], pool["center_longitude"]] == pytest.approx(middle[:2], abs=1e-5)
    values = {"n_samples": ("INT_32", SAMPLES), "n_lines": ("INT_32", LINES), "observation_mode": ("STR", "dual_pass"),
              "local_height": ("FLT_15", 300.0), **{f"{who}_first_{what}_time": ("FLT_15", pool[f"first_{what}_time"])
                                                   for who in ("master", "slave") for what in ("az", "rg")}}
    make.write_pools(tmp_path, {"insar": values})
    beside = annotation([(t, [r[0] + 100, *r[1:]], v) for t, r, v in vectors(-10, 17)], side)
    sentinel1(file_of(tmp_path / "b.xml", beside), out="slave.pool")
    (tmp_path / "scene.pool").rename(tmp_path / "master.pool")
    result = run(tmp_path)
    assert result.status == 0 and result.told == []
    for (az, line), (rg, sample) in itertools.product((("early", 0), ("late", LINES - 1)),
                                                      (("near", 0), ("far", SAMPLES - 1))):
        wanted = target(FIRST + line / RATE, DELAY + sample / SAMPLING, 300.0, side)
        found = [result.pool()[f"{az}_az_{rg}_rg_{what}"] for what in ("latitude", "longitude")]
        assert found == pytest.approx([wanted[0], wanted[1] % 360], abs=1.6e-5)  # half a digit of single precision


def test_vectors(tmp_path):
    """Rounded epochs are moved onto the grid of most of them, with their positions; far vectors are left out."""
    late = [10.0 * i + (1e-6 if i % 3 == 0 else 0) for i in range(-51, 66)]
    done, pool = sentinel1(file_of(tmp_path / "a.xml", annotation([(t, *circle(t)) for t in late])))
    assert "5 of 14 epochs were up to 1 us off the even grid" in done.stdout and "0.0075 m" in done.stdout
    assert "vectors 52 to 65 of 117" in done.stdout and done.stderr == ""
    assert [e[-15:] for e in pool["orbit_epoch"]] == [iso(10.0 * i)[-15:] for i in range(14)]
    assert (pool["orbit_epoch"][5], pool["first_az_time"]) == ("05-APR-2025/23:59:51.324203", 1.44936)
    for i in range(14):
        assert [pool[f"orbit_{x}"][i] for x in "xyz"] == pytest.approx(CIRCLE.state(10.0 * i), abs=1e-5)
        assert [pool[f"orbit_v{x}"][i] for x in "xyz"] == pytest.approx(CIRCLE.state(10.0 * i, 1), abs=1e-4)


def test_velocities_that_are_no_derivative(tmp_path):
    """A velocity that is wrong by g straight down shifts a target along the track by g times the cosine of the look
    angle times the range, over the speed."""
    source = file_of(tmp_path / "a.xml", annotation(list(vectors(-10, 17, wrong=0.02))))
    done, _ = sentinel1(source)
    r, (*_, p) = CIRCLE.state(FIRST), target(FIRST, DELAY)
    shift = 0.02 * abs(sum((a - b) * u for a, b, u in zip(p, r, unit(r)))) / math.hypot(*CIRCLE.state(FIRST, 1))
    wanted = f"up to 20.0 mm/s off the derivative of the positions: with these positions expect errors of up to {shift:.2f} m"
    assert wanted in done.stderr and "; a precise orbit file" in done.stderr and done.returncode == 0
    assert "#Mind: the listed velocities are up to 20.0 mm/s" in (tmp_path / "scene.pool").read_text()
    done, _ = sentinel1(source, "--orbit", file_of(tmp_path / "o.EOF", orbit_file(list(vectors(-10, 17)), count=17)))
    assert done.stderr == "" and "14 vectors of orbit file o.EOF (precise)" in done.stdout


def test_the_best_orbit_file_of_a_folder(tmp_path):
    source = file_of(tmp_path / "a.xml", annotation())
    name = "orbits/S1{}_OPER_AUX_{}ORB_OPOD_{}T000000_V20250405T000000_20250406T235959.EOF"
    whole, late = list(vectors(-100, 40)), list(vectors(40, 40))  # that names promise more proves nothing
    for satellite, kind, day, orbit in (("A", "RES", 20250420, whole), ("A", "POE", 20250409, whole),
                                        ("A", "POE", 20250408, whole), ("A", "POE", 20250410, late)):
        file_of(tmp_path / name.format(satellite, kind, day), orbit_file(orbit, satellite, kind=kind))
    file_of(tmp_path / name.format("A", "POE", 20250412), orbit_file(whole, kind="RES"))  # nor what they say of the kind
    file_of(tmp_path / name.format("B", "POE", 20250419), orbit_file(whole, "B"))
    file_of(tmp_path / name.format("A", "POE", 20250419).replace("V20250405", "V20250406"), "not even XML")
    chosen = []
    for _ in range(4):
        done, _ = sentinel1(source, "--orbit", tmp_path / "orbits")
        chosen.append(done.stdout.split("orbit file ")[1].split("_V")[0])
        assert "states 9361 vectors and holds 40" in done.stderr
        assert re.search(r"warning: passed over \S+_20250410T\S+: its vectors, .* do not cover the scene", done.stderr)
        (path,) = (tmp_path / "orbits").glob(chosen[-1] + "_V*")
        path.unlink()
    assert chosen == [f"S1A_OPER_AUX_{k}ORB_OPOD_202504{d}T000000" for k, d in (
        ("POE", "09"), ("POE", "08"), ("POE", 12), ("RES", 20))]
    done, _ = sentinel1(source, "--orbit", tmp_path / "orbits")
    assert done.returncode == 1 and "none of 3 orbit files covers S1A" in done.stderr and "20250410T000000" in done.stderr


@pytest.mark.parametrize("packed", [False, True])
def test_products(tmp_path, packed):
    safe = tmp_path / "P.SAFE"
    for polarisation, swath in itertools.product(("vv", "vh"), ("iw1", "iw2")):
        text = annotation().replace("IW1", swath.upper()).replace("VV", polarisation.upper())
        file_of(safe / "annotation" / NAME.replace("iw1", swath).format(polarisation), text)
    file_of(safe / "annotation/calibration" / NAME.format("vv"), "<calibration/>")
    file_of(safe / "manifest.safe", "<a><safe:relativeOrbitNumber>110</safe:relativeOrbitNumber></a>")
    source = safe
    if packed:
        source = tmp_path / "p.zip"
        with zipfile.ZipFile(source, "w", zipfile.ZIP_DEFLATED) as archive:
            for path in sorted(safe.rglob("*.*")):
                archive.write(path, path.relative_to(tmp_path))
    for options, wanted in (("--swath iw2", "IW2 VV"), ("--swath IW1 --polarisation VH", "IW1 VH"), ("", "has IW1, IW2"),
                            ("--swath IW3", "no swath IW3, only IW1, IW2"),
                            ("--swath IW1 --polarisation HH", "no polarisation HH, only VH, VV")):
        done, _ = sentinel1(source, *options.split())
        assert wanted in (done.stdout or done.stderr), options
        assert ("manifest says relative orbit 110" in done.stderr) == (done.returncode == 0)


GOOD = annotation()
ORBIT = list(vectors(-10, 17))
DOCTYPE = '<!DOCTYPE a [<!ENTITY b "cc">]>\n'


def changed(old, new, count=1):
    assert old in GOOD
    return GOOD.replace(old, new, count)


# Annotation (or bytes), options, and a part of the only message behind its line.
BAD = {
    "missing": (None, "", ":1: error: No such file"), "empty": ("", "", ":1: error: empty"),
    "cut": (GOOD[:-200], "", "error: not whole XML"), "no XML": ("a = 1\n", "", "error: not whole XML"),
    "cut gzip": (gzip.compress(GOOD.encode())[:-900], "", ":1: error: broken gzip file"),
    "huge gzip": (gzip.compress(b" " * 70000000), "", ":1: error: larger than 64 million"),
    "entities": (GOOD.replace("<product>", DOCTYPE + "<product>"), "", "error: has a document type"),
    "ground range": (changed("SLC", "GRD"), "", ":3: error: a GRD product: it has no slant range grid"),
    "another satellite": ("<level1Product><generalHeader><mission>X-9</mission></generalHeader></level1Product>", "",
                          ":1: error: XML of X-9 with the root element level1Product"),
    "calibration": ("<calibration/>", "", ":1: error: a calibration file"), "orbit": (orbit_file([]), "", "--orbit"),
    "frame": (changed("Earth Fixed", "GCRF"), "", "frame 'GCRF'"), "no value": (
        changed("slantRange", "x", 2), "", "no slantRangeTime in imageInformation"),
    "NaN": (changed(f"<radarFrequency>{5.4e9}", "<radarFrequency>nan"), "", "radarFrequency 'nan' is no number"),
    "unit": (changed(f"<radarFrequency>{5.4e9}", "<radarFrequency>5.4"), "", "radar frequency in Hz of 5.4"),
    "century": (changed("Time>2025", "Time>1825"), "", "is no time of the years 1970"),
    "day": (changed("Time>2025-04-06", "Time>2025-02-29"), "", "is no time"),
    "line rate": (changed("azimuthFrequency>50.0", "azimuthFrequency>1717.0"), "", "is not the inverse"),
    "bursts": (changed(iso(FIRST + 1.6), iso(FIRST + 1.61)), "", "not a whole number of lines"),
    "lines of no burst": (changed("PerBurst>100", "PerBurst>0"), "", "4 bursts of 0 lines (linesPerBurst) do not make the 400"),
    "lines of a burst": (changed("PerBurst>100", "PerBurst>99"), "", "4 bursts of 99 lines"),
    "doubled epoch": (changed(iso(20), iso(10)), "", "is not later"),
    "radius": (annotation([(t, [x * (1.3 if i == 10 else 1) for x in r], v) for i, (t, r, v) in enumerate(ORBIT)]), "",
               "9192.3 km from the Earth's centre"),
    "speed": (annotation([(t, r, [x / 10 for x in v]) for t, r, v in ORBIT]), "", "has a speed of"),
    "uneven": (annotation([(t + (i == 8) * 1e-3, r, v) for i, (t, r, v) in enumerate(ORBIT)]), "", "are uneven"),
    "no vectors": (annotation([]), "", "is not covered"), "not covered": (annotation(ORBIT[9:]), "", "is not covered"),
    "swath": (GOOD, "--swath IW2", "holds IW1 VV, not IW2"), "interpolation": (GOOD, "--interpolation everett_7", "no run"),
    "orbit of another": (GOOD, orbit_file(ORBIT, "B"), ":1: error: an orbit of S1B"),
    "orbit elsewhere": (GOOD, orbit_file(ORBIT[5:]), "do not cover the scene"),
    "orbit ends early": (GOOD, orbit_file(ORBIT[:11]), "with 5 vectors to spare"),
    "inertial orbit": (GOOD, orbit_file(ORBIT, frame="EME2000"), "in the frame EME2000"),
    "orbit too large": (GOOD, orbit_file(ORBIT).replace("<X>", "<X>1e999", 1), "is no number"),
}


@pytest.mark.parametrize("name", BAD)
def test_bad_input(tmp_path, name):
    content, options, wanted = BAD[name]
    source = tmp_path / "a.xml"
    if content is not None:
        source.write_bytes(content if isinstance(content, bytes) else content.encode())
    if options.startswith("<"):
        options = f"--orbit {file_of(tmp_path / 'o.EOF', options)}"
    kept = {p: p.read_bytes() for p in tmp_path.iterdir()}
    done, _ = sentinel1(source, *options.split())
    assert wanted in done.stderr and len(done.stderr.splitlines()) == 1
    assert (done.returncode, done.stdout) == (2 if name == "interpolation" else 1, "")
    assert {p: p.read_bytes() for p in tmp_path.iterdir()} == kept


@pytest.mark.parametrize("member, wanted", [("../x", "leads out"), ("/x", "leads out"), ("x", "holds no annotation")])
def test_bad_archives(tmp_path, member, wanted):
    source = tmp_path / "p.zip"
    with zipfile.ZipFile(source, "w") as archive:
        archive.writestr("P.SAFE/annotation/" * (wanted == "leads out") + member, GOOD)
        archive.filelist[0].filename = member
    done, _ = sentinel1(source)
    assert wanted in done.stderr and done.returncode == 1 and os.listdir(tmp_path) == ["p.zip"]


def test_what_it_warns_of_and_takes_all_the_same(tmp_path):
    done, _ = sentinel1(file_of(tmp_path / "a.xml", annotation(ORBIT[5:]).replace('count="12"', 'count="9"')))
    assert "states 9 vectors and holds 12" in done.stderr and "only 3 state vectors lie ahead" in done.stderr
    source = file_of(tmp_path / "a.xml", annotation([(t + (i == 8) * 1e-3, *circle(t + (i == 8) * 1e-3))
                                                     for i, (t, _, _) in enumerate(ORBIT)]))
    done, pool = sentinel1(source, "--interpolation", "localpolynom_0_9")
    assert done.stderr == "" and pool["orbit_epoch"][7][-6:] == "325203"
    before_leap = [(t - (t > 58.7), r, v) for t, r, v in ORBIT]  # second 60 delays all later labels
    leap = annotation(before_leap).replace("2025-04-05", "2008-12-31").replace("2025-04-06", "2009-01-01")
    done, _ = sentinel1(file_of(tmp_path / "b.xml", leap))
    # Epochs stay even over the leap second. The grid's labels do not count it: a second of flight.
    assert re.search(r": warning: the annotated geolocation grid .* up to 6[5-9]\d\d\.\d\d m from where", done.stderr)
    assert (done.stderr.count("\n"), done.returncode) == (1, 0)
    done, _ = sentinel1(source, "--orbit", file_of(tmp_path / "o.EOF", orbit_file(ORBIT, tai=36)))
    assert "TAI - UTC is 36 s in the file and 37 s by the leap seconds" in done.stderr
    leap = orbit_file(ORBIT).replace("TAI=" + iso(37 + 70), "TAI=" + iso(38 + 70))
    done, _ = sentinel1(source, "--orbit", file_of(tmp_path / "o.EOF", leap))
    assert f"a leap second before {iso(70)} is not in the table" in done.stderr


def test_inputs_stay_and_a_replaced_pool_keeps_its_permissions(tmp_path):
    source = file_of(tmp_path / "a.xml", GOOD)
    done, _ = sentinel1(source, out="a.xml")
    assert done.returncode == 2 and source.read_text() == GOOD
    file_of(tmp_path / "scene.pool", "old\n").chmod(0o640)
    assert sentinel1(source)[0].returncode == 0 and (tmp_path / "scene.pool").stat().st_mode & 0o777 == 0o640
    assert sorted(os.listdir(tmp_path)) == ["a.xml", "scene.pool"]
    full = {"preexec_fn": lambda: (signal.signal(signal.SIGXFSZ, signal.SIG_IGN),
                                   resource.setrlimit(resource.RLIMIT_FSIZE, (1000, 1000)))}
    (tmp_path / "scene.pool").unlink()
    assert sentinel1(source, **full)[0].returncode == 1 and os.listdir(tmp_path) == ["a.xml"]
    assert sentinel1(source, preexec_fn=lambda: os.umask(0o027))[0].returncode == 0
    assert (tmp_path / "scene.pool").stat().st_mode & 0o777 == 0o640
