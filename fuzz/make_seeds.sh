#!/usr/bin/env bash
# make_seeds.sh ROOT FOLDER PROGRAM: what the fuzz targets begin with, made of the repository at ROOT by xmla-bridge,
# PROGRAM. FOLDER gets seeds/TARGET/, the seeds that are kept as files and the inputs of the test corpora, and
# TARGET.dict.
set -euo pipefail
root=$1
folder=$2
program=$3

# split CORPUS TARGET FRONT BACK: each input of a corpus, between two texts, as a file.
split() {
  awk -v name="$folder/seeds/$2/$(basename "$1" .txt)" -v front="$3" -v back="$4" '
    /^=== / { file = name "-" ++number; printf "%s", front >file; reading = 1; next }
    /^---$/ { if (reading) { printf "%s", back >>file; close(file) } reading = 0 }
    reading { print >>file }' "$root/tests/$1"
}

# tags NAME...: start and end tags, as a dictionary has them.
tags() { sed 's,.*,"<&>"\n"</&>",'; }

for target in dom mdx sql query script import model archive folder estate database; do
  mkdir -p "$folder/seeds/$target"
  if [ -d "$root/fuzz/seeds/$target" ]; then cp "$root/fuzz/seeds/$target"/* "$folder/seeds/$target/"; fi
  if [ -f "$root/fuzz/$target.dict" ]; then cp "$root/fuzz/$target.dict" "$folder/"; else : >"$folder/$target.dict"; fi
done

for corpus in mdx functions references; do split "expression/$corpus.txt" mdx '' ''; done
for corpus in sql sql_references; do split "expression/$corpus.txt" sql '' ''; done
for corpus in queries dialects; do split "expression/$corpus.txt" query '' ''; done
for corpus in statements measures; do split "scripts/$corpus.txt" script '' ''; done

for corpus in reader/documents reader/sources reader/dimensions bad_input/elements; do
  split "$corpus.txt" import '' ''
done
split views/views.txt import \
  '<Database xmlns:xs="http://www.w3.org/2001/XMLSchema" xmlns:msprop="urn:schemas-microsoft-com:xml-msprop"><DataSourceViews>' \
  '</DataSourceViews></Database>'
sed -n 's/.*= "\([A-Za-z]*\)";/\1/p' "$root/reader/run/vocabulary.h" | tags >>"$folder/import.dict"

model='<TAVMultiModel format="tav-model/1"><contents><TAVModelContent><models><TAVStoreModel name="S">'
model_end='</TAVStoreModel></models></TAVModelContent></contents></TAVMultiModel>'
split serialization/loading.txt model '' ''
split exports/json.txt model "$model" "$model_end"
split host/summary.txt model "$model" "$model_end"
sed -n 's/.*<xs:element name="\([A-Za-z]*\)".*/\1/p' "$root/docs/model.xsd" | sort -u | tags >>"$folder/model.dict"
sed -n 's/.*<xs:attribute name="\([A-Za-z]*\)".*/" \1=\\""/p' "$root/docs/model.xsd" | sort -u >>"$folder/model.dict"

split host/projects.txt folder '' ''
cat "$folder/import.dict" >>"$folder/folder.dict"
cat "$folder/import.dict" >>"$folder/estate.dict"
python3 "$root/fuzz/pack_seeds.py" "$root" "$folder" "$program"
