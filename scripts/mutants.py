"""Tries mutants of the engine against its tests; see mutants.sh."""
import argparse
import collections
import json
import os
import random
import re
import shutil
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutants"
TREE = WORK / "tree"
BUILD = WORK / "build"
TEST_SECONDS = 120
BUILD_SECONDS = 1200

Mutant = collections.namedtuple("Mutant", "file line kind before after")

# What each kind of change looks for in a line, and what it puts there. Templates have no blank beside
# their brackets, so that a blank tells a comparison.
SWAPS = {
    "comparison": [(r" < ", " <= "), (r" <= ", " < "), (r" > ", " >= "), (r" >= ", " > "),
                   (r" == ", " != "), (r" != ", " == ")],
    "arithmetic": [(r"(?<=[\w)\]]) \+ (?=[\w(])", " - "), (r"(?<=[\w)\]]) - (?=[\w(])", " + "),
                   (r"(?<=[\w)\]]) \* (?=[\w(])", " / "), (r"\+\+", "--"), (r" \+= ", " -= "),
                   (r" && ", " || "), (r" \|\| ", " && ")],
    "constant": [(r"\btrue\b", "false"), (r"\bfalse\b", "true"),
                 (r"(?<![\w.])0(?![\w.])", "1"), (r"(?<![\w.])1(?![\w.])", "2"),
                 (r"(?<![\w.])0\.0f", "1.0f"), (r"(?<![\w.])1\.0f", "2.0f")],
}
CONDITION = re.compile(r"^(\s+(?:else )?(?:if|while) \()([^;]*)(\)(?: \{)?)$")
CALL_OR_ASSIGNMENT = re.compile(r"^\s+(?:[\w.:]|->|\[[^\]]*\])+(?:\(.*\)| [-+*|&]?= .*)(?<!default);$")
ARGUMENTS = re.compile(r"(?<=\()([a-z][\w.]*), ([a-z][\w.]*)(?=[,)])")
NO_STATEMENT = re.compile(r"^\s*(//|#|:|,|\"|\}|\{|case |default:|using |typedef |static_assert|template|"
                          r"struct |class |enum |namespace |return;)")


def changes_of(lines, index):
    """Each change of one line, as kind and new line."""
    line = lines[index]
    if not line.startswith("    ") or NO_STATEMENT.match(line) or "R\"" in line:
        return
    code = line.split(" //")[0]
    if "\"" in code or "'" in code:
        code = re.sub(r"\"(?:[^\"\\]|\\.)*\"|'(?:[^'\\]|\\.)*'",
                      lambda text: "\0" * len(text.group()), code)
    for kind, pairs in SWAPS.items():
        for pattern, new in pairs:
            for match in re.finditer(pattern, code):
                yield kind, line[:match.start()] + new + line[match.end():]
    if match := CONDITION.match(line):
        yield "negated", f"{match[1]}!({match[2]}){match[3]}"
    if (CALL_OR_ASSIGNMENT.match(line) and not line.lstrip().startswith(("return", "throw"))
            and lines[index - 1].rstrip().endswith((";", "{", "}", ":"))):
        yield "dropped", " " * (len(line) - len(line.lstrip())) + "{}"
    for match in ARGUMENTS.finditer(code):
        if match[1] != match[2]:
            yield "arguments", f"{line[:match.start()]}{match[2]}, {match[1]}{line[match.end():]}"


def sources(room):
    """Those of the engine, the libraries beside it and the tools."""
    below = [ROOT / room] if room else [ROOT / "src", ROOT / "tools"]
    return sorted(file for folder in below for file in folder.rglob("*.cpp"))


def all_mutants(room):
    mutants = []
    for file in sources(room):
        lines = file.read_text(encoding="utf-8").split("\n")
        for index in range(1, len(lines)):
            for kind, after in changes_of(lines, index):
                mutants.append(Mutant(str(file.relative_to(ROOT)), index + 1, kind, lines[index], after))
    return mutants


def choose(mutants, count, seed):
    """As many of each kind as there is room for, each line at most once."""
    generator = random.Random(seed)
    by_kind = collections.defaultdict(list)
    for mutant in mutants:
        by_kind[mutant.kind].append(mutant)
    for group in by_kind.values():
        generator.shuffle(group)
    chosen, lines = [], set()
    while len(chosen) < count and any(by_kind.values()):
        for group in by_kind.values():
            while group and (group[-1].file, group[-1].line) in lines:
                group.pop()
            if group and len(chosen) < count:
                mutant = group.pop()
                lines.add((mutant.file, mutant.line))
                chosen.append(mutant)
    return sorted(chosen)


def run(command, seconds, **options):
    """@return the exit status; None where it took too long"""
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                               start_new_session=True, **options)
    try:
        return process.wait(seconds)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, 9)
        process.wait()
        return None


