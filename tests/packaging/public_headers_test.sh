#!/usr/bin/env bash
# public_headers_test.sh PREFIX CC CXX WARNING...: every installed header compiles alone and includes nothing but
# installed headers and the standard library.
set -euo pipefail
include=$1/include cc=$2 cxx=$3
shift 3

cd "$include"
headers=$(find . -name '*.h' -o -name '*.hpp' | cut -c3-)
[ -n "$headers" ]
for library in ov_sql_executor ovdbmetalayer ovcoredb ovhost ovsql; do grep -q "^$library/" <<<"$headers"; done
foreign=$(grep -rn '^#include <.*[./].*>' . | grep -v '<std[a-z]*\.h>' || true)
[ -z "$foreign" ] || { echo "$foreign"; exit 1; }
quoted=$(grep -rho '^#include ".*"' . | cut -d'"' -f2 | sort -u)
[ -z "$(comm -23 <(echo "$quoted") <(sort <<<"$headers"))" ]
xargs -P2 -I{} sh -c 'echo "#include \"{}\"" | "$@" -x c++ -' sh \
  "$cxx" -std=c++20 -fsyntax-only "$@" -I"$include" <<<"$headers"
echo '#include "ovcoredb/ovcoredb.h"' |
  "$cc" -std=c11 -fsyntax-only -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -I"$include" -x c -
