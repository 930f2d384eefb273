#!/usr/bin/env python3
"""How fast a batch draws, and in how little memory.

    bench/orvex_render/batch_bench.py [--program FILE] [--models N] [--lines N] [--long N]

Three rows: many small models by two workers, beside f3d with a process for each picture where that is
installed; the supervisor of a manifest of a million lines; and one worker over many models, whose memory,
descriptors and threads stay as they are. Ends with 1 where a goal is missed: 15 models a second and 60 ms of
the processor for each, on 2 idle cores; 20 MB, and the first picture within 3 seconds; no growth. What doesn't depend on
what else the machine does are rows for scripts/bench.sh.
"""

import argparse
import json
import math
import os
import pathlib
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from rows import Rows  # noqa: E402


def sphere(rings, seed):
    """A ball with bumps, of 2 * rings * rings faces, as the text of an OBJ file."""
    lines = []
    for i in range(rings + 1):
        for k in range(rings):
            down, around = math.pi * i / rings, 2 * math.pi * k / rings
            size = 1 + 0.1 * math.sin(seed + 5 * around) * math.sin(3 * down)
            lines.append(f"v {size * math.sin(down) * math.cos(around):.5f} {size * math.cos(down):.5f} "
                         f"{size * math.sin(down) * math.sin(around):.5f}")
    for i in range(rings):
        for k in range(rings):
            a, b = i * rings + k + 1, i * rings + (k + 1) % rings + 1
            lines += [f"f {a} {b} {b + rings}", f"f {a} {b + rings} {a + rings}"]
    return "\n".join(lines) + "\n"


def write_models(folder, count):
    paths = []
    for i in range(count):
        path = folder / f"model-{i:05}.obj"
        path.write_text(sphere(10 + i % 20, i))
        paths.append(path)
    return paths


def manifest_of(folder, paths, count):
    file = folder / "manifest.jsonl"
    with open(file, "w") as out:
        for i in range(count):
            out.write(json.dumps({"id": f"{i}", "model": str(paths[i % len(paths)])}) + "\n")
    return file


def processor_seconds():
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    return usage.ru_utime + usage.ru_stime


def command(program, manifest, folder, *more):
    return [program, "--batch", str(manifest), "--output-dir", str(folder / "out"), "--size", "256x256",
            "--quiet", *more]


def row(name, is_reached, figures):
    print(f"{'  ' if is_reached else '! '}{name}: {figures}", flush=True)
    return is_reached


def many_small(program, folder, count, rows):
    paths = write_models(folder, count)
    manifest = manifest_of(folder, paths, count)
    with F3d(folder) as peer:
        peer.draw(paths[:10])
        before, begin = processor_seconds(), time.monotonic()
        subprocess.run(command(program, manifest, folder, "--workers", "2"), check=True, stdout=subprocess.DEVNULL)
        taken, spent = time.monotonic() - begin, processor_seconds() - before
        peer.draw(paths[-10:])
    rate, each = count / taken, 1000 * spent / count
    rows.say("a model of many", "a bound", each / 1000, 0.060, goal=1)
    return row(f"{count} small models, 2 workers", rate >= 15 and each <= 60,
               f"{rate:.1f} models a second, {each:.1f} ms of the processor each{peer.told(each / 1000, rows)}")


