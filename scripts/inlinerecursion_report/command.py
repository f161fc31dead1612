"""The command line of the report."""

import argparse
import os
import re
import sys
from pathlib import Path

HELP = """\
Usage: inlinerecursion-report [OPTION]... PATH...

Prints what the InlineRecursion plugin did to the recursive functions of a program, from
the optimisation records that clang and lld write (-fsave-optimization-record). A PATH
is a folder, in which all *.opt.yaml and *.opt.ld.yaml are read, or a record. A function
that several records have is one row.

  --sort KEY            by file (the default), function, growth or hotness
  --rebuilt             only functions that were rebuilt
  --left                only functions that were not
  --function REGEX      only functions whose name, as written or in the object, matches
  --format FORMAT       text (the default), json or html
  -o FILE               write to FILE
  -h, --help            this text

Exit status: 0; 1 if there is no record or one is at fault, which is named and left out
from where it is at fault; 2 on a wrong command line.
"""

NAME = "inlinerecursion-report"
FORMATS = ("text", "json", "html")


class ReportError(Exception):
    """One line for the user, and the exit status."""

    def __init__(self, message, status=1):
        super().__init__(message)
        self.status = status


class Parser(argparse.ArgumentParser):
    def error(self, message):
        raise ReportError(f"{message} (--help lists the options)", status=2)

    def format_help(self):
        return HELP


def parse_regex(text):
    try:
        return re.compile(text)
    except re.error as error:
        raise argparse.ArgumentTypeError(f"'{text}': {error}") from None


def choice(*known):
    def parse(text):
        if text not in known:
            raise argparse.ArgumentTypeError(
                f"'{text}' is not known; known: {', '.join(known)}")
        return text
    return parse


def parse_command_line(argv, sorts):
    parser = Parser(prog=NAME, allow_abbrev=False)
    parser.add_argument("--sort", type=choice(*sorts), default="file")
    parser.add_argument("--rebuilt", action="store_true")
    parser.add_argument("--left", action="store_true")
    parser.add_argument("--function", type=parse_regex)
    parser.add_argument("--format", type=choice(*FORMATS), default="text")
    parser.add_argument("-o", dest="output", type=Path)
    parser.add_argument("paths", nargs="*", type=Path)
    options = parser.parse_intermixed_args(argv)
    if not options.paths:
        parser.error("name a folder or a record")
    if options.rebuilt and options.left:
        parser.error("--rebuilt and --left leave nothing")
    for path in options.paths:
        if not path.exists():
            raise ReportError(f"{path}: no such file or folder")
    return options


def make_report(options, records, problems):
    from inlinerecursion_report import page, rows, text

    selected = rows.select_rows(rows.make_rows(records), options.rebuilt, options.left,
                                options.function)
    shown = rows.sort_rows(selected, options.sort)
    totals = rows.add_up(shown)
    if options.format == "json":
        return text.to_json(shown, totals, rows.find_modules(records), problems)
    if options.format == "html":
        return page.to_html(shown, totals, len(records), problems)
    return text.to_text(shown, totals, len(records))


def write(report, output):
    # Names and paths are bytes to the system, whatever the locale.
    encoded = report.encode(errors="backslashreplace")
    if not output:
        sys.stdout.buffer.write(encoded)
        sys.stdout.buffer.flush()
        return
    try:
        output.write_bytes(encoded)
    except OSError as error:
        raise ReportError(f"{output}: cannot be written: {error.strerror}") from None


def say(message):
    print(f"{NAME}: {message}".encode(errors="backslashreplace").decode(),
          file=sys.stderr)


def run(argv):
    try:
        from inlinerecursion_report import records, rows
    except ModuleNotFoundError as error:
        if error.name != "yaml":
            raise
        raise ReportError(
            "Python's module yaml is missing: install the Debian package python3-yaml"
        ) from None
    options = parse_command_line(argv, rows.SORTS)
    paths, closed = records.find_records(options.paths)
    read = [records.read_record(path) for path in paths]
    problems = [f"{record.path} {record.problem}" for record in [*closed, *read]
                if record.problem]
    for problem in problems:
        say(problem)
    if not read:
        raise ReportError(
            "no record found: compile with -fsave-optimization-record, which writes"
            " FILE.opt.yaml beside each object")
    write(make_report(options, read, problems), options.output)
    return 1 if problems else 0


def main(argv):
    try:
        return run(argv)
    except ReportError as error:
        say(error)
        return error.status
    except BrokenPipeError:
        # Whoever reads has seen enough; keep Python from complaining once more.
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
        return 1
    except KeyboardInterrupt:
        say("interrupted")
        return 130
