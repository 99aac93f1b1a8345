#!/usr/bin/env python3
"""Runs the commands of a session file and compares what they print with what the file says.

    session_test.py [--rewrite] SESSION PROGRAM...

A line that begins with "$ " is a command for the shell, lines that begin with "> " go on with it; the other lines are
its output, standard error included. Where it does not end with 0, its status follows in brackets. Lines that begin with
"# " are comments. Commands run one after the other in an empty folder, and find the programs by their names.
--rewrite puts what is printed into the file: look at the difference before you keep it.
"""

import difflib
import os
import pathlib
import subprocess
import sys
import tempfile


def read_blocks(lines):
    """Yields each comment, as a list of one line, and each command, as a list of its lines."""
    block = []
    for line in lines:
        if line.startswith("> ") and block:
            block.append(line)
            continue
        if block:
            yield block
        block = [line] if line.startswith("$ ") else []
        if line.startswith("# "):
            yield [line]
    if block:
        yield block


def run(command, folder, path):
    environment = {**os.environ, "PATH": f"{path}:{os.environ['PATH']}", "LC_ALL": "C.UTF-8"}
    done = subprocess.run(["bash", "-c", command], cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=120)
    lines = done.stdout.decode(errors="backslashreplace").splitlines()
    return lines + ([f"[{done.returncode}]"] if done.returncode else [])


def main():
    arguments = sys.argv[1:]
    rewrite = arguments[0] == "--rewrite"
    session = pathlib.Path(arguments[rewrite])
    path = ":".join(str(pathlib.Path(each).resolve().parent) for each in arguments[rewrite + 1:])
    expected = session.read_text().splitlines()
    printed = []
    with tempfile.TemporaryDirectory() as folder:
        for block in read_blocks(expected):
            printed += block
            if block[0].startswith("$ "):
                printed += run("\n".join(line[2:] for line in block), folder, path)
    if rewrite:
        session.write_text("\n".join(printed) + "\n")
        return 0
    difference = list(difflib.unified_diff(expected, printed, "expected", "printed", lineterm=""))
    print("\n".join(difference))
    return 1 if difference or not printed else 0


if __name__ == "__main__":
    sys.exit(main())
