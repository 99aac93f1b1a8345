#!/usr/bin/env bash
# Builds the tests with instrumentation, runs them and reports what of src/ov_sql_executor they reach: every file that
# is not wholly covered, then a line each for lines and branches. Branches that only an exception takes are left out.
# --lines shows the lines as well. The report of each file stands in build/coverage/report.html.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/test.sh coverage >&2
cd build/coverage
find . -name '*.gcda' -path '*tests*' -prune -o -name '*.gcov' -exec rm -f {} +

report=(gcovr --root ../.. --filter '../../src/ov_sql_executor/' --exclude-throw-branches --exclude-unreachable-branches
  --gcov-ignore-parse-errors --json-summary summary.json --html-details report.html)
[ "${1:-}" != --lines ] || report+=(--txt lines.txt)
"${report[@]}" . >/dev/null
[ "${1:-}" != --lines ] || cat lines.txt

python3 - <<'PYTHON'
import json
summary = json.load(open("summary.json"))
for each in sorted(summary["files"], key=lambda file: file["line_percent"]):
    if each["line_covered"] < each["line_total"] or each["branch_covered"] < each["branch_total"]:
        print(f'{each["filename"]}: lines {each["line_covered"]}/{each["line_total"]}, '
              f'branches {each["branch_covered"]}/{each["branch_total"]}')
print(f'line coverage: {summary["line_percent"]} %')
print(f'branch coverage: {summary["branch_percent"]} %')
PYTHON
