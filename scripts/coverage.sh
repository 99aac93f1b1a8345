#!/usr/bin/env bash
# Builds the tests with instrumentation, runs them and says what of src/ov_sql_executor they reach: every file that is
# not wholly covered, then a line each for lines and branches. Branches that only an exception takes are left out.
# build/coverage/report.html shows each line.
set -euo pipefail
cd "$(dirname "$0")/.."

[ ! -d build/coverage ] || find build/coverage -name '*.gcda' -delete
scripts/test.sh coverage >&2
gcovr --root . --filter src/ov_sql_executor/ --exclude-throw-branches --exclude-unreachable-branches \
  --json-summary build/coverage/summary.json --html-details build/coverage/report.html build/coverage >&2

python3 - <<'PYTHON'
import json

summary = json.load(open("build/coverage/summary.json"))
for file in summary["files"]:
    lines, branches = [f'{file[kind + "_covered"]} of {file[kind + "_total"]}' for kind in ("line", "branch")]
    if file["line_covered"] < file["line_total"] or file["branch_covered"] < file["branch_total"]:
        print(f'{file["filename"]}: {lines} lines, {branches} branches')
print(f'line coverage: {summary["line_percent"]} %')
print(f'branch coverage: {summary["branch_percent"]} %')
PYTHON
