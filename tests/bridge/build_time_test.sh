#!/usr/bin/env bash
# build_time_test.sh SOURCE COMPILER: builds a small program with the rule of the build time and changes what the
# time comes from between its builds.
set -euo pipefail
source=$1 compiler=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
unset SOURCE_DATE_EPOCH
cd "$source"
. scripts/setup.sh
cd "$work"

cat >CMakeLists.txt <<END
cmake_minimum_required(VERSION 3.25)
project(clock CXX)
set(CMAKE_CXX_STANDARD 20)
include_directories($source)
include($source/bridge/build_time_rule.cmake)
add_library(objects OBJECT)
add_build_time(objects)
add_executable(clock main.cpp)
target_link_libraries(clock PRIVATE objects)
END
cat >main.cpp <<'END'
#include "bridge/catalogue/build_time.h"

#include <cstdio>

int main() { std::printf("%lld\n", static_cast<long long>(tav::getBuildTime())); }
END
touch -d @3000 CMakeLists.txt
cmake -G Ninja -B build -DCMAKE_CXX_COMPILER="$compiler" >/dev/null

# expect TIME SAID COMMAND...: builds with the command, and compares the program's time and what the build said.
expect() {
  local time=$1 said=$2
  shift 2
  "$@" >log 2>&1 || { cat log >&2; exit 1; }
  diff <(echo "$time") <(build/clock) || { echo "the time after: $*" >&2; exit 1; }
  [ "$(grep -v "^\[" log || true)" = "$said" ] || { echo "what was said by: $*" >&2; exit 1; }
}

expect 3000 '' ninja -C build --quiet clock
expect 1000 '' env SOURCE_DATE_EPOCH=1000 ninja -C build --quiet clock
expect 2000 '' env SOURCE_DATE_EPOCH=2000 ninja -C build --quiet clock
expect 3000 '' ninja -C build --quiet clock

# The scripts build with a word, and without one when there is nothing to build.
expect 3000 'Building in build/ ...' build build clock
expect 3000 '' build build clock
before=$(stat -c %Y.%y build/clock)
expect 3000 '' build build clock
[ "$(stat -c %Y.%y build/clock)" = "$before" ] || { echo 'built although nothing had changed' >&2; exit 1; }
echo '// changed' >>main.cpp
expect 3000 'Building in build/ ...' build build clock
expect 3000 '' build build clock
export SOURCE_DATE_EPOCH=4000
expect 4000 '' build build clock
