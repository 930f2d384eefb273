"""Tries mutants of the engine against its tests; see mutants.sh."""
import argparse
import collections
import concurrent.futures
import copy
import json
import os
import random
import re
import resource
import shlex
import shutil
import subprocess
import sys
import threading
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutants"
LOG = WORK / "log.jsonl"
PROCESSOR_SECONDS = 60  # beside ten times its usual: more than a test takes that isn't caught in a loop
WALL_SECONDS = 240
MEMORY = 16 << 30

# Some of what is changed sends signals. Where the kernel lets us, a test sees its own processes alone.
ALONE = ["unshare", "--pid", "--fork", "--kill-child", "--mount-proc"]

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
# The smaller or larger of two values is the same either way round.
EITHER_WAY = re.compile(r"std::(?:min|max)\(")
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


def sources():
    """Those of the engine, the libraries beside it and the tools."""
    return sorted(file for folder in (ROOT / "src", ROOT / "tools") for file in folder.rglob("*.cpp"))


def all_mutants():
    mutants = []
    for file in sources():
        lines = file.read_text(encoding="utf-8").split("\n")
        for index in range(1, len(lines)):
            for kind, after in changes_of(lines, index):
                mutants.append(Mutant(str(file.relative_to(ROOT)), index + 1, kind, lines[index], after))
    return mutants


def changes_nothing(mutant):
    return mutant.kind == "arguments" and EITHER_WAY.search(mutant.before) is not None


def in_turn(mutants, seed):
    """As many of each kind as there are, in turn, each line at most once: what is tried first of them is
    as good a choice as any longer one."""
    generator = random.Random(seed)
    by_kind = collections.defaultdict(list)
    for mutant in mutants:
        by_kind[mutant.kind].append(mutant)
    for group in by_kind.values():
        generator.shuffle(group)
    lines = set()
    while any(by_kind.values()):
        for group in by_kind.values():
            while group and ((group[-1].file, group[-1].line) in lines or changes_nothing(group[-1])):
                group.pop()
            if group:
                mutant = group.pop()
                lines.add((mutant.file, mutant.line))
                yield mutant


class Test:
    """A test that is a program of ours."""

    def __init__(self, listed, target, build):
        properties = {entry["name"]: entry["value"] for entry in listed["properties"]}
        self.name = listed["name"]
        self.target = target
        self.place = Path(target).relative_to("tests").parent
        self.program = build / target
        self.folder = properties.get("WORKING_DIRECTORY", str(build))
        self.environment = dict(os.environ, GTEST_FAIL_FAST="1", GTEST_BRIEF="1")
        for setting in properties.get("ENVIRONMENT", []):
            name, _, value = setting.partition("=")
            self.environment[name] = value


    def narrowed(self, source):
        """Only what one of its sources tests."""
        text = source.read_text(encoding="utf-8")
        suites = sorted(set(re.findall(r"^TEST(?:_[FP])?\((\w+),", text, re.MULTILINE)))
        wanted = ":".join(f"{suite}.*:*/{suite}.*" for suite in suites)
        test = copy.copy(self)
        test.name = f"{self.name} ({source.name})"
        test.environment = dict(self.environment, GTEST_FILTER=wanted)
        return test


class Notes:
    """What became of each mutant, in a file that the next run goes on from, and how long each test takes."""

    def __init__(self):
        self.lock = threading.Lock()
        self.fates = {}
        self.seconds = {}
        self.killers = collections.defaultdict(list)
        if LOG.exists():
            for line in LOG.read_text(encoding="utf-8").splitlines():
                self._take(json.loads(line))

    def _take(self, entry):
        self.seconds.update(entry["seconds"])
        self.fates[Mutant(*entry["mutant"])] = entry["fate"]
        if entry["killer"]:
            self.killers[entry["mutant"][0]].append(entry["killer"].split()[0])

    def write(self, mutant, fate, killer, seconds):
        entry = {"mutant": list(mutant), "fate": fate, "killer": killer, "seconds": seconds}
        with self.lock:
            self._take(entry)
            with LOG.open("a", encoding="utf-8") as log:
                log.write(json.dumps(entry) + "\n")

    def in_order(self, file, tests):
        """Those first that noticed something in this file before, then the quick ones."""
        with self.lock:
            return sorted(tests, key=lambda test: (-self.killers[file].count(test.name),
                                                   self.seconds.get(test.name, 1.0)))


