#!/usr/bin/env python3
"""Writes the pools of the made-up examples: two circular orbits, some hundred metres apart, over the
ellipsoid of WGS 84. An example is a base pair with what makes it an example; see README.md.

    make.py [directory]
"""

import math
import sys
from datetime import date, timedelta
from pathlib import Path

RADIUS, RATE = 7.071e6, 1.0617e-3  # m, rad/s
SAMPLES, STEP = 13, 10.0
AXES = "xyz"
FIRST_DAY = date(2026, 10, 31)


class Circle:
    """Earth-fixed positions on a circle; the node is where it crosses the equator northwards."""

    def __init__(self, node=0.0, higher=0.0, aside=0.0, start=0.5, inclination=1.7):
        self.radius, self.node, self.start = RADIUS + higher, node + aside / RADIUS, start
        self.inclination = inclination

    def state(self, t, derivative=0):
        angle = self.start + RATE * t + derivative * math.pi / 2
        size = self.radius * RATE ** derivative
        along, up = size * math.cos(angle), size * math.sin(angle)
        aside = up * math.cos(self.inclination)
        return (along * math.cos(self.node) - aside * math.sin(self.node),
                along * math.sin(self.node) + aside * math.cos(self.node),
                up * math.sin(self.inclination))


def entry(key, kind, value):
    def form(x):
        return f'"{x}"' if isinstance(x, str) else f"{x:.17E}" if isinstance(x, float) else str(x)
    if not isinstance(value, list):
        return f"{key:32} {kind:15} {form(value)}\n\n"
    rows = "".join(f"  {form(x)}\n" for x in value)
    return f"{key:32} {kind:15} 0\t{len(value)}\n  {{\n{rows}  }}\n\n"


def write_pools(directory, pools):
    for name, entries in pools.items():
        text = "".join(entry(key, *value) for key, value in entries.items())
        (directory / f"{name}.pool").write_text(text, encoding="latin-1")


def epochs(kind, day, first):
    """The epochs of a kind of time, and the reference time that scene times count from."""
    seconds = [first + STEP * i for i in range(SAMPLES)]
    if kind == "double":
        return "FLT_15_V", [float(s) for s in seconds], "0"
    head = f"{FIRST_DAY + timedelta(day)}T" if kind == "utc" else f"{day:04d}/"
    texts = [f"{head}{int(s) // 3600:02d}:{int(s) // 60 % 60:02d}:{s % 60:09.6f}" for s in seconds]
    return "STR_V", texts, head + "00:00:00.000000"