class F3d:
    """f3d with a process for each picture, right before and behind what it stands beside. It wants a display, whose
    server is started once and isn't counted."""

    def __init__(self, folder):
        self.picture = folder / "f3d.png"
        self.is_there = bool(shutil.which("f3d") and (os.environ.get("DISPLAY") or shutil.which("Xvfb")))
        self.environment = dict(os.environ)
        self.server = None
        self.count, self.taken, self.spent = 0, 0.0, 0.0

    def __enter__(self):
        if self.is_there and "DISPLAY" not in self.environment:
            ours, theirs = os.pipe()
            self.server = subprocess.Popen(["Xvfb", "-displayfd", str(theirs), "-screen", "0", "1024x768x24"],
                                           pass_fds=[theirs], stderr=subprocess.DEVNULL)
            os.close(theirs)
            with open(ours, encoding="ascii") as number:
                self.environment["DISPLAY"] = ":" + number.readline().strip()
        return self

    def __exit__(self, *_):
        if self.server:
            self.server.terminate()
            self.server.wait()

    def draw(self, paths):
        if not self.is_there:
            return
        before, begin = processor_seconds(), time.monotonic()
        for path in paths:
            subprocess.run(["f3d", str(path), "--resolution=256,256", "--output", str(self.picture)], check=True,
                           env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.taken += time.monotonic() - begin
        self.spent += processor_seconds() - before
        self.count += len(paths)

    def told(self, ours, rows):
        """Says its row beside our seconds of the processor for a picture, and tells its figures."""
        if not self.count:
            return ""
        rows.say("a model of many beside f3d", "f3d, a process each", ours, self.spent / self.count, goal=0.5)
        return f" (f3d: {self.count / self.taken:.1f} a second, {1000 * self.spent / self.count:.0f} ms each)"


def peak_megabytes(process):
    for line in pathlib.Path(f"/proc/{process}/status").read_text().splitlines():
        if line.startswith("VmHWM:"):
            return int(line.split()[1]) / 1024
    return 0


def long_manifest(program, folder, count, rows):
    paths = write_models(folder, 1)
    manifest = manifest_of(folder, paths, count)
    begin = time.monotonic()
    batch = subprocess.Popen(command(program, manifest, folder), stdout=subprocess.PIPE)
    batch.stdout.readline()
    first = time.monotonic() - begin
    for _ in range(50):
        batch.stdout.readline()
    peak = peak_megabytes(batch.pid)
    batch.send_signal(signal.SIGTERM)
    batch.stdout.read()
    batch.wait()
    rows.say("memory of the supervisor", "a bound", peak * 2**20, 20 * 2**20, goal=1, unit="bytes")
    return row(f"{count} lines", peak < 20 and first <= 3,
               f"peak {peak:.1f} MB, first verdict after {first:.2f} s")


def state_of(process):
    """The least of some looks: a model is being drawn meanwhile, with files of its own."""
    looks = []
    for _ in range(20):
        pages = int(pathlib.Path(f"/proc/{process}/statm").read_text().split()[1])
        looks.append((pages * os.sysconf("SC_PAGESIZE") / 2**20, len(os.listdir(f"/proc/{process}/fd")),
                      len(os.listdir(f"/proc/{process}/task"))))
        time.sleep(0.003)
    return tuple(min(look[i] for look in looks) for i in range(3))


def long_worker(program, folder, count, rows):
    paths = write_models(folder, 200)
    manifest = manifest_of(folder, paths, count)
    batch = subprocess.Popen(command(program, manifest, folder, "--workers", "1", "--recycle", str(count + 1),
                                     "--samples", "0"), stdout=subprocess.PIPE)
    states = []
    for i in range(1, count + 1):
        batch.stdout.readline()
        if i % max(count // 20, 1) == 0 and i < count:
            worker = pathlib.Path(f"/proc/{batch.pid}/task/{batch.pid}/children").read_text().split()[0]
            states.append(state_of(worker))
    batch.wait()
    # The first fifth warms up.
    states = states[len(states) // 5:]
    begin, end = states[0], states[-1]
    growth = end[0] - begin[0]
    rows.say("memory of a worker at the end", "itself at the begin, and 4 MB", end[0] * 2**20,
             (begin[0] + 4) * 2**20, goal=1, unit="bytes")
    return row(f"{count} models, 1 worker", growth < 4 and begin[1:] == end[1:],
               f"resident {begin[0]:.1f} to {end[0]:.1f} MB, descriptors {begin[1]} to {end[1]}, "
               f"threads {begin[2]} to {end[2]}")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", default="build/release/tools/orvex-render/orvex-render")
    parser.add_argument("--models", type=int, default=500)
    parser.add_argument("--lines", type=int, default=1000000)
    parser.add_argument("--long", type=int, default=10000)
    rows = Rows(parser)
    options = parser.parse_args()
    if options.benchmark_out and not pathlib.Path(options.program).exists():
        # As where a peer is missing.
        print(f"{options.program} isn't built: no rows")
        rows.write(options)
        return 0
    is_fine = True
    for measure, count in ((many_small, options.models), (long_manifest, options.lines),
                           (long_worker, options.long)):
        with tempfile.TemporaryDirectory() as folder:
            is_fine = measure(options.program, pathlib.Path(folder), count, rows) and is_fine
    rows.write(options)
    if options.benchmark_out:
        return 0
    return 0 if is_fine else 1


if __name__ == "__main__":
    sys.exit(main())
