#!/usr/bin/env python3
"""Puts one fault at a time into the code where a wrong sign would give wrong answers without a word, and says which of
them the tests find.

    scripts/mutants.py [--list] [--listed] [--files PATTERN] [--every N]

Works in build/mutants, on a copy of the tree, with a quick build of its own. A fault is a change of one line: another
relation, sign, constant or condition, or a statement left out. A mutant that does not compile does not count; one that
a test fails on, or that runs into its time limit, is killed.

tests/surviving_mutants.txt lists the survivors that nobody can see, and says why. Fails, and says so in a line that can
be copied there, for a survivor that is not listed, for a listed one that is killed, and for a listed one that the code
no longer has. Ends with "mutants killed: K of N (P %)". All of it takes about three hours on one core.
"""

import argparse
import collections
import fnmatch
import pathlib
import re
import shutil
import subprocess
import sys
import typing

ROOT = pathlib.Path(__file__).resolve().parent.parent
COPY = ROOT / "build/mutants/tree"
BUILD = ROOT / "build/mutants/build"
SOURCES = "src/ov_sql_executor"
LIST = ROOT / "tests/surviving_mutants.txt"
FILES = [
    "values/decimal_arithmetic.cpp", "values/checked_arithmetic.hpp", "values/number_conversion.hpp",
    "values/numeric_order.hpp", "values/numeric_order.cpp", "values/natural_order.hpp", "values/sort_order.cpp",
    "values/sort_prefix.hpp", "values/number_bracket.hpp", "values/number_bracket.cpp", "values/comparison.cpp",
    "expressions/comparison.hpp", "expressions/comparison.cpp", "database/index_key.hpp", "database/index_key.cpp",
    "execution/key_ranges/key_interval.cpp", "execution/key_ranges/scan_keys.cpp",
]
# In the order in which they find most, those of the file's own folder first; a program is built and run only if those
# before it found nothing.
PROGRAMS = ["values", "database", "execution", "expressions", "nodes", "planning", "queries", "fuzz"]
BUILD_LIMIT = 900  # seconds
TEST_LIMIT = 60

# What is looked for in a line of code, and what takes its place. Spaces tell operators from template brackets.
EXCHANGES = [
    (r" < ", [" <= ", " > "]), (r" <= ", [" < "]), (r" > ", [" >= ", " < "]), (r" >= ", [" > "]),
    (r" == ", [" != "]), (r" != ", [" == "]), (r" && ", [" || "]), (r" \|\| ", [" && "]),
    (r" \+ ", [" - "]), (r" - ", [" + "]), (r" \* ", [" / "]), (r" / ", [" * "]), (r" % ", [" / "]),
    (r" << ", [" >> "]), (r" & ", [" | "]), (r" \| ", [" & "]), (r" \^ ", [" | "]),
    (r"\+\+", ["--"]), (r"--", ["++"]), (r"(?<=[( ])-(?=[\w(])", [""]), (r"!(?=[\w(])", [""]), (r"~(?=\w)", [""]),
    (r"\btrue\b", ["false"]), (r"\bfalse\b", ["true"]), (r"\bstd::min\b", ["std::max"]),
    (r"\bmin\(\)", ["max()"]), (r"\bmax\(\)", ["min()"]), (r"\bfloor\b", ["ceil"]), (r"\bless\b", ["greater"]),
]
CONSTANT = re.compile(r"(?<![\w.:'<])(?:0x[0-9A-F]+|\d[\d']*)(?![\w.'>])")
STATEMENT = re.compile(r"^ +(?:(?!return\b|throw\b|using\b|case\b|default\b|break\b)[\w.>:\[\]-]+\(.*\)"
                       r"|\*?[\w.>\[\]-]+ [-+*/|&^]?= .*|\+\+\w+|--\w+);$")
GUARD = re.compile(r"^ +if \(.*\) (?:return|throw|reject|raise).*;$")
NO_CODE = re.compile(r"^\s*(?://|#|template\b|requires\b|concept\b|using\b|static_assert\b|namespace\b|$)")


def mutants_of_line(line):
    """The changed lines, each once."""
    code, _, comment = line.partition("  //")
    if NO_CODE.match(code):
        return
    found = []
    for pattern, others in EXCHANGES:
        for match in re.finditer(pattern, code):
            found += [code[:match.start()] + other + code[match.end():] for other in others]
    for match in CONSTANT.finditer(code):
        number = int(match.group().replace("'", ""), 0)
        found.append(f"{code[:match.start()]}{number + 1}{code[match.end():]}")
        if number == 1:
            found.append(f"{code[:match.start()]}0{code[match.end():]}")
    if STATEMENT.match(code) or GUARD.match(code):
        found.append("")
    yield from dict.fromkeys(other for other in found if other != code)


