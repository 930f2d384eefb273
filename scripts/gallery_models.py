#!/usr/bin/env python3
"""Writes two models for the gallery beside the lighthouse's: knot.obj, a smooth tube of two materials, and
vase.obj, a turned body with a texture.

    gallery_models.py FOLDER    the textures of examples/data are to lie there
"""
import math
import pathlib
import sys


def cross(a, b):
    return [a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]]


def unit(a):
    length = math.sqrt(sum(x * x for x in a))
    return [x / length for x in a]


def knot_point(t):
    radius = 2.0 + math.cos(3 * t)
    return [radius * math.cos(2 * t), radius * math.sin(2 * t), 1.2 * math.sin(3 * t)]


def tube(along, around):
    """Rings of (place, normal, texture place) along the knot."""
    for i in range(along + 1):
        t = 2 * math.pi * i / along
        way = unit([b - a for a, b in zip(knot_point(t - 0.001), knot_point(t + 0.001))])
        side = unit(cross(way, [0, 0, 1]))
        up = cross(side, way)
        ring = []
        for j in range(around + 1):
            angle = 2 * math.pi * j / around
            normal = [math.cos(angle) * s + math.sin(angle) * u for s, u in zip(side, up)]
            place = [p + 0.55 * n for p, n in zip(knot_point(t), normal)]
            ring.append((place, normal, (i / along, j / around)))
        yield ring


def vase(along, around):
    """Rings of a body that was turned on a wheel, from its foot to its rim."""
    radius = lambda h: 0.55 + 0.75 * math.sin(0.9 * math.pi * h + 0.35) ** 2 + 0.35 * h ** 6
    for i in range(along + 1):
        h = i / along
        slope = (radius(h + 0.001) - radius(h - 0.001)) / 0.002 / 3.4
        ring = []
        for j in range(around + 1):
            angle = 2 * math.pi * j / around
            place = [radius(h) * math.cos(angle), 3.4 * h, -radius(h) * math.sin(angle)]
            ring.append((place, unit([math.cos(angle), -slope, -math.sin(angle)]), (2 * j / around, 2 * h)))
        yield ring


def write(path, library, rings, material_of):
    rings = list(rings)
    around = len(rings[0]) - 1
    with open(path, "w") as file:
        file.write(f"mtllib {library}\n")
        for place, normal, uv in (corner for ring in rings for corner in ring):
            file.write("v %.5f %.5f %.5f\nvn %.5f %.5f %.5f\nvt %.5f %.5f\n" % (*place, *normal, *uv))
        for i in range(len(rings) - 1):
            file.write(f"usemtl {material_of(i)}\n")
            for j in range(around):
                a = i * (around + 1) + j + 1
                b = a + around + 1
                for face in ((a, b, b + 1), (a, b + 1, a + 1)):
                    file.write("f " + " ".join(f"{n}/{n}/{n}" for n in face) + "\n")


def main():
    folder = pathlib.Path(sys.argv[1])
    (folder / "knot.mtl").write_text("newmtl copper\nKd 0.8 0.4 0.22\nKs 0.5 0.45 0.4\nNs 40\n"
                                     "newmtl slate\nKd 0.3 0.42 0.5\nKs 0.4 0.4 0.4\nNs 40\n")
    write(folder / "knot.obj", "knot.mtl", tube(192, 24), lambda i: ("copper", "slate")[i // 16 % 2])
    (folder / "vase.mtl").write_text("newmtl glaze\nKd 1 1 1\nKs 0.5 0.5 0.5\nNs 60\nmap_Kd lighthouse_stone.png\n")
    write(folder / "vase.obj", "vase.mtl", vase(40, 64), lambda i: "glaze")


main()
