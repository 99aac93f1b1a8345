#!/usr/bin/env bash
# scripts/fuzz.sh TARGET SECONDS [OPTION]...: builds the fuzzing targets with clang and lets one of them (any_plan,
# equal_plans, parse or sql) look for inputs that break a promise. It starts from the corpus under fuzz/ and keeps what
# it finds under build/fuzz; options go to libFuzzer. An input that breaks something is left as a file, and its plan is
# printed by: OV_FUZZ_PRINT=1 build/fuzz/tests/fuzz/fuzz_TARGET FILE
set -euo pipefail
cd "$(dirname "$0")/.."
target=${1:?TARGET is any_plan, equal_plans, parse or sql}
seconds=${2:?SECONDS to run}
shift 2

scripts/install_packages.sh
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
found=build/fuzz/corpus/$target
mkdir -p "$found"
dict=fuzz/${target/sql/parse}.dict
[ -e "$dict" ] && set -- "-dict=../../$dict" "$@"
cd "build/fuzz"
ASAN_OPTIONS=detect_stack_use_after_return=0 "tests/fuzz/fuzz_$target" -max_total_time="$seconds" -max_len=400 \
  -timeout=10 -print_final_stats=1 "$@" "corpus/$target" "../../fuzz/corpus/$target"
