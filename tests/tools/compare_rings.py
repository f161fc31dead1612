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

Compilers run with a limit on memory and time, as inlining around a ring may grow
without bounds if the plan of it is wrong. Prints the first difference it finds,
and the command that shows it, and exits with 1.
"""

import argparse
import itertools
import os
import re
import resource
import shlex
import subprocess
import sys

LEVELS = "01234"
OPT_LEVELS = ("O1", "O2", "O3", "Os")
MEMORY_LIMIT_BYTES = 6_000_000_000
COMPILE_LIMIT_SECONDS = 60
RUN_LIMIT_SECONDS = 60


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS,
                       (MEMORY_LIMIT_BYTES, MEMORY_LIMIT_BYTES))


def run(command):
    """Runs a compiler; it has to succeed and may only emit remarks."""
    try:
        done = subprocess.run(command, capture_output=True, text=True,
                              preexec_fn=limit_memory,
                              timeout=COMPILE_LIMIT_SECONDS)
    except subprocess.TimeoutExpired:
        sys.exit("compare_rings.py: not done after"
                 f" {COMPILE_LIMIT_SECONDS} s: {shlex.join(command)}")
    if done.returncode != 0:
        sys.exit(f"compare_rings.py: failed: {shlex.join(command)}\n"
                 f"{done.stderr}")
    return done.stderr


def behaviour(program):
    """What can be seen of a run; a signal shows as a negative status."""
    done = subprocess.run([program], capture_output=True,
                          timeout=RUN_LIMIT_SECONDS)
    return done.stdout, done.stderr, done.returncode


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

    compiler = [args.clang, "-w", "-I", args.include, *args.flag]
    plugin = [f"-fpass-plugin={args.plugin}", "-Xclang", "-load", "-Xclang",
              args.plugin, "-Rpass=inlinerecursion"]
    os.makedirs(args.scratch, exist_ok=True)
    reference = os.path.join(args.scratch, "reference")
    run([*compiler, "-O2", *args.sources, "-o", reference])
    wanted = behaviour(reference)
    if not wanted[0]:
        sys.exit("compare_rings.py: the program prints nothing to compare")

    for level, opt in itertools.product(LEVELS, OPT_LEVELS):
        program = os.path.join(args.scratch, f"{opt}-level{level}")
        command = [*compiler, *plugin, f"-{opt}", "-mllvm",
                   f"-inline-recursion-opt-level={level}", *args.sources,
                   "-o", program]
        remarks = run(command)
        shapes = dict(re.findall(
            r"remark: '(\S+)' rebuilt as a (ring|chain) of"
            r"(?!.*by the automatic policy)", remarks))
        aligned = re.findall(r"remark: '(\S+)' rebuilt as a ring of \d+ copies, "
                             r"[a-z ]+, one for each remainder", remarks)
        for name in args.aligned:
            if name not in aligned:
                sys.exit(f"compare_rings.py: '{name}' is not aligned at level"
                         f" {level}, -{opt}\n{shlex.join(command)}\n{remarks}")
        for name in args.ring:
            if shapes.get(name) != "ring":
                sys.exit(f"compare_rings.py: '{name}' is no ring at level"
                         f" {level}, -{opt}\n{shlex.join(command)}\n{remarks}")
        for name in args.no_ring:
            if name in shapes:
                sys.exit(f"compare_rings.py: '{name}' is a {shapes[name]} at"
                         f" level {level}, -{opt}\n{shlex.join(command)}")
        for name in args.chain_at_most:
            if shapes.get(name) == "ring":
                sys.exit(f"compare_rings.py: '{name}' is a ring at"
                         f" level {level}, -{opt}\n{shlex.join(command)}")
        got = behaviour(program)
        if got != wanted:
            sys.exit(f"compare_rings.py: level {level} at -{opt} changes what"
                     f" the program does\n{shlex.join(command)}\n"
                     f"plain -O2: {wanted}\nwith the plugin: {got}")


main()
