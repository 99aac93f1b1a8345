#!/usr/bin/env bash
# Checks the format of every source file and the order of includes and, unless asked for the format only, runs clang-tidy
# over src/, a minute or two. Usage: scripts/lint.sh [format]. Changes nothing: clang-format -i corrects a file.
# Both tools are those of one release, since others format and warn differently.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install_packages.sh

git ls-files -z --cached --others --exclude-standard '*.cpp' '*.hpp' '*.h' |
  xargs -0 clang-format-14 --dry-run -Werror
echo "format: ok"
scripts/include_order.py
[ "${1:-}" != format ] || exit 0

# clang-tidy needs the compiler's command lines, not a build. Those of the unity build: each header is read a few times
# instead of once for every source.
mkdir -p build
log=build/tidy.log
start=$SECONDS
if ! { cmake --preset clang-release && run-clang-tidy-14 -quiet -p build/clang-release -j "$(nproc)" '/src/.*/Unity/'; } \
  >"$log" 2>&1; then
  grep -E '(error|warning):' -A 3 "$log" | awk '!seen[$0]++' >&2
  echo "tidy: FAILED (the whole output is in $log)" >&2
  exit 1
fi
echo "tidy: ok, $((SECONDS - start)) s"
