#!/usr/bin/env bash
# pkg_config_test.sh PREFIX LIBDIR WORK CXX: the installed examples with nothing but a compiler call.
set -euo pipefail
prefix=$1 libdir=$2 work=$3 cxx=$4
consumer=$(dirname "$0")/consumer
export PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig

# build PROGRAM PACKAGE
build() {
  local -a flags
  read -ra flags < <(pkg-config --cflags --libs "$2")
  "$cxx" -std=c++20 "$prefix/share/doc/ov_sql_executor/examples/$1.cpp" -o "$work/$1" "${flags[@]}" "-Wl,-rpath,$prefix/$libdir"
}

rm -rf "$work" && mkdir -p "$work"
for example in first_query read_table; do build $example ov_sql_executor; done
[ "$("$work/first_query" | tail -1)" = true ]
[ "$("$work/read_table" | head -1)" = "Lisbon 545923" ]
build named_plan ovhost
diff <("$work/named_plan") "$consumer/named_plan.out"
build first_sql ovsql
[ "$("$work/first_sql")" = "Ely 20574" ]
