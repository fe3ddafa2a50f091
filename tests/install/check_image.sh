#!/usr/bin/env bash
# check_image.sh BUILD SOURCE: builds the image and uses it, where there is a builder that has the image it starts from
# already: nothing is downloaded for the test but what the package recommends. Exit code 77 where there is none.
set -euo pipefail
build=$1 source=$2
docker image inspect debian:12-slim >/dev/null 2>&1 || exit 77
work=$(mktemp -d)
image=xmla-bridge-test-$$
trap 'docker image rm -f "$image" >/dev/null 2>&1 || true; rm -rf "$work"' EXIT

cpack --config "$build/CPackConfig.cmake" -G DEB -B "$work/dist" >"$work/log" 2>&1
docker build -q -t "$image" -f "$source/packaging/Dockerfile" "$work/dist" >"$work/log" 2>&1 || {
  cat "$work/log" >&2
  exit 1
}
cp "$source/examples/ferry-line.bim" "$work"
docker run --rm -u "$(id -u):$(id -g)" -v "$work:/work" "$image" import --quiet ferry-line.bim -o model.xml
[ -s "$work/model.xml" ]
