#!/usr/bin/env bash
# One batch as an array of jobs of Slurm's: for clusters that have it.
#
#   sbatch --array=1-64 --cpus-per-task=4 --time=2:00:00 farm/slurm.sh MANIFEST FOLDER 64
#
# The last word is the number of shards, of which each job of the array draws the one that has its number.
# Models, manifest and FOLDER are on a disk that all nodes share. On nodes with graphics cards, ask for one
# by --gres=gpu:1.
#
# A job that a node's end, a time limit or another's precedence has stopped goes on where it was, whether
# Slurm queues it again or you send the same command. Jobs that failed had trouble with disks or drivers:
# sbatch --array=3,17 ... sends two of them again. When all have ended:
#
#   cat FOLDER/results-*.jsonl >FOLDER/results.jsonl
#SBATCH --job-name=orvex-render
#SBATCH --requeue
#SBATCH --open-mode=append
set -euo pipefail
manifest=$1 folder=$2 shards=$3
mkdir -p "$folder"

# A shard whose models are no good (3) is done.
"${ORVEX_RENDER:-orvex-render}" --batch "$manifest" --shard "$SLURM_ARRAY_TASK_ID/$shards" \
  --workers "${SLURM_CPUS_PER_TASK:-1}" --output-dir "$folder/pictures" \
  --results "$folder/results-$SLURM_ARRAY_TASK_ID.jsonl" --resume --quiet || [ $? -eq 3 ]
