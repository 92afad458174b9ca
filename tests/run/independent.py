"""What a pair comes to, from orbits given as formulas and without any code of the program: targets by
Newton's method, travel times by repeated substitution, polynomials by normal equations in fractions."""

import cmath
import math
import struct
from fractions import Fraction
from types import SimpleNamespace

C = 299792458.0
LINES = ("early_az", "late_az")


def dot(a, b):
    return sum(x * y for x, y in zip(a, b))


def minus(a, b):
    return [x - y for x, y in zip(a, b)]


def cross(a, b):
    return [a[i - 2] * b[i - 1] - a[i - 1] * b[i - 2] for i in range(3)]


def unit(a):
    return [x / math.hypot(*a) for x in a]


def single(x):
    return struct.unpack("f", struct.pack("f", x))[0]


def angle(a, b):
    return math.degrees(math.atan2(math.hypot(*cross(a, b)), dot(a, b)))


class Orbit:
    """A path whose radius swings by a small part and whose node drifts; times are of the scenes' axis."""

    def __init__(self, *formula):
        self.formula, self.zero = formula, formula[-1]

    def complex_position(self, t):
        radius, swing, inclination, node, start, rate, drift, zero = self.formula
        u, n = start + rate * (t - zero), node - drift * (t - zero)
        r = radius * (1 + swing * cmath.cos(rate * (t - zero) + 0.7))
        along, aside = r * cmath.cos(u), r * cmath.sin(u) * math.cos(inclination)
        return (along * cmath.cos(n) - aside * cmath.sin(n), along * cmath.sin(n) + aside * cmath.cos(n),
                r * cmath.sin(u) * math.sin(inclination))

    def position(self, t):
        return [x.real for x in self.complex_position(t)]

    def velocity(self, t):
        return [x.imag / 1e-20 for x in self.complex_position(t + 1e-20j)]

    def approach(self, p, t):
        """When it is closest to a point, and the squared speed of the parabola that the range follows."""
        for _ in range(10):
            d, v = minus(self.position(t), p), self.velocity(t)
            acceleration = minus(self.velocity(t + 0.5), self.velocity(t - 0.5))  # to 1e-7
            squared_speed = dot(v, v) + dot(d, acceleration)
            t -= dot(d, v) / squared_speed
        return t, squared_speed


def target(s, v, distance, a, b, side):
    """The point at a distance on an ellipsoid across the track: side -1 is left, +1 right."""
    down = unit([-x for x in s])
    right = unit(cross(down, v))
    p = [x + distance * (0.8 * y + 0.6 * side * z) for x, y, z in zip(s, down, right)]
    for _ in range(20):
        d, normal = minus(p, s), [p[0] / a**2, p[1] / a**2, p[2] / b**2]
        misfits = (dot(d, d) - distance**2) / 2, (dot(p, normal) - 1) / 2, dot(d, v)
        columns = cross(normal, v), cross(v, d), cross(d, normal)
        p = [x - dot(misfits, row) / dot(d, columns[0]) for x, row in zip(p, zip(*columns))]
    return p


def travel(receiver, transmitter, p, start, scene):
    """Time of the shortest way from transmitter over the point to receiver, and how long it is: lowest
    point of the parabola through three squared travel times over the stay in the azimuth band."""
    t, squared_speed = receiver.approach(p, start)
    distance = math.dist(receiver.position(t), p)
    span = scene["az_bandwidth"] * C * distance / (2 * squared_speed * scene["radar_frequency"])

    def squared(x):
        back = math.dist(receiver.position(t + x), p) / C
        way = 2 * back
        for _ in range(20):
            way = back + math.dist(transmitter.position(t + x - way), p) / C
        return way * way
    low, mid, high = squared(-span / 2), squared(0.0), squared(span / 2)
    slope, bend = (high - low) / span, 2 * (high + low - 2 * mid) / span**2
    return t - slope / (2 * bend), C * math.sqrt(mid - slope**2 / (4 * bend))


def fit(xs, ys, degree):
    """Least squares; exact but for the rounding of the result."""
    xs, ys, size = [Fraction(x) for x in xs], [Fraction(y) for y in ys], degree + 1
    rows = [[sum(x**(i + j) for x in xs) for j in range(size)] +
            [sum(y * x**i for x, y in zip(xs, ys))] for i in range(size)]
    for i in range(size):
        rows[i] = [x / rows[i][i] for x in rows[i]]
        for j in range(size):
            if j != i:
                rows[j] = [x - rows[j][i] * y for x, y in zip(rows[j], rows[i])]
    return [float(row[-1]) for row in rows]


