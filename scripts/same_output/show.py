"""What differs: both outputs made again and left for inspection, with a short diff."""

import shlex
import shutil
import subprocess
from pathlib import Path

from .work import BIN, MESSAGES, TIMED_OUT, run_job

LINES_SHOWN = 16

DISASSEMBLE = ("llvm-objdump", "-d", "--no-show-raw-insn", "--no-leading-addr")
# What prints a file as text, by its suffix; others are text.
PRINTERS = {".o": DISASSEMBLE, ".exe": DISASSEMBLE, ".bc": ("llvm-dis", "-o", "-")}
# All sections, for files whose code is the same.
DUMP = ("llvm-objdump", "-s")


def write_text(directory, name, printer):
    """The name of a file with the text that stands for another."""
    text = directory / f"{name}.txt"
    with open(text, "wb") as output:
        subprocess.run([BIN / printer[0], *printer[1:], name], cwd=directory,
                       stdout=output, stderr=subprocess.STDOUT)
    return text.name


def diff(directory, name):
    """The lines of a unified diff of a file of both sides."""
    done = subprocess.run(
        ["diff", "-a", "-U2", "--label", f"a/{name}", "--label", f"b/{name}",
         f"a/{name}", f"b/{name}"], cwd=directory, stdout=subprocess.PIPE)
    return done.stdout.decode(errors="replace").splitlines()


def diff_as_text(directory, name):
    """Differences in what people read of a file, or else in its bytes."""
    printer = PRINTERS.get(Path(name).suffix)
    if not printer:
        return diff(directory, name)
    for printer in (printer, DUMP):
        for side in "ab":
            text = write_text(directory / side, name, printer)
        lines = diff(directory, text)
        if lines:
            break
    return lines


def write_diff(directory, name):
    """Writes a file's diff; its path and its lines."""
    lines = diff_as_text(directory, name)
    path = directory / f"{name}.diff"
    path.write_text("".join(f"{line}\n" for line in lines))
    return path, lines


def make_again(job, sides, links, directory):
    """Runs the job in a/ and b/ below the directory; both outcomes."""
    shutil.rmtree(directory, ignore_errors=True)
    return [run_job(job, side, links, directory / letter)
            for letter, side in zip("ab", sides)]


def find_changed(before, after):
    """The names of the files that differ between two outcomes."""
    theirs = dict(after.parts)
    return [name for name, digest in before.parts if digest != theirs[name]]


def describe_commands(job, sides, directory):
    """What was run, ready to be repeated."""
    commands = [side.commands(job) for side in sides]
    if commands[0] == commands[1]:
        places = [(f"{directory}/a and {directory}/b", commands[0])]
    else:
        places = [(f"{directory}/{letter}", its)
                  for letter, its in zip("ab", commands)]
    for place, its in places:
        yield f"  in {place}:"
        yield from (f"    {shlex.join(command)}" for command in its)


def describe_outcomes(remembered, again, sides):
    """What the diffs do not tell."""
    for side, before, outcome in zip(sides, remembered, again):
        if outcome != before:
            yield (f"  {side.name} does not do the same when it runs again, or what "
                   "is remembered is")
            yield "  out of date; try once more with --forget"
        if outcome.crashed or outcome.status == TIMED_OUT:
            how = "crashes" if outcome.crashed else "takes too long"
            yield f"  {how} with {side.name}"


def describe_difference(job, sides, links, directory, shown_as, remembered):
    """Lines that tell of one difference; shown_as is what the directory is called."""
    yield from describe_commands(job, sides, shown_as)
    again = make_again(job, sides, links, directory)
    yield from describe_outcomes(remembered, again, sides)
    for name in find_changed(*again):
        yield from describe_file(directory, name, shown_as)


def describe_file(directory, name, shown_as):
    what = "messages" if name == MESSAGES else name
    missing = [side for side in "ab" if not (directory / side / name).exists()]
    if missing:
        yield f"  {what}: only one side wrote it; not {' '.join(missing)}"
        return
    path, lines = write_diff(directory, name)
    yield f"  {what}: {Path(shown_as) / path.name}, {len(lines)} lines:"
    yield from (f"    {line}" for line in lines[:LINES_SHOWN])
    if len(lines) > LINES_SHOWN:
        yield "    ..."
