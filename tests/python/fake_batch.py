"""A program that speaks as `orvex-render --batch` does, without drawing."""

import argparse
import json
import sys
import time

parser = argparse.ArgumentParser()
parser.add_argument("--batch")
parser.add_argument("--quiet", action="store_true")
parser.add_argument("--workers", type=int)
parser.add_argument("--output-dir")
parser.add_argument("--results")
parser.add_argument("--resume", action="store_true")
parser.add_argument("--size")
options = parser.parse_args()
if options.size == "1x1":
    sys.exit("too small" if options.workers == 7 else (print("--size: too small",
                                                             file=sys.stderr) or 2))
results = open(options.results, "a", encoding="utf-8") if options.results else sys.stdout
verdicts = {"bad": "refused", "slow": "ok"}
failed = False
for line in sys.stdin:
    entry = json.loads(line)
    if entry["model"] == "slow":
        time.sleep(60)
    verdict = verdicts.get(entry["model"], "ok")
    failed = failed or verdict != "ok"
    print(json.dumps({"id": entry.get("id", entry["model"]), "model": entry["model"],
                      "verdict": verdict, "reason": "" if verdict == "ok" else "line 1: bad",
                      "outputs": [{"path": f"{options.output_dir}/{entry['model']}.png"}],
                      "seconds": {"total": 0.1}, "later": options.size}), file=results, flush=True)
sys.exit(3 if failed else 0)
