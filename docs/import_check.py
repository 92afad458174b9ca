#!/usr/bin/env python3
"""Imports real scenes and compares what the product then says with what others computed. Prints the tables of
docs/import.md.

    import_check.py DATA VARNOTH VARNOTH_TOOLS LOCATE_POINTS

LOCATE_POINTS is the target locate_points of the build. DATA has

- a folder for each scene or pair with annotation files (s1*-slc-*.xml.gz); where orbit files (*.EOF) lie beside them,
  the scenes are imported with these as well. Distances from the files' geolocation grids are the largest over all
  points, along the track and across it, in metres. Of two files in "*/t108_*" a pair is made that must have the
  results of examples/real_pair.
- "gmtsar_pair" with parameter files (*.PRM) of one pair, and "gamma_stack" with those of a stack (*_slc.par) and its
  published baselines (truth_pairs.tsv).
"""

import csv
import gzip
import json
import math
import re
import shutil
import subprocess
import sys
import tempfile
from datetime import datetime
from pathlib import Path
from xml.etree import ElementTree

A, B = 6378137.0, 6356752.314245


def ground(latitude, longitude, height):
    phi, along = math.radians(latitude), math.radians(longitude)
    flat = (B / A) ** 2
    normal = A / math.sqrt(1 - (1 - flat) * math.sin(phi) ** 2)
    return ((normal + height) * math.cos(phi) * math.cos(along), (normal + height) * math.cos(phi) * math.sin(along),
            (normal * flat + height) * math.sin(phi))


def grid_of(file):
    """Time after midnight of the first point's day, range time, height and place of all points."""
    root = ElementTree.parse(gzip.open(file)).getroot()
    nodes = list(root.iter("geolocationGridPoint"))
    midnight = datetime.fromisoformat(nodes[0].findtext("azimuthTime")[:10])
    for node in nodes:
        time = (datetime.fromisoformat(node.findtext("azimuthTime")) - midnight).total_seconds()
        latitude, longitude, height, delay = (
            float(node.findtext(tag)) for tag in ("latitude", "longitude", "height", "slantRangeTime"))
        yield time, delay, height, ground(latitude, longitude, height)


def compare(tools, locate, file, orbit):
    with tempfile.TemporaryDirectory() as folder:
        pool = Path(folder) / "scene.pool"
        command = [tools, "import", "sentinel1", file, "--out", pool] + (["--orbit", orbit] if orbit else [])
        done = subprocess.run(command, capture_output=True, text=True)
        if done.returncode:
            return done.stderr.strip()
        points = list(grid_of(file))
        lines = "".join(f"{time!r} {delay!r} {height!r}\n" for time, delay, height, _ in points)
        located = subprocess.run([locate, pool], input=lines, capture_output=True, text=True, check=True).stdout
    along = across = 0.0
    for (*_, place), line in zip(points, located.splitlines(), strict=True):
        values = [float(word) for word in line.split()]
        offset = [x - y for x, y in zip(values, place)]
        track = [v / math.hypot(*values[3:]) for v in values[3:]]
        part = sum(x * y for x, y in zip(offset, track))
        along = max(along, abs(part))
        across = max(across, math.hypot(*(x - part * t for x, t in zip(offset, track))))
    told = re.findall(r"up to (\S+) m (?:along|from where)", done.stderr + done.stdout)
    return f"{len(points)} | {along:.3f} | {across:.3f} | {max(told, default='-')}"


def label(file):
    satellite, swath, _, polarisation, first = file.name.split("-")[:5]
    return f"{satellite} {swath} {polarisation} {first[:8]}".upper()


def imported(tools, kind, files, folder):
    for file in files:
        subprocess.run([tools, "import", kind, file, "--out", folder / f"{file.name}.pool"], check=True,
                       capture_output=True)
    return sorted(folder.glob("*.pool"))


