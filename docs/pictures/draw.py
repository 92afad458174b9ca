#!/usr/bin/env python3
"""Draws the pictures of the geometry page beside itself: draw.py [picture]"""

import math
import sys
from pathlib import Path

INK, PALE, ACCENT = "#222222", "#999999", "#b3421b"


class Drawing:
    """An SVG under construction; y grows upwards, angles are degrees against the x axis."""

    def __init__(self, title, width=640, height=400):
        self.size, self.title, self.parts = (width, height), title, []

    def at(self, point):
        return f"{point[0]:.1f}", f"{self.size[1] - point[1]:.1f}"

    def line(self, *points, colour=INK, width=1.4, dashed=False, arrow=False):
        path = " ".join(",".join(self.at(p)) for p in points)
        style = ' stroke-dasharray="5 4"' if dashed else ""
        end = f' marker-end="url(#{"a" if colour == ACCENT else "i"})"' if arrow else ""
        self.parts.append(f'<polyline points="{path}" fill="none" stroke="{colour}" '
                          f'stroke-width="{width}"{style}{end}/>')

    def curve(self, function, start, end, steps=60, **style):
        self.line(*(function(start + (end - start) * i / steps) for i in range(steps + 1)), **style)

    def angle(self, corner, radius, start, end, arrow=False):
        """An arc from one direction to another."""
        self.curve(lambda a: towards(corner, a, radius), start, end, colour=ACCENT, arrow=arrow)

    def dot(self, point, text="", dx=8, dy=6, colour=INK, radius=3.5, anchor="start"):
        x, y = self.at(point)
        self.parts.append(f'<circle cx="{x}" cy="{y}" r="{radius}" fill="{colour}"/>')
        self.text((point[0] + dx, point[1] + dy), text, colour=colour, anchor=anchor)

    def text(self, point, words, colour=INK, anchor="start"):
        x, y = self.at(point)
        for old, new in (("&", "&amp;"), ("<", "&lt;")):
            words = words.replace(old, new)
        if words:
            self.parts.append(f'<text x="{x}" y="{y}" fill="{colour}" text-anchor="{anchor}">'
                              f"{words}</text>")

    def save(self, path):
        width, height = self.size
        arrows = "".join(
            f'<marker id="{name}" viewBox="0 0 8 8" refX="7" refY="4" markerWidth="7" '
            f'markerHeight="7" orient="auto"><path d="M0,0 L8,4 L0,8 z" fill="{colour}"/></marker>'
            for name, colour in (("i", INK), ("a", ACCENT)))
        path.write_text(
            f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" '
            f'font-family="sans-serif" font-size="13">\n<title>{self.title}</title>\n'
            f'<defs>{arrows}</defs>\n<rect width="{width}" height="{height}" fill="white"/>\n'
            + "\n".join(self.parts) + "\n</svg>\n")


def towards(point, degrees, length):
    return (point[0] + length * math.cos(math.radians(degrees)),
            point[1] + length * math.sin(math.radians(degrees)))


def direction(start, end):
    return math.degrees(math.atan2(end[1] - start[1], end[0] - start[0]))


def viewing():
    d = Drawing("Viewing geometry across the track", height=430)
    centre, a, b = (150, 30), 330, 255

    def on_ellipse(t):
        return (centre[0] + a * math.sin(math.radians(t)), centre[1] + b * math.cos(math.radians(t)))
    satellite, target = (150, 410), on_ellipse(38)
    d.curve(on_ellipse, -20, 90)
    d.line(centre, (490, 30), colour=PALE)
    d.line(satellite, centre, dashed=True, colour=PALE)
    d.line(centre, target, dashed=True, colour=PALE)
    normal = direction((0, 0), ((target[0] - centre[0]) / a**2, (target[1] - centre[1]) / b**2))
    d.line(towards(target, normal, -160), target, dashed=True, colour=PALE)
    d.line(target, towards(target, normal, 110), arrow=True)
    d.line(satellite, target, width=2)
    d.angle(satellite, 90, -90, direction(satellite, target))
    d.angle(target, 62, normal, direction(target, satellite))
    d.text((160, 296), "look angle", colour=ACCENT)
    d.text((300, 306), "incidence angle", colour=ACCENT)
    d.dot(satellite, "satellite", dx=10, dy=0)
    d.dot(target, "target", dx=10, dy=-16)
    d.dot(centre, "Earth's centre", dx=-10, dy=-16)
    d.text((212, 358), "slant range")
    d.text(towards(target, normal, 118), "normal of the ellipsoid")
    d.text((452, 160), "ellipsoid")
    return d


