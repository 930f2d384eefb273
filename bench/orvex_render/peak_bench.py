#!/usr/bin/env python3
"""How much memory a picture of a large OBJ file takes at its peak.

    bench/orvex_render/peak_bench.py [--program FILE] [--triangles N]

A sheet of triangles by `orvex-render`, with its four samples a pixel and with none, beside f3d where that is
installed, by turns, the least of three; and one triangle alone, which is what the programs take anyway. Beside f3d
it is a row for scripts/bench.sh.
"""

import argparse
import math
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from rows import Rows  # noqa: E402

SIZE = (1280, 960)


def write_sheet(path, num_triangles):
    """@return how many triangles it has"""
    side = max(2, round(math.sqrt(num_triangles / 2)) + 1)
    with open(path, "w") as out:
        for z in range(side):
            out.write("".join(f"v {x * 0.01:.6f} {math.sin(x * 0.01) * math.cos(z * 0.01):.6f} {z * 0.01:.6f}\n"
                              for x in range(side)))
        for z in range(side - 1):
            row = range(z * side + 1, z * side + side)
            out.write("".join(f"f {a} {a + side} {a + 1}\nf {a + 1} {a + side} {a + side + 1}\n" for a in row))
    return 2 * (side - 1) ** 2


def peak_of(command):
    """The most memory that a program and those that it runs have held, the largest of them, in MiB."""
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    if status != 0:
        sys.exit(f"{command[0]} failed: {' '.join(command)}")
    return usage.ru_maxrss / 1024


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", default="build/release/tools/orvex-render/orvex-render")
    parser.add_argument("--triangles", type=int, default=1_000_000)
    rows = Rows(parser)
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        one = folder / "one.obj"
        one.write_text("v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n")
        sheet = folder / "sheet.obj"
        count = write_sheet(sheet, arguments.triangles)
        size = f"{SIZE[0]}x{SIZE[1]}"
        commands = {f"orvex-render, {samples} samples": lambda model, samples=samples: [
            arguments.program, str(model), "-m", samples, "-s", size, "-o", str(folder / "out.png")]
            for samples in ("4", "0")}
        if shutil.which("f3d") and shutil.which("xvfb-run"):
            # Its window needs a display; whoever has the most memory of all counts, which is f3d.
            commands["f3d"] = lambda model: ["xvfb-run", "-a", "f3d", str(model), f"--output={folder / 'f3d.png'}",
                                             f"--resolution={SIZE[0]},{SIZE[1]}"]
        peaks = {program: [] for program in commands}
        for _ in range(3):
            for program, command in commands.items():
                peaks[program].append(peak_of(command(sheet)))
        print(f"{count} triangles, {sheet.stat().st_size >> 20} MiB of text")
        for program, command in commands.items():
            peak, bare = min(peaks[program]), peak_of(command(one))
            print(f"  {program:26} {peak:7.0f} MiB at most, {bare:4.0f} of them for one triangle: "
                  f"{(peak - bare) * 1048576 / count:4.0f} bytes a triangle")
        if "f3d" in peaks:
            rows.say("peak of a picture", "f3d", min(peaks["orvex-render, 4 samples"]) * 2**20,
                     min(peaks["f3d"]) * 2**20, goal=1, unit="bytes")
    rows.write(arguments)


if __name__ == "__main__":
    main()
