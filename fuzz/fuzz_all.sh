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
for target in "$@"; do
  mkdir -p "$folder/found/$target"
  printf '== %s, %s seconds\n' "$target" "$seconds"
  "$programs/${target}_fuzzer" -dict="$folder/$target.dict" -max_total_time="$seconds" -timeout=20 -max_len=20000 \
    -print_final_stats=1 -verbosity=0 -artifact_prefix="$folder/faults/$target-" \
    "$folder/found/$target" "$folder/seeds/$target"
done
