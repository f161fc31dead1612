"""Compiles a program with and without the automatic policy's copies and compares
what it does.

    compare_auto.py --clang CLANG --plugin FILE --scratch DIR [--option OPTION ...]
                    [--chain NAME ...] [--leaf-chain NAME ...] [--ring NAME ...]
                    [--split NAME ...] [--passed-sum NAME ...] SOURCE ...

The reference is the program compiled by the plain compiler at -O2. Every build
with the plugin, at the levels 0 and 4 and each of -O1, -O2 and -O3, must print
the same and exit with the same status. CLANG is clang or clang++; the sources
make one program. --option is for the plugin, as `-inlinerecursion-auto-copies=3`.

A pass that does nothing keeps every program intact, so the test also says what
has to happen: at level 0, where the pass itself takes little away from the
policy, exactly the symbols --ring NAME are rebuilt as rings by the policy, the
symbols --chain NAME as chains, the symbols --leaf-chain NAME as leaf chains, the
symbols --split NAME as splits, and of all these the symbols --passed-sum NAME hand
their sums on, as told by the plugin's remarks.

Programs run on 8 MB of stack, whatever the limit of the shell is. Prints the
first difference and the command that shows it, and exits with 1.
"""

import argparse
import itertools
import os
import re
import resource
import shlex
import subprocess
import sys

# How a remark goes on that says so.
TOLD_AS = {
    **{shape: shape.replace("-", " ") + r"(?: of \d+ cop\w+)? by the automatic"
       for shape in ("ring", "chain", "leaf-chain", "split")},
    "passed-sum": r".* by the automatic .*, handing its sum on",
}
LEVELS = (0, 4)
OPT_LEVELS = ("O1", "O2", "O3")
MEMORY_LIMIT_BYTES = 6_000_000_000
STACK_LIMIT_BYTES = 8 << 20
COMPILE_LIMIT_SECONDS = 60
RUN_LIMIT_SECONDS = 60


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS,
                       (MEMORY_LIMIT_BYTES, MEMORY_LIMIT_BYTES))


def limit_stack():
    _, most = resource.getrlimit(resource.RLIMIT_STACK)
    if most != resource.RLIM_INFINITY and most < STACK_LIMIT_BYTES:
        sys.exit("compare_auto.py: programs need 8 MB of stack: raise the hard"
                 " limit (ulimit -Hs)")
    resource.setrlimit(resource.RLIMIT_STACK, (STACK_LIMIT_BYTES, most))


def compile_program(command):
    """Runs a compiler, which has to succeed, and returns its remarks."""
    try:
        done = subprocess.run(command, capture_output=True, text=True,
                              preexec_fn=limit_memory,
                              timeout=COMPILE_LIMIT_SECONDS)
    except subprocess.TimeoutExpired:
        sys.exit("compare_auto.py: not done after"
                 f" {COMPILE_LIMIT_SECONDS} s: {shlex.join(command)}")
    if done.returncode != 0:
        sys.exit(f"compare_auto.py: failed: {shlex.join(command)}\n"
                 f"{done.stderr}")
    return done.stderr


def behaviour(program):
    """What can be seen of a run; a signal shows as a negative status."""
    done = subprocess.run([program], capture_output=True,
                          preexec_fn=limit_stack, timeout=RUN_LIMIT_SECONDS)
    return done.stdout, done.stderr, done.returncode


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--clang", required=True)
    parser.add_argument("--plugin", required=True)
    parser.add_argument("--scratch", required=True)
    parser.add_argument("--option", action="append", default=[])
    for shape in TOLD_AS:
        parser.add_argument(f"--{shape}", action="append", default=[], dest=shape)
    parser.add_argument("sources", nargs="+")
    args = parser.parse_args()
    wished = {shape: set(getattr(args, shape)) for shape in TOLD_AS}
    if not any(wished.values()):
        parser.error(" or ".join(f"--{shape}" for shape in TOLD_AS)
                     + " says what the policy is to build")

    compiler = [args.clang, "-w"]
    plugin = [f"-fpass-plugin={args.plugin}", "-Xclang", "-load", "-Xclang",
              args.plugin, "-Rpass=inlinerecursion",
              # Below -O3 the policy has a twelfth of these.
              "-mllvm", "-inlinerecursion-auto-function-growth=10800",
              "-mllvm", "-inlinerecursion-auto-module-growth=64000"]
    for option in args.option:
        plugin += ["-mllvm", option]
    os.makedirs(args.scratch, exist_ok=True)
    reference = os.path.join(args.scratch, "reference")
    compile_program([*compiler, "-O2", *args.sources, "-o", reference])
    wanted = behaviour(reference)
    if not wanted[0] or wanted[2] < 0:
        sys.exit("compare_auto.py: the plain program prints nothing to compare,"
                 f" or crashes: {wanted}")

    for level, opt in itertools.product(LEVELS, OPT_LEVELS):
        program = os.path.join(args.scratch, f"{opt}-level{level}")
        command = [*compiler, *plugin, f"-{opt}", "-mllvm",
                   f"-inline-recursion-opt-level={level}", *args.sources,
                   "-o", program]
        told = compile_program(command)
        for shape, expected in wished.items():
            built = set(re.findall(
                rf"remark: '(\S+)' rebuilt as a {TOLD_AS[shape]}", told))
            if level == 0 and built != expected:
                sys.exit(f"compare_auto.py: at -{opt} the policy made a {shape}"
                         f" of {sorted(built)}, not {sorted(expected)}\n"
                         f"{shlex.join(command)}")
        got = behaviour(program)
        if got != wanted:
            sys.exit(f"compare_auto.py: level {level} at -{opt} changes what the"
                     f" program does\n{shlex.join(command)}\n"
                     f"plain -O2: {wanted}\nwith the plugin: {got}")


main()
