#!/usr/bin/env python3
"""Writes models for the gallery beside the lighthouse's: knot.obj, a smooth tube of two materials, vase.obj, a
turned body with a texture, and a hundred knots and vases of all forms with a manifest, hundred.jsonl.

    gallery_models.py FOLDER    the textures of examples/data are to lie there
"""
import colorsys
import json
import math
import pathlib
import random
import sys


def cross(a, b):
    return [a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]]


def unit(a):
    length = math.sqrt(sum(x * x for x in a))
    return [x / length for x in a]


def knot_point(t, turns, waves):
    radius = 2.0 + math.cos(waves * t)
    return [radius * math.cos(turns * t), radius * math.sin(turns * t), 1.2 * math.sin(waves * t)]


def tube(along, around, turns=2, waves=3, thickness=0.55):
    """Rings of (place, normal, texture place) along a knot."""
    for i in range(along + 1):
        t = 2 * math.pi * i / along
        way = unit([b - a for a, b in zip(knot_point(t - 0.001, turns, waves),
                                          knot_point(t + 0.001, turns, waves))])
        side = unit(cross(way, [0, 0, 1]))
        up = cross(side, way)
        ring = []
        for j in range(around + 1):
            angle = 2 * math.pi * j / around
            normal = [math.cos(angle) * s + math.sin(angle) * u for s, u in zip(side, up)]
            place = [p + thickness * n for p, n in zip(knot_point(t, turns, waves), normal)]
            ring.append((place, normal, (i / along, j / around)))
        yield ring


def vase(along, around, belly=0.75, waist=0.9, rim=0.35):
    """Rings of a body that was turned on a wheel, from its foot to its rim."""
    radius = lambda h: 0.55 + belly * math.sin(waist * math.pi * h + 0.35) ** 2 + rim * h ** 6
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


def write_hundred(folder):
    chance = random.Random(7)
    knots = [(2, 3), (3, 2), (2, 5), (3, 4), (5, 2), (4, 3), (1, 4), (1, 6), (3, 5), (2, 7)]
    entries = []
    for i in range(100):
        red, green, blue = colorsys.hsv_to_rgb(i * 0.618 % 1, 0.6, 0.85)
        (folder / f"{i:02}.mtl").write_text(f"newmtl glaze\nKd {red:.3f} {green:.3f} {blue:.3f}\n"
                                            "Ks 0.5 0.5 0.5\nNs 50\n")
        if i % 2 == chance.randrange(2):
            turns, waves = chance.choice(knots)
            rings = tube(240, 16, turns, waves, chance.uniform(0.2, 0.45))
        else:
            rings = vase(40, 48, chance.uniform(0.2, 1.6), chance.uniform(0.7, 2.4),
                         chance.uniform(-0.3, 0.8))
        write(folder / f"{i:02}.obj", f"{i:02}.mtl", rings, lambda _: "glaze")
        entries.append({"model": f"{i:02}.obj", "id": f"{i:02}",
                        "elevation": chance.randrange(15, 50), "azimuth": chance.randrange(360)})
    (folder / "hundred.jsonl").write_text("".join(json.dumps(entry) + "\n" for entry in entries))


def main():
    folder = pathlib.Path(sys.argv[1])
    (folder / "knot.mtl").write_text("newmtl copper\nKd 0.8 0.4 0.22\nKs 0.5 0.45 0.4\nNs 40\n"
                                     "newmtl slate\nKd 0.3 0.42 0.5\nKs 0.4 0.4 0.4\nNs 40\n")
    write(folder / "knot.obj", "knot.mtl", tube(192, 24), lambda i: ("copper", "slate")[i // 16 % 2])
    (folder / "vase.mtl").write_text("newmtl glaze\nKd 1 1 1\nKs 0.5 0.5 0.5\nNs 60\nmap_Kd lighthouse_stone.png\n")
    write(folder / "vase.obj", "vase.mtl", vase(40, 64), lambda i: "glaze")
    write_hundred(folder)


main()
