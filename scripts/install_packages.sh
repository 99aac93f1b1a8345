#!/usr/bin/env bash
# Installs the Debian packages that building, testing and the demo need: quietly, and only those that are missing.
# This is the only list of packages; CI and the other scripts call it. With the argument "measuring", what the
# benchmark's chart and instruction counts need as well.
set -euo pipefail

packages=(
  g++ clang cmake ninja-build pkg-config git
  libboost-dev          # the library: multiprecision oracle, numeric conversion exceptions, hashing
  libabsl-dev           # core_bench: a B-tree to compare the indexes with
  libicu-dev            # the embedded core: case folding; the host: UTF-8
  libcsv-dev            # the host: CSV files
  python3               # scripts and tests in Python
  libmd-dev             # ovsql_slt: MD5
  libedit-dev           # ovsql: line editing
  libgtest-dev libgmock-dev libbenchmark-dev libsqlite3-dev
  clang-format clang-tidy libclang-rt-14-dev
  gcovr
)
[ "${1:-}" != measuring ] || packages+=(gnuplot-nox valgrind)

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
export DEBIAN_FRONTEND=noninteractive
log=$(mktemp)
trap 'rm -f "$log"' EXIT
echo "Installing: ${missing[*]}"
if ! { "${as_root[@]}" apt-get update -q && "${as_root[@]}" apt-get install -q -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
  cat "$log" >&2
  exit 1
fi
