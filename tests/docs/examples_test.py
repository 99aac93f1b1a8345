#!/usr/bin/env python3
"""Runs the examples of a page in Markdown and compares what they print with what the page shows.

    examples_test.py [--rewrite] PROGRAM FOLDER PAGE

A block marked sql is a script, and the block marked text behind it what the shell prints, errors included; one without
prints nothing. All scripts of a page are one session. A block marked console holds commands, each behind "$ " and gone
on with behind "> ", and what they print. Everything runs in FOLDER, and commands find the program by its name.
--rewrite puts what is printed into the page: look at the difference before you keep it.
"""

import difflib
import os
import pathlib
import re
import subprocess
import sys

FENCED = re.compile(r"```(sql|text|console)\n(.*?)```\n", re.DOTALL)


def run(command, program, folder):
    path = f"{program.parent}:{os.environ['PATH']}"
    done = subprocess.run(command, cwd=folder, env={**os.environ, "PATH": path, "LC_ALL": "C.UTF-8"},
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=120)
    return done.stdout.decode(errors="backslashreplace")


def run_scripts(scripts, program, folder):
    """Returns what each script prints. They run in one process, with a line that nobody writes behind each."""
    command = [str(program)]
    mark = "---- example {} ends ----\n"
    for number, script in enumerate(scripts):
        end = f"SELECT 1 AS \"{mark.format(number).strip()}\" LIMIT 0"
        command += ["-c", script, "-c", ".mode csv", "-c", end, "-c", ".mode table"]
    rest = run(command, program, folder)
    outputs = []
    for number in range(len(scripts)):
        output, found, rest = rest.partition(mark.format(number))
        if not found:
            sys.exit(f"the shell stopped in example {number}:\n{scripts[number]}\n{output}")
        outputs.append(output)
    return outputs


def run_console(block, program, folder):
    printed = ""
    for command in re.findall(r"^\$ .*\n(?:> .*\n)*", block, re.MULTILINE):
        lines = "\n".join(line[2:] for line in command.splitlines())
        printed += command + run(["bash", "-c", lines], program, folder)
    return printed


def rewritten(page, program, folder):
    """Returns the page with what its examples print now."""
    blocks = list(FENCED.finditer(page))
    outputs = iter(run_scripts([each[2] for each in blocks if each[1] == "sql"], program, folder))
    made, end, pending = "", 0, ""
    for each in blocks:
        if pending and each[1] != "text":
            made += f"\n```text\n{pending}```\n"
        made += page[end:each.start()]
        end = each.end()
        if each[1] == "text":
            made += f"```text\n{pending}```\n"
            pending = ""
        elif each[1] == "console":
            made += f"```console\n{run_console(each[2], program, folder)}```\n"
        else:
            made += each[0]
            pending = next(outputs)
    return made + (f"\n```text\n{pending}```\n" if pending else "") + page[end:]


def main():
    arguments = sys.argv[1:]
    rewrite = arguments[0] == "--rewrite"
    program, folder, path = (pathlib.Path(each).resolve() for each in arguments[rewrite:])
    page = path.read_text()
    if not FENCED.search(page):
        sys.exit(f"{path} has no examples")
    printed = rewritten(page, program, folder)
    if rewrite:
        path.write_text(printed)
        return 0
    difference = list(difflib.unified_diff(page.splitlines(), printed.splitlines(), "the page", "printed", lineterm=""))
    print("\n".join(difference))
    return 1 if difference else 0


if __name__ == "__main__":
    sys.exit(main())