class Tree:
    """A copy of what is committed, built as far as it is needed, in which one line at a time is changed.

    The object of the changed file is exchanged by one without optimisation, and the build tool links."""

    def __init__(self, number, notes):
        self.path = WORK / str(number)
        self.build = self.path / "build" / "release"
        self.notes = notes
        self.green = set()
        self.num_compiled = 0
        self._check_out()
        subprocess.run(["cmake", "--preset", "release", "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON", *linker()],
                       cwd=self.path, check=True, stdout=subprocess.DEVNULL)
        for kept in self.build.rglob("*.kept"):
            put_back(self.build, kept)
        commands = json.loads((self.build / "compile_commands.json").read_text(encoding="utf-8"))
        # What others compile as well is tried in the library, which comes first.
        self.commands = {os.path.relpath(entry["file"], self.path): shlex.split(entry["command"])
                         for entry in reversed(commands)}
        self.tests = self._tests()

    def _tests(self):
        """Of the build tool, since ctest doesn't tell what a test runs before it is built."""
        listed = subprocess.run(["ctest", "--test-dir", str(self.build), "--show-only=json-v1"],
                                capture_output=True, text=True, check=True)
        tests = {test["name"]: test for test in json.loads(listed.stdout)["tests"]}
        targets = subprocess.run(["ninja", "-C", str(self.build), "-t", "targets", "all"],
                                 capture_output=True, text=True, check=True)
        programs = re.findall(r"^(tests/\S+): CX*_EXECUTABLE_LINKER", targets.stdout, re.MULTILINE)
        return [Test(tests[Path(program).name], program, self.build) for program in programs
                if Path(program).name in tests]

    def _check_out(self):
        head = subprocess.run(["git", "rev-parse", "HEAD"], cwd=ROOT, capture_output=True, text=True,
                              check=True).stdout.strip()
        if (self.path / ".git").exists():
            subprocess.run(["git", "checkout", "--quiet", "--force", "--detach", head], cwd=self.path,
                           check=True)
            return
        WORK.mkdir(parents=True, exist_ok=True)
        subprocess.run(["git", "worktree", "prune"], cwd=ROOT, check=True)
        subprocess.run(["git", "worktree", "add", "--quiet", "--detach", str(self.path), head], cwd=ROOT,
                       check=True)
        if (ROOT / "deps").exists():
            (self.path / "deps").symlink_to(ROOT / "deps")

    def near(self, file):
        """The tests of the innermost folder around a source that has any."""
        folder = Path("tools") if file.startswith("tools/") else Path(file).relative_to("src").parent
        while True:
            near = [test for test in self.tests
                    if test.place == folder or folder in test.place.parents]
            if near or folder == Path("."):
                return near
            folder = folder.parent

    def namesakes(self, file, near):
        """Those test sources whose names are likest to a source's: they fail soonest."""
        tests = {test.name: test for test in near}
        found = []
        for source, command in self.commands.items():
            stem = re.sub(r"(_gl|_memory)*_test$", "", Path(source).stem)
            target = command[command.index("-o") + 1].split(".dir/")[0].split("/")[-1]
            if target in tests and source.endswith("_test.cpp") and Path(file).stem.startswith(stem):
                found.append((-len(stem), source, tests[target]))
        found.sort(key=lambda one: one[:2])
        return [test.narrowed(self.path / source) for _, source, test in found[:2]]

    def compile(self, mutant):
        """@return its object; None where it doesn't compile, or where the line is another by now"""
        command = self.commands.get(mutant.file)
        if not command:
            return None
        lines = (self.path / mutant.file).read_text(encoding="utf-8").split("\n")
        if lines[mutant.line - 1:mutant.line] != [mutant.before]:
            return None
        self.num_compiled += 1
        name = f"mutant{self.num_compiled}.o"
        changed = self.build / "mutant.cpp"
        lines[mutant.line - 1] = mutant.after
        changed.write_text(f'#line 1 "{self.path / mutant.file}"\n' + "\n".join(lines), encoding="utf-8")
        command = [*command[:command.index("-o")], "-O0", "-w", "-o", name, "-c", changed.name]
        done = subprocess.run(command, cwd=self.build, stderr=subprocess.DEVNULL, check=False)
        return self.build / name if done.returncode == 0 else None

    def try_mutant(self, mutant, compiled, options):
        near = self.near(mutant.file)
        far = [] if options.near else [test for test in self.tests if test not in near]
        began, seconds = time.monotonic(), {}
        command = self.commands[mutant.file]
        with Exchanged(self, command[command.index("-o") + 1], compiled):
            killer = self._first_that_notices(self.namesakes(mutant.file, near), options.seconds, seconds)
            if not killer:
                # Those that were never built, since together is quicker than one by one.
                self.make(*(test.target for test in near if not test.program.exists()))
                in_order = self.notes.in_order(mutant.file, near) + self.notes.in_order(mutant.file, far)
                killer = self._first_that_notices(in_order, options.seconds, seconds)
        # A test that was never seen to pass proves nothing by its failure.
        if killer and not self._is_green(killer):
            print(f"{killer.name} fails by itself and is left out", flush=True)
            self.tests = [test for test in self.tests if test.program != killer.program]
            return
        fate = "killed" if killer else "survived its room" if options.near else "survived"
        self.notes.write(mutant, fate, killer.name if killer else None, seconds)
        print(f"{mutant.file}:{mutant.line}: {mutant.kind}: {fate}{' by ' + killer.name if killer else ''}, "
              f"{time.monotonic() - began:.0f} s", flush=True)

    def _first_that_notices(self, tests, bound, seconds):
        """As far as the bound of processor time reaches; one is always tried."""
        spent = 0.0
        for test in tests:
            spent += self.notes.seconds.get(test.name, 1.0)
            if spent > bound and test != tests[0]:
                return None
            if self._notices(test, seconds):
                return test
        return None

    def _is_green(self, test):
        """@return whether a test passes where nothing is changed"""
        return test.name in self.green or not self._notices(test, {})

    def make(self, *targets):
        """@return whether they are built"""
        if not targets:
            return True
        built = subprocess.run(["ninja", "-C", str(self.build), *targets], stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, check=False)
        return built.returncode == 0

    def _notices(self, test, seconds):
        """@return whether a test fails"""
        if not self.make(test.target):
            return True
        usual = self.notes.seconds.get(test.name, 0.0)
        status, used = run(test, PROCESSOR_SECONDS + 10 * usual)
        if status == 0:
            seconds[test.name] = round(used, 2)
            self.green.add(test.name)
        return status != 0


