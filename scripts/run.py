"""The engine of ./run: one program, compiled with and without the pass, compared.

The steps, in this order:

1. The command line and the input files are checked, before anything slow.
2. scripts/setup.sh makes sure that compiler and plugin are there.
3. One compilation of each file with the pass writes an optimisation record,
   which names the functions that were chained. It is separate from the timed
   ones because writing the record costs time and switches on location tracking.
4. Both variants ("plain" and "with pass") are compiled and then run several
   times, in turn (plain, pass, plain, pass, ...), so that a machine that slows
   down or speeds up does so for both. Each time is the CPU time (user + system)
   that wait4() reports for the child and its own children: unlike wall-clock
   time it does not count what other processes take. Medians are printed.
5. Every run's standard output and exit status must be those of the first plain
   run. A difference is an error; so is a program that crashes or hangs.

Every child runs in a process group of its own, which is killed as soon as the
child ends, runs out of time, or this program is interrupted. All files live in
one temporary directory; the compiler's own temporary files too, by TMPDIR.

Anything that goes wrong is a RunError: one line on standard error that says
what is wrong and what to do, after the output of the tool at fault, if any.
Exit status: 0 if both variants ran and agreed, 1 on an error, 2 on a wrong
command line, 130 when interrupted.
"""

import os
import re
import resource
import shlex
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import threading
from dataclasses import dataclass, field
from itertools import zip_longest
from pathlib import Path

from demangle import demangle
from picture import draw

HELP = """\
Usage: ./run [OPTION]... [FILE]...

Compiles the C or C++ files, which together make one program, with clang-16 as it
is and with the InlineRecursion pass, runs both, and reports which functions were
rebuilt as chains of copies or for states, what that does to compile time and run
time, and whether both programs print the same. Without a FILE:
examples/permutations.c.
Missing packages are installed and the pass is built first.

  --level N             how eager the pass is, 0 to 4; default 0, which takes
                        only a function of one integer argument with a known
                        recursion depth that is called from one place
  --pass-options "A B"  further options of the pass, e.g.
                        "-default-recursion-depth-threshold=12"
  -O LEVEL              optimisation level: 1, 2, 3, s or z; default 3
  --cc-flags "FLAGS"    further compiler and linker flags, e.g. "-DN=8 -lm"
  --args "ARGS"         arguments for the program
  --runs N              how often both are compiled and run; default 5
  --timeout SECONDS     limit for each compilation and each run; default 60
  --picture FILE        draw the call graph before and after into FILE, which
                        ends in .svg, .png or .pdf
  -h, --help            this text

The program reads nothing (/dev/null) as its standard input. Exit status: 0 if
both programs ran and agreed, otherwise not 0.

Examples:
  ./run
  ./run examples/dice.c examples/dice_main.c
  ./run --level 2 --runs 9 --args "30" my_program.cpp
"""

ROOT = Path(__file__).resolve().parent.parent
PLUGIN = ROOT / "build" / "release" / "lib" / "InlineRecursion-16.so"
DEFAULT_PROGRAM = ROOT / "examples" / "permutations.c"

C_SUFFIXES = {".c"}
CXX_SUFFIXES = {".cpp", ".cc", ".cxx"}
PICTURE_SUFFIXES = {".svg", ".png", ".pdf"}

# Keeps a program that prints without end from filling the disk before its time
# is up.
OUTPUT_LIMIT = 1 << 30

# Below this, the start of a process is most of what is measured.
SHORTEST_COMPARABLE = 0.005

VARIANTS = ("plain", "with pass")


class RunError(Exception):
    """One line for the user, and the exit status."""

    def __init__(self, message, status=1):
        super().__init__(message)
        self.status = status


class Interrupted(Exception):
    """A signal asked this program to end."""


@dataclass
class Options:
    level: int = 0
    pass_options: list = field(default_factory=list)
    optimisation: str = "3"
    cc_flags: list = field(default_factory=list)
    args: list = field(default_factory=list)
    runs: int = 5
    timeout: float = 60.0
    picture: Path = None
    files: list = field(default_factory=list)


@dataclass
class Finished:
    """A child that ended by itself."""

    status: int  # exit status, or minus the number of the signal that killed it
    seconds: float  # CPU time
    stdout: Path
    stderr: Path


@dataclass
class Chained:
    """One function that the pass rebuilt."""

    function: str
    place: str  # "file:line", or empty
    shape: str  # "chain", "ring" or "states"
    copies: str
    # Of copies for states: what each knows, and who calls whom.
    states: str = ""
    links: str = ""


