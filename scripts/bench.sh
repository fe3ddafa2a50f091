#!/usr/bin/env bash
# Builds the release and prints the table of measurements; arguments go to the benchmark program.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=${root%/scripts}
cd "$root"
. scripts/setup.sh

need_for_program
need_for_benchmarks
install_missing
configure release build -DXMLA_BENCH=ON
build build xmla-bridge xmla_import xmla-bench
exec build/bin/xmla-bench "$@"
