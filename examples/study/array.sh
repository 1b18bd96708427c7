#!/bin/bash
#SBATCH --job-name=study
#SBATCH --array=0-19
#SBATCH --ntasks=1
#SBATCH --time=00:10:00
# One batch of a study as a task of a Slurm array: it makes every twentieth setup of the table, checks
# these and converts them.
#
#   sbatch array.sh setup.kcf runs.csv
set -euo pipefail

setup=$1
table=$2
task=$SLURM_ARRAY_TASK_ID
tasks=${SLURM_ARRAY_TASK_COUNT:-20}

mkdir -p batches
awk -v task="$task" -v tasks="$tasks" 'NR == 1 || NR % tasks == task' "$table" > "batches/$task.csv"
kcf set "$setup" --table "batches/$task.csv" --into "runs/$task/{run}/setup.kcf" --force
kcf check --jobs 1 "runs/$task"
for run in "runs/$task"/*/; do
  (cd "$run" && main-converter -o setup.json setup.kcf > converter.log 2>&1)
done
