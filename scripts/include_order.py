#!/usr/bin/env python3
"""Checks that every include inside src/ points down the floors below, or stays in its room. Rooms on one floor do not
include each other. Prints each include that does not, and fails."""

import pathlib
import re
import sys

SRC = pathlib.Path(__file__).resolve().parent.parent / "src"
# The lowest first. A file belongs to the room with the longest name that its path begins with.
FLOORS = [floor.split() for floor in """
    ovcoredb/ovcoredb.h
    ovcoredb/database.hpp
    ovcoredb/text/
    ovcoredb/storage/
    ovcoredb/index/
    ovcoredb/database
    ovcoredb/interface/
    ovdbmetalayer/
    ov_sql_executor/errors/
    ov_sql_executor/support/
    ov_sql_executor/values/
    ov_sql_executor/database/
    ov_sql_executor/expressions/
    ov_sql_executor/execution/rows/
    ov_sql_executor/execution/sorting/ ov_sql_executor/execution/grouping/ ov_sql_executor/execution/key_ranges/
    ov_sql_executor/execution/
    ov_sql_executor/planning/
    ovhost/values/
    ovhost/schema/
    ovhost/csv/ ovhost/plans/
    ovsql/errors/
    ovsql/syntax/
    ovsql/catalog/
    ovsql/binding/
    ovsql/planning/
    ovsql/session/
    ovsql/import/
""".strip().splitlines()]
FLOOR_OF = {room: floor for floor, rooms in enumerate(FLOORS) for room in rooms}
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


def room_of(path):
    return max((room for room in FLOOR_OF if path.startswith(room)), key=len, default=None)


def faults(path, text):
    room = room_of(path)
    if room is None:
        yield f"src/{path}: lies in no room of scripts/include_order.py"
        return
    for match in INCLUDE.finditer(text):
        target = room_of(match[1])
        if target is None or (target != room and FLOOR_OF[target] >= FLOOR_OF[room]):
            line = text.count("\n", 0, match.start(1)) + 1
            yield f"src/{path}:{line}: {room} may not include {match[1]}"


def main():
    files = sorted(path for path in SRC.rglob("*") if path.suffix in (".cpp", ".hpp", ".h"))
    found = [fault for path in files for fault in faults(path.relative_to(SRC).as_posix(), path.read_text())]
    print("\n".join(found) if found else f"includes: ok, {len(files)} files")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
