#!/usr/bin/env python3
"""Makes the sample model: a lighthouse on a rock in the sea, with a boat.

    examples/data/make_lighthouse.py [folder]

writes lighthouse.obj, lighthouse.mtl and the textures they name; without a folder, beside this
script. The output lies in the repository: run this only to change the model. It uses Python's
standard library alone, and gives the same bytes every time.
"""

import math
import os
import struct
import sys
import zlib

TAU = 2.0 * math.pi


# --- Noise and pictures ------------------------------------------------------------------------

def hashed(x, y, seed):
    """A number from 0 to 1 that depends on nothing but its arguments."""
    n = (x * 374761393 + y * 668265263 + seed * 2147483647) & 0xFFFFFFFF
    n = ((n ^ (n >> 13)) * 1274126177) & 0xFFFFFFFF
    return ((n ^ (n >> 16)) & 0xFFFF) / 65535.0


def smooth(t):
    return t * t * (3.0 - 2.0 * t)


def value_noise(x, y, period, seed):
    """Noise that repeats after `period` in both directions."""
    x0, y0 = math.floor(x), math.floor(y)
    tx, ty = smooth(x - x0), smooth(y - y0)
    corner = lambda i, j: hashed((x0 + i) % period, (y0 + j) % period, seed)
    top = corner(0, 0) * (1 - tx) + corner(1, 0) * tx
    bottom = corner(0, 1) * (1 - tx) + corner(1, 1) * tx
    return top * (1 - ty) + bottom * ty


def fractal(u, v, period, octaves, seed):
    total, weight, sum_of_weights = 0.0, 1.0, 0.0
    for octave in range(octaves):
        p = period << octave
        total += weight * value_noise(u * p, v * p, p, seed + octave)
        sum_of_weights += weight
        weight *= 0.5
    return total / sum_of_weights


def mix(a, b, t):
    return tuple(x * (1 - t) + y * t for x, y in zip(a, b))


def write_png(path, width, height, pixel):
    """Writes `pixel(u, v)`, three numbers from 0 to 1; v counts from the lower edge."""
    rows = bytearray()
    for y in range(height):
        rows.append(0)
        for x in range(width):
            color = pixel((x + 0.5) / width, 1.0 - (y + 0.5) / height)
            rows.extend(max(0, min(255, round(255 * c))) for c in color)

    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))

    with open(path, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n")
        file.write(chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)))
        file.write(chunk(b"IDAT", zlib.compress(bytes(rows), 9)))
        file.write(chunk(b"IEND", b""))


def stripes(u, v):
    """Red and white bands of plastered stone, weathered."""
    red = (v * 5.0) % 2.0 < 1.0
    color = (0.76, 0.13, 0.11) if red else (0.95, 0.93, 0.88)
    course = (v * 40.0) % 1.0
    joint = 0.93 if course < 0.06 or (u * 24.0 + 0.5 * (int(v * 40.0) % 2)) % 1.0 < 0.03 else 1.0
    grime = 0.82 + 0.18 * fractal(u, v, 8, 5, 11)
    return tuple(c * joint * grime for c in color)


def stone(u, v):
    shade = fractal(u, v, 4, 6, 23)
    crack = abs(fractal(u, v, 8, 4, 31) - 0.5)
    color = mix((0.27, 0.25, 0.24), (0.62, 0.59, 0.54), shade)
    color = mix((0.16, 0.15, 0.15), color, min(1.0, crack * 18.0))
    moss = max(0.0, fractal(u, v, 6, 4, 41) - 0.55) * 3.0
    return mix(color, (0.30, 0.36, 0.18), min(0.8, moss))


def water(u, v):
    swell = fractal(u, v, 8, 5, 53)
    foam = max(0.0, fractal(u, v, 16, 4, 61) - 0.66) * 3.5
    return mix(mix((0.03, 0.19, 0.30), (0.12, 0.42, 0.52), swell), (0.85, 0.93, 0.95),
               min(0.7, foam))


