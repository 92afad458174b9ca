#!/usr/bin/env python3
"""Draws the pictures of the geometry page beside itself: draw.py [picture]"""

import math
import sys
from pathlib import Path

# Blue and orange of Okabe and Ito's palette, which colour-blind readers can tell apart.
INK, PALE, ACCENT, SECOND = "#222222", "#999999", "#0072b2", "#d55e00"
NAMES = {INK: "i", PALE: "p", ACCENT: "a", SECOND: "s"}


class Drawing:
    """An SVG under construction; y grows upwards, angles are degrees against the x axis."""

    def __init__(self, title, width=640, height=420):
        self.size, self.title, self.parts = (width, height), title, []

    def at(self, point):
        return f"{point[0]:.1f}", f"{self.size[1] - point[1]:.1f}"

    def line(self, *points, colour=INK, width=1.4, dashed=False, arrow=False):
        path = " ".join(",".join(self.at(p)) for p in points)
        style = ' stroke-dasharray="5 4"' if dashed else ""
        end = f' marker-end="url(#{NAMES[colour]})"' if arrow else ""
        self.parts.append(f'<polyline points="{path}" fill="none" stroke="{colour}" '
                          f'stroke-width="{width}"{style}{end}/>')

    def curve(self, function, start, end, steps=60, **style):
        self.line(*(function(start + (end - start) * i / steps) for i in range(steps + 1)), **style)

    def angle(self, corner, radius, start, end, colour=ACCENT, arrow=False):
        """An arc from one direction to another."""
        self.curve(lambda a: towards(corner, a, radius), start, end, colour=colour, arrow=arrow)

    def right_angle(self, corner, direction, size=11):
        """The mark between a direction and the one 90 degrees on."""
        side = towards(corner, direction, size)
        self.line(side, towards(side, direction + 90, size), towards(corner, direction + 90, size))

    def into_page(self, point, words, radius=8):
        """An arrow's tail: flight away from the reader."""
        self.curve(lambda a: towards(point, a, radius), 0, 360, width=1.4)
        for a in (45, 135):
            self.line(towards(point, a, radius), towards(point, a, -radius))
        self.text((point[0] + radius + 7, point[1] - 5), words)

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
            for colour, name in NAMES.items())
        path.write_text(
            f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" '
            f'font-family="sans-serif" font-size="14">\n<title>{self.title}</title>\n'
            f'<defs>{arrows}</defs>\n<rect width="{width}" height="{height}" fill="white"/>\n'
            + "\n".join(self.parts) + "\n</svg>\n")


def towards(point, degrees, length):
    return (point[0] + length * math.cos(math.radians(degrees)),
            point[1] + length * math.sin(math.radians(degrees)))


def direction(start, end):
    return math.degrees(math.atan2(end[1] - start[1], end[0] - start[0]))


def viewing():
    d = Drawing("Viewing geometry across the track, not to scale")
    centre, a, b = (110, 40), 400, 250

    def on_ellipse(t):
        return (centre[0] + a * math.sin(math.radians(t)), centre[1] + b * math.cos(math.radians(t)))

    def normal_at(point):
        return direction((0, 0), ((point[0] - centre[0]) / a**2, (point[1] - centre[1]) / b**2))
    nadir, target = on_ellipse(30), on_ellipse(58)
    satellite = towards(nadir, normal_at(nadir), 120)
    normal, sight = normal_at(target), direction(satellite, target)
    to_centre = direction(satellite, centre)
    d.curve(on_ellipse, -12, 90)
    d.line(satellite, centre, dashed=True, colour=PALE)
    d.line(satellite, nadir, dashed=True, colour=PALE)
    d.line(target, towards(target, normal, 115), arrow=True)
    d.line(satellite, target, width=2)
    d.angle(satellite, 64, to_centre, sight)
    d.angle(target, 58, normal, sight + 180, colour=SECOND)
    d.text((240, 330), "look angle", colour=ACCENT, anchor="end")
    d.line((244, 334), towards(satellite, to_centre + 6, 64), colour=ACCENT, width=0.8)
    d.text((486, 300), "incidence angle", colour=SECOND)
    d.line((500, 294), towards(target, (normal + sight + 180) / 2, 58), colour=SECOND, width=0.8)
    d.dot(satellite, "satellite", dx=12, dy=4)
    d.dot(target, "target", dx=12, dy=-8)
    d.dot(nadir, "nadir", dx=-4, dy=-28, anchor="middle")
    d.dot(centre, "Earth's centre", dx=12, dy=-4)
    d.text((396, 306), "slant range")
    d.text((506, 206), "ellipsoid's normal")
    d.text((516, 70), "ellipsoid")
    d.into_page((28, 394), "flight into the page, right looking;")
    d.text((43, 370), "not to scale")
    return d


