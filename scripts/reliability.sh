#!/usr/bin/env bash
# Makes everything fail that can fail around the library, and says how much of it the tests reach: the fault loops and
# the replayed fuzz corpus under the address and undefined-behaviour sanitizers, then the coverage. Ends with a line
# for each figure; exits non-zero when anything was found. docs/reliability.md says what the figures mean.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install_packages.sh

preset=asan
build=build/$preset
log=build/reliability.log
mkdir -p build
export ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1:strict_string_checks=1
export UBSAN_OPTIONS=print_stacktrace=1
export OV_EVERY_FAULT=1

# quietly COMMAND...: shows the output only if the command fails.
quietly() {
  if ! "$@" >"$log" 2>&1; then
    tail -n 100 "$log" >&2
    echo "FAILED: $*" >&2
    exit 1
  fi
}

quietly cmake --preset $preset
quietly cmake --build --preset $preset --target reliability_tests fuzz_tests
quietly "$build/tests/fuzz/fuzz_tests"
quietly "$build/tests/reliability/reliability_tests"
cp "$log" build/reliability.loops.log
quietly scripts/coverage.sh
cat build/reliability.loops.log >>"$log"
for figure in 'allocation failure points in the core' 'allocation failure points' 'core call failure points' \
  'allocation failure points of definitions and loads' 'allocation failure points of definitions and loads in the core' \
  'evaluation failure points' 'line coverage' 'branch coverage'; do
  grep "^$figure:" "$log"
done