def wood(u, v):
    plank = int(v * 6.0)
    grain = fractal((u * 0.5 + 0.37 * plank) % 1.0, v, 4, 3, 71)
    ring = 0.5 + 0.5 * math.sin(TAU * (v * 30.0 + 2.5 * grain))
    color = mix((0.40, 0.24, 0.12), (0.62, 0.42, 0.23), 0.6 * ring + 0.4 * grain)
    return tuple(0.55 * c for c in color) if (v * 6.0) % 1.0 < 0.05 else color


# --- Geometry ----------------------------------------------------------------------------------

def cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def normalized(a):
    length = math.sqrt(sum(c * c for c in a))
    return tuple(c / length for c in a) if length > 0 else (0.0, 1.0, 0.0)


class Obj:
    """An OBJ file that grows; equal entries are written once."""

    def __init__(self):
        self.entries = {"v": {}, "vt": {}, "vn": {}}
        self.body = []

    def index(self, kind, numbers):
        text = " ".join("%.5g" % (round(n, 4) + 0.0) for n in numbers)
        return self.entries[kind].setdefault(text, len(self.entries[kind]) + 1)

    def group(self, name, material):
        self.body += ["g " + name, "usemtl " + material]

    def polygon(self, corners):
        """Corners are (position, uv, normal), counter-clockwise as seen from the front."""
        self.body.append("f " + " ".join("%d/%d/%d" % (
            self.index("v", p), self.index("vt", t), self.index("vn", n)) for p, t, n in corners))

    def surface(self, point, columns, rows, uv_scale=(1.0, 1.0)):
        """The patch `point(s, t)` for s and t from 0 to 1, with smooth normals. The front is the
        side from which s runs to the right and t upwards."""
        def normal(s, t):
            h = 1e-4
            ds = [b - a for a, b in zip(point(s - h, t), point(s + h, t))]
            dt = [b - a for a, b in zip(point(s, max(0.0, t - h)), point(s, min(1.0, t + h)))]
            return normalized(cross(ds, dt))

        corner = {}
        for i in range(columns + 1):
            for j in range(rows + 1):
                s, t = i / columns, j / rows
                corner[i, j] = (point(s, t), (s * uv_scale[0], t * uv_scale[1]), normal(s, t))
        for j in range(rows):
            for i in range(columns):
                quad = [corner[i, j], corner[i + 1, j], corner[i + 1, j + 1], corner[i, j + 1]]
                distinct = [c for k, c in enumerate(quad)
                            if math.dist(c[0], quad[k - 1][0]) > 1e-6]
                if len(distinct) >= 3:
                    self.polygon(distinct)

    def revolve(self, profile, columns, center=(0.0, 0.0), uv_scale=(1.0, 1.0)):
        """Turns a profile of (radius, height) about an upright axis. Each segment is flat along its
        height, so that edges stay sharp."""
        total = sum(math.dist(a, b) for a, b in zip(profile, profile[1:]))
        done = 0.0
        for (r0, y0), (r1, y1) in zip(profile, profile[1:]):
            length = math.dist((r0, y0), (r1, y1))
            v0, v1 = done / total, (done + length) / total
            done += length
            slope = normalized((y1 - y0, r0 - r1, 0.0))
            for i in range(columns):
                quad = []
                for k, r, y, v in ((i, r0, y0, v0), (i + 1, r0, y0, v0),
                                   (i + 1, r1, y1, v1), (i, r1, y1, v1)):
                    a = TAU * k / columns
                    position = (center[0] + r * math.cos(a), y, center[1] - r * math.sin(a))
                    direction = (slope[0] * math.cos(a), slope[1], -slope[0] * math.sin(a))
                    quad.append((position, (k / columns * uv_scale[0], v * uv_scale[1]),
                                 direction))
                distinct = [c for k, c in enumerate(quad)
                            if math.dist(c[0], quad[k - 1][0]) > 1e-6]
                self.polygon(distinct)

    def write(self, path, library, comment):
        with open(path, "w", newline="\n") as file:
            file.write("# %s\nmtllib %s\n" % (comment, library))
            for kind in ("v", "vt", "vn"):
                for text in self.entries[kind]:
                    file.write("%s %s\n" % (kind, text))
            file.write("\n".join(self.body) + "\n")


