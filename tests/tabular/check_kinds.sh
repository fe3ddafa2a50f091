#!/usr/bin/env bash
# check_kinds.sh ROOT: prints the kinds of details that the importer in Java names and the framework does not, and
# those that nothing uses; fails if there is one.
set -euo pipefail
export LC_ALL=C
framework=$1/framework/details
kinds=$(find "$1/tabular" -name Kinds.java)

# The constants of an enum of the Java list, a line each.
named() { tr '\n' ' ' <"$kinds" | grep -oE "enum $1 \{[^}]*" | sed 's/.*{//' | tr -d ' ' | tr ',' '\n'; }
# The texts of a table in C++ that stand behind `before`: the first of each row.
rows() {
  tr '\n' ' ' <"$framework/$1" | grep -oE "k$2[^;]*" | grep -oE "$3\"[A-Za-z]+\"" | grep -oE '[A-Za-z]+' || true
}

faults=$(
  while read -r enum source table before; do
    [ -n "$(named "$enum")" ] || echo "$enum: nothing listed"
    for name in $(named "$enum"); do
      rows "$source" "$table" "${before:-}" | grep -qxF "$name" || echo "$enum.$name: no such row in $source"
      find "$1/tabular" -name '*.java' ! -name Kinds.java -exec grep -qw "Kinds.$enum.$name" {} + ||
        echo "$enum.$name: not used"
    done
  done <<'END'
Item kinds.cpp ObjectKinds \{
RelationKind kinds.cpp RelationKinds \{
Passed passed_over.cpp Rows \{
State details.cpp OpenNameStates
END
)
[ -z "$faults" ] || { printf '%s\n' "$faults"; exit 1; }
