#!/usr/bin/env python3
"""Drives the shell through a pseudo-terminal: editing, history, completion, Ctrl-C, and the width of tables.

    terminal_test.py PROGRAM
"""

import fcntl
import os
import pty
import re
import select
import struct
import sys
import tempfile
import termios
import time

CONTROL_C, CONTROL_D, UP, TAB = "\x03", "\x04", "\x1b[A", "\t"
PROMPT = r"ovsql> $"
LIMIT = 60  # seconds


class Terminal:
    """A shell at a terminal of some width."""

    def __init__(self, program, history, width=80, **environment):
        self.process, self.descriptor = pty.fork()
        if self.process == 0:
            settings = {**os.environ, "TERM": "xterm", "LC_ALL": "C.UTF-8", "OVSQL_HISTORY": history, **environment}
            os.execve(program, [program], settings)
        fcntl.ioctl(self.descriptor, termios.TIOCSWINSZ, struct.pack("HHHH", 24, width, 0, 0))
        self.output = ""

    def expect(self, pattern):
        """Waits until what has come since the last time matches, and returns it without escape sequences."""
        end = time.monotonic() + LIMIT
        while not re.search(pattern, plain(self.output), re.DOTALL):
            ready, _, _ = select.select([self.descriptor], [], [], max(0, end - time.monotonic()))
            try:
                read = os.read(self.descriptor, 65536) if ready else b""
            except OSError:
                read = b""
            if not read:
                raise AssertionError(f"no {pattern!r} in {self.output!r}")
            self.output += read.decode(errors="replace")
        found, self.output = plain(self.output), ""
        return found

    def type(self, keys, pattern=PROMPT):
        os.write(self.descriptor, keys.encode())
        return self.expect(pattern)

    def status(self):
        return os.waitstatus_to_exitcode(os.waitpid(self.process, 0)[1])


def plain(text):
    return re.sub(r"\x1b\[[0-9;?]*[A-Za-z]|\x1b[=>]|\r", "", text)


def check(condition, what):
    if not condition:
        raise AssertionError(what)


def test_statements(program, history):
    shell = Terminal(program, history)
    shell.expect(PROMPT)
    check("1 row" in shell.type("CREATE TABLE town (name TEXT, people INT); INSERT INTO town VALUES ('Ely', 20574);\r"),
          "an insertion says how many rows")
    shell.type("SELECT name,\r", r"\.\.> $")
    check("│ Ely  │  20574 │" in shell.type("people FROM town;\r"), "a statement of two lines")
    check("^" in shell.type("SELECT nothing;\r"), "an error shows its place")
    shell.type("SELECT 1 +", r"1 \+$")
    check("error" not in shell.type(CONTROL_C), "Ctrl-C drops the line")
    shell.type("SELECT\r", r"\.\.> $")
    shell.type("1 +", r"1 \+$")
    check("error" not in shell.type(CONTROL_C), "Ctrl-C drops all lines of a statement")
    os.write(shell.descriptor, CONTROL_D.encode())
    check(shell.status() == 1, "a failed statement shows in the exit status")


def test_history_and_completion(program, history):
    shell = Terminal(program, history)
    shell.expect(PROMPT)
    check("│ 42 │" in shell.type("SELECT 42 AS x;\r"), "a result")
    check("│ 42 │" in shell.type(UP + "\r"), "the line before")
    shell.type("CREATE TABLE airport (code TEXT, elevation INT);\r")
    check("│ elevation │" in shell.type(f"sel{TAB}elev{TAB}from airp{TAB};\r"), "keywords, columns and tables")
    shell.type(f".mo{TAB}jsonl\r")
    check('{"x": 1}' in shell.type("SELECT 1 AS x;\r"), "commands")
    os.write(shell.descriptor, b".quit\r")
    check(shell.status() == 0, "no error")
    again = Terminal(program, history)
    again.expect(PROMPT)
    again.type(UP + UP, r"SELECT 1 AS x;$")
    os.write(again.descriptor, CONTROL_C.encode() + CONTROL_D.encode())
    check(again.status() == 0, "Ctrl-D leaves")


def test_interruption(program, history):
    shell = Terminal(program, history)
    shell.expect(PROMPT)
    digits = "(VALUES (0),(1),(2),(3),(4),(5),(6),(7),(8),(9)) AS "
    rows = ", ".join(digits + name for name in "abcdefgh")
    os.write(shell.descriptor, f".mode csv\rSELECT 7 FROM {rows};\r".encode())
    shell.expect(r"7\n7\n7\n7\n")
    check("stopped" in shell.type(CONTROL_C), "Ctrl-C stops a statement")
    check("\n8\n" in shell.type("SELECT 8 AS x;\r"), "and not the shell")
    os.write(shell.descriptor, b".quit\r")
    check(shell.status() == 0, "it is no error")


def test_width(program, history):
    shell = Terminal(program, history, width=30)
    shell.expect(PROMPT)
    shown = shell.type("SELECT 'one word after the other' AS words, 7 AS n;\r")
    table = [line for line in shown.splitlines() if line.startswith("│")]
    check(table and all(len(line) <= 30 for line in table), f"wider than the terminal: {table}")
    check("…" in table[-1], "an ellipsis shows what was cut")
    os.write(shell.descriptor, b".quit\r")
    check(shell.status() == 0, "no error")


def test_colours(program, history):
    for environment, expected in (({}, True), ({"NO_COLOR": "1"}, False)):
        shell = Terminal(program, history, **environment)
        shell.expect(PROMPT)
        os.write(shell.descriptor, b"SELECT NULL AS x;\r.quit\r")
        output = b""
        while True:
            try:
                output += os.read(shell.descriptor, 65536)
            except OSError:
                break
        check((b"\x1b[2mNULL" in output) == expected, f"NULL is dim, {environment}")
        shell.status()


def main():
    program = os.path.abspath(sys.argv[1])
    for each in (test_statements, test_history_and_completion, test_interruption, test_width, test_colours):
        with tempfile.TemporaryDirectory() as folder:
            each(program, folder + "/history")
            print(f"{each.__name__}: ok")


if __name__ == "__main__":
    main()
