#!/usr/bin/env bash
# check_package.sh BUILD SOURCE: makes the Debian package and the archive, installs the package into a root that holds
# what it depends on and nothing else, and uses both. A program or library that the package does not ask for is
# missing there.
set -euo pipefail
build=$1 source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
  echo "$*" >&2
  exit 1
}

cpack --config "$build/CPackConfig.cmake" -B "$work/dist" >"$work/log" 2>&1 || fail "$(cat "$work/log")"
cd "$work/dist"
packages=(xmla-bridge_*.deb)
archives=(xmla-bridge-*.tar.gz)
[ "${#packages[@]},${#archives[@]}" = 1,1 ] || fail "one package and one archive were expected: $(ls)"
sha256sum --check --quiet ./*.sha256 || fail 'a checksum differs'
sums=(./*.sha256)
[ ${#sums[@]} = 2 ] || fail 'there are other checksums than one for each file'
package=$work/dist/${packages[0]} archive=$work/dist/${archives[0]}

field() { dpkg-deb -f "$package" "$1"; }
names() { tr ',|' '\n\n' | sed -E 's/\(.*//; s/:[a-z0-9]+ *$//; s/ //g; /^$/d'; }
diff - <(field Depends | names | LC_ALL=C sort) <<'END' || fail 'the package depends on something else'
libc6
libcurl4
libexpat1
libfmt9
libgcc-s1
libre2-9
libsqlite3-0
libstdc++6
libutf8proc2
libyaml-cpp0.7
libzip4
zlib1g
END
[[ $(field Recommends) == *jre-headless* ]] || fail 'the package does not recommend a Java'
[ "$(field Version)" = "$("$build/bin/xmla-bridge" --version | sed -n '1s/xmla-bridge //p')" ] ||
  fail 'the package has another version than the program'

# The files of a folder, without those that only programs in C++ and other places need.
listed() { (cd "$1" && find . -type f -not -path './include/*' -not -path './lib/cmake/*' | LC_ALL=C sort); }
mkdir unpacked
tar -xf "$archive" -C unpacked --strip-components=1
dpkg-deb -x "$package" extracted
diff <(listed unpacked) <(listed extracted/usr) || fail 'package and archive hold different files'
! listed unpacked | grep '\.jsa$' || fail 'an archive of classes was made for another place'
"$work/dist/unpacked/bin/xmla-bridge" import --quiet "$source/examples/ferry-line.bim" -o "$work/tabular.xml" >"$work/log" ||
  fail "the program of the archive reads no tabular definition: $(cat "$work/log")"

# with_dependencies PACKAGE...: the installed packages that these need to run, themselves included.
with_dependencies() {
  local -A known=()
  local waiting=("$@") name
  while [ ${#waiting[@]} -gt 0 ]; do
    name=${waiting[-1]}
    unset 'waiting[-1]'
    [ -z "${known[$name]-}" ] || continue
    # Of alternatives, the ones that are not installed are passed over, as names of virtual packages are.
    [[ $(dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null) == installed* ]] || continue
    known[$name]=yes
    echo "$name"
    mapfile -t -O "${#waiting[@]}" waiting < <(dpkg-query -W -f '${Pre-Depends},${Depends}' "$name" | names)
  done
}

# A bare root: what the package depends on as it is installed here, the shell and what sets up libraries. The
# administration of packages knows of these, so that dpkg judges whether all that is asked for is there.
root=$work/root
mkdir -p "$root"/{proc,tmp,examples,usr/{bin,sbin,lib,lib64},var/lib/dpkg/{info,updates}}
for folder in bin sbin lib lib64; do ln -s "usr/$folder" "$root/$folder"; done
# shellcheck disable=SC2046
bare=$(with_dependencies dash libc-bin $(field Depends | names))
for name in $bare; do
  dpkg-query -L "$name" | while read -r path; do
    if [ -L "$path" ] || [ -f "$path" ]; then printf '%s\0' "${path#/}"; fi
  done
done >"$work/paths"
tar -C / -c --exclude='usr/share/doc' --null -T "$work/paths" | tar -x --keep-directory-symlink -C "$root"
# shellcheck disable=SC2086
dpkg-query -s $bare >"$root/var/lib/dpkg/status"
cp "$source/examples/lost-property-create.xmla" "$root/examples"

in_root() {
  unshare --map-root-user --mount bash -c 'mount --rbind /proc "$0/proc" && exec chroot "$0" "$@"' "$root" "$@"
}
if ! in_root /bin/sh -c : 2>"$work/log"; then
  echo "No other root can be entered here ($(tail -n1 "$work/log")): the package is used where it was unpacked."
  extracted/usr/bin/xmla-bridge import --quiet "$source/examples/lost-property-create.xmla" -o "$work/model.xml"
  [ -s "$work/model.xml" ] || fail 'the program of the package saved no model'
  exit 0
fi
unshare --map-root-user dpkg --root="$root" --force-unsafe-io -i "$package" >"$work/log" 2>&1 ||
  fail "the package is not installed: $(cat "$work/log")"
in_root /usr/bin/xmla-bridge import --quiet /examples/lost-property-create.xmla -o /examples/model.xml >"$work/log" ||
  fail "the program of the package fails: $(cat "$work/log")"
[ -s "$root/examples/model.xml" ] || fail 'the program of the package saved no model'
in_root /usr/bin/xmla-bridge coverage /examples/model.xml >"$work/log" || fail 'the saved model is not read'
# Without a Java, a tabular definition ends with a message that tells so.
cp "$source/examples/ferry-line.bim" "$root/examples"
! in_root /usr/bin/xmla-bridge import /examples/ferry-line.bim -o /examples/tabular.xml >"$work/log" 2>&1 ||
  fail 'there is a Java where none was meant to be'
grep -q 'Java' "$work/log" || fail "the missing Java is not told of: $(cat "$work/log")"

unshare --map-root-user dpkg --root="$root" --force-unsafe-io -r xmla-bridge >"$work/log" 2>&1 ||
  fail "the package is not removed: $(cat "$work/log")"
[ ! -e "$root/usr/bin/xmla-bridge" ] || fail 'the program is still there after the package was removed'