def heading():
    d = Drawing("Heading and looking sides, from above", height=380)
    place, course = (300, 190), 195.0

    def turned(degrees):  # from north over east
        return 90.0 - degrees
    d.line(place, towards(place, 90, 160), arrow=True, colour=INK)
    d.line(place, towards(place, 0, 130), arrow=True, colour=INK)
    d.line(towards(place, turned(course), -150), towards(place, turned(course), 160), width=2,
           arrow=True)
    d.line(place, towards(place, turned(course + 90), 150), dashed=True, arrow=True)
    d.line(place, towards(place, turned(course - 90), 110), dashed=True, arrow=True)
    d.angle(place, 60, 90, turned(course), arrow=True)
    d.text((358, 126), "heading, 195 degrees", colour=ACCENT)
    d.dot(place)
    d.text((306, 342), "north")
    d.text((436, 186), "east")
    d.text((262, 18), "track, descending")
    d.text((88, 236), "right looking")
    d.text((414, 154), "left looking")
    return d


def baseline():
    d = Drawing("Baseline of a pair, in the plane of the line of sight", height=400)
    master, slave, target = (110, 350), (250, 370), (560, 40)
    near = math.dist(slave, target)
    far = math.dist(master, target)
    sight = direction(target, master)
    foot = towards(target, sight, near)
    d.line(master, target, colour=PALE)
    d.line(slave, target, colour=PALE)
    d.curve(lambda t: towards(target, t, near), sight + 4, direction(target, slave) - 4,
            dashed=True, colour=PALE)
    d.line(master, slave, width=2)
    d.line(foot, slave, width=2, colour=ACCENT)
    d.line(master, foot, width=3, colour=ACCENT)
    d.dot(master, "master S", dx=-10, dy=-18, anchor="end")
    d.dot(slave, "slave T", dx=8, dy=6)
    d.dot(target, "target P", dx=10, dy=-4)
    d.dot(foot, radius=2.5)
    d.text((170, 372), "B", anchor="end")
    d.text((140, 300), "delta R = R_m - R_s", colour=ACCENT, anchor="end")
    d.text((226, 312), "effective baseline", colour=ACCENT)
    d.text((330, 170), "R_m", anchor="end")
    d.text((430, 222), "R_s")
    d.text((20, 60), "effective baseline = root of B² - (delta R)²")
    d.text((20, 40), "It also holds the part along the track, across this drawing.")
    assert far > near
    return d


def samples():
    d = Drawing("Eleven by two samples and the nine-point grid", height=330)
    left, right, low, high = 90, 560, 60, 270
    d.line((left, low), (right, low), (right, high), (left, high), (left, low), colour=PALE)
    for i in range(11):
        for y in (low, high):
            d.dot((left + (right - left) * i / 10, y), colour=ACCENT)
    for x in (left, (left + right) / 2, right):
        for y in (low, (low + high) / 2, high):
            d.line((x - 8, y - 8), (x + 8, y + 8))
            d.line((x - 8, y + 8), (x + 8, y - 8))
    d.text((left, 34), "sample 0, near range", anchor="middle")
    d.text((right, 34), "last sample, far range", anchor="middle")
    d.text((left - 14, low - 4), "line 0", anchor="end")
    d.text((left - 14, high - 4), "last line", anchor="end")
    d.line((30, 120), (30, 220), arrow=True)
    d.text((16, 226), "time")
    d.text((130, 306), "dots: the sweep; its first and last ones are the corners", colour=ACCENT)
    d.text((130, 288), "crosses: points of the grids")
    return d


