#!/usr/bin/env bash
# One batch on a few machines, by GNU parallel and ssh: no scheduler, nothing to set up but ssh.
#
#   farm/parallel.sh MANIFEST FOLDER SHARDS [MACHINES]
#
#   farm/parallel.sh parts.jsonl /shared/out 16 anna,otto,:
#
# Each machine works at one shard at a time, with all its processors; take a few more shards than machines,
# so that a fast one gets more of them. MACHINES are those of parallel's --sshlogin, as user@host; : is this
# one, which is the default. Models, manifest, FOLDER and the tool are under the same paths on all of them.
#
# The same command goes on after a stop: FOLDER/jobs.log knows the shards that are done, and what is begun
# goes on with its results. Remove jobs.log to have the models of all shards looked at for changes.
set -euo pipefail
manifest=$1 folder=$2 shards=$3 machines=${4:-:}
mkdir -p "$folder"

# A shard whose models are no good (3) is done; one for which another try makes sense (4) isn't.
batch=$(printf '%q ' "${ORVEX_RENDER:-orvex-render}" --batch "$manifest" --output-dir "$folder/pictures" --resume --quiet)
results=$(printf '%q' "$folder/results")
parallel --sshlogin "$machines" --workdir "$PWD" --jobs 1 --joblog "$folder/jobs.log" --resume-failed --retries 2 \
  "$batch --shard {}/$shards --results $results-{}.jsonl || [ \$? -eq 3 ]" ::: $(seq "$shards")
cat "$folder"/results-*.jsonl >"$folder/results.jsonl"
