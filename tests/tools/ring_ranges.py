"""Regenerates the tables of docs/ring-ranges.md with opt and compares them.

    ring_ranges.py [--update] DOCUMENT OPT -load-pass-plugin=FILE [OPTION ...]

Whether a recursion over `n % K` becomes a ring, and of how many copies, hangs on
the range that ScalarEvolution knows for the remainder, which is not always the
one that a reader expects. The document shows it; this script keeps it true.

All functions of all tables stand in one module, each a recursion that requests a
ring and takes one remainder in its entry block. Their ranges are what
`print<scalar-evolution>` prints ("U: [0,4)"), their depths what the plugin says
in its remarks ("a ring of 4 copies"), with a clone limit that refuses nobody.

A table in the document starts with its header line and ends at the first line
that is no row. --update writes the document instead of comparing it. Exits with
1, and shows the difference, if a table is missing or is not what opt says.
"""

import argparse
import difflib
import re
import subprocess
import sys

OPERATIONS = ("urem", "srem")
WIDTHS = (1, 2, 3, 4, 8, 16, 32, 33, 64, 65, 128, 256)
CONSTANTS = range(1, 17)


def function(operation, width, constant):
    name = f"{operation}.i{width}.{constant}"
    return name, f"""
define i{width} @{name}(i{width} %n) "specialize-inline-recursion-function" {{
  %rem = {operation} i{width} %n, {constant}
  %r = call i{width} @{name}(i{width} %rem)
  ret i{width} %r
}}
"""


def run(command, text):
    done = subprocess.run(command, input=text, capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit(f"ring_ranges.py: {' '.join(command)} failed:\n{done.stderr}")
    return done.stderr


def measure(opt, cases):
    """{case: (range as text, depth or None)}."""
    names = {}
    text = ""
    for case in cases:
        names[case], body = function(*case)
        text += body
    opt = [*opt, "-disable-output", "-"]
    printed = run([*opt, "-passes=print<scalar-evolution>"], text)
    remarks = run([*opt, "-passes=inlinerecursion",
                   "-maximum-clone-limit-inline-recursion=100000",
                   "-pass-remarks=inlinerecursion"], text)
    ranges = dict(re.findall(
        r"expressions for: @(\S+)\n  %rem = [^\n]*\n  -->.*? U: (\S+) S: ",
        printed))
    depths = dict(re.findall(r"'(\S+)' rebuilt as a ring of (\d+)", remarks))
    return {case: (ranges[name], depths.get(name))
            for case, name in names.items()}


def cell(range_and_depth):
    text, depth = range_and_depth
    if text == "full-set":
        text = "everything"
    return f"{text} | {depth or 'refused'}"


def tables(opt):
    """{header line: rows}."""
    # A literal that the type cannot write is no IR.
    def fits(width, constant):
        return constant < 2 ** width

    cases = {(operation, 32, constant)
             for operation in OPERATIONS for constant in CONSTANTS}
    cases |= {(operation, width, constant) for operation in OPERATIONS
              for width in WIDTHS for constant in (1, 2, 4)
              if fits(width, constant)}
    measured = measure(opt, sorted(cases))
    by_constant = [
        f"| {constant} | " + " | ".join(
            cell(measured[operation, 32, constant])
            for operation in OPERATIONS) + " |"
        for constant in CONSTANTS]
    by_width = [
        f"| i{width} | {constant} | " + " | ".join(
            cell(measured[operation, width, constant])
            for operation in OPERATIONS) + " |"
        for width in WIDTHS for constant in (1, 2, 4) if fits(width, constant)]
    return {
        "| K | `urem i32 %n, K` | copies | `srem i32 %n, K` | copies |":
            ["|---|---|---|---|---|", *by_constant],
        "| type | K | `urem %n, K` | copies | `srem %n, K` | copies |":
            ["|---|---|---|---|---|---|", *by_width],
    }


def rewrite(document, wanted):
    """The document with the rows of its tables replaced."""
    lines = document.splitlines()
    for header, rows in wanted.items():
        if header not in lines:
            sys.exit(f"ring_ranges.py: no table starts with: {header}")
        start = end = lines.index(header) + 1
        while end < len(lines) and lines[end].startswith("|"):
            end += 1
        lines[start:end] = rows
    return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--update", action="store_true")
    parser.add_argument("document")
    parser.add_argument("opt", nargs=argparse.REMAINDER)
    args = parser.parse_args()

    if not args.opt:
        parser.error("no opt is given, with the plugin loaded into it")
    with open(args.document, encoding="utf-8") as file:
        document = file.read()
    wanted = rewrite(document, tables(args.opt))
    if args.update:
        with open(args.document, "w", encoding="utf-8") as file:
            file.write(wanted)
        return
    difference = list(difflib.unified_diff(
        document.splitlines(), wanted.splitlines(), args.document, "opt",
        lineterm=""))
    if difference:
        sys.exit("\n".join(difference))


main()
