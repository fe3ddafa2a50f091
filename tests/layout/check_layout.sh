#!/usr/bin/env bash
# check_layout.sh ROOT DIRECTIONS: prints each place under ROOT that breaks the layout; fails if there is one.
set -euo pipefail
here=$(dirname "$(realpath "${BASH_SOURCE[0]}")")
directions=$(realpath "$2")
cd "$1"
export LC_ALL=C
faults=0

# Reads lines "FILE: ..." and counts them as faults.
report() {
  local line
  while IFS= read -r line; do
    printf '%s\n' "$line"
    faults=$((faults + 1))
  done
}

# Sources: what has the extension of one, and scripts without an extension.
sources() {
  find . -type d \( -name .git -o -name node_modules -o -name 'build*' \) -prune -o -type f \
    \( -name '*.h' -o -name '*.cpp' -o -name '*.S' -o -name '*.java' -o -name '*.ts' -o -name '*.mjs' -o -name '*.sh' \
    -o -perm -u+x ! -name '*.*' \) -printf '%P\n' | sort
}

# Files that come back to themselves over others. A header and its source are one file.
circles() {
  awk -F'|' '
    function stem(path) {
      sub(/(\.d)?\.[^.\/]+$/, "", path)
      return path
    }
    NF > 1 && stem($1) != stem($2) { print stem($1), stem($2) }' | loops 'a circle of files:'
}

# The loops in a list of pairs, a line for each.
loops() {
  tsort 2>&1 >/dev/null | awk -v begin="$1" '
    function flush() { if (line != "") print line }
    { sub(/^tsort: /, "") }
    /^-: / { flush(); line = begin; next }
    { line = line " " $0 }
    END { flush() }'
}

# Code without its comments and texts, as FILE: LINE.
bare_lines() { sed -E "s:\"([^\"\\\\]|\\\\.)*\"::g; s://.*::; s:/\*.*\*/::g" "$1"; }

# make<T> in object.h makes model objects, link.cpp deletes them; elsewhere every owner is a class.
ownership() {
  local file word
  for file in "$@"; do
    case $file in
      framework/model/link.cpp) continue ;;
      framework/model/object.h) word='delete' ;;
      *) word='(new|delete)' ;;
    esac
    bare_lines "$file" | grep -nE "\b$word\b" | grep -vE '= *delete\b|operator (new|delete)|\bnew *\(|^[0-9]+: *#' |
      sed -E "s,^([0-9]+):.*,$file:\1: new and delete stand in framework/model alone," || true
  done
}

run_time_types() {
  local file
  for file in "$@"; do
    bare_lines "$file" | grep -nE '\b(dynamic_cast|typeid)\b' |
      sed -E "s,^([0-9]+):.*,$file:\1: ask isInstanceOf or as<T> instead," || true
  done
}

# A header that costs seconds stands in one source.
costly_headers() {
  local file
  for file in "$@"; do
    [ "$file" = host/command_line.cpp ] || sed -nE "/^#include <CLI\//{=;}" "$file" |
      sed "s,.*,$file:&: include host/command_line.h instead,"
  done
}

mapfile -t all < <(sources)
uses=$(bash "$here/uses.sh" "${all[@]}")
report < <(awk '!/^#/ && NF { split($1, from, ":"); for (i = 2; i <= NF; ++i) print $i, from[1] }' "$directions" |
  loops 'the table of directions has a circle:')
report < <(awk -v table="$directions" -v verb='include from' -f "$here/directions.awk" <<<"$uses")
report < <(circles <<<"$uses")
mapfile -t files < <(printf '%s\n' "${all[@]}" | grep -E '\.(h|cpp)$' | grep -vE '^(tests|fuzz|benchmarks)/')
if [ ${#files[@]} -gt 0 ]; then
  report < <(ownership "${files[@]}")
  report < <(run_time_types "${files[@]}")
  report < <(costly_headers "${files[@]}")
  report < <(grep -L '^#pragma once$' "${files[@]}" | sed -n 's,\.h$,&: no #pragma once,p')
fi
report < <(find . -name .git -prune -o -name node_modules -prune -o -name 'build*' -prune -o \
  -type f -regextype posix-extended -iregex '.*/([^/]*[_-])?(utils?|utility|common|misc|helpers?)([._-][^/]*)?' -print |
  sed 's,^\./,,; s,$,: a file is named after what it holds,' | sort)

[ "$faults" -eq 0 ]