class Mutant(typing.NamedTuple):
    file: str
    number: int  # of the line, from 1
    new: str  # the line
    name: str  # in the list: without the line's number and its comment; "(2)" for the second line that reads so


def mutants_of_file(file):
    seen = collections.Counter()
    for number, line in enumerate((ROOT / SOURCES / file).read_text().splitlines(), 1):
        old = line.partition("  //")[0].strip()
        seen[old] += 1
        place = f" ({seen[old]})" if seen[old] > 1 else ""
        for new in mutants_of_line(line):
            yield Mutant(file, number, new, f"{file}: {old}{place} -> {new.strip() or '(left out)'}")


def all_mutants(pattern):
    """In a fixed order."""
    return [each for file in FILES if fnmatch.fnmatch(file, pattern) for each in mutants_of_file(file)]


def read_list():
    """The names of the listed mutants. Fails for a line without a reason, and for a mutant that the code does not have."""
    lines = [line for line in LIST.read_text().splitlines() if line and not line.startswith("#")]
    known = {each.name for each in all_mutants("*")}
    wrong = [line for line in lines if "  // " not in line or line.partition("  // ")[0] not in known]
    if wrong:
        sys.exit("\n".join(["listed without a reason, or not in the code any more:", *wrong]))
    return {line.partition("  // ")[0] for line in lines}


def succeeds(command, limit):
    with subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True) as run:
        try:
            return run.wait(limit) == 0
        except subprocess.TimeoutExpired:
            subprocess.run(["pkill", "-KILL", "-s", str(run.pid)], check=False)
            return False


def prepare():
    shutil.rmtree(COPY, ignore_errors=True)
    listed = subprocess.run(["git", "ls-files"], cwd=ROOT, check=True, capture_output=True, text=True).stdout
    for name in listed.splitlines():
        target = COPY / name
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(ROOT / name, target)  # newer than any object that an interrupted run left of a mutant
    # Without debug information and warnings, which take most of the time that a build of one file takes.
    subprocess.run(["cmake", "-G", "Ninja", "-S", COPY, "-B", BUILD, "-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O0 -w",
                    "-DOV_BUILD_BENCHMARKS=OFF", "-DOV_BUILD_EXAMPLES=OFF"], check=True, stdout=subprocess.DEVNULL)


def build(program):
    return succeeds(["cmake", "--build", BUILD, "--target", f"{program}_tests"], BUILD_LIMIT)


def run(program):
    return succeeds([BUILD / f"tests/{program}/{program}_tests", "--gtest_fail_fast", "--gtest_filter=-DeepPlans.*"],
                    TEST_LIMIT)


def killer(file=""):
    """What finds the fault that is in the tree: "compiler", the name of a test program, or nothing."""
    for program in sorted(PROGRAMS, key=lambda name: not file.startswith(name)):
        if not build(program):
            return "compiler"
        if not run(program):
            return program
    return None


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--list", action="store_true", help="only print the mutants")
    parser.add_argument("--listed", action="store_true", help="only the mutants of the list")
    parser.add_argument("--files", default="*", metavar="PATTERN", help="only these, for example 'values/*'")
    parser.add_argument("--every", type=int, default=1, metavar="N", help="only every N-th mutant")
    options = parser.parse_args()
    listed = read_list()
    mutants = [each for each in all_mutants(options.files) if not options.listed or each.name in listed][:: options.every]
    if options.list:
        print(*(each.name for each in mutants), sep="\n")
        return 0

    prepare()
    if killer() is not None:
        sys.exit("the tests fail on the tree as it is")
    killed = {}
    surprises = 0
    for each in mutants:
        path = COPY / SOURCES / each.file
        text = path.read_text()
        lines = text.splitlines()
        lines[each.number - 1] = each.new
        path.write_text("\n".join(lines) + "\n")
        found = killer(each.file)
        path.write_text(text)
        if found == "compiler":
            continue
        killed.setdefault(each.file, []).append(found is not None)
        if (found is None) != (each.name in listed):
            surprises += 1
            print(f"killed, but listed: {each.name}" if found else f"survived, not listed: {each.name}", flush=True)
    for file, results in killed.items():
        print(f"{file}: {sum(results)} of {len(results)}")
    results = [each for of_file in killed.values() for each in of_file]
    share = 100 * sum(results) / max(1, len(results))
    print(f"mutants killed: {sum(results)} of {len(results)} ({share:.1f} %)")
    return 1 if surprises else 0


if __name__ == "__main__":
    sys.exit(main())
