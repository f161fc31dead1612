"""The command line of the tuner."""

import argparse
import re
from pathlib import Path

from inlinerecursion_tune.errors import TuneError
from inlinerecursion_tune.process import INTERRUPTS
from inlinerecursion_tune.progress import NAME, say

HELP = """\
Usage: inlinerecursion-tune --build COMMAND --run COMMAND [OPTION]...

Finds out by trying which plan for each recursive function makes a program fastest, and
writes a plan for -mllvm -inlinerecursion-plan=FILE. COMMANDs run in a shell, at the top
of a copy of the sources.

  --build COMMAND       builds the program with the compilers {cc}, {cxx} and {fc}
  --run COMMAND         runs it; the same output every time, and a few seconds at most
  -o FILE               the plan (recursion.plan)
  --source DIR          what is copied (the current folder)
  --work DIR            keeps builds and measurements (.inlinerecursion-tune); the same
                        command goes on from there
  --fresh               forget them
  --budget TIME         of the program's run time, in all: 90, 90s, 5m (the default), 1h
  --function REGEX      only functions whose name, as written or in the object, matches
  --hotness WAY         how to find out which functions matter: auto (the default),
                        profile, perf, or none: try all
  --compare FILE        a file that the run writes and that must stay the same; as often
                        as there are such files
  --ignore NAME         stdout or stderr, which need not stay the same
  --status N            the exit status of a run that is as it should be (0)
  --seconds-in FILE     the run itself says there how many seconds count
  --table FILE          what was tried, as text   (WORK/table.txt)
  --json FILE           the same as JSON          (WORK/table.json)
  --chart FILE          the same as .svg or .png  (WORK/chart.svg)
  --copy-limit SIZE     how large a folder is copied: 500M, 1G (the default)
  --plugin FILE         the plugin, if it is not beside this program
  --llvm DIR            the folder of its clang, if that is not /usr/lib/llvm-16/bin
  -h, --help            this text

Exit status: 0 and a plan, maybe an empty one; 1 if there is none, as where the program
cannot be built or run, or does something else with the plugin; 2 on a wrong command line.
"""

MODULES = {"yaml": "python3-yaml", "scipy": "python3-scipy"}
SECONDS = {"": 1, "s": 1, "m": 60, "h": 3600}
BYTES = {"": 1, "K": 1 << 10, "M": 1 << 20, "G": 1 << 30}


class Parser(argparse.ArgumentParser):
    def error(self, message):
        raise TuneError(f"{message} (--help lists the options)", status=2)

    def format_help(self):
        return HELP


def parse_amount(units, example):
    def parse(text):
        match = re.fullmatch(r"(\d+(?:\.\d+)?)([a-zA-Z]?)", text)
        if not match or match[2] not in units or float(match[1]) == 0:
            raise argparse.ArgumentTypeError(f"'{text}' is no such amount: say {example}")
        return float(match[1]) * units[match[2]]
    return parse


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


def parse_chart(text):
    path = Path(text)
    if path.suffix not in (".svg", ".png"):
        raise argparse.ArgumentTypeError(f"'{text}' is to end in .svg or .png")
    return path


def make_parser():
    from inlinerecursion_tune.hotness import WAYS

    parser = Parser(prog=NAME, allow_abbrev=False)
    parser.add_argument("--build", required=True)
    parser.add_argument("--run", required=True)
    parser.add_argument("-o", dest="output", type=Path, default=Path("recursion.plan"))
    parser.add_argument("--source", type=Path, default=Path("."))
    parser.add_argument("--work", type=Path, default=Path(".inlinerecursion-tune"))
    parser.add_argument("--fresh", action="store_true")
    parser.add_argument("--budget", type=parse_amount(SECONDS, "90, 90s, 5m or 1h"),
                        default=300)
    parser.add_argument("--function", type=parse_regex)
    parser.add_argument("--hotness", type=choice(*WAYS), default="auto")
    parser.add_argument("--compare", action="append", default=[])
    parser.add_argument("--ignore", action="append", default=[],
                        type=choice("stdout", "stderr"))
    parser.add_argument("--status", type=int, default=0)
    parser.add_argument("--seconds-in", default="")
    parser.add_argument("--table", type=Path)
    parser.add_argument("--json", type=Path)
    parser.add_argument("--chart", type=parse_chart)
    parser.add_argument("--copy-limit", type=parse_amount(BYTES, "500M or 1G"),
                        default=1 << 30)
    parser.add_argument("--plugin", type=Path)
    parser.add_argument("--llvm", type=Path)
    return parser


def find_tools(given, here):
    from inlinerecursion_tune import compilers

    plugin = (given.plugin or compilers.find_plugin(here)).absolute()
    llvm = (given.llvm or compilers.find_llvm(plugin)).absolute()
    if not plugin.is_file():
        raise TuneError(f"{plugin}: there is no plugin", 2)
    if not (llvm / "clang").exists():
        raise TuneError(f"{llvm}: there is no clang", 2)
    return compilers.Tools(plugin, llvm)


def make_options(given, here):
    from inlinerecursion_tune.measure import RunOptions
    from inlinerecursion_tune.tune import Options

    source, work = given.source.resolve(), given.work.resolve()
    if not source.is_dir():
        raise TuneError(f"{given.source}: no such folder", 2)
    if source == work or work in source.parents:
        raise TuneError(f"--work {given.work}: the sources are in it", 2)
    if re.search(r"[^\w./+@,=-]", str(work)):
        raise TuneError(f"--work {work}: compilers there would have to be quoted in"
                        " every makefile; name a folder of plain letters", 2)
    for name in (*given.compare, given.seconds_in):
        if Path(name).is_absolute():
            raise TuneError(f"{name}: say it relative to the top of the sources", 2)
    run = RunOptions(given.run, tuple(given.compare), tuple(given.ignore),
                     given.seconds_in, given.status)

    def place(path, name):
        return (path or work / name).absolute()

    return Options(
        given.build, run, given.output.absolute(), source, work, find_tools(given, here),
        given.budget, int(given.copy_limit), place(given.table, "table.txt"),
        place(given.json, "table.json"), place(given.chart, "chart.svg"),
        given.function, given.hotness, given.fresh)


def run(argv, here):
    try:
        import scipy.special  # noqa: F401
        import yaml  # noqa: F401
    except ModuleNotFoundError as error:
        if error.name not in MODULES:
            raise
        raise TuneError(f"Python's module {error.name} is missing: install the Debian"
                        f" package {MODULES[error.name]}") from None
    options = make_options(make_parser().parse_args(argv), here)
    from inlinerecursion_tune.tune import Session

    session = Session(options)
    try:
        session.run()
    finally:
        session.progress.close()
    return 0


def main(argv, here):
    INTERRUPTS.install()
    try:
        return run(argv, here)
    except TuneError as error:
        say(error)
        return error.status
    except OSError as error:
        say(f"{error.filename or 'system'}: {error.strerror}")
        return 1
    except KeyboardInterrupt:
        say("interrupted; the same command goes on from here")
        return 130
