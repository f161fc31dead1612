"""Does a plan that was written and is obeyed make the same object again?

    round_trip.py --clang CLANG --plugin FILE --scratch DIR [--levels O2,O3]
                  [--jobs N] [--lto full|thin] [--lld LLD] [--flags=FLAGS] SOURCE ...

Compiles every source three times at every level: without plans, writing a plan
and obeying it. All sources of one level write to one plan file, at the same time
with --jobs. The objects have to be the same, and nothing may be complained about.
With --lto each source is linked as a program, and it is the programs that are
compared; its plan holds what compiler and linker have decided.

Prints the sources that differ, and how many were compared and how many functions
were planned; exits with 1 if any differ.
"""

import argparse
import shlex
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path


class Builder:
    def __init__(self, args):
        self.args = args
        self.plugin = [f"-fpass-plugin={args.plugin}", "-Xclang", "-load",
                       "-Xclang", args.plugin]

    def build(self, source, level, output, option):
        """Builds `output`; returns what was complained about."""
        args = self.args
        command = [args.clang, f"-{level}", *self.plugin, *shlex.split(args.flags)]
        if option:
            command += ["-mllvm", option]
        if args.lto:
            command += [f"-flto={args.lto}", f"--ld-path={args.lld}",
                        f"-Wl,-mllvm,-load={args.plugin}",
                        f"-Wl,--load-pass-plugin={args.plugin}", "-lm"]
            if option:
                command += [f"-Wl,-mllvm,{option}"]
        else:
            command.append("-c")
        done = subprocess.run([*command, source, "-o", str(output)],
                              capture_output=True, text=True)
        if done.returncode:
            return f"{shlex.join(map(str, done.args))} failed:\n{done.stderr}"
        return done.stderr

    def write(self, source, level, folder, plan):
        """Builds without plans and writing one; returns a complaint or nothing."""
        plain, written = folder / "plain", folder / "written"
        said = self.build(source, level, plain, "")
        said += self.build(source, level, written,
                           f"-inlinerecursion-write-plan={plan}")
        if not said and plain.read_bytes() != written.read_bytes():
            said = "writing a plan changes the object"
        return said

    def obey(self, source, level, folder, plan):
        said = self.build(source, level, folder / "obeyed",
                          f"-inlinerecursion-plan={plan}")
        if not said and ((folder / "plain").read_bytes()
                         != (folder / "obeyed").read_bytes()):
            said = "obeying its plan changes the object"
        return said


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--clang", required=True)
    parser.add_argument("--plugin", required=True)
    parser.add_argument("--scratch", required=True, type=Path)
    parser.add_argument("--levels", default="O2,O3")
    parser.add_argument("--jobs", type=int, default=1)
    parser.add_argument("--lto", choices=("full", "thin"))
    parser.add_argument("--lld", default="/usr/lib/llvm-16/bin/ld.lld")
    parser.add_argument("--flags", default="")
    parser.add_argument("sources", nargs="+")
    args = parser.parse_args()
    builder = Builder(args)
    wrong = planned = 0
    for level in args.levels.split(","):
        plan = args.scratch / f"{level}.plan"
        plan.unlink(missing_ok=True)
        folders = []
        for number, source in enumerate(args.sources):
            folders.append(args.scratch / f"{level}-{number}")
            folders[-1].mkdir(parents=True, exist_ok=True)
        for step in (builder.write, builder.obey):
            with ThreadPoolExecutor(args.jobs) as pool:
                told = pool.map(lambda pair: step(pair[0], level, pair[1], plan),
                                zip(args.sources, folders))
                for source, said in zip(args.sources, told):
                    if said:
                        print(f"-{level} {source}: {said}")
                        wrong += 1
        if plan.exists():
            planned += plan.read_text().count(" plan: ")
    print(f"{len(args.sources)} sources, {planned} plans, {wrong} complaints")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
