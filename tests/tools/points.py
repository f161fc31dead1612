"""A test of several points, each of which is a function with a name.

    @points.point("option-values")
    def option_values(trial):
        "A value out of range ends the compilation with one line."
        ...

    points.main(__doc__, make_context)

The script then takes `--list`, `--only NAME,...`, `--build DIR` and `--scratch DIR`,
runs its points in the order of the source, and prints one line for each: `ok`,
`FAILED`, with what went wrong below it, or `skipped: why`. Exit status: 1 if one fails.

`make_context(build, scratch)` is a context manager that makes what every point is
given, and takes it back in the end, also when the script is ended from outside.
"""

import argparse
import shlex
import signal
import subprocess
import sys
import traceback
from pathlib import Path

TIME_LIMIT = 120

_points = {}


class Failed(Exception):
    """What is not as it should be."""


class Skipped(Exception):
    """What is missing, and what would install it."""


def point(name):
    """A decorator: the function is the point `name`, its first line says of what."""
    def register(function):
        _points[name] = function
        return function
    return register


class Outcome:
    """What a command did; .text is all that it printed."""

    def __init__(self, command, status, text):
        self.command, self.status, self.text = command, status, text

    def fail(self, message):
        raise Failed(f"{message}\n$ {shlex.join(self.command)}\n{self.text}"
                     f"exit status {self.status}")

    def needs(self, *parts):
        """Each of these is in the text."""
        for part in parts:
            if part not in self.text:
                self.fail(f"does not say: {part}")
        return self

    def lacks(self, *parts):
        """None of these is."""
        for part in parts:
            if part in self.text:
                self.fail(f"says: {part}")
        return self


def run(*command, status=0, directory=None, env=None):
    """Runs a command, which has to exit with `status`; None stands for any failure."""
    command = [str(word) for word in command]
    try:
        done = subprocess.run(command, text=True, cwd=directory, env=env,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, timeout=TIME_LIMIT,
                              errors="replace")
    except FileNotFoundError:
        raise Failed(f"{command[0]}: no such program") from None
    except subprocess.TimeoutExpired:
        raise Failed(f"not done after {TIME_LIMIT} s: {shlex.join(command)}") from None
    outcome = Outcome(command, done.returncode, done.stdout)
    if status is None and done.returncode <= 0:
        outcome.fail("does not fail as it should")
    if status is not None and done.returncode != status:
        outcome.fail(f"does not exit with {status}")
    return outcome


def same(what, *values):
    """All of them are the same."""
    for value in values[1:]:
        if value != values[0]:
            raise Failed(f"{what} differs: {values[0]!r} and {value!r}")


def _judge(function, context):
    """(the word for the line of a point, what is to be said below it)"""
    try:
        function(context)
    except Skipped as why:
        return f"skipped: {why}", ""
    except Failed as what:
        return "FAILED", str(what)
    except Exception:  # A mistake in the test is told like one in the plugin.
        return "FAILED", traceback.format_exc()
    return "ok", ""


def _run_all(names, context):
    width = max(len(name) for name in names)
    failures = 0
    for name in names:
        word, details = _judge(_points[name], context)
        failures += word == "FAILED"
        print(f"{name:{width}}  {word}", flush=True)
        for line in details.splitlines():
            print(f"    {line}", flush=True)
    return failures


def main(description, make_context):
    parser = argparse.ArgumentParser(description=description.splitlines()[0])
    parser.add_argument("--list", action="store_true", help="print the points and end")
    parser.add_argument("--only", metavar="NAME,...", help="run these points only")
    parser.add_argument("--build", type=Path, default=Path("build/release"),
                        help="where the project is built (build/release)")
    parser.add_argument("--scratch", type=Path, required=False,
                        help="a folder that is emptied first (BUILD/NAME-scratch)")
    args = parser.parse_args()

    if args.list:
        width = max(map(len, _points))
        for name, function in _points.items():
            print(f"{name:{width}}  {function.__doc__.splitlines()[0]}")
        return 0
    names = args.only.split(",") if args.only else list(_points)
    unknown = [name for name in names if name not in _points]
    if unknown:
        parser.error(f"no such point: {', '.join(unknown)}; --list names them")
    build = args.build.resolve()
    if not (build / "CMakeCache.txt").is_file():
        parser.error(f"{build}: nothing is built there; name it by --build")
    scratch = args.scratch or build / f"{Path(sys.argv[0]).stem}-scratch"

    # What make_context has done is undone then, too.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(2))
    with make_context(build, scratch.resolve()) as context:
        return 1 if _run_all(names, context) else 0