def seen(pair, line, sample, side=None):
    """Where a line and a sample lie, and how the slave sees them."""
    m, s, insar = pair.master, pair.slave, pair.insar
    out = SimpleNamespace(spl=sample, dtau=sample / m["range_sampling_frequency"])
    t = insar["master_first_az_time"] + line / m["prf"]
    distance = C / 2 * (insar["master_first_rg_time"] + out.dtau)
    s_, v_ = out.s, out.v = pair.orbits[0].position(t), pair.orbits[0].velocity(t)
    a, b = (r + pair.height for r in m["ellipsoid_parameters"][7:])
    out.p = target(s_, v_, distance, a, b, side or pair.side)
    higher = target(s_, v_, distance, a + 100, b + 100, side or pair.side)
    normal = [out.p[0] / a**2, out.p[1] / a**2, out.p[2] / b**2]
    out.longitude = math.degrees(math.atan2(normal[1], normal[0])) % 360
    out.latitude = math.degrees(math.atan2(normal[2], math.hypot(*normal[:2])))
    east = unit([-s_[1], s_[0], 0])
    out.heading = math.degrees(math.atan2(dot(v_, east), dot(v_, unit(cross(s_, east))))) % 360
    out.time = pair.orbits[1].approach(out.p, insar["slave_first_az_time"])[0]
    position = pair.orbits[1].position(out.time)
    out.master_range_distance, out.slave_range_distance = distance, math.dist(position, out.p)
    out.master_look_angle, out.slave_look_angle = (angle(x, minus(x, out.p)) for x in (s_, position))
    out.master_incidence_angle, out.slave_incidence_angle = (
        angle(normal, minus(x, out.p)) for x in (s_, position))
    out.baseline, out.delta_r = math.dist(s_, position), distance - out.slave_range_distance
    out.effective = math.sqrt(out.baseline**2 - out.delta_r**2) / (2 if pair.single else 1)
    low, high = (2 * math.dist(position, p) for p in (out.p, higher))  # the slave's paths
    if pair.single:
        out.time, low = travel(*pair.orbits[::-1], out.p, t, s)
        high = travel(*pair.orbits[::-1], higher, t, s)[1]
    out.phase = (2 * distance * m["radar_frequency"] - low * s["radar_frequency"]) / C
    out.metres = 100 * C / s["radar_frequency"] / (high - low)  # the master's ranges are equal
    return out


def reference(pair):
    """The results by key, and the numbers of the log in their order, each with a name. The effective baseline
    follows from the reported incidence."""
    m, insar = pair.master, pair.insar
    last_line, last_sample = insar["n_lines"] - 1, insar["n_samples"] - 1
    early, late = lines = [[seen(pair, x, i * last_sample / 10) for i in range(11)] for x in (0, last_line)]
    metres, delta_r, effective = (sum(getattr(x, quantity) for x in early + late) / 22
                                  for quantity in ("metres", "delta_r", "effective"))
    results = {
        "fringe_frequency_range": sum(x[10].phase - x[0].phase for x in lines) / 2 / last_sample,
        "fringe_frequency_azimuth": (late[5].phase - early[5].phase) / insar["n_lines"],
        "height_conversion_factor": metres, "varnoth_deltaR": delta_r,
        "eff_baseline": -math.sin(math.radians(single(late[5].master_incidence_angle))) * C /
        m["radar_frequency"] * early[5].master_range_distance / metres / (4 if pair.single else 2),
        **{f"incidence_angle_{place}_range": x.master_incidence_angle
           for place, x in (("near", early[0]), ("mid", late[5]), ("far", early[10]))},
        "ssc_pixel_spacing_azimuth":
        math.hypot(*late[10].p) * math.hypot(*late[10].v) / math.hypot(*late[10].s) / m["prf"],
        "ssc_pixel_spacing_ground_range": C / 2 / m["range_sampling_frequency"] /
        math.sin(math.radians(late[10].master_incidence_angle)),
        "heading_angle": early[0].heading, "sensor_look_direction": "right" if pair.side > 0 else "left",
        "equator_crossing_direction": "ascending" if late[10].v[2] > 0 else "descending"}
    for axis in ("longitude", "latitude"):
        corners = {f"{LINES[k]}_{place}_rg_{axis}": getattr(lines[k][i], axis)
                   for k in (0, 1) for place, i in (("near", 0), ("far", 10))}
        results |= {**corners, f"center_{axis}": sum(corners.values()) / 4}
    misfit, spl = 0.0, [x.spl for x in lines[0]]
    for name, line in zip(LINES, lines):
        results[f"{name}_phase_to_height_conv"] = [x.metres for x in line]
        for who in ("master", "slave"):
            for key in ("look_angle", "range_distance", "incidence_angle"):
                results[f"{who}_{name}_{key}"] = [getattr(x, f"{who}_{key}") for x in line]
        results[f"flat_phase_poly_{name}"] = p = fit(spl, [x.phase for x in line], pair.degree)
        misfit = max(misfit, *(abs(sum(c * x.spl**i for i, c in enumerate(p)) - x.phase) for x in line))

    log = []

    def tell(what, names, values):
        log.extend((f"{what} {name}", value) for name, value in zip(names.split(), values))
    for k, line in enumerate(lines):
        tell(f"line {k}", "position", [k * last_line / m["prf"]])
        for i, x in enumerate(line):
            tell(f"line {k} sample {i}", "x y z latitude longitude incidence slave_time",
                 (*x.p, x.latitude, x.longitude, x.master_incidence_angle, x.time))
        for i, x in enumerate(line):
            tell(f"line {k} row {i}", "spl dtau baseline effective metres phase",
                 ((x.spl + 0.5) // 1, x.dtau, x.baseline, x.effective, x.metres, x.phase))
        tell(f"line {k}", "variation", [max(x.phase for x in line) - min(x.phase for x in line)])
    tell("mean", "simulation", [math.copysign(effective, -metres)])
    named = ("eff_baseline ssc_pixel_spacing_azimuth ssc_pixel_spacing_ground_range height_conversion_factor "
             "eff_baseline varnoth_deltaR incidence_angle_near_range incidence_angle_far_range")
    tell("single", named, map(results.get, named.split()))
    for name in LINES:
        tell(name, "p0 p1 p2 p3 p4", results[f"flat_phase_poly_{name}"])
    tell("at the end", "misfit metres fringes_range fringes_azimuth",
         (misfit, misfit * late[10].metres, *list(results.values())[:2]))
    samples = [0, last_sample / 2, last_sample]
    for quantity in ("effective", "baseline"):
        tell(f"{quantity} grid", "near mid far", map(int, samples))
        for line in (0, last_line / 2, last_line):
            tell(f"{quantity} grid line {line}", "line near mid far",
                 (int(line), *(getattr(seen(pair, line, sample), quantity) for sample in samples)))
    return results, log