# --- The command line --------------------------------------------------------


def usage_error(message):
    return RunError(f"{message} (./run --help lists the options)", status=2)


def split_words(option, value):
    try:
        return shlex.split(value)
    except ValueError as error:
        raise usage_error(f"{option}: {error}: '{value}'") from None


def parse_pass_options(option, value):
    words = split_words(option, value)
    for word in words:
        if not word.startswith("-"):
            raise usage_error(f"{option}: '{word}' is not of the form -name=value")
        if word.lstrip("-").startswith("inline-recursion-opt-level"):
            raise usage_error(f"{option}: give the level by --level")
    return words


def parse_level(option, value):
    if value not in ("0", "1", "2", "3", "4"):
        raise usage_error(f"bad level '{value}': {option} takes 0, 1, 2, 3 or 4")
    return int(value)


def parse_optimisation(option, value):
    if value not in ("1", "2", "3", "s", "z"):
        raise usage_error(
            f"bad optimisation level '{value}': {option} takes 1, 2, 3, s or z"
        )
    return value


def parse_runs(option, value):
    if not re.fullmatch("[0-9]{1,4}", value) or int(value) == 0:
        raise usage_error(f"bad number '{value}': {option} takes 1 to 9999")
    return int(value)


def parse_timeout(option, value):
    if not re.fullmatch(r"[0-9]{1,6}(\.[0-9]+)?", value) or float(value) == 0:
        raise usage_error(f"bad time '{value}': {option} takes a number of seconds")
    return float(value)


def parse_picture(option, value):
    if Path(value).suffix not in PICTURE_SUFFIXES:
        known = " ".join(sorted(PICTURE_SUFFIXES))
        raise usage_error(f"bad file '{value}': {option} takes one ending in {known}")
    return Path(value)


# Written by hand because a value may well begin with a dash
# (--pass-options "-name=value"), which argparse takes for an option.
OPTIONS = {
    "--level": ("level", parse_level),
    "--pass-options": ("pass_options", parse_pass_options),
    "-O": ("optimisation", parse_optimisation),
    "--cc-flags": ("cc_flags", split_words),
    "--args": ("args", split_words),
    "--runs": ("runs", parse_runs),
    "--timeout": ("timeout", parse_timeout),
    "--picture": ("picture", parse_picture),
}


def parse_command_line(argv):
    """Returns the Options, or None if help was asked for."""
    options = Options()
    words = iter(argv)
    for word in words:
        if word in ("-h", "--help"):
            return None
        if word == "--":
            options.files.extend(words)
            break
        if word == "-" or not word.startswith("-"):
            options.files.append(word)
            continue
        if word.startswith("-O") and word != "-O":
            name, value = "-O", word[2:]
        else:
            name, equals, value = word.partition("=")
            if name not in OPTIONS:
                raise usage_error(f"unknown option '{name}'")
            if not equals:
                value = next(words, None)
        if value is None:
            raise usage_error(f"{name} needs a value")
        attribute, parse = OPTIONS[name]
        setattr(options, attribute, parse(name, value))
    options.files = [Path(name) for name in options.files] or [DEFAULT_PROGRAM]
    for file in options.files:
        check_input(file)
    return options


def check_input(file):
    if not file.exists():
        raise RunError(f"{file}: no such file")
    if not file.is_file():
        raise RunError(f"{file}: not a regular file")
    if file.suffix not in C_SUFFIXES | CXX_SUFFIXES:
        known = " ".join(sorted(C_SUFFIXES | CXX_SUFFIXES))
        raise RunError(f"{file}: not a C or C++ file (these end in {known})")
    if not os.access(file, os.R_OK):
        raise RunError(f"{file}: cannot be read: check its permissions")


# --- Children ----------------------------------------------------------------


def signal_name(number):
    try:
        return signal.Signals(number).name
    except ValueError:
        return f"signal {number}"


