#!/usr/bin/env python3
"""Makes the six faces of a sky over hills and sea, sky_px.png to sky_nz.png, for the overlays example.

    examples/data/make_sky.py [folder]

Without a folder, beside this script. The output lies in the repository: run this only to change it.

A skybox looks its map up with x turned around, so the face for +X shows what lies towards -X.
"""

import math
import os
import sys

from make_lighthouse import fractal, mix, write_png

SIZE = 256
SUN = (-0.6, 0.6, 0.53)  # about where the example's model is lit from
EDGE = 0.006  # width of the line between hills and sky, against stairs

# Where the texel at (s, t) of a face lies, s to the right and t down, both from -1 to 1.
FACES = {
    "px": lambda s, t: (1.0, -t, -s),
    "nx": lambda s, t: (-1.0, -t, s),
    "py": lambda s, t: (s, 1.0, t),
    "ny": lambda s, t: (s, -1.0, -t),
    "pz": lambda s, t: (s, -t, 1.0),
    "nz": lambda s, t: (-s, -t, -1.0),
}


def clamped(t):
    return max(0.0, min(1.0, t))


def hill_height(azimuth):
    waves = ((3, 0.4, 0.030), (5, 1.9, 0.022), (11, 0.7, 0.010), (23, 2.6, 0.004))
    return 0.055 + sum(size * math.sin(n * azimuth + phase) for n, phase, size in waves)


def clouds(x, y, z):
    """Wisps on a plane high above, thinning out towards the horizon."""
    u, v = 0.5 + 0.12 * x / y, 0.5 + 0.12 * z / y
    wisps = fractal(u % 1.0, v % 1.0, 6, 5, 7) - 0.45
    return clamped(wisps * 2.6 * clamped((y - 0.08) * 3.0))


def sky(x, y, z):
    color = mix((0.82, 0.87, 0.90), (0.22, 0.44, 0.74), clamped((max(0.0, y) * 1.6) ** 0.7))
    if y > 0.08:
        color = mix(color, (1.0, 1.0, 1.0), clouds(x, y, z))
    near_sun = max(0.0, x * SUN[0] + y * SUN[1] + z * SUN[2])
    color = mix(color, (1.0, 0.93, 0.78), 0.55 * near_sun**24)
    return mix(color, (1.0, 0.98, 0.92), clamped((near_sun - 0.998) * 2000.0))


def land(x, y, z):
    if y < 0.0:
        return mix((0.55, 0.66, 0.74), (0.10, 0.24, 0.36), clamped((-y) ** 0.5 * 1.3))
    return mix((0.50, 0.60, 0.68), (0.30, 0.42, 0.46), clamped(y * 9.0))


def seen(x, y, z):
    above_hills = y - hill_height(math.atan2(z, x))
    return mix(land(x, y, z), sky(x, y, z), clamped(0.5 + above_hills / EDGE))


def face(place):
    def texel(u, v):
        # Rows are asked for from the top, v counts from the bottom.
        x, y, z = place(2.0 * u - 1.0, 1.0 - 2.0 * v)
        length = math.sqrt(x * x + y * y + z * z)
        return seen(-x / length, y / length, z / length)

    return texel


if __name__ == "__main__":
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.abspath(__file__))
    for name, place in FACES.items():
        write_png(os.path.join(folder, f"sky_{name}.png"), SIZE, SIZE, face(place))