def fitted_misfit(swath, degree):
    """Largest misfit (cycles) of a polynomial through eleven samples over a swath (m on the ground)."""
    earth, orbit, incidence, wavelength, across = 6371e3, 7071e3, math.radians(30), 0.0555, 150.0

    def slant_range(ground_angle):
        return math.sqrt(earth**2 + orbit**2 - 2 * earth * orbit * math.cos(ground_angle))
    start = incidence - math.asin(earth / orbit * math.sin(incidence))
    near, far = slant_range(start), slant_range(start + swath / earth)
    middle = slant_range(start + swath / earth / 2)
    look = math.acos((orbit**2 + middle**2 - earth**2) / (2 * orbit * middle))

    def phase(r):
        angle = math.acos((orbit**2 + r**2 - earth**2) / (2 * orbit * r))
        # The slave is displaced across the line of sight of mid swath.
        x, y = r * math.sin(angle), -r * math.cos(angle)
        other = math.hypot(x - across * math.cos(look), y - across * math.sin(look))
        return 2 * (r - other) / wavelength
    xs = [-1 + 0.2 * i for i in range(11)]
    ys = [phase(near + (far - near) * (x + 1) / 2) for x in xs]
    # Least squares over Chebyshev polynomials, by Gram and Schmidt.
    basis = []
    for n in range(degree + 1):
        v = [math.cos(n * math.acos(max(-1.0, min(1.0, x)))) for x in xs]
        for _, u in basis:
            share = sum(p * q for p, q in zip(u, v))
            v = [p - share * q for p, q in zip(v, u)]
        norm = math.sqrt(sum(p * p for p in v))
        basis.append((n, [p / norm for p in v]))
    for _, u in basis:
        share = sum(p * q for p, q in zip(u, ys))
        ys = [p - share * q for p, q in zip(ys, u)]
    return max(abs(y) for y in ys)


def misfit():
    d = Drawing("Misfit of the flat-earth polynomial over the width of the swath", height=420)
    left, right, low, high = 80, 520, 60, 390
    decades = (-6, 2)

    def at(width, cycles):
        share = (math.log10(cycles) - decades[0]) / (decades[1] - decades[0])
        return left + (right - left) * width / 400, low + (high - low) * share
    for exponent in range(decades[0], decades[1] + 1, 2):
        y = at(0, 10.0**exponent)[1]
        d.line((left, y), (right, y), colour=PALE, width=0.7)
        d.text((left - 8, y - 4), f"1e{exponent}", anchor="end")
    for width in range(0, 401, 100):
        d.line((at(width, 1)[0], low), (at(width, 1)[0], low - 5))
        d.text((at(width, 1)[0], low - 22), str(width), anchor="middle")
    d.text(((left + right) / 2, 16), "width of the swath on the ground, km", anchor="middle")
    d.text((left, high + 14), "largest misfit at the samples, cycles")
    for degree in range(1, 7):
        points = [(w, fitted_misfit(1e3 * w, degree)) for w in range(20, 401, 10)]
        shown = [at(w, m) for w, m in points if m > 10.0**decades[0]]
        d.line(*shown, colour=ACCENT if degree == 4 else INK)
        d.text((right + 8, shown[-1][1] - 4), f"degree {degree}",
               colour=ACCENT if degree == 4 else INK)
    return d


PICTURES = {"viewing": viewing, "heading": heading, "baseline": baseline, "samples": samples,
            "misfit": misfit}

if __name__ == "__main__":
    wanted = sys.argv[1:] or PICTURES
    for name in wanted:
        if name not in PICTURES:
            sys.exit(f"there is no picture {name}; there are {', '.join(PICTURES)}")
        PICTURES[name]().save(Path(__file__).with_name(name + ".svg"))
