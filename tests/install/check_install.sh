#!/usr/bin/env bash
# check_install.sh BUILD SOURCE COMPILER JAVA: installs the build, moves the installed tree to another place, and uses it
# there: runs the program, and builds and runs a host of its own against the package.
set -euo pipefail
build=$1 source=$2 compiler=$3 java=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
  echo "$*" >&2
  exit 1
}

java_folder=share/xmla-bridge/java
jar=MicrosoftSqlServerAs.jar
classes=MicrosoftSqlServerAs.jsa

DESTDIR=$work/package cmake --install "$build" --prefix /usr >"$work/log" 2>&1 || fail "$(cat "$work/log")"
[ ! -e "$work/package/usr/$java_folder/$classes" ] || fail 'an archive of classes was made for another place'

cmake --install "$build" --prefix "$work/first" >"$work/log" 2>&1 || fail "$(cat "$work/log")"
# Without -Xshare:auto an archive that does not fit ends Java with 1, and the importer without arguments ends with 2.
code=0
"$java" -Xshare:on -XX:SharedArchiveFile="$work/first/$java_folder/$classes" -jar "$work/first/$java_folder/$jar" \
  >"$work/log" 2>&1 || code=$?
[ "$code" = 2 ] || fail "the archive of classes does not fit the installed importer: $(cat "$work/log")"
"$work/first/bin/xmla-bridge" import "$source/examples/ferry-line.bim" -o "$work/fits.xml" >"$work/fits" 2>&1
mv "$work/first" "$work/second place"
tree="$work/second place"

diff - <(cd "$tree" && find . \( -type f -o -type l \) -not -path './include/*' -not -path './lib/cmake/*' \
  -not -path './lib/python3/*' |
  sed 's,^\./,,; s,\.so\.[0-9.]*$,.so.VERSION,' | LC_ALL=C sort -u) <<'END' || fail 'the installed files differ'
bin/xmla-bridge
lib/libTAVMicrosoftSqlServerXMLAImport.so
lib/libtav_framework.so
lib/libtav_framework.so.VERSION
lib/libtav_lineage.a
lib/libtav_messages.a
lib/libxmla_archives.so
lib/libxmla_posting.so
share/bash-completion/completions/xmla-bridge
share/doc/xmla-bridge/CHANGELOG.md
share/doc/xmla-bridge/LICENSE
share/doc/xmla-bridge/README.md
share/doc/xmla-bridge/copyright
share/man/man1/xmla-bridge.1
share/xmla-bridge/java/MicrosoftSqlServerAs.jar
share/xmla-bridge/java/MicrosoftSqlServerAs.jsa
share/xmla-bridge/java/jackson-core.jar
share/xmla-bridge/model.xsd
share/xmla-bridge/postgresql.sql
share/zsh/site-functions/_xmla-bridge
share/zsh/vendor-completions/_xmla-bridge
END

"$tree/bin/xmla-bridge" import "$source/examples/lost-property-create.xmla" -o "$work/model.xml" >/dev/null
[ -s "$work/model.xml" ] || fail 'the installed program saved no model'
"$tree/bin/xmla-bridge" import --quiet "$source/examples/ferry-line.bim" -o "$work/tabular.xml" ||
  fail 'the installed program runs no importer of tabular definitions'
[ -s "$work/tabular.xml" ] || fail 'the installed importer saved no model'

# The package of Python, where it is built, finds its parts in the moved tree.
package=$tree/lib/python3/dist-packages/xmla_bridge
if [ -d "$package" ]; then
  diff - <(cd "$package" && printf '%s\n' * | sed -E 's,^_native\..*\.so$,_native.so,' | LC_ALL=C sort) <<'END' ||
