"""Checks that the plugin's output depends on its input and on nothing else.

    deterministic.py twice --bin DIR --plugin FILE --scratch DIR SOURCE ...
    deterministic.py same  --bin DIR --plugin FILE --scratch DIR SOURCE ...

`twice` runs the plugin's pipeline twice over each source's module, at each
level: the second run must change nothing. Each run has a budget of copies of
its own, which is made large enough here for the first one.

`same` compiles each source again and again, to IR by opt and to an object file
by clang, without and with debug information: twice in the same way, with
addresses that are not randomised (where the system lets one ask for that), and
in another directory. The files must be the same, bit for bit.

A pass that does nothing passes both, so each also says how many copies (or
rebuilt functions) there were, for a test to check that there were some. Prints
each difference and the command that shows it, and exits with 1 if there was
any.
"""

import argparse
import concurrent.futures
import difflib
import os
import re
import shlex
import shutil
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(
    os.path.abspath(__file__))))
INCLUDE = [f"-I{ROOT}/include", f"-I{ROOT}/benchmarks/kernels"]
PREPARE = "function(sroa,early-cse,simplifycfg)"
LEVELS = range(5)


class Tools:
    def __init__(self, args):
        self.bin, self.plugin = args.bin, args.plugin

    def clang(self, source):
        name = "clang" if source.endswith(".c") else "clang++"
        return [f"{self.bin}/{name}", "-w", *INCLUDE]

    def module(self, source, path, debug=()):
        run([*self.clang(source), *debug, "-O2", "-Xclang",
             "-disable-llvm-passes", "-S", "-emit-llvm", source, "-o", path])

    def opt(self, level, passes):
        return [f"{self.bin}/opt", f"-load={self.plugin}",
                f"-load-pass-plugin={self.plugin}",
                f"-inline-recursion-opt-level={level}",
                "-maximum-clone-limit-inline-recursion=1000",
                f"-passes={passes}"]


def run(command, directory=None):
    done = subprocess.run(command, capture_output=True, cwd=directory)
    if done.returncode != 0:
        sys.exit(f"deterministic.py: failed: {shlex.join(command)}\n"
                 f"{done.stderr.decode()}")
    return done


def rebuilt(text):
    return len(re.findall(rb"^define .*\.recurse\.clone\b", text, re.M))


def check_twice(tools, source, scratch):
    """(number of copies, texts of differences)"""
    path = os.path.join(scratch, source.replace("/", "_") + ".ll")
    tools.module(source, path)
    copies, problems = 0, []
    for level in LEVELS:
        pipeline = f"inlinerecursion-pipeline<level={level}>"
        command = [*tools.opt(level, f"{PREPARE},{pipeline},print,{pipeline}"),
                   "-S", path]
        done = run(command)
        copies += rebuilt(done.stderr)
        if done.stderr != done.stdout:
            lines = difflib.unified_diff(
                done.stderr.decode().split("\n"),
                done.stdout.decode().split("\n"), "once", "twice", lineterm="")
            problems.append("\n".join([shlex.join(command),
                                       *list(lines)[:40]]))
    return copies, problems


def object_commands(tools, level, debug):
    """What makes, of x.c or x.cpp in the current directory, a file."""
    def opt(name):
        return [*tools.opt(level, "default<O2>"),
                "-pass-remarks=inlinerecursion", "-S", name + ".ll", "-o",
                "out.ll"]

    def clang(name):
        return [*tools.clang(name), *debug, "-O2",
                "-fdebug-compilation-dir=.", f"-fpass-plugin={tools.plugin}",
                "-Xclang", "-load", "-Xclang", tools.plugin, "-mllvm",
                f"-inline-recursion-opt-level={level}", "-c", name, "-o",
                "out.o"]

    return (("out.ll", opt), ("out.o", clang))


def not_randomised():
    """The command in front of another that keeps its addresses the same."""
    command = ["setarch", "-R"]
    works = shutil.which("setarch") and subprocess.run(
        [*command, "true"], capture_output=True).returncode == 0
    return command if works else []


def check_same(tools, source, scratch):
    """(number of functions rebuilt by opt, texts of differences)"""
    name = "x" + os.path.splitext(source)[1]
    copies, problems = 0, []
    for debug in ((), ("-g",)):
        directories = []
        for number in ("one", "another/and/deeper"):
            directory = os.path.join(scratch, os.path.basename(source), number)
            os.makedirs(directory, exist_ok=True)
            shutil.copy(source, os.path.join(directory, name))
            directories.append(directory)
        here, there = directories
        run([*tools.clang(name), *debug, "-O2", "-Xclang",
             "-disable-llvm-passes", "-fdebug-compilation-dir=.", "-S",
             "-emit-llvm", name, "-o", name + ".ll"], here)
        shutil.copy(os.path.join(here, name + ".ll"), there)
        for level in (0, 3) if not debug else (0,):
            for out, make in object_commands(tools, level, debug):
                command = make(name)
                seen = []
                for before, directory in (([], here), ([], here),
                                          (not_randomised(), here),
                                          ([], there)):
                    done = run([*before, *command], directory)
                    with open(os.path.join(directory, out), "rb") as file:
                        seen.append(file.read())
                copies += len(re.findall(rb"rebuilt as", done.stderr))
                if any(one != seen[0] for one in seen):
                    problems.append(f"{here}: {shlex.join(command)}")
    return copies, problems


def main():
    parser = argparse.ArgumentParser(prog="deterministic.py")
    parser.add_argument("what", choices=("twice", "same"))
    for option in ("--bin", "--plugin", "--scratch"):
        parser.add_argument(option, required=True)
    parser.add_argument("sources", nargs="+", metavar="SOURCE")
    args = parser.parse_args()

    shutil.rmtree(args.scratch, ignore_errors=True)
    os.makedirs(args.scratch)
    tools = Tools(args)
    check = {"twice": check_twice, "same": check_same}[args.what]
    copies, problems = 0, []
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        for made, found in pool.map(
                lambda source: check(tools, source, args.scratch),
                args.sources):
            copies += made
            problems += found
    for problem in problems:
        print(f"DIFFERENT: {problem}")
    made = "copies" if args.what == "twice" else "rebuilt"
    print(f"{len(args.sources)} sources, {copies} {made}, "
          f"{len(problems)} differences")
    sys.exit(1 if problems else 0)


main()
