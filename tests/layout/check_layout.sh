#!/usr/bin/env bash
# check_layout.sh ROOT DIRECTIONS: prints each place under ROOT that breaks the layout; fails if there is one.
set -euo pipefail
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

rooms=(bridge framework views reader dimensions cubes expressions messages lineage exports report host)
code() { find "${rooms[@]}" -name node_modules -prune -o -name '*.h' -o -name '*.cpp' 2>/dev/null | sort; }

# The room of a file is the folder of two names that the table has, or else the one of one name.
allowed_includes() {
  awk -v table="$directions" '
    function folder(path,   part, inner) {
      split(path, part, "/")
      inner = part[1] "/" part[2]
      return inner in known || part[1] == "framework" ? inner : part[1]
    }
    BEGIN {
      while ((getline line < table) > 0) {
        if (line ~ /^(#|one way within:)/ || line == "") continue
        count = split(line, word, /[: ]+/)
        known[word[1]] = 1
        for (i = 2; i <= count; ++i) allowed[word[1], word[i]] = 1
      }
    }
    /^[ \t]*#[ \t]*include[ \t]*"/ {
      split($0, quoted, "\"")
      target = quoted[2]
      from = folder(FILENAME); to = folder(target)
      if (target !~ /\// || (getline ignored < target) < 0)
        print FILENAME ": \"" target "\" is no path from the root"
      else if (target ~ /^framework\/[^\/]*$/ || from == to || (from, to) in allowed) ;
      else if (to ~ /^framework\// && (from, "framework/*") in allowed) ;
      else if (!(from in known))
        print FILENAME ": the folder " from " has no line in the table of directions"
      else
        print FILENAME ": " from " may not include from " to " (" target ")"
      close(target)
    }' "$@"
}

# What each file includes or imports in the rooms that the table names for it, as pairs of files. A header and its
# source are one file, and so their names go without extension.
file_pairs() {
  local rooms
  rooms=$(sed -n 's/^one way within://p' "$directions")
  [ -n "$rooms" ] || return 0
  # shellcheck disable=SC2086 # the rooms are words, and one may be a pattern
  find $rooms -name node_modules -prune -o -regex '.*\.\(h\|cpp\|ts\)' -print |
    xargs -r awk '
      function stem(path) { sub(/\.[a-z]+$/, "", path); return path }
      function below(path, name) {
        sub(/[^\/]*$/, "", path)
        path = path name
        gsub(/\/\.\//, "/", path)
        while (sub(/[^\/.]+\/\.\.\//, "", path)) ;
        return path
      }
      /^[ \t]*#[ \t]*include[ \t]*"/ { split($0, quoted, "\""); target = stem(quoted[2]) }
      /(from|^import) "\.\.?\// { split($0, quoted, "\""); target = stem(below(FILENAME, quoted[2])) }
      target != "" && target != stem(FILENAME) { print stem(FILENAME), target }
      { target = "" }'
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

# A text of the definition may hold a password: what writes takes the masked ones of the graph.
raw_texts() {
  local file
  for file in "$@"; do
    case $file in exports/* | report/*) ;; *) continue ;; esac
    bare_lines "$file" | grep -nE '\braw[A-Z]' |
      sed -E "s,^([0-9]+):.*,$file:\1: a raw text of the graph is not for showing," || true
  done
}

mapfile -t files < <(code)
report < <(file_pairs | tsort 2>&1 >/dev/null |
  sed 's/^tsort: -: input contains a loop:/files that include each other in a circle:/; s/^tsort: /  /')
report < <(awk '!/^(#|one way within:)/ && NF { split($1, from, ":"); for (i = 2; i <= NF; ++i) print $i, from[1] }' "$directions" |
  tsort 2>&1 >/dev/null | sed 's/^tsort: -/the table of directions/')
if [ ${#files[@]} -gt 0 ]; then
  report < <(allowed_includes "${files[@]}")
  report < <(ownership "${files[@]}")
  report < <(run_time_types "${files[@]}")
  report < <(raw_texts "${files[@]}")
  report < <(grep -L '^#pragma once$' "${files[@]}" | sed -n 's,\.h$,&: no #pragma once,p')
fi
report < <(find . -name .git -prune -o -name node_modules -prune -o -name 'build*' -prune -o \
  -type f -regextype posix-extended -iregex '.*/([^/]*[_-])?(utils?|utility|common|misc|helpers?)([._-][^/]*)?' -print |
  sed 's,^\./,,; s,$,: a file is named after what it holds,' | sort)

[ "$faults" -eq 0 ]