class Exchanged:
    """The mutant's object in the place of that which it was made from, as long as this lives."""

    def __init__(self, tree, name, compiled):
        self.tree = tree
        self.name = name
        self.compiled = compiled
        self.kept = tree.build / f"{name}.kept"

    def __enter__(self):
        if not self.tree.make(self.name):
            raise RuntimeError(f"{self.name} does not compile as it is")
        shutil.copy2(self.tree.build / self.name, self.kept)
        os.replace(self.compiled, self.tree.build / self.name)
        take(self.tree.build, self.name)

    def __exit__(self, *_):
        put_back(self.tree.build, self.kept)


def take(build, name):
    """Lets the build tool take an object for its own: it has the time of what was there, and what was made of
    that is gone."""
    shutil.copystat(build / f"{name}.kept", build / name)
    told = subprocess.run(["ninja", "-C", str(build), "-t", "query", name], capture_output=True, text=True,
                          check=True).stdout
    for user in told.split("outputs:")[1].split():
        (build / user).unlink(missing_ok=True)


def put_back(build, kept):
    """Also what a run that was cut off left changed."""
    name = str(kept.relative_to(build).with_suffix(""))
    shutil.copyfile(kept, build / name)
    take(build, name)
    kept.unlink()


def linker():
    """One that is quicker than the usual, where there is one."""
    for name in ("mold", "lld"):
        if any((Path(folder) / f"ld.{name}").exists() for folder in os.environ["PATH"].split(":")):
            return [f"-DCMAKE_{kind}_LINKER_FLAGS=-fuse-ld={name}" for kind in ("EXE", "MODULE", "SHARED")]
    return []


