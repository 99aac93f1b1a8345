#!/usr/bin/env bash
# Builds the shell and the demo, and runs queries over airports and flights. Without arguments: in SQL, with plans
# beside them, from examples/airports.sql; then draws one plan, as SVG where Graphviz is installed. Arguments are those
# of the demo whose plans are made by hand, for example --list or --query departures_from_vermont: it prints each plan
# in words, its rows and its time.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install_packages.sh

build=build/release
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { cmake --preset release && cmake --build --preset release --target airports ovsql_shell; } >"$log" 2>&1; then
  cat "$log" >&2
  exit 1
fi

if [ $# -gt 0 ]; then
  "$build/examples/airports" "$@"
  exit
fi
"$build/tools/ovsql" -f examples/airports.sql

picture=departures_from_vermont
"$build/examples/airports" --dot "$picture" >"$build/$picture.dot"
if command -v dot >/dev/null; then
  dot -Tsvg "$build/$picture.dot" -o "$build/$picture.svg"
  echo "The plan of $picture is drawn in $build/$picture.svg"
else
  echo "The plan of $picture is a Graphviz graph in $build/$picture.dot"
fi
