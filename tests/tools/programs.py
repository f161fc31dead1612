"""Builds of a program that must do what the plain compiler makes of it at -O2.

For compare.py, compare_auto.py and compare_rings.py. Most builds of a program
come to the same machine code as another one, whose run then stands for theirs:
each source is compiled every time, but only what differs is linked and run.

Compilers run with a limit on memory and time, as inlining may grow without
bounds if the plan of it is wrong. Programs run on 8 MB of stack, whatever the
limit of the shell is. What goes wrong ends the script with the command that
shows it.
"""

import os
import resource
import shlex
import subprocess
import sys

MEMORY_LIMIT_BYTES = 6_000_000_000
STACK_LIMIT_BYTES = 8 << 20
COMPILE_LIMIT_SECONDS = 60
RUN_LIMIT_SECONDS = 60


def fail(message):
    sys.exit(f"{os.path.basename(sys.argv[0])}: {message}")


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS,
                       (MEMORY_LIMIT_BYTES, MEMORY_LIMIT_BYTES))


def limit_stack():
    _, most = resource.getrlimit(resource.RLIMIT_STACK)
    if most != resource.RLIM_INFINITY and most < STACK_LIMIT_BYTES:
        fail("programs need 8 MB of stack: raise the hard limit (ulimit -Hs)")
    resource.setrlimit(resource.RLIMIT_STACK, (STACK_LIMIT_BYTES, most))


def run_compiler(command):
    """Returns what it says; it has to succeed."""
    try:
        done = subprocess.run(command, capture_output=True, text=True,
                              preexec_fn=limit_memory,
                              timeout=COMPILE_LIMIT_SECONDS)
    except subprocess.TimeoutExpired:
        fail(f"not done after {COMPILE_LIMIT_SECONDS} s: "
             f"{shlex.join(command)}")
    if done.returncode != 0:
        fail(f"failed: {shlex.join(command)}\n{done.stderr}")
    return done.stderr


def behaviour(program):
    """What can be seen of a run; a signal shows as a negative status."""
    done = subprocess.run([program], capture_output=True,
                          preexec_fn=limit_stack, timeout=RUN_LIMIT_SECONDS)
    return done.stdout, done.stderr, done.returncode


class Build:
    """A build of a program; what the compiler says of it is in .remarks."""

    def __init__(self, program, name, options):
        self.program = program
        self.name = name
        self.path = os.path.join(program.scratch, name)
        self.command = [*program.compiler, *options, *program.sources, "-lm",
                        "-o", self.path]
        self.objects, self.remarks = [], ""
        for number, source in enumerate(program.sources):
            self.objects.append(f"{self.path}.{number}.o")
            self.remarks += run_compiler([*program.compiler, *options, "-c",
                                          source, "-o", self.objects[-1]])

    def fail(self, message):
        fail(f"{self.name} {message}\n{shlex.join(self.command)}\n"
             f"{self.remarks}")

    def behaviour(self):
        """Of this build or of one with the same machine code."""
        code = []
        for path in self.objects:
            with open(path, "rb") as file:
                code.append(file.read())
        key, known = tuple(code), self.program.behaviours
        if key not in known:
            run_compiler([self.program.compiler[0], *self.objects, "-lm", "-o",
                          self.path])
            known[key] = behaviour(self.path)
        return known[key]

    def check_behaviour(self):
        got = self.behaviour()
        if got != self.program.wanted:
            self.fail(f"changes what the program does\n"
                      f"plain -O2: {self.program.wanted}\n"
                      f"with the plugin: {got}")


class Program:
    """Some sources, and what the plain compiler makes of them."""

    def __init__(self, compiler, sources, scratch):
        self.compiler, self.sources = [*compiler, "-w"], sources
        self.scratch = scratch
        self.behaviours = {}  # by machine code
        os.makedirs(scratch, exist_ok=True)
        plain = Build(self, "plain-O2", ["-O2"])
        self.wanted = plain.behaviour()
        if not self.wanted[0] or self.wanted[2] < 0:
            plain.fail("prints nothing to compare, or crashes: "
                       f"{self.wanted}")

    def build(self, plugin, level, opt, options=()):
        """With the plugin, which is a path."""
        return Build(self, f"{opt}-level{level}",
                     [f"-fpass-plugin={plugin}", "-Xclang", "-load", "-Xclang",
                      plugin, "-Rpass=inlinerecursion", f"-{opt}", "-mllvm",
                      f"-inline-recursion-opt-level={level}", *options])
