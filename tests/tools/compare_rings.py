"""Compiles a program with rings and without the plugin and compares what it does.

    compare_rings.py --clang CLANG --plugin FILE --include DIR --scratch DIR
                     [--flag FLAG ...] [--ring NAME ...] [--aligned NAME ...]
                     [--no-ring NAME ...] SOURCE ...

The reference is the program compiled by the plain compiler at -O2. Every build
with the plugin, at each level from 0 to 4 and each of -O1, -O2, -O3 and -Os,
must print the same and exit with the same status. The sources make one program;
CLANG is clang or clang++.

A pass that does nothing keeps every program intact, so the test also says what
has to happen: --ring NAME, that the symbol NAME is rebuilt as a ring in every
one of these builds, as told by the plugin's remarks. --no-ring NAME says never,
and that it is rebuilt as a chain never either; --chain-at-most NAME leaves it the
chain. Other functions are free.

Prints the first difference it finds, and the command that shows it, and exits
with 1.
"""

import argparse
import itertools
import re
import sys

from programs import Program

LEVELS = "01234"
OPT_LEVELS = ("O1", "O2", "O3", "Os")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--clang", required=True)
    parser.add_argument("--plugin", required=True)
    parser.add_argument("--include", required=True)
    parser.add_argument("--scratch", required=True)
    parser.add_argument("--flag", action="append", default=[])
    parser.add_argument("--ring", action="append", default=[])
    parser.add_argument("--aligned", action="append", default=[])
    parser.add_argument("--no-ring", action="append", default=[])
    parser.add_argument("--chain-at-most", action="append", default=[])
    parser.add_argument("sources", nargs="+")
    args = parser.parse_args()
    if not (args.ring or args.aligned or args.no_ring or args.chain_at_most):
        sys.exit("compare_rings.py: nothing is expected; say --ring NAME,"
                 " --aligned NAME or --no-ring NAME")

    program = Program([args.clang, "-I", args.include, *args.flag],
                      args.sources, args.scratch)

    for level, opt in itertools.product(LEVELS, OPT_LEVELS):
        build = program.build(args.plugin, level, opt)
        shapes = dict(re.findall(
            r"remark: '(\S+)' rebuilt as a (ring|chain) of"
            r"(?!.*by the automatic policy)", build.remarks))
        aligned = re.findall(r"remark: '(\S+)' rebuilt as a ring of \d+ copies, "
                             r"[a-z ]+, one for each remainder", build.remarks)
        for name in args.aligned:
            if name not in aligned:
                build.fail(f"does not align '{name}'")
        for name in args.ring:
            if shapes.get(name) != "ring":
                build.fail(f"makes no ring of '{name}'")
        for name in args.no_ring:
            if name in shapes:
                build.fail(f"makes a {shapes[name]} of '{name}'")
        for name in args.chain_at_most:
            if shapes.get(name) == "ring":
                build.fail(f"makes a ring of '{name}'")
        build.check_behaviour()


main()
