#!/usr/bin/env bash
# fuzz_all.sh PROGRAMS FOLDER SECONDS TARGET...: runs each fuzz target on the seeds and the dictionary that
# make_seeds.sh left in FOLDER. New inputs are kept in FOLDER/found; fails at the first fault, whose input is
# then in FOLDER/faults.
set -euo pipefail
programs=$1
folder=$2
seconds=$3
shift 3
mkdir -p "$folder/faults"
# Some targets write files for each of their runs.
if [ -w /dev/shm ]; then export TMPDIR=/dev/shm; fi
for target in "$@"; do
  mkdir -p "$folder/found/$target"
  longest=$(find "$folder/seeds/$target" -type f -printf '%s\n' | sort -n | tail -n 1)
  if [ "$longest" -lt 20000 ]; then longest=20000; fi
  dictionary=
  if [ -s "$folder/$target.dict" ]; then dictionary=$folder/$target.dict; fi
  printf '== %s, %s seconds\n' "$target" "$seconds"
  # To weigh inputs by how rare what they reach is would take half of the time of the targets that read most.
  "$programs/${target}_fuzzer" ${dictionary:+-dict="$dictionary"} -entropic=0 -max_total_time="$seconds" -timeout=20 -max_len="$longest" \
    -print_final_stats=1 -verbosity=0 -artifact_prefix="$folder/faults/$target-" \
    "$folder/found/$target" "$folder/seeds/$target"
done