def run(test, processor_seconds):
    """@return the exit status, one of failure where it took too long, and the processor time it took"""
    def bounds():
        most = int(processor_seconds)
        resource.setrlimit(resource.RLIMIT_CPU, (most, most))
        resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))

    process = subprocess.Popen([*ALONE, str(test.program)], cwd=test.folder, env=test.environment,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, preexec_fn=bounds,
                               start_new_session=True)
    over = threading.Timer(WALL_SECONDS, process.kill)
    over.start()
    _, status, used = os.wait4(process.pid, 0)
    process.returncode = status
    over.cancel()
    return status, used.ru_utime + used.ru_stime


def room_of(file):
    """The folder below src/orvex, a library beside it, or a tool."""
    parts = file.split("/")
    return "/".join(parts[:3 if parts[1] == "orvex" else 2])


def table(title, fates, key):
    counts = collections.Counter((key(mutant), fate == "killed") for mutant, fate in fates.items())
    print(f"\n{title:24} {'tried':>6} {'killed':>7}")
    for row in sorted({row for row, _ in counts}):
        killed, lived = counts[row, True], counts[row, False]
        print(f"{row:24} {killed + lived:6} {killed:7}")


def report(fates):
    table("room", fates, lambda mutant: room_of(mutant.file))
    table("kind", fates, lambda mutant: mutant.kind)
    killed = sum(fate == "killed" for fate in fates.values())
    share = 100.0 * killed / len(fates) if fates else 0.0
    print(f"\n{len(fates)} tried, {killed} killed: {share:.1f} %")
    for mutant, fate in sorted(fates.items()):
        if fate != "killed":
            print(f"{mutant.file}:{mutant.line}: {mutant.kind}: {fate}\n  - {mutant.before.strip()}\n"
                  f"  + {mutant.after.strip()}")


class Run:
    """Takes mutants one by one until as many as wanted were tried."""

    def __init__(self, options, notes):
        self.options = options
        self.notes = notes
        self.lock = threading.Lock()
        mutants = in_turn(all_mutants(), options.seed)
        if options.again:
            mutants = [mutant for mutant, fate in notes.fates.items() if fate.startswith("survived")]
        self.source = iter([mutant for mutant in mutants if mutant.file.startswith(options.room)])
        self.begun = []

    def is_done(self, mutant):
        fate = self.notes.fates.get(mutant)
        return fate and not self.options.again and (self.options.near or fate != "survived its room")

    def next(self):
        """@return the next one that has no fate yet; None at the end"""
        with self.lock:
            counted = [one for one in self.begun if self.notes.fates.get(one) != "does not compile"]
            while len(counted) < self.options.count:
                mutant = next(self.source, None)
                if mutant is None:
                    return None
                self.begun.append(mutant)
                if not self.is_done(mutant):
                    return mutant
                if self.notes.fates[mutant] != "does not compile":
                    counted.append(mutant)
            return None

    def work(self, tree):
        """Compiles one while the tests of that before it run."""
        with concurrent.futures.ThreadPoolExecutor(1) as ahead:
            def begin():
                mutant = self.next()
                return mutant, mutant and ahead.submit(tree.compile, mutant)

            mutant, compiled = begin()
            while mutant:
                following = begin()
                if compiled.result():
                    tree.try_mutant(mutant, compiled.result(), self.options)
                else:
                    self.notes.write(mutant, "does not compile", None, {})
                mutant, compiled = following if following[0] else begin()

    def fates(self):
        return {mutant: self.notes.fates[mutant] for mutant in self.begun
                if self.notes.fates.get(mutant, "does not compile") != "does not compile"}


def main():
    parser = argparse.ArgumentParser(prog="mutants.sh", description="Tries mutants against the tests.")
    parser.add_argument("--count", type=int, default=400)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--room", default="")
    parser.add_argument("--near", action="store_true")
    parser.add_argument("--seconds", type=float, default=120)
    parser.add_argument("--again", action="store_true")
    parser.add_argument("--trees", type=int, default=1)
    parser.add_argument("--list", action="store_true")
    options = parser.parse_args()

    notes = Notes()
    course = Run(options, notes)
    if options.list:
        while mutant := course.next():
            print(f"{mutant.file}:{mutant.line}: {mutant.kind}: {mutant.after.strip()}")
        report(course.fates())
        return 0
    threads = [threading.Thread(target=course.work, args=(Tree(number, notes),))
               for number in range(1, options.trees + 1)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    report(course.fates())
    return 0


if __name__ == "__main__":
    sys.exit(main())
