#!/usr/bin/env python3
"""Prints what the assumptions of the geometry cost in the real pair, as the table of limits.md."""

import math

C = 299792458.0
# The real pair at mid range of its first line, as a run and the product's annotation have them.
PAIR = {"range": 824134.416, "incidence": 33.346, "wavelength": 0.05546576, "metres_per_cycle": -97.130,
        "eff_baseline": 129.246, "look_near": 26.942, "look_far": 31.986, "speed": 7590.0,
        "ground_speed": 6776.0, "latitude": 51.16, "heading": 344.74, "spacing": 13.928}
HYDROSTATIC = 2.3  # m: zenith delay of the hydrostatic atmosphere at 1013 hPa (Saastamoinen 1972)
IONOSPHERE = 40.31e16  # m Hz²: zenith delay per TEC unit, times the frequency squared
EARTH = 465.1  # m/s: speed of the ground at the equator


def costs():
    """Rows of assumption, case and cost."""
    p = PAIR
    incidence, wave = math.radians(p["incidence"]), p["wavelength"]
    slant = 1 / math.cos(incidence)

    def cycles(metres):  # of a change of one-way range between the dates
        return 2 * abs(metres) / wave

    def height(phase):
        return abs(p["metres_per_cycle"] * phase)
    moved = p["speed"] * 2 * p["range"] / C
    swing = math.radians(p["look_far"] - p["look_near"])
    east = EARTH * math.cos(math.radians(p["latitude"]))
    seen = east * math.cos(math.radians(p["heading"])) * math.sin(incidence)
    yield ("stop and go: the satellite stands still while the pulse travels", f"it flies {moved:.1f} m meanwhile",
           f"{1e3 * moved**2 / (8 * p['range']):.2f} mm of range, the same in both images; "
           f"{p['ground_speed'] * p['range'] / C:.1f} m along the track if times are those of sending")
    yield ("zero Doppler", "image focused at a Doppler of 100 Hz",
           f"target {p['range'] * 50 * wave / p['speed']:.0f} m off along the track")
    yield ("one height for the whole scene", "ground 100 m higher",
           f"{100 / abs(p['metres_per_cycle']):.2f} cycles; {100 / math.tan(incidence):.0f} m off on the ground")
    yield ("both orbits Earth-fixed", "inertial states given instead",
           f"target about {p['range'] * seen / p['speed'] / 1e3:.0f} km off along the track, heading about "
           f"{math.degrees(east / p['speed']):.0f} degrees")
    yield ("bursts merged to one even series of lines", "bursts stacked with their overlap of 160 lines",
           f"{160 * p['spacing'] / 1e3:.1f} km along the track, more with each burst")
    yield ("no leap second later than the table's last", "one between reference time and epochs",
           f"{p['ground_speed']:.0f} m along the track")
    yield ("exact orbits", "5 cm across the line of sight",
           f"{5 / p['eff_baseline']:.2f} per cent of metres per cycle; a ramp of {cycles(0.05 * swing):.2f} cycles "
           "over the swath")
    yield "exact orbits", "5 cm along the line of sight", f"{cycles(0.05):.1f} cycles, nearly constant"
    yield ("no neutral atmosphere", f"{HYDROSTATIC} m of zenith delay", f"{HYDROSTATIC * slant:.1f} m of range")
    yield ("no neutral atmosphere", "1 cm of change in the zenith between the dates, more here than there",
           f"{cycles(0.01 * slant):.2f} cycles, {height(cycles(0.01 * slant)):.0f} m of height")
    yield ("no ionosphere", "1 TEC unit of such change",
           f"{cycles(IONOSPHERE / (C / wave)**2 * slant):.2f} cycles")
    yield ("no solid tides", "ground 10 cm higher on one date",
           f"{cycles(0.1 / slant):.1f} cycles, nearly constant over a scene")


if __name__ == "__main__":
    for row in costs():
        print("| " + " | ".join(row) + " |")
