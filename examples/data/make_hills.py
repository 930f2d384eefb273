#!/usr/bin/env python3
"""Makes hills.png, the height map of the shapes example: an island in grey.

    examples/data/make_hills.py [folder]

Without a folder, beside this script. The output lies in the repository: run this only to change it.
"""

import math
import os
import sys

from make_lighthouse import fractal, write_png

SIZE = 64


def height(u, v):
    distance = math.hypot(u - 0.5, v - 0.5) * 2.0
    shore = max(0.0, 1.0 - distance * distance)
    grey = min(1.0, shore * (0.35 + 0.95 * fractal(u, v, 4, 4, 11)))
    return (grey, grey, grey)


if __name__ == "__main__":
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.abspath(__file__))
    write_png(os.path.join(folder, "hills.png"), SIZE, SIZE, height)
