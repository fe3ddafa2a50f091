#!/usr/bin/env bash
# check_postgresql.sh PROGRAM ROOT: loads an estate into a PostgreSQL of its own as docs/scale.md has it, and asks it
# what docs/tables.md asks SQLite. Ends with 77 where there is no PostgreSQL.
set -euo pipefail
program=$(realpath "$1")
root=$(realpath "$2")
server=$(find /usr/lib/postgresql/*/bin -name initdb 2>/dev/null | sort -V | tail -n 1)
if [ -z "$server" ]; then
  echo 'PostgreSQL is not installed: skipped'
  exit 77
fi
export LC_ALL=C SOURCE_DATE_EPOCH=0 PATH="${program%/*}:${server%/*}:$PATH"
work=$(mktemp -d)
# The server refuses to run for root.
as=()
if [ "$(id -u)" = 0 ]; then
  as=(runuser -u postgres --)
  mkdir "$work/server"
  chown postgres "$work" "$work/server"
fi
end() {
  "${as[@]}" "${server%/*}/pg_ctl" -D "$work/server/data" -m immediate stop >/dev/null 2>&1 || true
  rm -rf "$work"
}
trap end EXIT
cd "$work"
mkdir -p server
{
  "${as[@]}" "${server%/*}/initdb" -D "$work/server/data" -U tester --no-sync -E UTF8 --locale=C
  "${as[@]}" "${server%/*}/pg_ctl" -D "$work/server/data" -w -l "$work/server/log" \
    -o "-c listen_addresses= -c unix_socket_directories='$work/server' -c fsync=off" start
} >server.txt 2>&1 || {
  cat server.txt
  exit 1
}
export PGHOST=$work/server PGUSER=tester

mkdir definitions
cp "$root/examples/murmeltal-huts.asdatabase" "$root/examples/ferry-line.bim" definitions
sed 's/<Name>Murmeltal Huts/<Name>Other Huts/' "$root/examples/murmeltal-huts.asdatabase" >definitions/other.xmla
xmla-bridge import definitions --estate imported.db --jobs 1 --quiet >/dev/null
cp "$root/exports/postgresql.sql" .

# The block of the document that loads it.
awk -v RS='\n```' 'sub(/^bash\n/, "") && /createdb/' "$root/docs/scale.md" |
  sed 's,/usr/share/xmla-bridge/,,' >load.sh
bash -o pipefail -eu load.sh >loaded.txt 2>&1 || {
  cat loaded.txt
  exit 1
}

# asked DATABASE QUERY: the rows in their order as text.
asked() {
  if [ "$1" = sqlite ]; then
    sqlite3 -separator '|' imported.db "$2" | sort
  else
    psql -X -q -A -t -d estate -c "$2" | sort
  fi
}
status=0
same() {
  if ! diff -u --label SQLite --label PostgreSQL <(asked sqlite "$1") <(asked postgresql "${2-$1}") >difference.txt; then
    printf '%s\n' "$1"
    head -n 20 difference.txt
    status=1
  fi
}

tables=$(sqlite3 imported.db "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name")
for table in $tables; do
  same "SELECT count(*) FROM $table"
  same "SELECT name FROM pragma_table_info('$table')" \
    "SELECT column_name FROM information_schema.columns WHERE table_name = '$table'"
done
same "SELECT id, hex(document) FROM versions" "SELECT id, upper(encode(document, 'hex')) FROM versions"
count=0
while IFS= read -r -d '' query; do
  same "$query"
  count=$((count + 1))
done < <(awk -v RS='\n```' -v ORS='\0' 'sub(/^sql\n/, "")' "$root/docs/tables.md")
rows=$(asked postgresql 'SELECT count(*) FROM nodes')
echo "$count questions, $rows nodes: exit $status"
[ "$count" -ge 8 ] && [ "$rows" -gt 100 ] || status=1
exit "$status"
