"""Runs the commands that the documents show, and compares what they print.

    run_documented.py --build DIR --scratch DIR [--root DIR] [--update]
                      [DOCUMENT ...]

A command is a line that begins with `$ ` in a fenced block of a Markdown file,
with the lines that a closing backslash adds. The lines beneath it, up to the next
command or the end of the block, are what it prints, standard error included. It
has to print exactly that, and nothing if nothing is shown, and to exit with 0,
except that

  - a line `...` stands for any number of lines,
  - a decimal fraction stands for any other (times and ratios: 0.083 s, 8.43x),
  - any amount of space stands for any other.

The commands of one document run in one shell, in the order of the page, with
standard input empty and the current directory at the top of a fresh copy of the
checkout. DIR/lib, where the plugin was built, stands in it as build/release/lib,
and scripts/setup.sh does nothing, since all it sets up is there.

An HTML comment on the line above a block, which readers do not see, changes that:

    <!-- check: skip: REASON -->     its commands do not run; the reason is printed
    <!-- check: numbers vary -->     any number stands for any other
    <!-- check: exits with N -->     so does its last command

Without a DOCUMENT: README.md, docs/*.md, fuzz/README.md and every README.md below
examples/. Prints one line per document, every skipped command, and the difference for
every command at fault. With --update, what such a command printed takes the place
of what the document shows. Exit status: 1 if a command is at fault, 2 on bad input.
"""

import argparse
import difflib
import re
import shutil
import subprocess
import sys
from dataclasses import dataclass, field
from pathlib import Path

PATTERNS = ["README.md", "docs/*.md", "examples/**/README.md", "fuzz/README.md"]
# Printed by the shell between two commands, with the exit status of the first.
MARK = "=== documented command ended with status"
# For one document. All together take well below a minute on an idle machine.
TIME_LIMIT = 600

MARKER = re.compile(r"<!-- check: (.*) -->")
FRACTION = re.compile(r"\d+\.\d+")
NUMBER = re.compile(r"\d+(?:\.\d+)?")


class BadInput(Exception):
    """One line that says what is wrong and what to do."""


@dataclass
class Command:
    line: int  # in the document
    text: str
    shown: list = field(default_factory=list)
    skipped: str = ""  # the reason, if any
    numbers_vary: bool = False
    status: int = 0


def parse_marker(text, place):
    """Returns what a marker says about the commands of a block, by attribute."""
    if match := re.fullmatch(r"skip: (.+)", text):
        return {"skipped": match[1]}
    if text == "numbers vary":
        return {"numbers_vary": True}
    if match := re.fullmatch(r"exits with (\d+)", text):
        return {"status": int(match[1])}
    raise BadInput(
        f"{place}: unknown marker 'check: {text}'; known: skip: REASON, numbers vary,"
        " exits with N"
    )


def parse_block(lines, first, marker):
    """The commands in a block; first is the number of its first line."""
    commands, continued = [], False
    for number, line in enumerate(lines, first):
        if continued:
            commands[-1].text += "\n" + line
        elif line.startswith("$ "):
            commands.append(Command(number, line[2:]))
        elif commands:
            commands[-1].shown.append(line)
        continued = bool(commands) and line.endswith("\\") and not commands[-1].shown
    status = marker.pop("status", 0)
    for command in commands:
        vars(command).update(marker)
    if commands:
        commands[-1].status = status
    return commands


def parse_document(path, name):
    commands, block, marker = [], None, {}
    for number, line in enumerate(path.read_text().splitlines(), 1):
        if line.startswith("```"):
            if block is None:
                block = []
                continue
            commands += parse_block(block, number - len(block), marker)
            block, marker = None, {}
        elif block is not None:
            block.append(line)
        elif match := MARKER.fullmatch(line):
            marker = parse_marker(match[1], f"{name}:{number}")
        elif marker:
            raise BadInput(
                f"{name}:{number - 1}: a marker belongs on the line above a block:"
                " move it there"
            )
    if block is not None:
        raise BadInput(f"{name}: a block is not closed: add a line ```")
    return commands