__init__.py
_native.pyi
_native.so
answers.py
errors.py
models.py
py.typed
reading.py
END
    fail 'the package of Python holds other files'
  for input in lost-property-create.xmla ferry-line.bim; do
    PYTHONPATH=${package%/*} /usr/bin/python3 -B -c 'import sys, xmla_bridge; xmla_bridge.open(sys.argv[1])' \
      "$source/examples/$input" || fail "the installed package of Python does not open $input"
  done
fi

# The archive of classes fits no longer, because the tree was moved; then it is something else. Nobody is told.
said() { sed -E 's/ in [0-9.]+ s//; s,(Saved in ).*,\1MODEL,' "$1"; }
noise=$(printf 'noise%.0s' {1..10000})
for content in 'of another place' "$noise" ''; do
  if [ "$content" != 'of another place' ]; then
    rm "$tree/$java_folder/$classes"
    printf %s "$content" >"$tree/$java_folder/$classes"
  fi
  "$tree/bin/xmla-bridge" import "$source/examples/ferry-line.bim" -o "$work/tabular.xml" >"$work/log" 2>&1 ||
    fail "an archive of classes (${content:0:16}) ends the import: $(cat "$work/log")"
  diff <(said "$work/fits") <(said "$work/log") || fail "an archive of classes (${content:0:16}) is told of"
done

# What few runs load is missed by these alone.
mv "$tree"/lib/libxmla_{archives,posting}.so "$work"
"$tree/bin/xmla-bridge" import --quiet "$source/examples/lost-property-create.xmla" -o "$work/model.xml" ||
  fail 'an import needs what it does not use'
[[ $("$tree/bin/xmla-bridge" --version) == *'curl missing'*'libzip missing'* ]] || fail 'the version does not tell what is missing'
printf 'PK\003\004' >"$work/template.pbit"
refused() {
  local code=0
  "$tree/bin/xmla-bridge" "${@:2}" >"$work/log" 2>&1 || code=$?
  [[ $code = 1 && $(<"$work/log") == *"$1"*'cannot open shared object file'* ]] ||
    fail "exit code $code without a library: $(<"$work/log")"
}
refused 'HTTP is not available' export --format openlineage --post http://localhost:9 "$work/model.xml"
refused 'template.pbit' import "$work/template.pbit" -o "$work/other.xml"
mv "$work"/libxmla_{archives,posting}.so "$tree/lib"

# The completions offer the commands, options and formats that the help tells of.
words() { tr ' ,' '\n\n' | sed '/^$/d' | LC_ALL=C sort; }
offered() {
  COMP_WORDS=(xmla-bridge "$@" '') COMP_CWORD=$(($# + 1)) COMPREPLY=()
  _xmla_bridge
  printf '%s\n' "${COMPREPLY[@]}"
}
offered_options() {
  COMP_WORDS=(xmla-bridge "$1" --) COMP_CWORD=2 COMPREPLY=()
  _xmla_bridge
  printf '%s\n' "${COMPREPLY[@]}"
}
cmp "$source/host/completion/xmla-bridge.bash" "$tree/share/bash-completion/completions/xmla-bridge"
. "$source/host/completion/xmla-bridge.bash"
zsh_completion=$tree/share/zsh/site-functions/_xmla-bridge
commands=$("$tree/bin/xmla-bridge" help | sed -nE '/^Subcommands:/,$s/^  ([a-z]+) .*/\1/p' | words)
[ -n "$commands" ] || fail 'the help lists no commands'
diff <(echo "$commands") <(offered | grep -v '^--' | words) || fail 'bash completes other commands'
diff <(echo "$commands") <(sed -nE "s/^  '([a-z]+):.*/\1/p" "$zsh_completion" | words) ||
  fail 'zsh completes other commands'
for command in $commands; do
  options=$("$tree/bin/xmla-bridge" help "$command" | sed -nE 's/^  (-.,)?(--[a-z-]+).*/\2/p' | words)
  [ "$command" = help ] || diff <(echo "$options" | grep -vx -e --output) <(offered_options "$command" | words) ||
    fail "bash completes other options of $command"
  kinds=$("$tree/bin/xmla-bridge" help "$command" | sed -nE 's/^  --kind KINDS:\{([^}]*)\}.*/\1/p' | words)
  # The kinds of all objects are too many for the help of a command.
  [[ $command != trace && $command != impact ]] || kinds=$("$tree/bin/xmla-bridge" help kinds | sed 's/ .*//' | words)
  [ -z "$kinds" ] || diff <(echo "$kinds") <(offered "$command" --kind | words) ||
    fail "bash completes other kinds of $command"
  [ "$command" != impact ] || diff <(echo "$kinds") <(sed -n "/^local kinds='/,/'\$/p" "$zsh_completion" |
    sed "s/^local kinds=//; s/'//g" | words) || fail "zsh completes other kinds of $command"
  formats=$("$tree/bin/xmla-bridge" help "$command" | sed -nE 's/^  --format FORMAT:\{([^}]*)\}.*/\1/p' | words)
  [ -n "$formats" ] || continue
  diff <(echo "$formats") <(offered "$command" --format | words) || fail "bash completes other formats of $command"
  diff <(echo "$formats") <(sed -nE "/^  ([a-z]+ \| )*$command( \| [a-z]+)*\)/,/;;/s/.*:format:\(([^)]*)\).*/\1/p" \
    "$zsh_completion" | words) || fail "zsh completes other formats of $command"
done

{
  cmake -G Ninja -S "$source/tests/install/consumer" -B "$work/consumer" -DCMAKE_PREFIX_PATH="$tree" \
    -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_BUILD_TYPE=Debug
  cmake --build "$work/consumer"
} >"$work/log" 2>&1 || fail "$(cat "$work/log")"
version=$("$work/consumer/consumer")
[[ $version == '10.0.1 - '* ]] || fail "the consumer printed '$version'"

# A program that takes something from every installed header links. The classes of the model are all in one of them.
diff <(sed -n 's/^#include "\(.*\)"$/\1/p' "$source/tests/install/consumer/every_header.cpp" | LC_ALL=C sort) \
  <(cd "$tree/include/xmla-bridge" && find . -name '*.h' -not -path '*/classes/*' | sed 's,^\./,,' | LC_ALL=C sort) ||
  fail 'the program every_header does not take something from every installed header'
[ "$("$work/consumer/every_header")" = 1 ] || fail 'the program every_header does not run'

# The examples of programs over the lineage: one with a definition and with a saved model, one with two models.
for example in sources review; do
  {
    cmake -G Ninja -S "$source/examples/$example" -B "$work/$example" -DCMAKE_PREFIX_PATH="$tree" \
      -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_BUILD_TYPE=Debug
    cmake --build "$work/$example"
  } >"$work/log" 2>&1 || fail "$(cat "$work/log")"
done
"$tree/bin/xmla-bridge" import --quiet "$source/examples/murmeltal-huts.asdatabase" -o "$work/huts.xml" >/dev/null
for input in "$source/examples/murmeltal-huts.asdatabase" "$work/huts.xml"; do
  diff <("$work/sources/sources" "$input" '[Measures].[Average Rate]') <(
    echo mssql://warehouse.murmeltal.example:1433/MurmeltalDW/dbo/FactExchangeRate/AverageRate
  ) || fail "the example finds other sources in $input"
done
"$work/sources/sources" "$source/examples/murmeltal-huts.asdatabase" '[Measures].[Nights]' 2>"$work/log" >/dev/null
[ "$(grep -c . "$work/log")" = 1 ] && grep -q 'Yeti Sightings' "$work/log" || fail "the example says: $(cat "$work/log")"
code=0
"$work/sources/sources" "$work/huts.xml" '[Measures].[Average Rat]' >"$work/log" 2>&1 || code=$?
[ "$code" = 1 ] && grep -q 'Average Rate' "$work/log" || fail "the example ends with $code: $(cat "$work/log")"
sed 's/\[Measures\].\[Nights\] = 0/[Measures].[Nights] = 1/' "$source/examples/murmeltal-huts.asdatabase" >"$work/later.asdatabase"
"$tree/bin/xmla-bridge" import --quiet "$work/later.asdatabase" -o "$work/later.xml" >/dev/null
"$work/review/review" "$work/huts.xml" "$work/later.xml" dbo.FactExchangeRate.AverageRate >"$work/log" 2>&1 ||
  fail "the review ends with $?: $(cat "$work/log")"
while read -r line; do
  grep -qxF "$line" "$work/log" || fail "the review does not say '$line': $(cat "$work/log")"
done <<'END'
cube: 3
unused named set [Second Helpings]
dbo.FactExchangeRate.AverageRate <- /Cubes/Stays/KPIs/Revenue per Night/Status
changed: [Measures].[Revenue per Night] of cube Stays
END
