#!/usr/bin/env python3
"""Reads the libraries and tools with Clang: what it warns of is a mistake, and so is a name of another form than
.clang-tidy asks for, lower case with underscores and no marks. Once for both, as reading takes the time.

usage: check_clang.py <build folder>

The folder is configured for Clang; nothing is compiled there but the sources that the build makes. Names that
hosts know in another form stand in scripts/names_kept.txt, one a line; a name there that no source declares is
a mistake, too.
"""
import json
import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
SOURCES = str(ROOT / "src") + "/"
KEPT = ROOT / "scripts" / "names_kept.txt"
WORD = re.compile(r"^(\S+?):(\d+):\d+: (?:warning|error): (.*)$", re.M)
NAME = re.compile(r"invalid case style for [\w ]+ '([^']+)'")


def sources_of(build):
    with open(build / "compile_commands.json", encoding="utf-8") as file:
        entries = json.load(file)
    return sorted({os.path.normpath(os.path.join(entry["directory"], entry["file"])) for entry in entries})


def make_sources(build):
    """Makes the sources and headers that the build makes."""
    made = subprocess.run(["ninja", "-C", build, "-t", "targets", "rule", "CUSTOM_COMMAND"],
                          check=True, capture_output=True, text=True).stdout.split("\n")
    wanted = [file for file in made if file.endswith((".cpp", ".h")) and not os.path.isabs(file)]
    subprocess.run(["ninja", "-C", build, *wanted], check=True, stdout=subprocess.DEVNULL)


def words_on(build, file):
    """What Clang says of a source: file, line, text."""
    result = subprocess.run(
        ["clang-tidy", "-p", build, "--checks=-*,readability-identifier-naming,clang-diagnostic-*",
         f"--header-filter={ROOT}/.*", "--quiet", file],
        capture_output=True, text=True, check=False)
    words = set(WORD.findall(result.stdout))
    if result.returncode and not words:
        words.add((file, "0", result.stdout + result.stderr))
    return words


def main(build):
    build = Path(build).resolve()
    kept = {line for line in KEPT.read_text(encoding="utf-8").split("\n")
            if line and not line.startswith("#")}
    files = sources_of(build)
    make_sources(build)
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        found = set().union(*pool.map(lambda file: words_on(build, file), files))
    mistakes, used = set(), set()
    for file, line, text in found:
        if not (name := NAME.match(text)):
            mistakes.add(f"{os.path.relpath(file, ROOT)}:{line}: {text}")
        elif file.startswith(SOURCES):
            used.add(name.group(1))
            if name.group(1) not in kept:
                mistakes.add(f"{os.path.relpath(file, ROOT)}:{line}: {text}")
    mistakes |= {f"scripts/names_kept.txt: nothing is called {name}" for name in kept - used}
    print(f"{len(files)} sources, {len(kept)} names kept")
    print("\n".join(sorted(mistakes)))
    return 1 if mistakes or not files else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
