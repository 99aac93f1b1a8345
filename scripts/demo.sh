#!/usr/bin/env bash
# Builds the demo and runs it: loads airports and flights, and prints for each named query its plan in words, its rows
# and its time. Arguments are the demo's, for example --list or --query departures_from_vermont. Also draws one plan,
# as SVG where Graphviz is installed.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install_packages.sh

build=build/release
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { cmake --preset release && cmake --build --preset release --target airports; } >"$log" 2>&1; then
  cat "$log" >&2
  exit 1
fi

"$build/examples/airports" "$@"
[ $# -eq 0 ] || exit 0

picture=departures_from_vermont
"$build/examples/airports" --dot "$picture" >"$build/$picture.dot"
if command -v dot >/dev/null; then
  dot -Tsvg "$build/$picture.dot" -o "$build/$picture.svg"
  echo "The plan of $picture is drawn in $build/$picture.svg"
else
  echo "The plan of $picture is a Graphviz graph in $build/$picture.dot"
fi
