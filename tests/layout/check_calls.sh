#!/usr/bin/env bash
# check_calls.sh ROOT BUILD DIRECTIONS: prints each place where a source under ROOT calls what the table of
# directions does not allow, as far as the objects in BUILD show it; fails if there is one. A member of a class may
# be defined in another folder than its header's, and then a call goes where no include goes.
set -euo pipefail
here=$(dirname "$(realpath "${BASH_SOURCE[0]}")")
build=$(realpath "$2")
directions=$(realpath "$3")
cd "$1"
export LC_ALL=C

# Lines "FILE|FILE that it calls|what".
calls() {
  find "$build" -name '*.o' -print0 | xargs -0 -r nm -A -g | awk -v build="$build/" '
    # An object is named after its source, with "__" for "..". Sources that are made or gone have no room.
    function source(object,   name) {
      if (object in sources) return sources[object]
      name = substr(object, length(build) + 1)
      sub(/CMakeFiles\/[^\/]+\.dir\//, "", name)
      while (sub(/[^\/]+\/__\//, "", name)) continue
      sub(/\.o$/, "", name)
      if ((getline ignored < name) < 0) name = ""
      close(name)
      return sources[object] = name
    }
    {
      object = $0
      sub(/:.*/, "", object)
      file = source(object)
      symbol = $NF
      if (file == "") next
      # A library that is preloaded stands before functions of the system, which nobody calls for its sake.
      if (file ~ /^tests\/faults\/[^\/]*\.c$/) next
      # Whoever replaces operator new and delete does so for all, who call them by the language and not the room.
      if (symbol ~ /^_Z(n[wa]m(RKSt9nothrow_t)?|d[la]Pvm?)$/) next
      # Weak symbols are inline functions and templates, which each user has for itself.
      if ($(NF - 1) ~ /^[ABCDGRST]$/) defined[symbol] = file
      else if ($(NF - 1) == "U" && !((file, symbol) in used)) {
        used[file, symbol] = 1
        from[++count] = file
        what[count] = symbol
      }
    }
    END {
      for (i = 1; i <= count; ++i)
        if (what[i] in defined && defined[what[i]] != from[i]) print from[i] "|" defined[what[i]] "|" what[i]
    }' | sort | c++filt
}

found=$(calls)
[ -n "$found" ] || { echo "no calls found in $build"; exit 1; }
faults=$(awk -v table="$directions" -v verb=call -f "$here/directions.awk" <<<"$found")
[ -z "$faults" ] || { printf '%s\n' "$faults"; exit 1; }
