#!/usr/bin/env bash
# find_package_test.sh PREFIX WORK CMAKE CXX GENERATOR README: builds and runs the consumer project against the install
# tree. The first consumer is also the README's example and has to stay so, as do the lines of the one in SQL; the
# examples of the install tree are the programs that are built here.
set -euo pipefail
prefix=$1 work=$2 cmake=$3 cxx=$4 generator=$5 readme=$6
consumer=$(dirname "$0")/consumer

diff <(sed -n '/^```cpp$/,/^```$/p' "$readme" | sed '1d;$d') "$consumer/first_query.cpp" ||
  { echo "the example in README.md is not consumer/first_query.cpp" >&2; exit 1; }

while IFS= read -r line; do
  grep -qxF -- "$line" "$consumer/first_sql.cpp" ||
    { echo "README.md has a line that consumer/first_sql.cpp has not: $line" >&2; exit 1; }
done < <(sed -n '/^```c++$/,/^```$/p' "$readme" | sed '1d;$d')

for example in first_query first_sql read_table; do
  cmp "$consumer/$example.cpp" "$prefix/share/doc/ov_sql_executor/examples/$example.cpp"
done
[ -s "$prefix/share/doc/ov_sql_executor/operations.md" ] && [ -s "$prefix/share/doc/ov_sql_executor/sql.md" ]

rm -rf "$work"
"$cmake" -S "$consumer" -B "$work" -G "$generator" -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_PREFIX_PATH="$prefix"
"$cmake" --build "$work"
[ "$("$work/first_query" | tail -1)" = true ]
[ "$("$work/read_table")" = "Lisbon 545923
Lima 9674755
Lagos 15388000" ]
"$work/own_core"
[ "$("$work/first_sql")" = "Ely 20574" ]
diff <("$work/named_plan") "$consumer/named_plan.out"