class Example:
    def __init__(self, node=0.0, start=0.5, kind="double", method="everett_8", mode="dual_pass"):
        self.kind, self.method, self.mode = kind, method, mode
        self.look = {"master": "right", "slave": "right"}
        self.orbits = {"master": Circle(node, start=start),
                       "slave": Circle(node, higher=40.0, aside=120.0, start=start)}
        self.extra = {"master": {}, "slave": {}}
        self.days = {"master": 10, "slave": 22}  # since the first day, or a mission's start
        self.records = False

    def scene(self, name):
        orbit, middle = self.orbits[name], STEP * (SAMPLES - 1) / 2
        time_type, times, reference = epochs(self.kind, self.days[name], 3600.0 - middle)
        columns = {f"orbit_{axis}": [orbit.state(STEP * i - middle)[c] for i in range(SAMPLES)]
                   for c, axis in enumerate(AXES)}
        source = "mdb" if self.records else "pool"
        values = {
            "ellipsoid_parameters": ("FLT_15_V", [0.0] * 7 + [6378137.0, 6356752.314245]),
            "prf": ("FLT_15", 500.0), "az_bandwidth": ("FLT_15", 400.0),
            "range_sampling_frequency": ("FLT_15", 1.0e8), "radar_frequency": ("FLT_15", 5.405e9),
            "antenna_look_direction": ("STR", self.look[name]),
            **self.extra[name],
            "orbit_representation": ("STR", f"orbit_{source}_double_{self.kind}"),
            "orbit_interpolation": ("STR", self.method),
            "orbit_param_key": ("STR", "orbit_epoch"),
            "orbit_value_key": ("STR", "orbit_x, orbit_y, orbit_z"),
            "orbit_reference_time": ("STR", reference),
        }
        if self.records:
            values.update({
                "root_path": ("STR", "records"), "mission_id": ("STR", "KOVA1"),
                "tape_source_id": ("STR", "BRNR"), "tape_id_number": ("INT_32", 12),
                "major_data_take_id": ("INT_32", 5), "minor_data_take_id": ("INT_32", 7),
                "channel_id": ("STR", "pri"), "mdb_orbit_data_file": ("STR", name)})
            return values, times, columns
        if self.method.startswith(("hermite", "localhermite")):
            values["orbit_velocity_key"] = ("STR", "orbit_vx, orbit_vy, orbit_vz")
            columns.update({f"orbit_v{axis}": [orbit.state(STEP * i - middle, 1)[c]
                                               for i in range(SAMPLES)]
                            for c, axis in enumerate(AXES)})
        values["orbit_epoch"] = (time_type, times)
        values.update({key: ("FLT_15_V", column) for key, column in columns.items()})
        return values, times, columns

    def pools(self):
        """The entries of the three pools, each a key with its type and value."""
        insar = {
            "n_samples": ("INT_32", 5001), "n_lines": ("INT_32", 2001),
            "master_first_az_time": ("FLT_15", 3601.25), "slave_first_az_time": ("FLT_15", 3601.25),
            "master_first_rg_time": ("FLT_15", 0.0055), "slave_first_rg_time": ("FLT_15", 0.0055),
            "observation_mode": ("STR", self.mode), "local_height": ("FLT_15", 0.0)}
        return {"master": self.scene("master")[0], "slave": self.scene("slave")[0], "insar": insar}

    def write(self, directory):
        directory.mkdir(parents=True, exist_ok=True)
        write_pools(directory, self.pools())
        if self.records:
            for name in ("master", "slave"):
                _, times, columns = self.scene(name)
                self.write_records(directory / "records", name, times, columns)

    def write_records(self, root, name, times, columns):
        """A record is a line with the epoch and an indented line for each coordinate."""
        place = root / "KOVA1" / "hddc_BRNR012" / "dt_005.007" / "pri"
        place.mkdir(parents=True, exist_ok=True)
        rows = [f"orbit_epoch : {t}\n" + "".join(
            f"  {key} : {column[i]: .16e}\n" for key, column in columns.items())
            for i, t in enumerate(times)]
        (place / name).write_text("".join(rows))
        kind = {"utc": "utc", "met": "met", "double": "double"}[self.kind]
        shape = ["orbit_epoch : " + kind] + [f"orbit_{axis} : double" for axis in AXES]
        with (root / "format.dat").open("w" if name == "master" else "a") as file:
            file.write(entry(name, "STR_V", shape))


def examples():
    """The examples by name."""
    made = {"seconds": Example(), "universal_time": Example(kind="utc"),
            "mission_elapsed_time": Example(kind="met"),
            "single_pass": Example(mode="single_pass"),
            "descending": Example(start=math.pi - 0.5),
            "hermite": Example(method="localhermite_0_4"),
            "record_file": Example(kind="utc"), "left_looking": Example(),
            "antimeridian": Example(node=math.radians(179.75)),
            "look_directions": Example()}
    made["record_file"].records = True
    made["left_looking"].look = {"master": "left", "slave": "left"}
    # Pools that disagree: the side is found from the scenes' centres.
    disagree = made["look_directions"]
    disagree.look["slave"] = "left"
    for name in ("master", "slave"):
        disagree.extra[name] = {"center_longitude": ("FLT_6", 1.0),
                                "center_latitude": ("FLT_6", 28.3)}
    return made


if __name__ == "__main__":
    root = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).parent)
    if not root.is_dir():
        sys.exit(f"{root} is no directory")
    for example_name, example in examples().items():
        example.write(root / example_name)
