"""Commands that are compared, and how they run.

Every job runs in a scratch directory of its own that holds nothing but links: the
plugin under one name whichever it is, a copy of the checkout's inputs, and what else
its commands read.
All paths in a command are relative to that directory, so both sides run the same
command to the letter, and nothing that they write can tell where a plugin came from.
"""

import hashlib
import os
import re
import subprocess
from dataclasses import dataclass
from pathlib import Path

BIN = Path("/usr/lib/llvm-16/bin")
PLUGIN = "./InlineRecursion-16.so"
MESSAGES = "messages.txt"
STEP_SECONDS = 300
TIMED_OUT = "timed out"
# Statuses that say nothing about the plugin: the machine is busy or out of memory,
# or somebody ended the command (SIGINT, SIGKILL, SIGTERM).
ACCIDENTS = (TIMED_OUT, "-2", "-9", "-15")

# Only what a compiler needs, so that nothing in the caller's environment, such as
# a path of headers, decides what is compared.
ENVIRONMENT = {"PATH": "/usr/bin:/bin", "LC_ALL": "C"}

# What a crash prints besides is the same each time, these addresses are not.
CRASH = b"PLEASE submit a bug report"
STACK = re.compile(rb"^ *#\d+ 0x.*\n?|0x[0-9a-f]+|\(\S+\+0x\S+\)", re.M)


class BadInput(Exception):
    """One line that says what is wrong and what to do."""


@dataclass(frozen=True)
class Job:
    """Commands that run one after the other, until one fails, and their files."""

    group: str  # the row of the summary
    input: str  # the name of what is compiled
    steps: tuple  # of commands, tuples of words
    outputs: tuple  # names of the files that they write
    reads: str  # a digest of all that they read


@dataclass(frozen=True)
class Side:
    """One of the two plugins."""

    name: str  # as the user gave it
    plugin: Path  # a copy that no build overwrites
    digest: str
    extra: tuple = ()  # options of LLVM for all its commands

    def commands(self, job):
        """The job's commands, with this side's own options."""
        return [add_options(step, self.extra) for step in job.steps]

    def key(self, job, tools):
        """What the outcome depends on, as a digest; tools stands for LLVM's."""
        depends = [self.digest, tools, self.commands(job), job.outputs, job.reads]
        return digest(repr(depends).encode())


@dataclass(frozen=True)
class Outcome:
    """What a job did, short enough to be remembered."""

    status: str  # of the last command
    crashed: bool
    parts: tuple  # (name, digest) of the messages and of each file

    @property
    def failed(self):
        return self.status != "0"

    @property
    def messages(self):
        return dict(self.parts)[MESSAGES]


def digest(data):
    return hashlib.sha256(data).hexdigest()


def digest_files(paths, top):
    """One digest for the names below a directory and the contents of files."""
    names = [(str(path.relative_to(top)), digest(path.read_bytes()))
             for path in sorted(paths)]
    return digest(repr(names).encode())


def identify_tools():
    """Stands for the compilers: another build of them has other sizes and times."""
    libraries = ("../lib/libLLVM-16.so.1", "../lib/libclang-cpp.so.16")
    known = []
    for name in ("clang", "opt", "lld", *libraries):
        path = (BIN / name).resolve()
        if path.exists():
            known.append((name, path.stat().st_size, path.stat().st_mtime_ns))
    return repr(known)


def add_options(step, options):
    """A command with further options of LLVM, said as its tool wants them."""
    tool = Path(step[0]).name
    added = []
    for option in options:
        if tool.startswith("clang"):
            added += ["-mllvm", option]
        else:
            added.append(f"-mllvm={option}" if tool == "ld.lld" else option)
    return (*step, *added)


def make_links(directory, library, links):
    """What a job's directory holds when its commands start."""
    directory.mkdir(parents=True)
    (directory / PLUGIN).symlink_to(library)
    for name, target in links.items():
        (directory / name).symlink_to(target)


def run_step(command, directory):
    """The exit status as text, and all that was printed."""
    try:
        done = subprocess.run(
            command,
            cwd=directory,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            timeout=STEP_SECONDS,
            env=dict(ENVIRONMENT, TMPDIR=str(directory)),
        )
    except subprocess.TimeoutExpired:
        return TIMED_OUT, b""
    return str(done.returncode), done.stdout + done.stderr


def run_steps(commands, directory):
    """Runs commands until one fails; the last status, and whether it was a crash.

    All that they print goes to one file.
    """
    crashed, status = False, "0"
    with open(directory / MESSAGES, "wb") as messages:
        for number, command in enumerate(commands, 1):
            status, printed = run_step(command, directory)
            crashed = status.startswith("-") or CRASH in printed
            if crashed:
                printed = STACK.sub(b"", printed)
            messages.write(f"== command {number}: {status}\n".encode() + printed)
            if status != "0":
                break
    return status, crashed


def read_parts(job, directory):
    """The digest of every file there is; one that is missing has none."""
    for name in (MESSAGES, *job.outputs):
        path = directory / name
        yield name, digest(path.read_bytes()) if path.exists() else None


def run_job(job, side, links, directory):
    """Runs a job in a new directory, which stays, and returns its Outcome."""
    make_links(directory, side.plugin, links)
    status, crashed = run_steps(side.commands(job), directory)
    return Outcome(status, crashed, tuple(read_parts(job, directory)))


def check_loads(side):
    """opt only warns about a plugin that it cannot load, and goes on without."""
    done = subprocess.run(
        [BIN / "opt", f"-load-pass-plugin={side.plugin}", "-passes=inlinerecursion",
         "-disable-output", os.devnull],
        capture_output=True, text=True, errors="replace")
    if done.returncode != 0:
        lines = done.stderr.replace(str(side.plugin), side.name).splitlines()
        reason = lines[0] if lines else f"exit status {done.returncode}"
        raise BadInput(f"{side.name}: {BIN / 'opt'} cannot load it: {reason}")
