#!/usr/bin/env python3
"""What a first picture costs from Python, from the start of the process to its end.

    bench/orvex_c/python_start_bench.py [--build FOLDER] [--rounds N]

Rows of processor time in milliseconds, each beside the tool's for the same picture of a small model in
the same format and size; all take turns, so that a busy machine slows them alike, and the ratio is the
median of the rounds'. Rows for scripts/bench.sh, at most 1.2 times the tool's for a picture that
is written to a file, and for one as an array where NumPy isn't installed. Where it is, what the import of
NumPy takes by itself is told beside the row, and taken from it for the goal.
"""

import argparse
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from rows import Rows  # noqa: E402

TOP = pathlib.Path(__file__).resolve().parent.parent.parent
GOAL = 1.2

SAVE = """
import orvex, sys
with orvex.Engine() as engine, engine.view(640, 480) as view:
    view.draw(engine.load(sys.argv[1]))
    view.save(sys.argv[2])
"""
RENDER = "import orvex, sys\norvex.render(sys.argv[1], size=(640, 480))\n"
WITHOUT = "import sys\nsys.modules['numpy'] = None\n"


def taken(command, environment):
    """Seconds of the processor and of the clock that a command takes."""
    began = time.monotonic()
    process = subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{command} failed: {process.returncode}")
    return usage.ru_utime + usage.ru_stime, time.monotonic() - began


def measure(commands, rounds, environment):
    """For each command the seconds of its rounds, of the processor and of the clock."""
    seconds = {name: [] for name in commands}
    for number in range(rounds + 1):
        for name, command in commands.items():
            pair = taken(command, environment)
            if number:  # the first one fills caches, those of bytecode among them
                seconds[name].append(pair)
    return seconds


def commands_of(options, folder):
    """The rows by their names."""
    model, picture = folder / "a.obj", folder / "a.png"
    model.write_text("v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n")
    tool = options.build / "tools" / "orvex-render" / "orvex-render"

    def python(program):
        return [options.python, "-c", program, str(model), str(picture)]

    return {"tool": [str(tool), "--quiet", "--size", "640x480", str(model), "-o", str(picture)],
            "python alone": python("pass"), "import orvex": python("import orvex"),
            "to a file": python(SAVE), "array without NumPy": python(WITHOUT + RENDER),
            "import numpy": python("import numpy"), "array with NumPy": python(RENDER)}


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--build", type=pathlib.Path, default=TOP / "build" / "release")
    parser.add_argument("--rounds", type=int, default=20)
    parser.add_argument("--python", default="/usr/bin/python3", help="one with cffi and NumPy")
    told = Rows(parser)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        environment = {**os.environ, "PYTHONPATH": str(options.build / "python"),
                       "PYTHONPYCACHEPREFIX": name,
                       "ORVEX_LIBRARY": str(options.build / "src" / "orvex_c" / "liborvex_c.so.0")}
        environment.pop("PYTHONDONTWRITEBYTECODE", None)
        rows = measure(commands_of(options, folder), options.rounds, environment)
    for name, pairs in rows.items():
        ratio = statistics.median(one[0] / tool[0] for one, tool in zip(pairs, rows["tool"]))
        processor, clock = (statistics.median(part) * 1000 for part in zip(*pairs))
        print(f"{name:20} {processor:7.1f} ms, {clock:7.1f} by the clock: {ratio:.2f}")
    own = [numpy[0] - bare[0] for numpy, bare in zip(rows["import numpy"], rows["python alone"])]
    tool = statistics.median(pair[0] for pair in rows["tool"])
    for name in ("to a file", "array without NumPy", "array with NumPy"):
        less = own if "with NumPy" in name else [0] * len(own)
        cost = statistics.median(pair[0] - numpy for pair, numpy in zip(rows[name], less))
        print(f"{name}: {cost / tool:.2f}, goal {GOAL}")
        told.say(f"first picture from Python {name}", "the tool", cost, tool, goal=GOAL)
    told.write(options)


main()