def execute(command, timeout, temporary, name, executable=None):
    """Runs a command to its end; returns Finished, or None if it took too long.

    Its output goes to the files NAME.out and NAME.err in the temporary
    directory. The executable, if given, is what runs under the name command[0].
    """
    stdout, stderr = temporary / f"{name}.out", temporary / f"{name}.err"
    hard = resource.getrlimit(resource.RLIMIT_FSIZE)[1]
    unlimited = hard == resource.RLIM_INFINITY
    limit = (OUTPUT_LIMIT if unlimited else min(OUTPUT_LIMIT, hard), hard)
    environment = dict(os.environ)
    if command[0].startswith("clang"):
        environment["TMPDIR"] = str(temporary)
    with open(stdout, "wb") as out, open(stderr, "wb") as err:
        child = subprocess.Popen(
            command,
            executable=executable,
            stdin=subprocess.DEVNULL,
            stdout=out,
            stderr=err,
            env=environment,
            start_new_session=True,
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, limit),
        )
    timed_out = threading.Event()

    def stop():
        timed_out.set()
        os.killpg(child.pid, signal.SIGKILL)

    # Waiting with WNOWAIT leaves the ended child as a zombie, so that its
    # process group still exists for whoever kills it.
    timer = threading.Timer(timeout, stop)
    timer.daemon = True
    timer.start()
    try:
        os.waitid(os.P_PID, child.pid, os.WEXITED | os.WNOWAIT)
    finally:
        timer.cancel()
        timer.join()
        os.killpg(child.pid, signal.SIGKILL)
        _, wait_status, usage = os.wait4(child.pid, 0)
        child.returncode = os.waitstatus_to_exitcode(wait_status)
    if timed_out.is_set():
        return None
    seconds = usage.ru_utime + usage.ru_stime
    return Finished(child.returncode, seconds, stdout, stderr)


def show(path):
    """Copies a child's output to standard error."""
    sys.stderr.flush()
    with open(path, "rb") as text:
        shutil.copyfileobj(text, sys.stderr.buffer)
    sys.stderr.buffer.flush()


# --- Compilation -------------------------------------------------------------


class Compiler:
    """Compiles the files of one program and links them."""

    def __init__(self, options, temporary):
        self.options = options
        self.temporary = temporary

    def driver(self, file):
        return "clang++-16" if file.suffix in CXX_SUFFIXES else "clang-16"

    def pass_flags(self):
        # -load, in addition to -fpass-plugin, makes the plugin's options known
        # before -mllvm is looked at.
        flags = [f"-fpass-plugin={PLUGIN}", "-Xclang", "-load", "-Xclang", str(PLUGIN)]
        level = f"-inline-recursion-opt-level={self.options.level}"
        for option in [level, *self.options.pass_options]:
            flags += ["-mllvm", option]
        return flags

    def object(self, variant, index):
        return self.temporary / f"{variant.replace(' ', '-')}-{index}.o"

    def program(self, variant):
        return self.temporary / f"{variant.replace(' ', '-')}.exe"

    def compile_file(self, variant, index, extra=()):
        file = self.options.files[index]
        driver = self.driver(file)
        command = [driver, f"-O{self.options.optimisation}", "-Qunused-arguments"]
        command += ["-isystem", str(ROOT / "include")]
        command += self.options.cc_flags
        if variant == "with pass":
            command += self.pass_flags()
        command += [*extra, "-c", "-o", str(self.object(variant, index))]
        # Clang would take a leading dash for an option, even behind "--".
        name = f"./{file}" if str(file).startswith("-") else str(file)
        done = self.invoke([*command, name])
        if done.status == 0:
            return done
        show(done.stderr)
        if variant == "plain":
            raise RunError(f"{file} does not compile: see {driver}'s messages above")
        if b"LLVM option parsing" in done.stderr.read_bytes():
            raise RunError(
                f"{driver} refused an option of the pass: see its message above and"
                " check --pass-options"
            )
        raise RunError(
            f"{file} does not compile with the pass, only without it: see {driver}'s"
            " messages above"
        )

    def compile(self, variant):
        """Compiles all files and returns the CPU time of that."""
        return sum(
            self.compile_file(variant, index).seconds
            for index in range(len(self.options.files))
        )

    def link(self, variant):
        files = self.options.files
        is_cxx = any(file.suffix in CXX_SUFFIXES for file in files)
        driver = "clang++-16" if is_cxx else "clang-16"
        objects = [str(self.object(variant, index)) for index in range(len(files))]
        done = self.invoke(
            [driver, f"-O{self.options.optimisation}", "-Qunused-arguments", *objects]
            + ["-o", str(self.program(variant)), *self.options.cc_flags]
        )
        if done.status != 0:
            show(done.stderr)
            raise RunError(
                f"the program does not link with {driver}: see its messages above"
                " (name all files of the program; libraries go to --cc-flags)"
            )

    def invoke(self, command):
        done = execute(command, self.options.timeout, self.temporary, "compiler")
        if done is None:
            raise RunError(
                f"{command[0]} took longer than {self.options.timeout:g} s and was"
                " killed: allow more with --timeout"
            )
        return done


