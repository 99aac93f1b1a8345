#!/usr/bin/env bash
# Builds the benchmark and runs it: every query shape against SQLite and against bare core calls, in one process.
# Arguments are the benchmark's, for example --rows 100000 --shapes 'group_*' --svg ratios.svg.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install_packages.sh measuring

build=build/release
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { cmake --preset release && cmake --build --preset release --target ov_bench; } >"$log" 2>&1; then
  cat "$log" >&2
  exit 1
fi
exec "$build/bench/ov_bench" "$@"
