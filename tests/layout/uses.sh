#!/usr/bin/env bash
# uses.sh FILE...: a line "FILE" for each source, and lines "FILE|FILE that it uses|as written there". Paths are
# from the current folder; what is used may not exist.
set -euo pipefail
export LC_ALL=C

# Headers, by their paths from the root.
includes() {
  awk '/^[ \t]*#[ \t]*include[ \t]*"/ { split($0, quoted, "\""); print FILENAME "|" quoted[2] "|" quoted[2] }' "$@"
}

# Modules, by their paths from the file that imports them, with or without the extension.
imports() {
  awk '
    function exists(path,   ignored, found) {
      found = (getline ignored < path) >= 0
      close(path)
      return found
    }
    /^(import|export|}).*"\.\.?\// {
      match($0, /"\.\.?\/[^"]*/)
      written = substr($0, RSTART + 1, RLENGTH - 1)
      target = FILENAME
      sub(/[^\/]*$/, "", target)
      target = target written
      while (sub(/\/\.\//, "/", target) || sub(/[^\/]+\/\.\.\//, "", target)) continue
      print FILENAME "|" (exists(target ".ts") ? target ".ts" : target) "|" written
    }' "$@"
}

# Classes, by their names: each is a file, and no two have the same name.
classes() {
  awk '
    BEGIN {
      for (i = 1; i < ARGC; ++i) {
        name = ARGV[i]
        gsub(/^.*\/|\.java$/, "", name)
        file[name] = ARGV[i]
      }
    }
    {
      gsub(/"([^"\\]|\\.)*"/, "")
      sub(/\/\/.*/, "")
      if ($0 ~ /^[ \t]*\/\*/) comment = 1
      count = comment ? 0 : split($0, word, /[^A-Za-z0-9_]+/)
      for (i = 1; i <= count; ++i) {
        if (!(word[i] in file) || file[word[i]] == FILENAME || (FILENAME, word[i]) in told) continue
        told[FILENAME, word[i]] = 1
        print FILENAME "|" file[word[i]] "|" word[i]
      }
      if ($0 ~ /\*\//) comment = 0
    }' "$@"
}

# Scripts that a script reads in, by their paths from the root, which a variable may stand for.
sourced() {
  awk '
    /^[ \t]*(\.|source) / {
      gsub(/"/, "", $2)
      sub(/^\$[a-z]+\//, "", $2)
      print FILENAME "|" $2 "|" $2
    }' "$@"
}

# Runs a reader on those of the sources whose names match a pattern.
read_with() {
  local reader=$1 matching
  mapfile -t matching < <(printf '%s\n' "${sources[@]}" | grep -E "$2" || true)
  [ ${#matching[@]} -eq 0 ] || "$reader" "${matching[@]}"
}

sources=("$@")
printf '%s\n' "${sources[@]}"
read_with includes '\.(h|cpp|S)$'
read_with imports '\.(ts|mjs)$'
read_with classes '\.java$'
read_with sourced '(\.sh|(^|/)[^./]+)$'
