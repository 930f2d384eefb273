#!/usr/bin/env python3
"""Holds the names of the sources against .clang-tidy: lower case with underscores, no marks.

usage: check_names.py <build folder>

Names that hosts know in another form stand in scripts/names_kept.txt, one a line; a name there that no
source declares is a mistake, too.
"""
import json
import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
KEPT = ROOT / "scripts" / "names_kept.txt"
WARNING = re.compile(r"^(\S+?):(\d+):\d+: warning: (invalid case style for [\w ]+ '([^']+)')", re.M)


def sources_of(build):
    with open(Path(build) / "compile_commands.json", encoding="utf-8") as file:
        entries = json.load(file)
    files = {os.path.normpath(os.path.join(entry["directory"], entry["file"])) for entry in entries}
    return sorted(file for file in files if file.startswith(str(ROOT / "src") + "/"))


def names_in(build, file):
    result = subprocess.run(
        ["clang-tidy", "-p", build, "--checks=-*,readability-identifier-naming",
         f"--header-filter={ROOT}/src/.*", "--quiet", file],
        capture_output=True, text=True, check=False)
    if error := re.search(r"^.*: error: .*$", result.stdout, re.M):
        return {(file, "0", error.group(), "")}
    return set(WARNING.findall(result.stdout))


def main(build):
    kept = {line for line in KEPT.read_text(encoding="utf-8").split("\n")
            if line and not line.startswith("#")}
    files = sources_of(build)
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        found = set().union(*pool.map(lambda file: names_in(build, file), files))
    mistakes = sorted(f"{os.path.relpath(file, ROOT)}:{line}: {text}"
                      for file, line, text, name in found
                      if name not in kept and file.startswith((str(ROOT / "src"), "src/")))
    unused = kept - {name for _, _, _, name in found}
    mistakes += [f"scripts/names_kept.txt: nothing is called {name}" for name in sorted(unused)]
    print(f"{len(files)} sources, {len(kept)} names kept")
    print("\n".join(mistakes))
    return 1 if mistakes or not files else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