def polar(radius, angle, height):
    return (radius * math.cos(angle), height, -radius * math.sin(angle))


def rock_point(s, t):
    """A rough dome: s runs around, t from the foot to the flat top."""
    angle = TAU * s
    rough = fractal(s % 1.0, 0.5 * t, 5, 4, 83) - 0.5
    radius = 3.6 * (1.0 - 0.62 * t ** 1.4) * (1.0 + 0.42 * rough * (1.0 - t ** 3))
    height = -0.5 + 2.3 * smooth(t) + 0.9 * rough * math.sin(math.pi * t)
    return polar(radius, angle, height)


def sea_point(s, t):
    """A disk; s runs around, t from the rim to the middle."""
    radius = 8.0 * (1.0 - t)
    x, _, z = polar(radius, TAU * s, 0.0)
    wave = 0.10 * math.sin(1.3 * x + 0.6 * z) + 0.07 * math.sin(-0.8 * x + 1.7 * z + 1.0)
    return (x, wave, z)


BOAT = (4.9, 0.28, 3.0)
BOAT_TURN = math.radians(28.0)


def in_boat(x, y, z):
    c, s = math.cos(BOAT_TURN), math.sin(BOAT_TURN)
    return (BOAT[0] + c * x + s * z, BOAT[1] + y, BOAT[2] - s * x + c * z)


def hull_point(side):
    def point(s, t):
        x = -1.1 + 2.2 * s
        width = 0.46 * (1.0 - abs(2.0 * s - 1.0) ** 2.4)
        sheer = 0.16 * (2.0 * s - 1.0) ** 2
        depth = 0.42 * (1.0 - abs(2.0 * s - 1.0) ** 3.0)
        return in_boat(x * side, -depth * (1.0 - t) ** 1.6 + (0.22 + sheer) * t,
                       side * width * t ** 0.6)
    return point


def deck_point(s, t):
    x = -1.1 + 2.2 * s
    width = 0.44 * (1.0 - abs(2.0 * s - 1.0) ** 2.4)
    return in_boat(x, 0.13 + 0.10 * (2.0 * s - 1.0) ** 2, width * (1.0 - 2.0 * t))


def sail_point(front):
    def point(s, t):
        side = s if front else 1.0 - s
        belly = 0.30 * math.sin(math.pi * side) * (1.0 - t) + (0.03 if front else 0.05)
        return in_boat(0.1 - 1.0 * side * (1.0 - t), 0.45 + 2.2 * t, belly)
    return point