def prepare():
    if TREE.exists():
        subprocess.run(["git", "worktree", "remove", "--force", str(TREE)], cwd=ROOT, check=False)
        shutil.rmtree(TREE, ignore_errors=True)
    WORK.mkdir(parents=True, exist_ok=True)
    subprocess.run(["git", "worktree", "prune"], cwd=ROOT, check=True)
    subprocess.run(["git", "worktree", "add", "--quiet", "--detach", str(TREE)], cwd=ROOT, check=True)
    if (ROOT / "deps").exists() and not (TREE / "deps").exists():
        (TREE / "deps").symlink_to(ROOT / "deps")
    subprocess.run(["cmake", "-S", str(TREE), "-B", str(BUILD), "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                    "-DCMAKE_CXX_FLAGS_DEBUG=-O0", "-DORVEX_BUILD_EXAMPLES=OFF"],
                   check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", str(BUILD)], check=True)


def test_programs():
    """The tests that are programs of ours, as name and folder below tests."""
    listed = subprocess.run(["ctest", "--test-dir", str(BUILD), "--show-only=json-v1"],
                          capture_output=True, text=True, check=True)
    programs = {}
    for test in json.loads(listed.stdout)["tests"]:
        command = test.get("command", [""])[0]
        if command.startswith(str(BUILD / "tests")) and test["name"] == os.path.basename(command):
            programs[test["name"]] = os.path.relpath(os.path.dirname(command), BUILD / "tests")
    return programs


def programs_near(file, programs):
    """Those of the innermost folder around a source that has any."""
    folder = Path("tools") if file.startswith("tools/") else Path(file).relative_to("src").parent
    while True:
        near = [name for name, place in programs.items()
                if Path(place) == folder or folder in Path(place).parents]
        if near or folder == Path("."):
            return near
        folder = folder.parent


def is_noticed(names):
    """@return whether one of the programs fails; None where the mutant doesn't compile"""
    if run(["cmake", "--build", str(BUILD), "--target", *names], BUILD_SECONDS) != 0:
        return None
    pattern = "^(" + "|".join(names) + ")$"
    return run(["ctest", "--test-dir", str(BUILD), "-R", pattern, "-j2", "--stop-on-failure",
                "--timeout", str(TEST_SECONDS)], TEST_SECONDS * len(names)) != 0


def try_mutant(mutant, programs, near_alone):
    path = TREE / mutant.file
    original = path.read_text(encoding="utf-8")
    lines = original.split("\n")
    lines[mutant.line - 1] = mutant.after
    path.write_text("\n".join(lines), encoding="utf-8")
    try:
        noticed = is_noticed(programs_near(mutant.file, programs))
        if noticed is False and not near_alone:
            noticed = is_noticed(sorted(programs))
        return noticed
    finally:
        path.write_text(original, encoding="utf-8")


def report(counts, survivors):
    print(f"\n{'kind':12} {'tried':>6} {'killed':>7}")
    for kind in sorted({kind for kind, _ in counts}):
        killed, lived = counts[kind, True], counts[kind, False]
        print(f"{kind:12} {killed + lived:6} {killed:7}")
    tried = sum(counts.values()) - sum(count for (_, noticed), count in counts.items() if noticed is None)
    share = 100.0 * (tried - len(survivors)) / tried if tried else 0.0
    print(f"{tried} tried, {tried - len(survivors)} killed: {share:.1f} %")
    for mutant in survivors:
        print(f"{mutant.file}:{mutant.line}: {mutant.kind}\n  - {mutant.before.strip()}\n"
              f"  + {mutant.after.strip()}")


def main():
    parser = argparse.ArgumentParser(prog="mutants.sh", description="Tries mutants against the tests.")
    parser.add_argument("--count", type=int, default=400)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--room", default="")
    parser.add_argument("--near", action="store_true")
    parser.add_argument("--list", action="store_true")
    options = parser.parse_args()

    mutants = choose(all_mutants(options.room), options.count, options.seed)
    if options.list:
        for mutant in mutants:
            print(f"{mutant.file}:{mutant.line}: {mutant.kind}: {mutant.after.strip()}")
        return 0
    prepare()
    programs = test_programs()
    counts, survivors = collections.Counter(), []
    began = time.monotonic()
    for number, mutant in enumerate(mutants, 1):
        noticed = try_mutant(mutant, programs, options.near)
        counts[mutant.kind, noticed] += 1
        if noticed is False:
            survivors.append(mutant)
        word = {True: "killed", False: "SURVIVED", None: "does not compile"}[noticed]
        print(f"[{number}/{len(mutants)}, {time.monotonic() - began:.0f} s] {mutant.file}:{mutant.line}: "
              f"{mutant.kind}: {word}", flush=True)
    report(counts, survivors)
    return 0


if __name__ == "__main__":
    sys.exit(main())
