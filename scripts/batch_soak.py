"""Draws a batch undisturbed and disturbed, and compares; see batch_soak.sh."""
import argparse
import hashlib
import json
import math
import os
import random
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "release"
# What two runs may differ in: the clock, and what was measured or tried meanwhile.
MEASURED = ("seconds", "peak_bytes", "tries")


def ring(sides, height):
    """A tower with so many sides, as OBJ."""
    lines = []
    for i in range(sides):
        angle = 2 * math.pi * i / sides
        for y in (0, height):
            lines.append(f"v {math.cos(angle):.4f} {y} {math.sin(angle):.4f}")
    for i in range(sides):
        a, b = 2 * i + 1, 2 * ((i + 1) % sides) + 1
        lines += [f"f {a} {b} {b + 1}", f"f {a} {b + 1} {a + 1}"]
    return ("\n".join(lines) + "\n").encode()


def mutant(model, chance):
    """A model with some bytes changed, or cut off."""
    result = bytearray(model)
    for _ in range(chance.randint(1, 20)):
        result[chance.randrange(len(result))] = chance.randrange(256)
    return bytes(result[:chance.randint(1, len(result))] if chance.random() < 0.3 else result)


def make_manifest(folder, options):
    """Writes models and manifest. @return how many of each sort there are"""
    chance = random.Random(options.seed)
    models = folder / "models"
    models.mkdir(parents=True)
    for file in (ROOT / "examples" / "data").glob("lighthouse*"):
        shutil.copy(file, models)
    poison = ("hang", "eat", "crash", "missing")
    counts = {}
    with open(folder / "manifest.jsonl", "w") as manifest:
        for i in range(options.count):
            model = ring(chance.randint(3, 60), chance.randint(1, 5))
            name, sort = f"{i:05}.obj", "model"
            share = chance.random() * 100
            if share < options.poison:
                sort = poison[chance.randrange(len(poison))]
                model = f"# poison {sort}\n".encode() + model
            elif share < options.poison + 2:
                name, sort = "lighthouse.obj", "lighthouse"
            elif share < 50:
                model, sort = mutant(model, chance), "mutant"
            if sort not in ("missing", "lighthouse"):
                (models / name).write_bytes(model)
            counts[sort] = counts.get(sort, 0) + 1
            entry = {"model": f"models/{name}", "id": f"e{i:05}", "azimuth": chance.randrange(360)}
            manifest.write(json.dumps(entry) + "\n")
    return counts


def command(options, name, *more):
    return [options.tool, "--batch", "manifest.jsonl", "--output-dir", name,
            "--results", f"{name}.jsonl", "--size", "64x64", "--workers", str(options.workers),
            "--plugin", options.plugin, "--limit-seconds", str(options.limit_seconds),
            "--limit-memory", "512", *more]


def children_of(process):
    try:
        return [int(word) for word in
                Path(f"/proc/{process}/task/{process}/children").read_text().split()]
    except (FileNotFoundError, ProcessLookupError):
        return []


def kill(process):
    try:
        os.kill(process, signal.SIGKILL)
        return 1
    except ProcessLookupError:
        return 0


def run_disturbed(folder, options, seconds):
    """Runs the batch to its end, whatever is killed. @return the last exit code, and both kills"""
    chance = random.Random(options.seed + 1)
    workers = supervisors = 0
    rest = seconds / (options.supervisor_kills + 1)
    next_worker = time.monotonic() + options.kill_every
    with open(folder / "disturbed.log", "w") as log:
        while True:
            process = subprocess.Popen(command(options, "disturbed", "--resume"), cwd=folder,
                                       stderr=log)
            end = time.monotonic() + rest * chance.uniform(0.2, 1.2)
            while process.poll() is None:
                time.sleep(0.02)
                now = time.monotonic()
                if now >= next_worker:
                    next_worker = now + options.kill_every
                    children = children_of(process.pid)
                    workers += kill(chance.choice(children)) if children else 0
                if now >= end and supervisors < options.supervisor_kills:
                    process.kill()
                    process.wait()
                    supervisors += 1
            if process.returncode != -signal.SIGKILL:
                return process.returncode, workers, supervisors


def tree_of(folder):
    return {str(file.relative_to(folder)): hashlib.sha256(file.read_bytes()).hexdigest()
            for file in folder.rglob("*") if file.is_file()}


def verdicts_of(file):
    """The lines by their ids, without what is measured."""
    result = {}
    for line in file.read_text().splitlines():
        verdict = json.loads(line)
        for name in MEASURED:
            del verdict[name]
        result.setdefault(verdict["id"], []).append(json.dumps(verdict))
    return result


def differences(what, clean, disturbed):
    names = [name for name in sorted(clean.keys() | disturbed.keys())
             if clean.get(name) != disturbed.get(name)]
    for name in names[:10]:
        print(f"{what} {name}:\n  {clean.get(name)}\n  {disturbed.get(name)}")
    return len(names)


def main():
    parser = argparse.ArgumentParser(prog="batch_soak.sh")
    parser.add_argument("--count", type=int, default=10000, help="entries")
    parser.add_argument("--poison", type=float, default=1.0, help="percent of them")
    parser.add_argument("--workers", type=int, default=2)
    parser.add_argument("--kill-every", type=float, default=5.0, help="seconds between workers")
    parser.add_argument("--supervisor-kills", type=int, default=20)
    parser.add_argument("--limit-seconds", type=float, default=4.0,
                        help="on a model; less than between kills, or one that hangs is never done")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--tool", default=str(BUILD / "tools/orvex-render/orvex-render"))
    parser.add_argument("--plugin", default=str(BUILD / "tests/tools/poison_loader.so"))
    parser.add_argument("--folder", type=Path, default=BUILD / "batch_soak")
    options = parser.parse_args()

    shutil.rmtree(options.folder, ignore_errors=True)
    options.folder.mkdir(parents=True)
    print("entries:", make_manifest(options.folder, options))
    begin = time.monotonic()
    code = subprocess.run(command(options, "clean"), cwd=options.folder, check=False).returncode
    seconds = time.monotonic() - begin
    print(f"undisturbed: exit code {code} after {seconds:.0f} s")
    begin = time.monotonic()
    other, workers, supervisors = run_disturbed(options.folder, options, seconds)
    print(f"disturbed: exit code {other} after {time.monotonic() - begin:.0f} s, "
          f"{workers} workers and {supervisors} supervisors killed")

    clean = verdicts_of(options.folder / "clean.jsonl")
    count = differences("verdict on", clean, verdicts_of(options.folder / "disturbed.jsonl"))
    count += differences("file", tree_of(options.folder / "clean"),
                         tree_of(options.folder / "disturbed"))
    lines = sum(len(of_id) for of_id in clean.values())
    print(f"{lines} verdicts; {count} differences")
    sys.exit(count != 0 or code != other or lines != options.count)


if __name__ == "__main__":
    main()
