#!/usr/bin/env python3
"""Flattens a made-up interferogram with the results of a run, and turns its phase into heights:

    flatten.py <varnoth>

The images come from the example "seconds", whose orbits are circles: their phases are calculated from
the circles and a hill, not from anything that the run gave."""

import cmath
import math
import subprocess
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parents[1] / "examples"))
import make  # noqa: E402

C, A, B = 299792458.0, 6378137.0, 6356752.314245
EXAMPLE = make.Example()
MASTER, SLAVE = (EXAMPLE.orbits[name] for name in ("master", "slave"))
LINES, SAMPLES, PRF, RATE, FREQUENCY, FIRST_AZ, FIRST_RG = 2001, 5001, 500.0, 1e8, 5.405e9, 3601.25, 0.0055
FIRST_LINE, FIRST_SAMPLE, LOOKS_AZ, LOOKS_RG = 800, 500, 4, 8  # a crop of the master, and its looks


def dot(a, b):
    return sum(x * y for x, y in zip(a, b))


def minus(a, b):
    return [x - y for x, y in zip(a, b)]


def cross(a, b):
    return [a[i - 2] * b[i - 1] - a[i - 1] * b[i - 2] for i in range(3)]


def hill(line, sample):
    """Height above the ellipsoid (m)."""
    return 40.0 * math.exp(-((line - 1000) / 300)**2 - ((sample - 2500) / 900)**2)


def ranges(line, sample, height):
    """Slant ranges of master and slave, and the slave's time of zero Doppler."""
    t = FIRST_AZ + line / PRF - 3600.0
    s, v, distance = MASTER.state(t), MASTER.state(t, 1), C / 2 * (FIRST_RG + sample / RATE)
    a2, b2 = (A + height)**2, (B + height)**2
    right = cross(v, s)
    p = [0.9 * x + 400e3 * y / math.hypot(*right) for x, y in zip(s, right)]
    for _ in range(12):  # Newton on range, ellipsoid and zero Doppler
        d, normal = minus(p, s), [p[0] / a2, p[1] / a2, p[2] / b2]
        misfits = (dot(d, d) - distance**2) / 2, (dot(p, normal) - 1) / 2, dot(d, v)
        columns = cross(normal, v), cross(v, d), cross(d, normal)
        p = [x - dot(misfits, row) / dot(d, columns[0]) for x, row in zip(p, zip(*columns))]
    for _ in range(6):
        d, w = minus(SLAVE.state(t), p), SLAVE.state(t, 1)
        t -= dot(d, w) / (dot(w, w) + dot(d, SLAVE.state(t, 2)))
    return distance, math.dist(SLAVE.state(t), p), t + 3600.0


def interferogram(line, sample):
    """Master times conjugate slave, the slave resampled onto the master's grid."""
    near, far, _ = ranges(line, sample, hill(line, sample))
    pixel = [cmath.exp(-4j * math.pi * r * FREQUENCY / C) for r in (near, far)]
    return pixel[0] * pixel[1].conjugate()


def multilooked(row, column):
    """The mean of a cell of the crop."""
    cell = [interferogram(FIRST_LINE + LOOKS_AZ * row + i, FIRST_SAMPLE + LOOKS_RG * column + j)
            for i in range(LOOKS_AZ) for j in range(LOOKS_RG)]
    return sum(cell) / len(cell)


def results(program):
    """The numbers of the vector and scalar entries of the InSAR pool after a run on the example."""
    with tempfile.TemporaryDirectory() as directory:
        EXAMPLE.write(Path(directory))
        subprocess.run([Path(program).resolve(), *"-FlatEarthPolyDegree 4 -MasterPar master.pool -SlavePar slave.pool "
                        "-ParameterPool insar.pool -log_pp log.pool".split()], cwd=directory, check=True,
                       stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
        rows = (Path(directory) / "insar.pool").read_text(encoding="latin-1").splitlines()
    words = [row.split() for row in rows]
    return {word[0]: [float(words[n + 2 + i][0]) for i in range(int(word[3]))]
            for n, word in enumerate(words) if len(word) == 4 and word[1] == "FLT_15_V"}


def between(early, late, line):
    return early + (late - early) * line / (LINES - 1)


def flat_phase(pool, line, sample):
    early, late = (sum(c * sample**i for i, c in enumerate(pool[f"flat_phase_poly_{name}_az"]))
                   for name in ("early", "late"))
    return between(early, late, line)


def metres_per_cycle(pool, line, sample):
    place = sample / (SAMPLES - 1) * 10
    i = min(int(place), 9)
    early, late = (v[i] + (v[i + 1] - v[i]) * (place - i)
                   for v in (pool[f"{name}_az_phase_to_height_conv"] for name in ("early", "late")))
    return between(early, late, line)


def main(program):
    pool = results(program)
    print(" line  sample  interferogram  flattened  height  hill")
    for row, column in ((0, 0), (50, 0), (50, 125), (50, 250), (50, 375), (25, 250), (0, 250), (50, 500)):
        # The centre of the cell, in lines and samples of the whole image.
        line = FIRST_LINE + LOOKS_AZ * row + (LOOKS_AZ - 1) / 2
        sample = FIRST_SAMPLE + LOOKS_RG * column + (LOOKS_RG - 1) / 2
        raw = multilooked(row, column)
        flat = raw * cmath.exp(2j * math.pi * flat_phase(pool, line, sample))
        cycles = cmath.phase(flat) / (2 * math.pi)
        print(f"{line:5.1f} {sample:7.1f} {cmath.phase(raw) / (2 * math.pi):14.3f} {cycles:10.3f} "
              f"{cycles * metres_per_cycle(pool, line, sample):7.1f} {hill(line, sample):5.1f}")
    shift = (2 * pool["slave_early_az_range_distance"][5] / C - FIRST_RG) * RATE
    seen, slave_time = ranges(0, 2500, 0.0)[1:]
    print(f"line 0, sample 2500 in the slave: sample {shift:.3f} by the pool, {(2 * seen / C - FIRST_RG) * RATE:.3f} "
          f"by the orbits; line {(slave_time - FIRST_AZ) * PRF:.3f}")


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit("usage: flatten.py <varnoth>")
    main(sys.argv[1])
