"""Starts commands, and leaves nothing of them behind when the tuner is interrupted."""

import os
import signal
import subprocess

SIGNALS = (signal.SIGINT, signal.SIGTERM)


class Interrupts:
    """Signals that end the tuner, which must not fall between the start of a process and
    the note of its number."""

    def __init__(self):
        self.are_held = False
        self.is_pending = False

    def install(self):
        for number in SIGNALS:
            signal.signal(number, self.handle)

    def handle(self, *_):
        if not self.are_held:
            raise KeyboardInterrupt
        self.is_pending = True

    def release(self):
        self.are_held = False
        if self.is_pending:
            self.is_pending = False
            raise KeyboardInterrupt


INTERRUPTS = Interrupts()


def kill(process):
    """Ends a process with all that it has started."""
    try:
        os.killpg(process.pid, signal.SIGKILL)
        _, status, _ = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    except (ProcessLookupError, ChildProcessError):
        pass


def run_shell(command, wait, **options):
    """What `wait` finds out about the command, which has a session of its own."""
    INTERRUPTS.are_held = True
    try:
        process = subprocess.Popen(["/bin/sh", "-c", command], stdin=subprocess.DEVNULL,
                                   start_new_session=True, **options)
    except BaseException:
        INTERRUPTS.release()
        raise
    try:
        INTERRUPTS.release()
        return wait(process)
    except BaseException:
        kill(process)
        raise
