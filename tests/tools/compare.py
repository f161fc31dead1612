"""Compiles a program with and without the plugin and compares what it does.

    compare.py --bin DIR --plugin FILE --scratch DIR [--std STD]
               --chained NAME=LEVELS ... SOURCE ...

The reference is the program compiled by the plain compiler at -O2. Every build
with the plugin, at each level from 0 to 4 and each of -O1, -O2 and -O3, must
print the same and exit with the same status. C sources are compiled by clang
and anything else by clang++; several sources make one program.

A pass that does nothing keeps every program intact, so the test also says what
has to happen: --chained NAME=LEVELS, for example `fact=1234`, says that the
symbol NAME is chained at exactly these levels, as told by the plugin's remarks.
A function that is not named is chained never.

Prints the first difference it finds, and the command that shows it, and exits
with 1.
"""

import argparse
import itertools
import os
import re
import sys

from programs import Program

LEVELS = "01234"
OPT_LEVELS = ("O1", "O2", "O3")


def parse_chained(texts):
    """{level: set of names}, from the --chained arguments."""
    expected = {level: set() for level in LEVELS}
    for text in texts:
        match = re.fullmatch(rf"(\w+)=([{LEVELS}]+)", text)
        if not match:
            sys.exit(f"compare.py: --chained {text}: not of the form"
                     f" NAME=LEVELS with levels out of {LEVELS}")
        name, levels = match.groups()
        for level in levels:
            expected[level].add(name)
    return expected


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--bin", required=True)
    parser.add_argument("--plugin", required=True)
    parser.add_argument("--scratch", required=True)
    parser.add_argument("--std")
    parser.add_argument("--chained", action="append", required=True)
    parser.add_argument("sources", nargs="+")
    args = parser.parse_args()

    expected_chains = parse_chained(args.chained)
    is_c = all(source.endswith(".c") for source in args.sources)
    compiler = [os.path.join(args.bin, "clang" if is_c else "clang++")]
    if args.std:
        compiler.append(f"-std={args.std}")
    program = Program(compiler, args.sources, args.scratch)

    for level, opt in itertools.product(LEVELS, OPT_LEVELS):
        build = program.build(args.plugin, level, opt)
        chains = set(re.findall(r"remark: '(\S+)' rebuilt as a chain",
                                build.remarks))
        if chains != expected_chains[level]:
            build.fail(f"chained {sorted(chains)},"
                       f" not {sorted(expected_chains[level])}")
        build.check_behaviour()


main()
