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
import shlex
import subprocess
import sys

LEVELS = "01234"
OPT_LEVELS = ("O1", "O2", "O3")
RUN_LIMIT_SECONDS = 60


def run(command):
    """Runs a compiler; it has to succeed and may only emit remarks."""
    done = subprocess.run(command, capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit(f"compare.py: failed: {shlex.join(command)}\n{done.stderr}")
    return done.stderr


def behaviour(program):
    """What can be seen of a run; a signal shows as a negative status."""
    done = subprocess.run([program], capture_output=True,
                          timeout=RUN_LIMIT_SECONDS)
    return done.stdout, done.stderr, done.returncode


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
    compiler = [os.path.join(args.bin, "clang" if is_c else "clang++"), "-w"]
    if args.std:
        compiler.append(f"-std={args.std}")
    plugin = [f"-fpass-plugin={args.plugin}", "-Xclang", "-load", "-Xclang",
              args.plugin, "-Rpass=inlinerecursion"]

    os.makedirs(args.scratch, exist_ok=True)
    reference = os.path.join(args.scratch, "reference")
    run([*compiler, "-O2", *args.sources, "-lm", "-o", reference])
    wanted = behaviour(reference)
    if not wanted[0]:
        sys.exit("compare.py: the program prints nothing to compare")

    for level, opt in itertools.product(LEVELS, OPT_LEVELS):
        program = os.path.join(args.scratch, f"{opt}-level{level}")
        command = [*compiler, *plugin, f"-{opt}", "-mllvm",
                   f"-inline-recursion-opt-level={level}", *args.sources,
                   "-lm", "-o", program]
        chains = set(re.findall(r"remark: '(\S+)' rebuilt as a chain",
                                run(command)))
        if chains != expected_chains[level]:
            sys.exit(f"compare.py: level {level} at -{opt} chained"
                     f" {sorted(chains)}, not {sorted(expected_chains[level])}\n"
                     f"{shlex.join(command)}")
        got = behaviour(program)
        if got != wanted:
            sys.exit(f"compare.py: level {level} at -{opt} changes what the"
                     f" program does\n{shlex.join(command)}\n"
                     f"plain -O2: {wanted}\nwith the plugin: {got}")


main()
