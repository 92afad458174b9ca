#!/usr/bin/env python3
"""Imports Sentinel-1 scenes and compares the places that the product then gives to their echoes with the geolocation
grids of the annotation files, which others computed. Prints the table of docs/import.md.

    import_check.py DATA VARNOTH_TOOLS LOCATE_POINTS

DATA has a folder for each scene or pair with annotation files (s1*-slc-*.xml.gz); where orbit files (*.EOF) lie beside
them, the scenes are imported with these as well. LOCATE_POINTS is the target locate_points of the build. Distances are
the largest over all grid points, along the track and across it, in metres.
"""

import gzip
import math
import re
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
    told = re.search(r"up to (\S+) m along", done.stderr)
    return f"{len(points)} | {along:.3f} | {across:.3f} | {told[1] if told else '-'}"


def label(file):
    satellite, swath, _, polarisation, first = file.name.split("-")[:5]
    return f"{satellite} {swath} {polarisation} {first[:8]}".upper()


def main():
    data, tools, locate = Path(sys.argv[1]), *sys.argv[2:4]
    print("| scene | orbit | points | along | across | announced along |\n|---|---|---|---|---|---|")
    for file in sorted(data.glob("**/s1*-slc-*.xml.gz")):
        orbits = [None] + sorted(file.parent.glob("*.EOF"))
        for orbit in orbits:
            what = "orbit file" if orbit else "annotation"
            print(f"| {label(file)} | {what} | {compare(tools, locate, file, orbit)} |")


if __name__ == "__main__":
    main()
