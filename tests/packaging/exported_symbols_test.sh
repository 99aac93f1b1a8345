#!/usr/bin/env bash
# exported_symbols_test.sh NM LIBRARY LIST: the library exports the names of the list and nothing else. An optimiser may
# drop a vtable that nothing in the library uses; hosts have their own copy then.
set -euo pipefail
nm=$1 library=$2 list=$3

exported=$("$nm" -DC --defined-only "$library" | cut -d' ' -f3- | sort -u)
listed=$(grep -v '^#' "$list" | sort -u)
surplus=$(comm -23 <(echo "$exported") <(echo "$listed"))
missing=$(comm -13 <(echo "$exported") <(echo "$listed") | grep -v '^vtable for ' || true)
[ -z "$surplus" ] || printf 'exported, but not on the list:\n%s\n' "$surplus"
[ -z "$missing" ] || printf 'on the list, but not exported:\n%s\n' "$missing"
[ -z "$surplus$missing" ]