def baselines(tools, kind, files):
    """Parallel and perpendicular baselines of all pairs of a stack, by the two dates."""
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        pools = imported(tools, kind, files, folder)
        subprocess.run([tools, "stack", "plan", *pools, "--out", folder / "plan"], check=True, capture_output=True)
        with open(folder / "plan" / "pairs.csv", encoding="utf-8") as file:
            return {(row["master"].replace("-", ""), row["slave"].replace("-", "")):
                    (float(row["parallel_m"]), float(row["perpendicular_m"])) for row in csv.DictReader(file)}


PUBLISHED_LENGTH = 9.206175  # m, at the centre of the image, of the pair's own repository


def compare_gmtsar(data, tools):
    (ours,) = baselines(tools, "gmtsar", sorted(data.glob("gmtsar_pair/*.PRM"))).values()
    yield "GMTSAR 20201222 20210103", "length of the baseline, m", abs(math.hypot(*ours) - PUBLISHED_LENGTH)


def compare_gamma(data, tools):
    ours = baselines(tools, "gamma", sorted(data.glob("gamma_stack/*_slc.par")))
    with open(data / "gamma_stack" / "truth_pairs.tsv", encoding="utf-8") as file:
        rows = list(csv.DictReader((line for line in file if not line.startswith("#")), delimiter="\t"))
    for place, part in enumerate(("parallel", "perpendicular")):
        pairs = [(ours[row["master"], row["slave"]][place], float(row[f"published_{part}_m"])) for row in rows]
        label = f"GAMMA stack, {len(rows)} pairs"
        yield label, f"{part} baseline, m", max(abs(a - b) for a, b in pairs)
        yield label, f"{part} baselines above 1 m of another sign", sum(a * b < 0 and abs(b) > 1 for a, b in pairs)


ARGUMENTS = ("-FlatEarthPolyDegree 4 -MasterPar master.pool -SlavePar slave.pool -ParameterPool insar.pool "
             "-log_pp log.pool").split()


def results(varnoth, tools, folder):
    subprocess.run([varnoth, *ARGUMENTS], cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, check=True)
    shown = subprocess.run([tools, "pool", "show", "--json", folder / "insar.pool"], capture_output=True, check=True)
    for entry in json.loads(shown.stdout)["entries"]:
        value = entry["value"]
        for number in value["values"] if isinstance(value, dict) else [value]:
            if isinstance(number, float):
                yield number


def compare_real_pair(data, varnoth, tools):
    known = Path(__file__).resolve().parents[1] / "examples" / "real_pair"
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        pools = imported(tools, "sentinel1", sorted(data.glob("*/t108_*/*-vv-*.xml.gz")), folder)
        for which in ("known", "ours"):
            (folder / which).mkdir()
            for role, pool in zip(("master", "slave"), pools):
                shutil.copy(pool if which == "ours" else known / f"{role}.pool", folder / which / f"{role}.pool")
            shutil.copy(known / "insar.pool", folder / which)
        pairs = list(zip(*(results(varnoth, tools, folder / which) for which in ("known", "ours")), strict=True))
    yield "S1A IW1 VV 20250406 20250418", f"{len(pairs)} numbers of the results, relative", max(
        abs(a - b) / max(abs(a), abs(b), 1e-30) for a, b in pairs)


def main():
    data, varnoth, tools, locate = (Path(word).resolve() for word in sys.argv[1:5])
    print("| scene | orbit | points | along | across | announced |\n|---|---|---|---|---|---|")
    for file in sorted(data.glob("**/s1*-slc-*.xml.gz")):
        orbits = [None] + sorted(file.parent.glob("*.EOF"))
        for orbit in orbits:
            what = "orbit file" if orbit else "annotation"
            print(f"| {label(file)} | {what} | {compare(tools, locate, file, orbit)} |")
    print("\n| pairs | quantity | largest difference |\n|---|---|---|")
    for rows in (compare_real_pair(data, varnoth, tools), compare_gmtsar(data, tools), compare_gamma(data, tools)):
        for pair, quantity, difference in rows:
            print(f"| {pair} | {quantity} | {difference:.2g} |")


if __name__ == "__main__":
    main()
