#!/usr/bin/env python3
"""Models by Celery, from a queue: for services, to which models come one by one.

    ORVEX_OUTPUT=/shared/pictures python3 -m celery --workdir farm -A celery_batch worker   on each machine
    farm/celery_batch.py MANIFEST RESULTS                                                   where models come from

CELERY_BROKER_URL and CELERY_RESULT_BACKEND name the queue, as redis://host. Each process of a worker keeps one
tool, which keeps its context: a small model takes milliseconds. Paths of models are absolute.
"""
import json
import os
import subprocess
import sys

from celery import Celery, group

app = Celery("celery_batch")
app.conf.worker_prefetch_multiplier = 1
TOOLS = []


@app.task(acks_late=True, reject_on_worker_lost=True, autoretry_for=(OSError,), default_retry_delay=1)
def draw(entry):
    """The verdict on an entry, after more tries where they make sense."""
    if not TOOLS or TOOLS[0].poll() is not None:
        TOOLS[:] = [subprocess.Popen(
            [os.environ.get("ORVEX_RENDER", "orvex-render"), "--serve", "--workers", "1", "--output-dir",
             os.environ["ORVEX_OUTPUT"]], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)]
    print(json.dumps(entry), file=TOOLS[0].stdin, flush=True)
    verdict = json.loads(TOOLS[0].stdout.readline() or '{"verdict": "io", "reason": "the tool has ended"}')
    if verdict["verdict"] in ("driver", "io") and draw.request.retries < draw.max_retries:
        raise draw.retry()
    return verdict


if __name__ == "__main__":
    with open(sys.argv[1], encoding="utf-8") as lines, open(sys.argv[2], "w", encoding="utf-8") as out:
        group(draw.s(json.loads(line)) for line in lines)().get(
            callback=lambda _, verdict: print(json.dumps(verdict), file=out, flush=True))
