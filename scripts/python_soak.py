#!/usr/bin/env python3
"""Draws and starts over and over from Python, and tells what memory that takes.

    python_soak.py [count]

Wants the module on the path, as the tests have it. Both rows have to be flat from the first tenth on.
"""

import os
import sys
import tempfile

import orvex


def resident_kib():
    """Memory of this process that is in use, in KiB."""
    with open("/proc/self/statm", encoding="ascii") as file:
        return int(file.read().split()[1]) * os.sysconf("SC_PAGE_SIZE") // 1024


def tell(name, count, use):
    """Does something so many times, and tells of ten moments on the way."""
    row = []
    for number in range(count):
        use()
        if (number + 1) % max(1, count // 10) == 0:
            row.append(resident_kib())
    print(f"{count} {name}: {' '.join(map(str, row))} KiB", flush=True)


def start():
    """An engine with a model, from its start to its stop."""
    with orvex.Engine() as engine:
        engine.mesh([[0, 0, 0], [1, 0, 0], [0, 1, 0]])


def main():
    count = int(sys.argv[1]) if len(sys.argv) > 1 else 10000
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "a.obj")
        with open(path, "w", encoding="ascii") as file:
            file.write("v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n")
        tell("renders", count, lambda: orvex.render(path, (64, 48)))
    orvex.stop()
    tell("engines", count, start)


main()
