"""What the tests' RUN lines compile: further inputs, and commands of their own.

Of a test's RUN lines two things are taken, in their order. Files that a line makes
without the plugin (`split-file`, `sed`, `cat`, the scripts of the tests) are made
here as well, in a directory of the test's own. And commands that run the plugin in opt
or clang are read: their options and the file that they compile. What follows them,
such as FileCheck, is of no interest.

Other commands with the plugin are skipped, with a reason: mostly those that read what
another command with the plugin has written.
"""

import re
import shlex
import subprocess
import sys
from dataclasses import dataclass, field
from pathlib import Path

from .work import BIN, PLUGIN

MAKERS = {"sed", "cat", "%bulk", "%python", "split-file"}
COMPILERS = {"%opt", "%legacy_opt", "%clang_with_pass"}
MAKE_SECONDS = 60

# Options that say where output goes, which the comparer decides.
OUTPUT_OPTIONS = {"-S", "-c", "-emit-llvm", "-disable-output"}
# Options whose value is the next word.
PAIRED_OPTIONS = {"-mllvm", "-Xclang", "-I", "-x", "-isystem", "-load"}
# What is printed differs from run to run, or goes to a file, or is in one.
UNREPEATABLE = ("-time-passes", "-debug-pass=Executions", "-pass-remarks-output",
                "@")


class Untaken(Exception):
    """Why a command is not repeated."""


@dataclass
class Stage:
    """One command of a shell line."""

    words: list
    source: str = None  # behind <
    target: str = None  # behind > or >>
    appends: bool = False


@dataclass(frozen=True)
class OwnCommand:
    """A command with the plugin in a test."""

    compiler: str
    options: tuple
    file: str  # as named from a job's directory


@dataclass
class Test:
    """What the RUN lines of one file came to."""

    commands: list = field(default_factory=list)
    made: list = field(default_factory=list)  # paths of files
    skipped: list = field(default_factory=list)  # reasons
    reads_itself: bool = False
    has_lines: bool = False


def read_run_lines(text):
    """The RUN lines, with those that a closing backslash continues."""
    lines, open_line = [], ""
    for found in re.finditer(r"^.*?\bRUN:\s*(.*?)\s*$", text, re.M):
        open_line += found[1]
        if open_line.endswith("\\"):
            open_line = open_line[:-1]
            continue
        lines.append(open_line)
        open_line = ""
    return lines


def split_words(line):
    """The words of a shell line; operators are words."""
    line = re.sub(r" 2>(&1| *\S+)", "", line)
    lexer = shlex.shlex(line, posix=True, punctuation_chars="|<>;&")
    lexer.whitespace_split = True
    lexer.commenters = ""
    return list(lexer)


def split_pipelines(line):
    """A shell line as a list of pipelines, each a list of stages."""
    pipelines = [[Stage([])]]
    words = iter(split_words(line))
    for word in words:
        if word in ("&&", ";", "||"):
            pipelines.append([Stage([])])
        elif word == "|":
            pipelines[-1].append(Stage([]))
        elif word == "<":
            pipelines[-1][-1].source = next(words, None)
        elif word in (">", ">>"):
            pipelines[-1][-1].target = next(words, None)
            pipelines[-1][-1].appends = word == ">>"
        else:
            pipelines[-1][-1].words.append(word)
    return pipelines


def uses_compiler(words):
    return any(word.startswith(("%opt", "%clang", "%lld", "%plugin"))
               for word in words)


