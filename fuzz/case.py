"""Programs in a directory: how they are compiled and run, within limits.

Limits are set by prlimit, and not by Python between fork and exec: only so can
children be started by vfork, which is worth a few milliseconds each. Time is
that of the processor, so that a busy machine makes no failures; what sleeps
for ever is ended by the clock. Sanitizers need more address space than any
limit.
"""

import os
import signal
import subprocess
import threading

BIN = "/usr/lib/llvm-16/bin"
MEMORY_LIMIT = 6_000_000 * 1024
CLOCK = 20  # how much slower the clock may be than the processor
OUT_OF_TIME = "CPU time limit exceeded"
COMPILE_SECONDS = 40
RUN_SECONDS = 10
# What more programs in one file may add to both.
MORE_COMPILE_SECONDS = 4
MORE_RUN_SECONDS = 1
LINK = [f"--ld-path={BIN}/ld.lld"]

stopping = threading.Event()
living = set()  # processes, to be ended with the run


class Failure(Exception):
    """Something went wrong; kind is a word, commands show it."""

    def __init__(self, kind, commands, detail, lines=()):
        super().__init__(kind)
        self.kind, self.commands, self.detail = kind, commands, detail
        self.lines = lines  # numbers of the lines that differ, if any are known


def execute(command, seconds, limited=True, directory=None):
    """(status, stdout, stderr); the status is "timeout" after so long."""
    memory = [f"--as={MEMORY_LIMIT}"] if limited else []
    process = subprocess.Popen(
        ["prlimit", f"--cpu={seconds}:{seconds + 5}", "--core=0", *memory,
         *command],
        stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
        stderr=subprocess.PIPE, cwd=directory, start_new_session=True)
    living.add(process)
    try:
        out, err = process.communicate(timeout=CLOCK * seconds)
        err = err.decode(errors="replace")
        # A driver reports it of the compiler that it has started.
        if process.returncode == -signal.SIGXCPU or (
                process.returncode != 0 and OUT_OF_TIME in err):
            return "timeout", b"", ""
        return process.returncode, out, err
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        process.communicate()
        return "timeout", b"", ""
    finally:
        living.discard(process)


def stop(*_):
    """Ends the run early; the closing line still comes."""
    stopping.set()
    for process in list(living):
        if process.poll() is None:
            os.killpg(process.pid, signal.SIGKILL)


class Case:
    """One program, or a bundle of them, in a directory."""

    def __init__(self, directory, files, programs=1):
        self.directory = directory
        self.sources = sorted(files)
        self.cxx = self.sources[0].endswith("cpp")
        self.compile_seconds = COMPILE_SECONDS + \
            (programs - 1) * MORE_COMPILE_SECONDS
        self.run_seconds = RUN_SECONDS + (programs - 1) * MORE_RUN_SECONDS
        for name, text in files.items():
            with open(os.path.join(directory, name), "w") as file:
                file.write(text)

    def compiler(self):
        if self.cxx:
            return [f"{BIN}/clang++", "-std=gnu++17", "-w"]
        return [f"{BIN}/clang", "-std=gnu11", "-w"]

    def build(self, flags, program, limited=True):
        """stderr of the compiler."""
        return self.compile([[*self.compiler(), *flags, *self.sources, *LINK,
                              "-lm", "-o", program]], limited)

    def compile(self, commands, limited=True):
        err = ""
        for command in commands:
            status, _, text = execute(command, self.compile_seconds, limited,
                                      self.directory)
            err += text
            if status == "timeout":
                raise Failure("compile-timeout", commands, "")
            if status != 0:
                kind = "crash" if (
                    status < 0 or any(sign in text for sign in (
                        "PLEASE submit", "Broken", "LLVM ERROR",
                        "Sanitizer", "runtime error"))) else "compile-error"
                raise Failure(kind, commands, text[-4000:])
        return err

    def behaviour(self, program, limited=True, factor=1):
        """(status, output), and what it wrote to stderr."""
        status, out, err = execute([os.path.join(self.directory, program)],
                                   factor * self.run_seconds, limited,
                                   self.directory)
        return (status, out), err

    def baseline(self, levels=("-O0",)):
        """What the program does when compiled plainly at these levels. Raises
        Failure of kind "generator" if that is not clear."""
        seen = []
        for level in levels:
            try:
                self.build([level], "plain")
            except Failure as failure:
                raise Failure("generator", failure.commands, failure.detail)
            seen.append(self.behaviour("plain")[0])
        if any(one != seen[0] for one in seen) or seen[0][0] != 0:
            raise Failure("generator",
                          [[*self.compiler(), level, *self.sources]
                           for level in levels], f"{levels}: {seen}")
        return seen[0]

    def sanitize(self, wanted):
        flags = ["-O1", "-fsanitize=address,undefined",
                 "-fno-sanitize=function", "-fno-sanitize-recover=all"]
        command = [*self.compiler(), *flags, *self.sources]
        try:
            self.build(flags, "sanitized", limited=False)
        except Failure as failure:
            raise Failure("generator", failure.commands, failure.detail)
        got, err = self.behaviour("sanitized", limited=False, factor=3)
        if got != wanted:
            raise Failure("generator", [command], f"{got[0]} {err[-2000:]}")
