#!/usr/bin/env python3
"""One batch on a cluster of Dask's: where one is there already, or verdicts are wanted in Python.

    farm/dask_batch.py MANIFEST FOLDER [SCHEDULER]

SCHEDULER is an address as tcp://host:8786; without it, the processors of this machine serve. What a
worker had in hand when it died is drawn by another one. FOLDER/results.jsonl has a line for each
entry, as it is done; the same command goes on after a stop with entries that have none, or that had
trouble with disks or drivers. Models and FOLDER are on a disk that all machines share.
"""
import dataclasses
import json
import os
import sys

import orvex.dask
from distributed import Client


def main(manifest, folder, scheduler=None):
    """Draws what isn't drawn yet. Returns whether another try makes sense."""
    with open(manifest, encoding="utf-8") as lines:
        entries = {entry.get("id", entry["model"]): entry for entry in map(json.loads, lines)}
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, "results.jsonl"), "a+", encoding="utf-8") as results:
        results.seek(0)
        done = {told["id"] for told in map(json.loads, results) if told["verdict"] not in ("driver", "io")}
        rest = [entry for name, entry in entries.items() if name not in done]
        with Client(scheduler) as client:
            for verdict in orvex.dask.batch(client, rest, length=8, workers=1,
                                            output_dir=os.path.join(os.path.abspath(folder), "pictures"),
                                            program=os.environ.get("ORVEX_RENDER", "orvex-render")):
                print(json.dumps(dataclasses.asdict(verdict)), file=results, flush=True)
                done.add(verdict.id if verdict.verdict not in ("driver", "io") else None)
    return not done.issuperset(entries)


if __name__ == "__main__":
    sys.exit(4 if main(*sys.argv[1:]) else 0)
