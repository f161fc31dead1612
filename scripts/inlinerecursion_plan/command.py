"""The command line of the tool for plan files."""

import argparse
import os
import re
import sys
from pathlib import Path

HELP = """\
Usage: inlinerecursion-plan show [OPTION]... PATH...
       inlinerecursion-plan merge [--last] PATH... -o FILE
       inlinerecursion-plan check PATH... [--against PATH]

Works on plan files, which -inlinerecursion-write-plan writes and -inlinerecursion-plan
obeys. A PATH is such a file, or a folder, in which all *.plan and *.plan.yaml are read.

show prints a line for each entry, and how many there are:
  --function REGEX      only functions whose name, as written or in the object, matches
  --format FORMAT       text (the default) or json

merge makes one file of several, in the form that the plugin writes. Two entries for one
function have to agree on plan and body:
  --last                if they do not, the later one counts
  -o FILE               write to FILE

check tells what the plugin would complain about:
  --against PATH        and what of the plans was not followed by the build that has
                        obeyed them and written this

  -h, --help            this text

Exit status: 0; 1 if something is wrong with an entry or a file that was read, or entries
do not agree, and then nothing is merged; 2 if a file cannot be read or written, or the
command line is wrong.
"""

NAME = "inlinerecursion-plan"
FORMATS = ("text", "json")
PLAN_NAMES = (".plan", ".plan.yaml")


class PlanToolError(Exception):
    """One line for the user; the exit status is 2."""


class Parser(argparse.ArgumentParser):
    def error(self, message):
        raise PlanToolError(f"{message} (--help lists the options)")

    def format_help(self):
        return HELP


def parse_regex(text):
    try:
        return re.compile(text)
    except re.error as error:
        raise argparse.ArgumentTypeError(f"'{text}': {error}") from None


def parse_format(text):
    if text not in FORMATS:
        raise argparse.ArgumentTypeError(
            f"'{text}' is not known; known: {', '.join(FORMATS)}")
    return text


def parse_command_line(argv):
    if argv and argv[0] not in COMMANDS and not argv[0].startswith("-"):
        raise PlanToolError(f"'{argv[0]}' is not known; known: {', '.join(COMMANDS)}"
                            " (--help lists the options)")
    command = argv[0] if argv and argv[0] in COMMANDS else None
    parser = Parser(prog=NAME, allow_abbrev=False)
    if command == "show":
        parser.add_argument("--function", type=parse_regex)
        parser.add_argument("--format", type=parse_format, default="text")
    elif command == "merge":
        parser.add_argument("--last", action="store_true")
        parser.add_argument("-o", dest="output", type=Path)
    elif command == "check":
        parser.add_argument("--against", type=Path)
    parser.add_argument("paths", nargs="*", type=Path)
    options = parser.parse_intermixed_args(argv[1:] if command else argv)
    options.command = command
    if not command:
        parser.error(f"say what to do: {', '.join(COMMANDS)}")
    if not options.paths:
        parser.error("name a plan file or a folder")
    if command == "merge" and not options.output:
        parser.error("name the file to write with -o")
    return options


def find_plans(paths):
    """The plan files below folders, and the files that are named, each once."""
    def give_up(error):
        raise PlanToolError(f"{error.filename}: cannot be read: {error.strerror}")

    found = {}
    for path in paths:
        if not path.is_dir():
            found[path] = None
            continue
        before = len(found)
        for folder, folders, names in os.walk(path, onerror=give_up):
            folders.sort()
            found.update((Path(folder) / name, None) for name in sorted(names)
                         if name.endswith(PLAN_NAMES))
        if len(found) == before:
            raise PlanToolError(f"{path}: no plan file in it; compile with -mllvm"
                                " -inlinerecursion-write-plan=FILE")
    return list(found)


def read_all(paths, repeated=False):
    """The documents below paths, what is wrong with them, and the number of files."""
    from inlinerecursion_plan.files import read_plans

    documents, problems, files = [], [], find_plans(paths)
    for path in files:
        try:
            read, complaints = read_plans(path, repeated)
        except OSError as error:
            raise PlanToolError(f"{path}: cannot be read: {error.strerror}") from None
        documents += read
        problems += complaints
    return documents, problems, len(files)


def list_entries(documents):
    return [entry for document in documents for entry in document.entries]


def show(options):
    from inlinerecursion_plan import showing

    documents, problems, files = read_all(options.paths)
    shown = showing.select(list_entries(documents), options.function)
    complain(problems)
    put(showing.to_json(shown, problems) if options.format == "json"
        else showing.to_text(shown, files))
    return 1 if problems else 0


def merge(options):
    from inlinerecursion_plan import merging
    from inlinerecursion_plan.files import print_plans

    documents, problems, _ = read_all(options.paths, repeated=True)
    merged, conflicts = merging.merge(documents, options.last)
    if problems or conflicts:
        complain([*problems, *conflicts, f"{options.output} is not written"])
        return 1
    try:
        options.output.write_bytes(encode(print_plans(merged)))
    except OSError as error:
        raise PlanToolError(
            f"{options.output}: cannot be written: {error.strerror}") from None
    return 0


def check(options):
    from inlinerecursion_plan.matching import check_against

    documents, problems, _ = read_all(options.paths)
    if options.against:
        written, others, _ = read_all([options.against])
        problems += others
        problems += check_against(list_entries(documents), list_entries(written))
    put("".join(f"{problem}\n" for problem in problems))
    return 1 if problems else 0


COMMANDS = {"show": show, "merge": merge, "check": check}


def encode(text):
    # Names and paths are bytes to the system, whatever the locale.
    return text.encode(errors="backslashreplace")


def put(text):
    sys.stdout.buffer.write(encode(text))
    sys.stdout.buffer.flush()


def complain(lines):
    sys.stdout.flush()
    for line in lines:
        print(f"{NAME}: {line}".encode(errors="backslashreplace").decode(),
              file=sys.stderr)


def run(argv):
    try:
        import yaml  # noqa: F401
    except ModuleNotFoundError:
        raise PlanToolError("Python's module yaml is missing: install the Debian package"
                            " python3-yaml") from None
    options = parse_command_line(argv)
    return COMMANDS[options.command](options)


def main(argv):
    try:
        return run(argv)
    except PlanToolError as error:
        complain([error])
        return 2
    except BrokenPipeError:
        # Whoever reads has seen enough; keep Python from complaining once more.
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
        return 1
    except KeyboardInterrupt:
        complain(["interrupted"])
        return 130