def heading():
    d = Drawing("Heading and looking sides, from above")

    def turned(degrees):  # from north over east
        return 90.0 - degrees
    for place, course, name, aside in (((160, 200), 345.0, "ascending", 20),
                                       ((480, 200), 195.0, "descending", -20)):
        right, left = turned(course + 90), turned(course - 90)
        d.line(place, towards(place, 90, 120), colour=PALE, arrow=True)
        d.line(place, towards(place, 0, 60), colour=PALE, arrow=True)
        d.line(towards(place, turned(course), -130), towards(place, turned(course), 150), width=2, arrow=True)
        d.line(place, towards(place, right, 110), colour=SECOND, dashed=True, arrow=True)
        d.line(place, towards(place, left, 110), colour=SECOND, dashed=True, arrow=True)
        d.angle(place, 45, 90, turned(course), arrow=True)
        d.dot(place)
        d.text((place[0] + aside, 326), "north", anchor="middle")
        d.text((place[0], 392), f"{name} track", anchor="middle")
        d.text((place[0], 374), f"heading {course:.0f} degrees", colour=ACCENT, anchor="middle")
        for side, words in ((right, "right"), (left, "left")):
            x, y = towards(place, side, 122)
            d.text((x, y - 20 if y < place[1] else y + 8), words, colour=SECOND, anchor="middle")
        d.text((place[0] + 64, 196), "east")
    d.text((20, 16), "The heading runs from north over east; right and left are the sides to look at.")
    return d


def baseline():
    d = Drawing("Baseline of a pair, in the plane of the line of sight, not to scale")
    master, slave, target = (120, 316), (288, 358), (590, 44)
    near = math.dist(slave, target)
    sight = direction(target, master)
    foot = towards(target, sight, near)
    d.line(master, target, colour=PALE)
    d.line(slave, target, colour=PALE)
    d.curve(lambda t: towards(target, t, near), sight + 5, direction(target, slave),
            dashed=True, colour=PALE)
    d.line(master, slave, width=2)
    d.line(foot, slave, width=2, colour=ACCENT)
    d.line(master, foot, width=3, colour=SECOND)
    d.right_angle(foot, sight - 90 - math.degrees(math.asin(math.dist(foot, slave) / 2 / near)))
    d.dot(master, "master S", dx=-10, dy=4, anchor="end")
    d.dot(slave, "slave T", dx=8, dy=6)
    d.dot(target, "target P", dx=0, dy=-22, anchor="middle")
    d.dot(foot, radius=2.5)
    d.text((196, 346), "B", anchor="end")
    d.text((150, 272), "delta R", colour=SECOND, anchor="end")
    d.text((150, 254), "= R_m - R_s", colour=SECOND, anchor="end")
    d.text((262, 296), "effective", colour=ACCENT)
    d.text((262, 280), "baseline", colour=ACCENT)
    d.text((352, 150), "R_m", anchor="end")
    d.text((462, 186), "R_s")
    d.text((20, 120), "Here the slave is nearer and above the line of sight:")
    d.text((20, 100), "delta R > 0, phase > 0, eff_baseline > 0,")
    d.text((20, 80), "metres per cycle < 0.")
    d.text((20, 48), "effective baseline = root of B² - (delta R)²; it also holds the part")
    d.text((20, 28), "along the track. Flight into the page, right looking; not to scale.")
    assert near < math.dist(master, target)
    return d


