#!/usr/bin/env bash
# pkg_config_test.sh PREFIX LIBDIR WORK CXX: the installed examples, with nothing but a compiler call.
set -euo pipefail
prefix=$1 libdir=$2 work=$3 cxx=$4
export PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig

rm -rf "$work" && mkdir -p "$work"
read -ra flags < <(pkg-config --cflags --libs ov_sql_executor)
for example in first_query read_table; do
  "$cxx" -std=c++20 "$prefix/share/doc/ov_sql_executor/examples/$example.cpp" -o "$work/$example" "${flags[@]}" \
    "-Wl,-rpath,$prefix/$libdir"
done
[ "$("$work/first_query" | tail -1)" = true ]
[ "$("$work/read_table" | head -1)" = "Lisbon 545923" ]
