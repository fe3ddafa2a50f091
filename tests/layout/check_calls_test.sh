#!/usr/bin/env bash
# check_calls_test.sh COMPILER: shows that check_calls.sh finds a call against the directions that no include shows.
set -euo pipefail
check=$(dirname "$(realpath "${BASH_SOURCE[0]}")")/check_calls.sh
tree=$(mktemp -d)
compiler=$1
trap 'rm -rf "$tree"' EXIT
cd "$tree"
put() { mkdir -p "$(dirname "$1")" && printf '%s\n' "${@:2}" >"$1"; }
compile() {
  mkdir -p "$(dirname "build/$2")"
  "$compiler" -I. -c "$1" -o "build/$2"
}

put low/machine.h 'struct Machine { void start(); void stop(); inline void hum() {} };'
put low/machine.cpp '#include "low/machine.h"' 'void Machine::start() { hum(); }'
put low/user.cpp '#include "low/machine.h"' 'void use(Machine& m) { m.start(); m.hum(); m.stop(); }'
put high/stop.cpp '#include "low/machine.h"' 'void Machine::stop() { start(); hum(); }'
put high/memory.cpp '#include <new>' 'void* operator new(std::size_t) { throw std::bad_alloc(); }'
put low/memory.cpp 'int* number() { return new int; }'
put directions.txt 'low:' 'high: low'
compile low/machine.cpp low/CMakeFiles/low.dir/machine.cpp.o
compile low/user.cpp low/CMakeFiles/low.dir/user.cpp.o
compile high/stop.cpp low/CMakeFiles/low.dir/__/high/stop.cpp.o
compile high/memory.cpp high/CMakeFiles/high.dir/memory.cpp.o
compile low/memory.cpp low/CMakeFiles/low.dir/memory.cpp.o

if found=$(bash "$check" . build directions.txt); then
  echo 'a fault, but no failure' >&2
  exit 1
fi
diff <(echo 'low/user.cpp: low may not call high (Machine::stop())') <(echo "$found")

# An object whose source is gone says nothing.
rm low/user.cpp
bash "$check" . build directions.txt

rm -r build
if bash "$check" . low directions.txt >/dev/null; then
  echo 'no objects, but no failure' >&2
  exit 1
fi
