#!/usr/bin/env bash
# count_lines.sh [ROOT]: prints lines of code and of comments for each room of a tree, C++, Java and TypeScript; in
# the end the sums of what is shipped and of what tests it. A line with code and a comment is code; blank lines
# are neither. The data of tests are their corpora and expected texts.
set -euo pipefail
cd "${1:-.}"
export LC_ALL=C

# Prints "ROOM KIND LINES" for sources; a room is a folder, of framework/ and report/ one further down.
sources() {
  find . -type d \( -name .git -o -name node_modules -o -name 'build*' \) -prune -o -type f \
    \( -name '*.h' -o -name '*.cpp' -o -name '*.java' -o -name '*.ts' -o -name '*.mjs' \) -printf '%P\0' |
    xargs -0 -r awk '
      function room(path,   part, count) {
        count = split(path, part, "/")
        return count > 2 && part[1] ~ /^(framework|report)$/ ? part[1] "/" part[2] : count > 1 ? part[1] : "."
      }
      FNR == 1 { inside = 0; here = room(FILENAME) }
      {
        gsub(/"([^"\\]|\\.)*"|\x27([^\x27\\]|\\.)*\x27|`[^`]*`/, "text")
        commented = inside || /\/[\/*]/
        if (inside && !sub(/^.*\*\//, "")) $0 = ""
        else inside = 0
        gsub(/\/\*([^*]|\*+[^*\/])*\*+\//, "")
        sub(/\/\/.*/, "")
        if (sub(/\/\*.*/, "")) inside = 1
        if ($0 ~ /[^ \t\r]/) print here, "code"
        else if (commented) print here, "comments"
      }' | sort | uniq -c | awk '{ print $2, $3, $1 }'
}

test_data() {
  find tests -type d \( -name node_modules -o -name schemas \) -prune -o -type f \( -name '*.txt' -o -name '*.json' \
    -o -name '*.xml*' \) ! -name CMakeLists.txt ! -name 'package*.json' -print0 |
    xargs -0 -r cat | wc -l
}

{
  sources
  echo "tests data $(test_data)"
} | awk '
  {
    lines[$1, $2] = $3
    if (!($1 in seen)) order[++count] = $1
    seen[$1] = 1
    group = $1 ~ /^(tests|fuzz|benchmarks)$/ ? "tests" : "shipped"
    sum[group, $2] += $3
  }
  function row(name, code, comments, data) {
    printf "%-26s %7d %9d %8.1f %%%s\n", name, code, comments, 100 * comments / (code + comments ? code + comments : 1),
      data ? sprintf(" %7d", data) : ""
  }
  END {
    printf "%-26s %7s %9s %10s %7s\n", "room", "code", "comments", "", "data"
    for (i = 1; i <= count; ++i) row(order[i], lines[order[i], "code"], lines[order[i], "comments"], lines[order[i], "data"])
    print ""
    row("shipped", sum["shipped", "code"], sum["shipped", "comments"])
    row("tests, fuzz, benchmarks", sum["tests", "code"], sum["tests", "comments"], sum["tests", "data"])
  }'
