#!/usr/bin/env bash
# scripts/test.sh [PRESET]...: builds each preset (release, if none is named) and runs its tests. Installs the packages
# that are missing first. Prints a line per step; the output of a step only if it fails.
set -euo pipefail
cd "$(dirname "$0")/.."
[ $# -gt 0 ] || set -- release

scripts/install_packages.sh

# quietly STEP COMMAND...: runs the command, keeps its output in a log, and shows the end of that if it fails.
quietly() {
  local step=$1 start=$SECONDS
  shift
  log=build/$preset.${step%% *}.log
  if ! "$@" >"$log" 2>&1; then
    tail -n 100 "$log" >&2
    echo "$preset: $step FAILED (the whole output is in $log)" >&2
    exit 1
  fi
  echo "$preset: $step, $((SECONDS - start)) s"
}

mkdir -p build
for preset in "$@"; do
  quietly configured cmake --preset "$preset"
  quietly built cmake --build --preset "$preset"
  quietly tested ctest --preset "$preset" --parallel "$(nproc)"
  grep 'tests passed' "$log" | sed "s/^/$preset: /"
done