def samples():
    d = Drawing("Eleven by two samples and the nine-point grid")
    left, right, low, high = 110, 570, 100, 330
    d.line((left, low), (right, low), (right, high), (left, high), (left, low), colour=PALE)
    for x in (left, (left + right) / 2, right):
        for y in (low, (low + high) / 2, high):
            d.line((x - 9, y - 9), (x + 9, y + 9), colour=SECOND, width=2)
            d.line((x - 9, y + 9), (x + 9, y - 9), colour=SECOND, width=2)
    for i in range(11):
        for y in (low, high):
            d.dot((left + (right - left) * i / 10, y), colour=ACCENT)
    d.text((left, high + 22), "sample 0, near range", anchor="middle")
    d.text((right + 60, high + 22), "last sample, far range", anchor="end")
    d.text((left - 16, high - 5), "line 0", anchor="end")
    d.text((left - 16, low - 5), "last line", anchor="end")
    d.line((50, 280), (50, 150), arrow=True)
    d.text((58, 206), "flight")
    d.line((240, high + 52), (440, high + 52), arrow=True)
    d.text((340, high + 60), "range", anchor="middle")
    d.text((left, 52), "dots: the sweep; the first and last of a line are the corners", colour=ACCENT)
    d.text((left, 30), "crosses: the nine points of the grids", colour=SECOND)
    return d


def fitted_misfit(swath, degree):
    """Largest misfits (cycles) of a polynomial through eleven samples over a swath (m on the ground): at
    the samples, and anywhere."""
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

    def at(x):
        return phase(near + (far - near) * (x + 1) / 2)
    ys = [at(x) for x in xs]
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

    def fitted(x):  # one polynomial of degree 10 at most goes through the eleven fitted values
        return sum((at(u) - y) * math.prod((x - w) / (u - w) for w in xs if w != u) for u, y in zip(xs, ys))
    return max(map(abs, ys)), max(abs(at(x) - fitted(x)) for x in (i / 100 for i in range(-100, 101)))


def misfit():
    d = Drawing("Misfit of the flat-earth polynomial over the width of the swath", height=420)
    left, right, low, high = 80, 520, 60, 368
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
    larger = of_four = 1.0
    for degree in range(1, 7):
        points = [(w, *fitted_misfit(1e3 * w, degree)) for w in range(20, 401, 10)]
        shown = [at(w, m) for w, m, _ in points if m > 10.0**decades[0]]
        ratio = max(most / m for _, m, most in points if m > 10.0**decades[0])
        larger, of_four = max(larger, ratio), ratio if degree == 4 else of_four
        d.line(*shown, colour=ACCENT if degree == 4 else INK)
        d.text((right + 8, shown[-1][1] - 4), f"degree {degree}",
               colour=ACCENT if degree == 4 else INK)
    d.text((24, high + 34), "largest misfit at the eleven samples along the first or the last line, cycles;")
    d.text((24, high + 16), f"between the samples up to {larger:.1f} times as large (degree 4: {of_four:.1f} times)")
    return d


PICTURES = {"viewing": viewing, "heading": heading, "baseline": baseline, "samples": samples,
            "misfit": misfit}

if __name__ == "__main__":
    wanted = sys.argv[1:] or PICTURES
    for name in wanted:
        if name not in PICTURES:
            sys.exit(f"there is no picture {name}; there are {', '.join(PICTURES)}")
        PICTURES[name]().save(Path(__file__).with_name(name + ".svg"))
