"""Runs the program: how long it takes, and whether it does what it did.

The time is the user CPU time of the command and of what it starts, which other programs
on the machine disturb less than the time on the clock; or what the program itself says in
a file, where that is asked for.
"""

import hashlib
import os
import select
import signal
import time
from dataclasses import dataclass

from inlinerecursion_tune.build import show_end
from inlinerecursion_tune.errors import Differs, TuneError
from inlinerecursion_tune.process import kill, run_shell

# A run may take that many times as long as the plain build's, and no less than seconds.
SLOWEST = 10
SLOWEST_AT_LEAST = 10


@dataclass
class Run:
    seconds: float
    status: int
    outputs: dict  # what it is: hash of it
    elapsed: float = 0


@dataclass(frozen=True)
class RunOptions:
    command: str
    compare: tuple = ()  # files, relative to the top of the sources
    ignore: tuple = ()  # of stdout and stderr
    seconds_in: str = ""
    status: int = 0


def name_status(status):
    if status >= 0:
        return f"exit status {status}"
    return f"signal {-status} ({signal.Signals(-status).name})"


def hash_path(path):
    try:
        with open(path, "rb") as file:
            return hashlib.file_digest(file, "blake2b").hexdigest()
    except OSError:
        return "none"


def find_difference(run, expected):
    """In what two runs differ, or an empty string."""
    if run.status != expected.status:
        return f"{name_status(run.status)} in the place of {name_status(expected.status)}"
    for name, found in run.outputs.items():
        if found != expected.outputs[name]:
            return f"another {name}"
    return ""


class Runner:
    def __init__(self, workspace, options):
        self.workspace = workspace
        self.options = options
        self.limit = None

    def remove_outputs(self):
        """A file of the last run must not pass for one of this."""
        for name in (*self.options.compare, self.options.seconds_in):
            if name and not (self.workspace.sources / name).exists():
                (self.workspace.tree / name).unlink(missing_ok=True)

    def read_seconds(self):
        path = self.workspace.tree / self.options.seconds_in
        try:
            return float(path.read_text())
        except (OSError, ValueError) as error:
            raise TuneError(f"{path}: the run has left no number of seconds there:"
                            f" {error}") from None

    def wait(self, process):
        """(status, user CPU time), or None if it takes too long."""
        descriptor = os.pidfd_open(process.pid)
        try:
            ready, _, _ = select.select([descriptor], [], [], self.limit)
        finally:
            os.close(descriptor)
        if not ready:
            kill(process)
            return None
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        return process.returncode, usage.ru_utime

    def run(self, environment=None):
        """One run of what is at the place."""
        place = self.workspace.place
        self.remove_outputs()
        begin = time.monotonic()
        streams = {"stdout": place / "stdout", "stderr": place / "stderr"}
        with open(streams["stdout"], "wb") as out, open(streams["stderr"], "wb") as err:
            ended = run_shell(self.options.command, self.wait, stdout=out, stderr=err,
                              cwd=self.workspace.tree,
                              env=dict(os.environ, **(environment or {})))
        elapsed = time.monotonic() - begin
        if not ended:
            raise Differs(f"no end: it takes more than {self.limit:.0f} s")
        outputs = {"standard output" if name == "stdout" else "standard error":
                   hash_path(path) for name, path in streams.items()
                   if name not in self.options.ignore}
        outputs.update((name, hash_path(self.workspace.tree / name))
                       for name in self.options.compare)
        status, seconds = ended
        if self.options.seconds_in and status == self.options.status:
            seconds = self.read_seconds()
        return Run(seconds, status, outputs, elapsed)

    def set_limit(self, seconds):
        self.limit = max(SLOWEST * seconds, SLOWEST_AT_LEAST)

    def check_status(self, run, what):
        """Only a program that works can be tuned."""
        if run.status == self.options.status:
            return
        place = self.workspace.place
        raise TuneError(
            f"the run of {what} ends with {name_status(run.status)}; say --status N if"
            " that is as it should be. It ends with"
            + show_end(place / "stdout") + show_end(place / "stderr"))
