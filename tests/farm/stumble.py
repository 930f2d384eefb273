"""The tool, but the first time that a shard is drawn by it, it stops in the middle.

usage: stumble.py <folder> <shard, or -> fail|wait <the tool> <arguments of the tool>

The first half of the manifest is drawn, or two entries are answered. Then it fails as for want of a disk; or it writes the number of who
has called it into the file `caller` of the folder, and waits until that has ended.
"""

import os
import pathlib
import subprocess
import sys
import time


def half_of(command):
    """Draws the first half of a manifest."""
    at = command.index("--batch") + 1
    if command[at] == "-":
        lines = sys.stdin.readlines()
    else:
        lines = pathlib.Path(command[at]).read_text(encoding="utf-8").splitlines(keepends=True)
    half = "".join(lines[:len(lines) // 2])
    subprocess.run([*command[:at], "-", *command[at + 1:]], input=half, text=True, check=False)


def serve_two(command):
    """Answers the first two entries, and takes the third with it."""
    with subprocess.Popen(command, stdin=subprocess.PIPE, text=True) as tool:
        for _ in range(2):
            print(sys.stdin.readline(), end="", file=tool.stdin, flush=True)
        sys.stdin.readline()


def main(folder, shard, manner, tool, *arguments):
    """Returns the exit code."""
    command = [tool, *arguments]
    is_meant = shard == "-" or ("--shard", shard) in zip(command, command[1:])
    try:
        if not is_meant:
            raise FileExistsError
        (pathlib.Path(folder) / "stumbled").mkdir()
    except FileExistsError:
        os.execv(tool, command)
    caller = os.getppid()
    (serve_two if "--serve" in command else half_of)(command)
    if manner == "fail":
        return 4
    part = pathlib.Path(folder) / "caller.part"
    part.write_text(str(caller), encoding="utf-8")
    part.rename(part.with_suffix(""))
    while os.getppid() == caller:
        time.sleep(0.01)
    return 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
