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

Prints the first difference and the command that shows it, and exits with 1.
"""

import argparse
import itertools
import re

from programs import Program

# How a remark goes on that says so.
TOLD_AS = {
    **{shape: shape.replace("-", " ") + r"(?: of \d+ cop\w+)? by the automatic"
       for shape in ("ring", "chain", "leaf-chain", "split")},
    "passed-sum": r".* by the automatic .*, handing its sum on",
}
TOLD_AS = {shape: f"as a {told}" for shape, told in TOLD_AS.items()}
TOLD_AS["states"] = r"for \d+ states? of .* by the automatic"
LEVELS = (0, 4)
OPT_LEVELS = ("O1", "O2", "O3")


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

    # Below -O3 the policy has a third of the first.
    options = ["-mllvm", "-inlinerecursion-auto-function-growth=2700",
               "-mllvm", "-inlinerecursion-auto-module-growth=64000"]
    # Constants at calls are how these programs are written, and not what most of
    # them are about.
    if not wished["states"]:
        options += ["-mllvm", "-inlinerecursion-auto-state-growth=0"]
    for option in args.option:
        options += ["-mllvm", option]
    program = Program([args.clang], args.sources, args.scratch)

    for level, opt in itertools.product(LEVELS, OPT_LEVELS):
        # Below -O3 it has three fifths of this.
        body = 80 if opt == "O3" else 134
        build = program.build(
            args.plugin, level, opt,
            [*options, "-mllvm", f"-inlinerecursion-auto-body-size={body}"])
        for shape, expected in wished.items():
            built = set(re.findall(
                rf"remark: '(\S+)' rebuilt {TOLD_AS[shape]}", build.remarks))
            if level == 0 and built != expected:
                build.fail(f"has a {shape} of {sorted(built)} by the policy,"
                           f" not {sorted(expected)}")
        build.check_behaviour()


main()
