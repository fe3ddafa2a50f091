#!/usr/bin/env bash
# check_shape.sh ROLES FOLDER: prints where the Java sources in FOLDER have a view of the model's shape of their
# own; fails if there is one. Labels stand in Labels.java, each used and as in the header ROLES, and maps are made
# by LineageMaps alone.
set -euo pipefail
export LC_ALL=C
roles=$1
# What reads the M language knows nothing of the model (tests/layout/directions.txt): its texts are the language's.
mapfile -t sources < <(find "$2" -name '*.java' -not -path '*/m/*' | sort)
labels=$(printf '%s\n' "${sources[@]}" | grep -F /Labels.java)

# The labels of a source as lines NAME = "text", names in the way of Java; parts of a KPI as "text", "type".
listed() {
  tr '\n' ' ' <"$1" | grep -oE '(string_view k[A-Za-z]+|String [A-Z_]+) = +"[^"]*"|(KpiPart\{|[A-Z]+\()"[^"]*", "[^"]*"' |
    sed -E 's/^(string_view k|String )//; s/^[A-Za-z]+[({]//; s/ += +/ = /' |
    awk '/^[A-Z][a-z]/ { gsub(/[A-Z]/, "_&", $1); $1 = toupper(substr($1, 2)) } { print }' | sort
}

# Files beside `except` in which a text stands.
elsewhere() {
  local except=$1 text=$2
  grep -lwF "$text" "${sources[@]}" | grep -vF "/$except" || true
}

faults=$(
  comm -13 <(listed "$roles") <(listed "$labels") | sed 's/$/: no such label in the framework/'
  while IFS= read -r label; do
    [[ $label == *' = '* && -z $(elsewhere Labels.java "Labels.${label%% = *}") ]] && echo "${label%% = *}: not used"
    while IFS= read -r text; do
      elsewhere Labels.java "$text" | sed "s#^.*/#$text: a label, in #"
    done < <(grep -oE '"[^"]*"' <<<"$label")
  done < <(listed "$labels")
  for map in TAVClassifierMap TAVFeatureMap; do
    elsewhere LineageMaps.java "\"$map\"" | sed "s#^.*/#\"$map\": made in #"
  done
  listed "$labels" | grep -q . || echo 'no labels found'
)
[ -z "$faults" ] || { printf '%s\n' "$faults"; exit 1; }
