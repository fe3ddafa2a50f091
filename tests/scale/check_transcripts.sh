#!/usr/bin/env bash
# check_transcripts.sh PROGRAM ROOT [DOCUMENT]: runs the commands of the blocks "```console" of the documents, those of
# one document in one folder that holds the examples, and compares what they print with what stands below them. With
# UPDATE_GOLDENS=1 the documents get what they print.
set -euo pipefail
program=$(realpath "$1")
root=$(realpath "$2")
export LC_ALL=C.UTF-8 SOURCE_DATE_EPOCH=0 PATH="${program%/*}:$PATH"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0


# The document with the output of each command in place of what stands there.
run_document() {
  local line in_block='' command output
  while IFS= read -r line || [ -n "$line" ]; do
    case $line in
      '```console') in_block=1 ;;
      '```') in_block='' ;;
    esac
    if [ -n "$in_block" ] && [ "${line:0:2}" = '$ ' ]; then
      printf '%s\n' "$line"
      command=${line:2}
      output=$(bash -c "$command" 2>&1 </dev/null || true)
      [ -z "$output" ] || printf '%s\n' "$output" | sed "s,$PWD/,/estate/,g"
      echo >>"$work/commands"
    elif [ -z "$in_block" ] || [ "$line" = '```console' ]; then
      printf '%s\n' "$line"
    fi
  done <"$1"
}

for document in "$root"/docs/*.md; do
  grep -q '^```console$' "$document" || continue
  folder=$work/${document##*/}.d
  mkdir "$folder"
  cp -r "$root/examples" "$folder"
  (cd "$folder" && run_document "$document") >"$work/told.md"
  [ -z "${UPDATE_GOLDENS-}" ] || cp "$work/told.md" "$document"
  diff -u "$document" "$work/told.md" || status=1
done
commands=$(wc -l <"$work/commands")
echo "$commands commands: exit $status"
[ "$commands" -ge 10 ] || status=1
exit "$status"