class Reader:
    """Reads one test; files are found in directory as in a job's directory."""

    def __init__(self, name, directory):
        self.name = name
        self.directory = directory
        self.made = f"made/{name}"
        self.versions = {}
        self.piped = 0
        self.test = Test()

    def read(self, text):
        for line in read_run_lines(text):
            self.test.has_lines = True
            try:
                pipelines = split_pipelines(line)
            except ValueError as error:
                self.test.skipped.append(f"{error}: {line}")
                continue
            for stages in pipelines:
                self.read_pipeline(stages)
        return self.test

    def read_pipeline(self, stages):
        """Follows a pipeline up to the command that runs the plugin."""
        piped = None
        for number, stage in enumerate(stages):
            while stage.words and stage.words[0] in ("not", "--crash"):
                stage.words.pop(0)
            if not stage.words:
                return
            if stage.words[0] in COMPILERS:
                self.take_command(stage, piped)
                return
            is_read = any(s.words[:1] and s.words[0] in COMPILERS
                          for s in stages[number + 1:])
            piped = self.make_file(stage, piped, is_read)
            if piped is None:
                return

    # --- Names ---------------------------------------------------------------

    def substitute(self, word):
        """Replaces what lit replaces; a file's latest version is meant."""
        known = {
            "%%": "%",
            "%s": f"repo/{self.name}",
            "%S": f"repo/{Path(self.name).parent}",
            "%t": f"{self.made}/t",
            "%plugin": PLUGIN,
        }

        def replace(found):
            if found[0] not in known:
                raise Untaken(f"it uses {found[0]}")
            return known[found[0]]

        text = re.sub(r"%%|%\w+|%\{", replace, word)
        return self.versions.get(text, text)

    def new_version(self, name):
        """Under its own name the first time, then under others."""
        used = set(self.versions.values())
        version, number = name, 1
        while version in used or (self.directory / version).exists():
            number += 1
            path = Path(name)
            version = f"{path.parent}/{path.stem}-{number}{path.suffix}"
        self.versions[name] = version
        return version

    # --- Files that are made -------------------------------------------------

    def make_file(self, stage, piped, is_read):
        """Runs a command that makes a file; its name, or None if it makes none."""
        first = stage.words[0]
        is_made = first == "split-file" or stage.target or is_read
        if first not in MAKERS or not is_made or uses_compiler(stage.words):
            return None
        try:
            return self.run_maker(stage, piped)
        except (Untaken, OSError, subprocess.SubprocessError) as error:
            self.test.skipped.append(f"{shlex.join(stage.words)}: {error}")
            return None

    def run_maker(self, stage, piped):
        tools = {"%bulk": [sys.executable, "repo/tests/tools/bulk.py"],
                 "%python": [sys.executable], "split-file": [BIN / "split-file"]}
        first, *rest = stage.words
        command = [*tools.get(first, [first]), *map(self.substitute, rest)]
        source = self.substitute(stage.source) if stage.source else piped
        if first != "split-file":
            self.check_made([*command[1:], source or ""])
        given = (self.directory / source).read_bytes() if source else b""
        (self.directory / self.made).mkdir(parents=True, exist_ok=True)
        done = subprocess.run(command, cwd=self.directory, input=given, check=True,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              timeout=MAKE_SECONDS)
        if first == "split-file":
            parts = self.directory / command[-1]
            self.test.made += sorted(
                str(p.relative_to(self.directory)) for p in parts.rglob("*")
                if p.is_file())
            return None
        return self.write_file(stage, done.stdout)

    def write_file(self, stage, data):
        """Writes what a command printed to a new file."""
        old = b""
        if stage.target:
            name = self.made_name(stage.target)
            if stage.appends and name in self.versions:
                old = (self.directory / self.versions[name]).read_bytes()
        else:
            self.piped += 1
            suffix = Path(self.name).suffix
            name = f"{self.made}/piped-{self.piped}" + (
                ".ll" if suffix == ".test" else suffix)
        version = self.new_version(name)
        (self.directory / version).parent.mkdir(parents=True, exist_ok=True)
        (self.directory / version).write_bytes(old + data)
        self.test.made.append(version)
        return version

    def made_name(self, target):
        if not re.match(r"%t\b", target):
            raise Untaken(f"it writes to {target}")
        return f"{self.made}/t{target[2:]}"

    # --- Commands with the plugin --------------------------------------------

    def take_command(self, stage, piped):
        self.test.reads_itself |= "%s" in (*stage.words, stage.source)
        try:
            command = self.read_command(stage, piped)
        except Untaken as reason:
            self.test.skipped.append(f"{shlex.join(stage.words)}: {reason}")
            return
        self.test.commands.append(command)

    def read_command(self, stage, piped):
        """Separates a command's options and its file."""
        options, files = [], []
        words = iter(stage.words[1:])
        for word in words:
            if word == "-o":
                next(words, None)
            elif word.startswith(UNREPEATABLE):
                raise Untaken(f"it uses {word}")
            elif word in PAIRED_OPTIONS:
                options += [word, self.substitute(next(words, ""))]
            elif word.startswith("-") and word != "-":
                if word not in OUTPUT_OPTIONS:
                    options.append(self.substitute(word))
            elif word != "-":
                files.append(self.substitute(word))
        if not files:
            files = [self.substitute(stage.source) if stage.source else piped]
        self.check_files(files, options)
        return OwnCommand(stage.words[0], tuple(options), files[0])

    def check_files(self, files, options):
        if len(files) != 1 or not files[0]:
            raise Untaken("it does not read one file")
        self.check_made([*files, *(o.partition("=")[2] for o in options)])

    def check_made(self, words):
        """What other commands with the plugin write is not there."""
        for word in words:
            if word.startswith("made/") and not (self.directory / word).exists():
                raise Untaken(f"another command makes {Path(word).name}")