def make_copy(root, build, scratch):
    """A fresh copy of the checkout in which everything is built."""
    if not (build / "lib").is_dir():
        raise BadInput(f"{build / 'lib'}: no such directory; build the project first")
    shutil.rmtree(scratch, ignore_errors=True)
    shutil.copytree(root, scratch, ignore=shutil.ignore_patterns("build", ".git"))
    (scratch / "build" / "release").mkdir(parents=True)
    (scratch / "build" / "release" / "lib").symlink_to(build / "lib")
    (scratch / "scripts" / "setup.sh").write_text("#!/bin/sh\n")


def run_commands(commands, directory):
    """Returns [(status, lines printed)] for the commands that the shell came to."""
    script = "".join(f"{c.text}\nprintf '\\n{MARK} %d\\n' $?\n" for c in commands)
    try:
        done = subprocess.run(
            ["bash", "-c", f"exec 2>&1\n{script}"],
            cwd=directory,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            timeout=TIME_LIMIT,
        )
    except subprocess.TimeoutExpired:
        raise BadInput(
            f"the commands took more than {TIME_LIMIT} s: skip the long ones"
        ) from None
    parts = re.split(rf"\n{MARK} (\d+)\n", done.stdout.decode(errors="replace"))
    printed = [text.rstrip("\n") for text in parts[:-1:2]]
    return [(int(s), t.splitlines()) for s, t in zip(parts[1::2], printed)]


def normalise(line, numbers_vary):
    """The line without what may vary."""
    varying = NUMBER if numbers_vary else FRACTION
    return re.sub(r"\s+", " ", varying.sub("#", line)).strip()


def agrees(shown, printed, numbers_vary):
    """Is this what the document shows?"""
    shown = [normalise(line, numbers_vary) for line in shown]
    text = "".join(normalise(line, numbers_vary) + "\n" for line in printed)
    pattern = "".join(
        "(?:.*\n)*?" if line == "..." else re.escape(line) + "\n" for line in shown
    )
    return re.fullmatch(pattern, text) is not None


def find_faults(commands, results):
    """Yields (command, what it printed if that is at fault, text for the user)."""
    for command, (status, printed) in zip(commands, results):
        if status != command.status:
            fault = f"exits with {status}, not {command.status}"
            yield command, None, [fault, *printed]
        elif not agrees(command.shown, printed, command.numbers_vary):
            difference = difflib.unified_diff(
                command.shown, printed, "documented", "printed", lineterm=""
            )
            yield command, printed, list(difference)
    for command in commands[len(results) :]:
        yield command, None, ["is not reached: a command before it ends the shell"]


def update_document(path, faults):
    lines = path.read_text().splitlines()
    for command, printed, _ in reversed(faults):
        if printed is not None:
            first = command.line + command.text.count("\n")
            lines[first : first + len(command.shown)] = printed
    path.write_text("\n".join(lines) + "\n")


def check_document(path, name, root, build, scratch, update):
    """Prints what there is to say about a document; returns the number of faults."""
    commands = parse_document(path, name)
    run = [command for command in commands if not command.skipped]
    results = []
    if run:
        make_copy(root, build, scratch)
        results = run_commands(run, scratch)
    faults = list(find_faults(run, results))
    print(f"{name}: {len(run)} commands run, {len(faults)} at fault,"
          f" {len(commands) - len(run)} skipped")
    for command in commands:
        if command.skipped:
            print(f"  skipped, {command.skipped}: {command.text}")
    for command, _, details in faults:
        print(f"{name}:{command.line}: $ {command.text}")
        print("".join(f"    {line}\n" for line in details), end="")
    if update:
        update_document(path, faults)
    return len(faults)


def main():
    here = Path(__file__).resolve()
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--root", type=Path, default=here.parent.parent.parent)
    parser.add_argument("--build", type=Path, required=True)
    parser.add_argument("--scratch", type=Path, required=True)
    parser.add_argument("--update", action="store_true")
    parser.add_argument("documents", nargs="*", type=Path)
    options = parser.parse_args()
    root, build = options.root.resolve(), options.build.resolve()

    documents = {path: path for path in options.documents}
    if not documents:
        found = [path for pattern in PATTERNS for path in root.glob(pattern)]
        documents = {path: path.relative_to(root) for path in sorted(found)}
    faults = 0
    try:
        for path, name in documents.items():
            if not path.is_file():
                raise BadInput(f"{path}: no such file; name a Markdown file")
            faults += check_document(
                path, name, root, build, options.scratch, options.update
            )
    except BadInput as error:
        print(f"run_documented.py: {error}", file=sys.stderr)
        return 2
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