# --- What was chained --------------------------------------------------------


def unquote(scalar):
    """The text of a YAML scalar on one line: plain, 'single' or "double"."""
    if scalar.startswith("'"):
        return scalar[1:-1].replace("''", "'")
    if scalar.startswith('"'):
        return re.sub(r"\\(.)", r"\1", scalar[1:-1])
    return scalar


def parse_record(text):
    """The functions an optimisation record (YAML) calls chained or rebuilt for states,
    in its order."""
    chained = []
    for document in re.findall(r"^--- !Passed\n(.*?)^\.\.\.$", text, re.M | re.S):
        values = {
            key: unquote(value)
            for key, value in re.findall(r"^(?:  - )?(\w+): *(.*?) *$", document, re.M)
        }
        if values.get("Name") not in ("Chained", "AutoStates"):
            continue
        location = values.get("DebugLoc", "")
        place = re.search(r"File: *('(?:[^']|'')*'|[^,]*), *Line: *(\d+)", location)
        chained.append(
            Chained(
                values["Function"],
                f"{os.path.basename(unquote(place[1]))}:{place[2]}" if place else "",
                values.get("Shape", "states"),
                values["Copies"],
                values.get("States", ""),
                values.get("Links", ""),
            )
        )
    return chained


def find_chained(compiler):
    """Compiles with the pass once more, for what it did."""
    record = compiler.temporary / "record.yaml"
    flags = [
        "-fsave-optimization-record=yaml",
        f"-foptimization-record-file={record}",
        "-foptimization-record-passes=inlinerecursion",
    ]
    chained = []
    for index in range(len(compiler.options.files)):
        record.unlink(missing_ok=True)
        # Warnings, and the remarks that -Rpass and the like ask for.
        show(compiler.compile_file("with pass", index, flags).stderr)
        if record.exists():
            chained += parse_record(record.read_text(errors="replace"))
    for entry, name in zip(chained, demangle([entry.function for entry in chained])):
        entry.function = name
    return chained


# --- Running -----------------------------------------------------------------


def run_program(compiler, variant, name):
    """Runs the program once; a crash or a hang is an error."""
    options = compiler.options
    # Under one name, for programs that print theirs.
    command = ["program", *options.args]
    executable = compiler.program(variant)
    done = execute(command, options.timeout, compiler.temporary, name, executable)
    which = "without the pass" if variant == "plain" else "with the pass"
    if done is None:
        raise RunError(
            f"the program compiled {which} ran longer than {options.timeout:g} s and"
            " was killed: allow more with --timeout, or give it less to do"
        )
    if done.status < 0:
        show(done.stderr)
        both = "" if variant == "plain" else ", which without the pass it is not"
        killer = signal_name(-done.status)
        if -done.status == signal.SIGXFSZ:
            killer += f" (it wrote more than {OUTPUT_LIMIT >> 20} MiB to one file)"
        raise RunError(f"the program compiled {which} was killed by {killer}{both}")
    return done


def contents(done):
    return done.stdout.read_bytes()


def describe_difference(first, second):
    """Where and how the outputs of two runs differ, or "" if they agree."""
    if first.status != second.status:
        return f"exit status {first.status} and {second.status}"
    one, other = contents(first), contents(second)
    if one == other:
        return ""
    lines = zip(one.splitlines() + [b"(end)"], other.splitlines() + [b"(end)"])
    for number, (left, right) in enumerate(lines, 1):
        if left != right:
            left, right = (text[:40].decode(errors="replace") for text in (left, right))
            return f"line {number} is '{left}' and '{right}'"
    return "the ends of their last lines"


def compare_runs(compiler):
    """Runs both in turn. Returns the first plain run and the times of each."""
    reference = run_program(compiler, "plain", "reference")
    times = {"plain": [reference.seconds], "with pass": []}
    for round_number in range(compiler.options.runs):
        for variant in VARIANTS:
            if variant == "plain" and round_number == 0:
                continue
            done = run_program(compiler, variant, "run")
            times[variant].append(done.seconds)
            difference = describe_difference(reference, done)
            if not difference:
                continue
            # A program that prints the time, say, differs from itself as well.
            again = run_program(compiler, "plain", "again")
            own_difference = describe_difference(reference, again)
            if variant == "plain" or own_difference:
                raise RunError(
                    "the program's output changes from run to run even without the pass"
                    f" and cannot be compared: {own_difference or difference}"
                )
            raise RunError(f"outputs differ without and with the pass: {difference}")
    return reference, times


