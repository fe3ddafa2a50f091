#!/usr/bin/env bash
# check_document.sh PROGRAM ROOT: runs the commands of docs/scale.md in a folder with a few definitions, and compares
# what comes out with what it should.
set -euo pipefail
program=$(realpath "$1")
root=$(realpath "$2")
export LC_ALL=C SOURCE_DATE_EPOCH=0 PATH="${program%/*}:$PATH"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
export HOME=$work

mkdir -p definitions/sales definitions/hr
cp "$root/examples/lost-property-create.xmla" definitions/sales/cube.xmla
sed 's/Lost Property/Found Property/g' definitions/sales/cube.xmla >'definitions/hr/cube.xmla'
cp "$root/examples/murmeltal-huts.asdatabase" "definitions/hr/mountain huts' \"book\".xmla"
printf '<Database>\n</Databas>' >definitions/sales/broken.xmla
echo '2/:' >hosts

# The blocks of the document, each in a file of its own.
awk -v RS='\n```' 'sub(/^sh\n/, "") { printf "%s\n", $0 >sprintf("block-%02d.sh", ++count) }' "$root/docs/scale.md"
for block in block-*.sh; do
  code=0
  bash -o pipefail "$block" >out.txt 2>err.txt </dev/null || code=$?
  echo "== $block: exit $code"
  cat out.txt
  grep -v '^\[QVT_SSXMLA_S' err.txt | sed "s,$work,DIR,g" || true
done >transcript.txt

for number in 1 2 3 4; do
  SLURM_ARRAY_TASK_ID=$number sh import-task.sh 2>/dev/null || echo "task $number failed" >>transcript.txt
done
{
  echo '== results'
  cat failures.txt
  diff -r parallel-models array-models && ls parallel-models
  ls models
  for table in nodes edges; do
    sqlite3 :memory: '.mode csv' ".import estate.$table.csv t" '.mode list' 'ATTACH "estate.db" AS estate' \
      "SELECT '$table of ' || count(DISTINCT source) || ' files, ' || CASE count(*)
         WHEN (SELECT count(*) FROM estate.$table) THEN 'as many as in the database' ELSE 'not those of the database' END
       FROM t"
  done
  [ "$(grep -c '^{"eventTime".*}$' estate.ndjson)" = "$(wc -l <estate.ndjson)" ] && echo 'every line is an event'
} >>transcript.txt
diff -u "$root/tests/scale/transcript.txt" transcript.txt
