#!/usr/bin/env bash
# check_exports.sh LIBRARY LIST: compares what the library shows to others with the list, sorted and each once
# (a constructor or destructor has several symbols of one name).
set -euo pipefail
nm -DC --defined-only "$1" | cut -d ' ' -f 3- | LC_ALL=C sort -u | diff "$2" -
