#!/usr/bin/env bash
# pkg_config_test.sh PREFIX LIBDIR WORK CXX: the same consumer with nothing but a compiler call.
set -euo pipefail
prefix=$1 libdir=$2 work=$3 cxx=$4
export PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig

rm -rf "$work" && mkdir -p "$work"
read -ra flags < <(pkg-config --cflags --libs ov_sql_executor)
"$cxx" -std=c++20 "$(dirname "$0")/consumer/first_query.cpp" -o "$work/first_query" "${flags[@]}" \
  "-Wl,-rpath,$prefix/$libdir"
[ "$("$work/first_query" | tail -1)" = true ]
