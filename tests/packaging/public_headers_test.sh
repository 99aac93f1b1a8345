#!/usr/bin/env bash
# public_headers_test.sh PREFIX CC CXX WARNING...: every installed header compiles alone, from the install tree alone.
set -euo pipefail
include=$1/include cc=$2 cxx=$3
shift 3

cd "$include"
headers=$(find . -name '*.h' -o -name '*.hpp' | cut -c3-)
[ -n "$headers" ]
xargs -P2 -I{} sh -c 'echo "#include \"{}\"" | "$@" -x c++ -' sh \
  "$cxx" -std=c++20 -fsyntax-only "$@" -I"$include" <<<"$headers"
echo '#include "ovcoredb/ovcoredb.h"' |
  "$cc" -std=c11 -fsyntax-only -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -I"$include" -x c -