def build():
    obj = Obj()

    obj.group("sea", "water")
    obj.surface(sea_point, 64, 20, (10.0, 4.0))

    obj.group("rock", "stone")
    obj.surface(rock_point, 56, 18, (5.0, 2.0))
    obj.revolve([(1.37, 1.795), (0.0, 1.80)], 40, uv_scale=(4.0, 1.0))

    obj.group("tower", "stripes")
    tower = [(1.05 - 0.40 * smooth(0.35 + 0.65 * h) * h ** 0.5, 1.75 + 4.6 * h)
             for h in (k / 10.0 for k in range(11))]
    obj.revolve(tower, 48)

    obj.group("gallery", "iron")
    top = tower[-1][1]
    obj.revolve([(0.64, top - 0.12), (0.98, top), (0.98, top + 0.10), (0.50, top + 0.10)], 48)
    for height in (0.28, 0.46):
        ring = [(0.93, top + height - 0.02), (0.96, top + height), (0.93, top + height + 0.02),
                (0.90, top + height), (0.93, top + height - 0.02)]
        obj.revolve(ring, 48)
    for k in range(16):
        a = TAU * k / 16
        obj.revolve([(0.018, top + 0.10), (0.018, top + 0.47)], 6,
                    (0.93 * math.cos(a), -0.93 * math.sin(a)))

    obj.group("lantern", "light")
    obj.revolve([(0.44, top + 0.10), (0.44, top + 0.86)], 32)
    obj.group("lantern_frame", "iron")
    for k in range(8):
        a = TAU * (k + 0.5) / 8
        obj.revolve([(0.03, top + 0.10), (0.03, top + 0.86)], 6,
                    (0.45 * math.cos(a), -0.45 * math.sin(a)))

    obj.group("roof", "roof")
    obj.revolve([(0.46, top + 0.80), (0.64, top + 0.84), (0.60, top + 0.90), (0.30, top + 1.22),
                 (0.06, top + 1.42), (0.05, top + 1.48)], 40)
    obj.revolve([(0.0, top + 1.46)] + [
        (0.11 * math.sin(math.pi * k / 8), top + 1.57 - 0.11 * math.cos(math.pi * k / 8))
        for k in range(1, 8)] + [(0.0, top + 1.68)], 20)

    obj.group("door", "wood")
    door = lambda s, t: polar(1.075 - 0.03 * t, TAU * (0.79 + 0.075 * s), 1.80 + 0.85 * t)
    obj.surface(door, 8, 6)
    obj.group("windows", "glass")
    for turn, height in ((0.79, 3.2), (0.06, 3.9), (0.56, 4.4), (0.80, 4.9), (0.33, 3.5)):
        radius = next(r for r, y in reversed(tower) if y <= height) + 0.012
        window = lambda s, t: polar(radius - 0.03 * t, TAU * (turn + 0.045 * s), height + 0.38 * t)
        obj.surface(window, 5, 2)

    obj.group("boat", "wood")
    obj.surface(hull_point(1.0), 20, 8, (2.0, 1.0))
    obj.surface(hull_point(-1.0), 20, 8, (2.0, 1.0))
    obj.surface(deck_point, 20, 2, (2.0, 1.0))
    obj.group("mast", "iron")
    x, y, z = in_boat(0.12, 0.0, 0.0)
    obj.revolve([(0.035, y), (0.02, y + 2.75), (0.0, y + 2.8)], 10, (x, z))
    obj.group("sail", "canvas")
    obj.surface(sail_point(True), 10, 14)
    obj.surface(sail_point(False), 10, 14)
    return obj


MATERIALS = """\
# The materials of lighthouse.obj
newmtl water
Ka 0.5 0.5 0.5
Kd 1 1 1
illum 2
Ks 0.8 0.9 1
Ns 500
map_Kd lighthouse_water.png

newmtl stone
Ka 0.5 0.5 0.5
Kd 1 1 1
illum 2
Ks 0.08 0.08 0.08
Ns 60
map_Kd lighthouse_stone.png

newmtl stripes
Ka 0.5 0.5 0.5
Kd 1 1 1
illum 2
Ks 0.15 0.15 0.15
Ns 120
map_Kd lighthouse_stripes.png

newmtl wood
Ka 0.5 0.5 0.5
Kd 1 1 1
illum 2
Ks 0.1 0.1 0.1
Ns 80
map_Kd lighthouse_wood.png

newmtl iron
Ka 0.12 0.12 0.14
Kd 0.14 0.15 0.18
illum 2
Ks 0.6 0.6 0.65
Ns 400

newmtl light
Ka 1 0.92 0.6
Kd 1 0.9 0.55
illum 2
Ks 1 1 0.9
Ns 600

newmtl roof
Ka 0.35 0.06 0.05
Kd 0.62 0.12 0.10
illum 2
Ks 0.4 0.3 0.3
Ns 300

newmtl glass
Ka 0.10 0.16 0.22
Kd 0.16 0.26 0.36
illum 2
Ks 0.9 0.95 1
Ns 700

newmtl canvas
Ka 0.55 0.53 0.48
Kd 0.96 0.93 0.85
illum 2
Ks 0.05 0.05 0.05
Ns 40
"""


def main():
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.abspath(__file__))
    comment = "A lighthouse on a rock in the sea, made by make_lighthouse.py"
    build().write(os.path.join(folder, "lighthouse.obj"), "lighthouse.mtl", comment)
    with open(os.path.join(folder, "lighthouse.mtl"), "w", newline="\n") as file:
        file.write(MATERIALS)
    for name, pixel in (("stripes", stripes), ("stone", stone), ("water", water), ("wood", wood)):
        write_png(os.path.join(folder, "lighthouse_%s.png" % name), 256, 256, pixel)


if __name__ == "__main__":
    main()
