#!/usr/bin/env python3
"""Runs the benchmarks and makes one table of what they say; scripts/bench.sh calls it. A row is a benchmark whose
record, as Google Benchmark writes it, has the counters ours_seconds and peer_seconds, or ours_bytes and peer_bytes,
and goal: bench/support/row.h and bench/support/rows.py write them."""

import argparse
import json
import os
import pathlib
import shlex
import subprocess
import sys
import time

# How far a row may fall behind its goal: as far as two runs of one program differ on a machine in use.
TOLERANCE = 1.10


class Run:
    def __init__(self, program, settings=(), arguments=()):
        self.program = program
        self.settings = dict(word.split("=", 1) for word in settings)
        self.arguments = list(arguments)

    def command(self, options, record):
        interpreter = [sys.executable] if self.program.suffix == ".py" else []
        return [*interpreter, str(self.program), f"--benchmark_out={record}", "--benchmark_out_format=json",
                f"--benchmark_min_time={options.seconds}", *self.arguments]


def programs_of(options):
    """The benchmarks by name: programs that were built, and scripts."""
    built = [path for path in options.programs.glob("*_bench") if os.access(path, os.X_OK) and path.is_file()]
    scripts = options.sources.rglob("*_bench.py")
    return {path.stem: path for path in sorted([*built, *scripts], key=lambda path: path.stem)
            if options.only in path.stem}


def runs_of(options):
    """A run for each line of runs.txt, and one for each program that isn't there."""
    programs, runs = programs_of(options), {}
    lines = options.sources / "runs.txt"
    for line in lines.read_text().splitlines() if lines.exists() else []:
        words = shlex.split(line, comments=True)
        place = next((i for i, word in enumerate(words) if "=" not in word), None)
        if place is not None and words[place] in programs:
            name = words[place]
            runs.setdefault(name, []).append(Run(programs[name], words[:place], words[place + 1:]))
    return [run for name, path in programs.items() for run in runs.get(name, [Run(path)])]


def row_of(program, benchmark):
    """The row that a benchmark says, or None."""
    unit = next((unit for unit in ("seconds", "bytes") if f"ours_{unit}" in benchmark), None)
    if unit is None or "goal" not in benchmark:
        return None
    ours, peer, goal = benchmark[f"ours_{unit}"], benchmark[f"peer_{unit}"], benchmark["goal"]
    ratio = ours / peer
    # What Google Benchmark adds of its own says how it was timed.
    parts = [part for part in benchmark["name"].split("/")
             if part not in ("manual_time", "real_time") and not part.startswith("iterations:")]
    return {"program": program, "name": "/".join(parts), "ours": ours, "peer": peer, "peer_name": benchmark["label"],
            "unit": unit, "ratio": ratio, "goal": goal, "is_reached": ratio <= goal,
            "is_behind": not ratio <= goal * TOLERANCE}


def carry_out(run, number, options):
    """One run. @return its rows, and what went wrong"""
    name = run.program.stem
    record, output = options.out / f"{name}-{number}.json", options.out / f"{name}-{number}.txt"
    record.unlink(missing_ok=True)
    with open(output, "w") as file:
        code = subprocess.run(run.command(options, record), stdout=file, stderr=subprocess.STDOUT,
                              env={**os.environ, **run.settings}).returncode
    faults = [f"{name} ended with {code}, see {output}"] if code else []
    try:
        benchmarks = json.loads(record.read_text())["benchmarks"]
    except (OSError, ValueError, KeyError):
        return [], faults or [f"{name} wrote no record, see {output}"]
    faults += [f"{name}: {benchmark['name']}: {benchmark.get('error_message', '')}" for benchmark in benchmarks
               if benchmark.get("error_occurred")]
    rows = [row_of(name, benchmark) for benchmark in benchmarks if not benchmark.get("error_occurred")]
    return [row for row in rows if row], faults


def figure(value, unit):
    """A cost with three digits in a unit that fits."""
    scales = ([(1.0, "s"), (1e-3, "ms"), (1e-6, "µs"), (1e-9, "ns")] if unit == "seconds" else
              [(2.0**30, "GiB"), (2.0**20, "MiB"), (2.0**10, "KiB"), (1.0, "B")])
    scale, name = next((entry for entry in scales if value >= entry[0]), scales[-1])
    number = value / scale
    return f"{number:.{0 if number >= 100 else 1 if number >= 10 else 2}f} {name}"


def multiple(value):
    """A ratio with two digits behind the point, or two that count."""
    return f"{value:.2f}" if value >= 0.1 else f"{value:.2g}"


def state_of(row):
    return "behind" if row["is_behind"] else "reached" if row["is_reached"] else "within a tenth"


def markdown(rows):
    lines = ["| program | work | ours | beside | its cost | ratio | goal | |", "|---|---|---|---|---|---|---|---|"]
    for row in rows:
        lines.append(f"| {row['program']} | {row['name'].replace('_', ' ')} | {figure(row['ours'], row['unit'])} | "
                     f"{row['peer_name']} | {figure(row['peer'], row['unit'])} | {multiple(row['ratio'])} | "
                     f"{multiple(row['goal'])} | {state_of(row)} |")
    return "\n".join(lines) + "\n"


def write_tables(rows, faults, out):
    (out / "table.md").write_text(markdown(rows))
    (out / "table.json").write_text(json.dumps({"rows": rows, "faults": faults}, indent=1) + "\n")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--programs", type=pathlib.Path, required=True, help="the folder of what was built")
    parser.add_argument("--sources", type=pathlib.Path, required=True, help="the folder of scripts, and runs.txt")
    parser.add_argument("--out", type=pathlib.Path, required=True)
    parser.add_argument("--only", default="")
    parser.add_argument("--seconds", type=float, default=0.5)
    options = parser.parse_args()
    options.out.mkdir(parents=True, exist_ok=True)

    rows, faults, runs = [], [], runs_of(options)
    for number, run in enumerate(runs, 1):
        print(f"[{number}/{len(runs)}] {run.program.stem} {' '.join(run.arguments)}", end="", flush=True)
        begin = time.monotonic()
        run_rows, run_faults = carry_out(run, number, options)
        print(f" ({time.monotonic() - begin:.0f} s, {len(run_rows)} rows)", flush=True)
        rows += run_rows
        faults += run_faults
        # After each run, so that one that is ended early leaves what it has.
        write_tables(rows, faults, options.out)
    print("\n" + markdown(rows))
    for fault in faults:
        print(f"! {fault}")
    print(f"written to {options.out}/table.md and table.json")
    return 1 if faults or not rows or any(row["is_behind"] for row in rows) else 0


if __name__ == "__main__":
    sys.exit(main())