# --- The report --------------------------------------------------------------


def ratio(plain, with_pass):
    if min(plain, with_pass) < SHORTEST_COMPARABLE:
        return "too short to compare"
    if with_pass <= plain:
        return f"{plain / with_pass:.2f}x faster"
    return f"{with_pass / plain:.2f}x slower"


def time_row(label, times):
    plain, with_pass = (statistics.median(times[variant]) for variant in VARIANTS)
    change = ratio(plain, with_pass)
    return f"{label:<14}{plain:>9.3f} s {with_pass:>10.3f} s   {change}"


NOT_CHAINED = (
    "level 0 wants one argument, a known depth, one call; try --level 1 to 4",
    "no recursive function meets the conditions of this level",
)


def describe_shape(entry):
    is_one = entry.copies == "1"
    if entry.shape == "states":
        return f"{entry.copies} {'state' if is_one else 'states'}"
    return f"{entry.shape} of {entry.copies} {'copy' if is_one else 'copies'}"


def describe_chained(chained, level):
    if not chained:
        return [
            "nothing: " + NOT_CHAINED[min(level, 1)],
            "(reasons: --cc-flags -Rpass-missed=inlinerecursion)",
        ]
    width = max(len(entry.function) for entry in chained)
    return [
        f"{entry.function:<{width}}  {describe_shape(entry)}"
        + (f"  ({entry.place})" if entry.place else "")
        for entry in chained
    ]


def displayed(file):
    return str(file.relative_to(ROOT)) if file.is_relative_to(ROOT) else str(file)


def report(options, chained, compile_times, reference, run_times):
    size = reference.stdout.stat().st_size
    count = f"{options.runs} runs each" if options.runs > 1 else "one run each"
    rows = [
        f"{'program':<14}{' '.join(displayed(file) for file in options.files)}",
        f"{'compiler':<14}clang-16 -O{options.optimisation},"
        f" level {' '.join([str(options.level), *options.pass_options])}",
    ]
    for label, line in zip_longest(
        ["chained"], describe_chained(chained, options.level), fillvalue=""
    ):
        rows.append(f"{label:<14}{line}")
    rows += [
        f"{'':<14}{VARIANTS[0]:>11} {VARIANTS[1]:>12}   median CPU time, {count}",
        time_row("compile time", compile_times),
        time_row("run time", run_times),
        f"{'outputs':<14}agree ({size} {'byte' if size == 1 else 'bytes'},"
        f" exit status {reference.status})",
    ]
    print("\n".join(rows), flush=True)


def compare(options, temporary):
    compiler = Compiler(options, temporary)
    # The plain compiler first: an error it finds is none of the pass's.
    for index in range(len(options.files)):
        compiler.compile_file("plain", index)
    chained = find_chained(compiler)
    compile_times = {variant: [] for variant in VARIANTS}
    for _ in range(options.runs):
        for variant in VARIANTS:
            compile_times[variant].append(compiler.compile(variant))
    for variant in VARIANTS:
        compiler.link(variant)
    reference, run_times = compare_runs(compiler)
    report(options, chained, compile_times, reference, run_times)
    if options.picture and (trouble := draw(chained, options.picture)):
        raise RunError(f"{options.picture}: cannot be drawn: {trouble}")


def set_up():
    target = str(PLUGIN.relative_to(ROOT / "build" / "release"))
    done = subprocess.run([ROOT / "scripts" / "setup.sh", target])
    if done.returncode != 0:
        raise RunError("the set-up failed: see its message above")


def interrupt(number, frame):
    raise Interrupted


def main(argv):
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, interrupt)
    # File names and function names need not be valid in the user's locale.
    sys.stdout.reconfigure(errors="backslashreplace")
    try:
        options = parse_command_line(argv)
        if options is None:
            print(HELP, end="")
            return 0
        set_up()
        with tempfile.TemporaryDirectory(prefix="inline-recursion-") as temporary:
            compare(options, Path(temporary))
        return 0
    except RunError as error:
        message, status = error, error.status
    except Interrupted:
        message, status = "interrupted", 130
    except BrokenPipeError:
        # Whoever reads our output has seen enough; keep Python from complaining
        # about it once more when it closes standard output.
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
        return 1
    except OSError as error:
        message, status = error, 1
    print(f"run: error: {message}", file=sys.stderr)
    return status


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
