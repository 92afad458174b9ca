"""Drives the built program from outside: made-up pairs, runs in fresh directories, and a reader of
pools that shares nothing with the program's own."""

import math
import os
import re
import subprocess
from dataclasses import dataclass
from pathlib import Path

BINARY = Path(os.environ["VARNOTH_BINARY"])
KEYS = {
    "FlatEarthPolyDegree": "4",
    "MasterPar": "master.pool",
    "SlavePar": "slave.pool",
    "ParameterPool": "insar.pool",
    "log_pp": "log.pool",
}


def arguments(**changed):
    """The command line of a run; a key set to None is left out."""
    keys = {key: value for key, value in {**KEYS, **changed}.items() if value is not None}
    return [word for key, value in keys.items() for word in ("-" + key, value)]


@dataclass
class Run:
    directory: Path
    status: int
    screen: str
    errors: str

    @property
    def log(self):
        return (self.directory / "log.varnoth").read_text(encoding="latin-1").splitlines()

    def levels(self, *labels):
        """Texts of the log lines of some levels."""
        return [line[18:] for line in self.log if line[:5] in labels]

    @property
    def alarms(self):
        return self.levels("ALARM")

    @property
    def marks(self):
        """Content of the marks that stand, by kind."""
        return {p.name.split(".")[0]: p.read_text() for p in self.directory.glob("*.varnoth")
                if not p.name.startswith("log")}

    def pool(self, name="insar.pool"):
        return read_pool(self.directory / name)


def run(directory, words=None, environment=None, stdin=subprocess.DEVNULL, **options):
    words = arguments() if words is None else words
    done = subprocess.run([BINARY, *words], cwd=directory, stdin=stdin, capture_output=True,
                          env={**os.environ, **(environment or {})}, timeout=60, check=False,
                          **options)
    return Run(directory, done.returncode, done.stdout.decode("latin-1"),
               done.stderr.decode("latin-1"))


# What a stored text leaves open, as {name}; all else is literal.
MARKERS = {
    "e10": r"-?\d\.\d{10}E[+-]\d\d", "e17": r"-?\d\.\d{17}E[+-]\d\d", "int": r"-?\d+",
    "f2": r"[+-]?\d+\.\d{2}", "f4": r"-?\d+\.\d{4}", "f6": r"-?\d+\.\d{6}", "random": r"\w{6}",
    "ctime": r"\w{3} \w{3} [ \d]\d \d\d:\d\d:\d\d \d{4}", "host": r"\S+",
    "duration": r"less than 1 second|\d+ second\(s\)",
    "iso": r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d",
}


def difference(expected, found):
    """The first line of a text that is not as a stored one has it, or None."""
    wanted, lines = expected.split("\n"), found.split("\n")
    for number, (pattern, line) in enumerate(zip(wanted, lines), 1):
        parts = re.split(r"\{(\w+)\}", pattern)
        regex = "".join(MARKERS[p] if i % 2 else re.escape(p) for i, p in enumerate(parts))
        if not re.fullmatch(regex, line):
            return f"line {number}: {line!r} instead of {pattern!r}"
    if len(wanted) != len(lines):
        return f"{len(lines)} lines instead of {len(wanted)}"
    return None


NUMBER = re.compile(r"[-+]?\d+(\.\d*)?(E[-+]\d+)?$")


def plain(text):
    text = text.strip()
    if text.startswith('"'):
        return text.strip('"')
    return float(text) if NUMBER.match(text) else text


def read_pool(path):
    """Entries by key: a scalar, or a list for a vector."""
    entries, rows = {}, iter(path.read_text(encoding="latin-1").split("\n"))
    for row in rows:
        if not row or row[0] in "# \t":
            continue
        key, kind, value = row.split(None, 2)
        if kind.endswith("_V"):
            count = int(value.split()[1])
            next(rows)
            entries[key] = [plain(next(rows)) for _ in range(count)]
        else:
            entries[key] = plain(value)
    return entries


def entry(key, kind, value):
    """Text of an entry; a list becomes a vector."""
    def form(x):
        return f'"{x}"' if isinstance(x, str) else f"{x:.17E}" if isinstance(x, float) else str(x)
    if not isinstance(value, list):
        return f"{key} {kind} {form(value)}\n\n"
    lines = "".join(f"  {form(x)}\n" for x in value)
    return f"{key} {kind} 0 {len(value)}\n  {{\n{lines}  }}\n\n"


class Circle:
    """A circular orbit about a sphere that does not turn, in closed form. The plane is tilted by an
    angle with sine 0.96 and cosine 0.28."""

    RADIUS = 7071000.0
    ANGULAR_VELOCITY = math.sqrt(3.986004418e14 / RADIUS**3)

    def __init__(self, higher=0.0, aside=0.0):
        self.radius, self.aside = self.RADIUS + higher, aside

    def position(self, t):
        angle = 0.5 + self.ANGULAR_VELOCITY * t
        along, up = self.radius * math.cos(angle), self.radius * math.sin(angle)
        return [along, 0.28 * up - 0.96 * self.aside, 0.96 * up + 0.28 * self.aside]


class Pair:
    """The three pools of a made-up pair; change the entries before `write`."""

    EARTH = 6371000.0

    def __init__(self):
        self.master = self.scene(Circle())
        self.slave = self.scene(Circle(higher=40.0, aside=120.0))
        self.insar = {
            "n_samples": ("INT_32", 5001), "n_lines": ("INT_32", 2001),
            "master_first_az_time": ("FLT_15", 1001.25), "slave_first_az_time": ("FLT_15", 1001.25),
            "master_first_rg_time": ("FLT_15", 0.0055), "slave_first_rg_time": ("FLT_15", 0.0055),
            "observation_mode": ("STR", "dual_pass"), "local_height": ("FLT_15", 0.0),
        }

    @classmethod
    def scene(cls, orbit):
        times = [-80.0 + 10.0 * i for i in range(17)]
        axes = list(zip(*(orbit.position(t) for t in times)))
        return {
            "ellipsoid_parameters": ("FLT_15_V", [0.0] * 7 + [cls.EARTH, cls.EARTH]),
            "prf": ("FLT_15", 500.0), "az_bandwidth": ("FLT_15", 400.0),
            "range_sampling_frequency": ("FLT_15", 1.0e8), "radar_frequency": ("FLT_15", 5.4e9),
            "antenna_look_direction": ("STR", "right"),
            "center_longitude": ("FLT_6", 0.0), "center_latitude": ("FLT_6", 28.0),
            "orbit_representation": ("STR", "orbit_pool_double_double"),
            "orbit_interpolation": ("STR", "everett_8"),
            "orbit_param_key": ("STR", "orbit_epoch"),
            "orbit_value_key": ("STR", "orbit_x, orbit_y, orbit_z"),
            # The first epoch is 1000 - 80 s; scene times count from 0.
            "orbit_reference_time": ("STR", "0"),
            "orbit_epoch": ("FLT_15_V", [1000.0 + t for t in times]),
            **{f"orbit_{axis}": ("FLT_15_V", list(values)) for axis, values in zip("xyz", axes)},
        }

    def write(self, directory):
        for name in ("master", "slave", "insar"):
            rows = getattr(self, name).items()
            text = "".join(entry(key, kind, value) for key, (kind, value) in rows)
            (directory / f"{name}.pool").write_text(text, encoding="latin-1")
        return directory
