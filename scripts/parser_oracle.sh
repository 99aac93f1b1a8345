#!/usr/bin/env bash
# scripts/parser_oracle.sh [COUNT [SEED]]: holds the parser of SQL against libpg_query, which is PostgreSQL's, over random
# statements. Needs Debian's libpg-query-dev.
set -euo pipefail
cd "$(dirname "$0")/.."
if ! [ -e /usr/include/pg_query.h ]; then
  echo "libpg-query-dev is not installed" >&2
  exit 2
fi
cmake --preset debug >/dev/null
cmake --build --preset debug --target parser_oracle >/dev/null
build/debug/tests/ovsql/parser_oracle "$@"
