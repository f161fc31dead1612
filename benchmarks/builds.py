"""Kernels, the ways to compile them, and compiled programs.

A column of the report is one way to compile: COLUMNS below is the whole table,
and one line in it is all that a further column takes. The gcc variants of
`./bench --why` are a table of their own.

A program is known by a key: the hash of its command line, of the kernel and the
headers beside it, of the plugin, and of the compiler's version. Programs are kept
in build/bench/programs under their keys, so nothing stale is ever run. Programs
whose files are the same byte by byte, as where the plugin changes nothing, share
their samples: a difference between them would be noise.
"""

import functools
import hashlib
import os
import re
import shlex
import shutil
import subprocess
from dataclasses import dataclass, replace
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
KERNELS = Path("benchmarks/kernels")
DEFAULT_PLUGIN = Path("build/release/lib/InlineRecursion-16.so")
CLASSES = ("bounded", "ring", "states", "unbounded")
COMPILE_TIMEOUT = 120

# The compilers of C, of C++ and of Fortran, by the suffix of a kernel.
FAMILIES = {
    "clang": {".c": "clang-16", ".cpp": "clang++-16", ".f90": "flang-new-16"},
    "gcc": {".c": "gcc", ".cpp": "g++", ".f90": "gfortran"},
    "plugin": {".c": "clang-16", ".cpp": "clang++-16", ".f90": "flang-new-16"}}
MODULES_TO = {"flang-new-16": "-module-dir", "gfortran": "-J"}
LANGUAGE = {".c": ("-std=c11",), ".cpp": ("-std=c++17",), ".f90": ("-cpp",)}


class BenchError(Exception):
    """One line for the user."""


@dataclass(frozen=True)
class Column:
    """One way to compile all kernels, or those of one class."""

    label: str
    family: str
    flags: tuple = ()
    only: str = ""          # a class, or empty for all
    requests: bool = False  # the kernels' own requests for rings are seen
    unroll: int = 0         # levels of recursion inlined in the source
    default: bool = False   # the flags say what holds without them, too

    def applies(self, kernel):
        """flang has the plugin, but not its options, and only C and C++ sources
        are unrolled."""
        if kernel.is_fortran and (self.unroll or (self.family == "plugin" and
                                                  not self.default)):
            return False
        return self.only in ("", kernel.kind)


def option(*options):
    """The driver's flags for options of LLVM or of the plugin."""
    return tuple(part for o in options for part in ("-mllvm", o))


def level(number, *options):
    return option(f"-inline-recursion-opt-level={number}", *options)


# LLVM's own specialisation of functions for constant arguments is off for
# literals by default; this is as far as its options let it go.
SPECIALISE = option("-force-function-specialization",
                    "-function-specialization-for-literal-constant",
                    "-func-specialization-max-iters=10",
                    "-func-specialization-size-threshold=0")

COLUMNS = (
    Column("clang", "clang"),
    Column("gcc", "gcc"),
    Column("clang-spec", "clang", SPECIALISE),
    Column("L0", "plugin", level(0), default=True),
    Column("L1", "plugin", level(1)),
    Column("L2", "plugin", level(2)),
    Column("L3", "plugin", level(3)),
    Column("L4", "plugin", level(4)),
    Column("L0-no-auto", "plugin", level(0, "-inlinerecursion-auto=false")),
    Column("L0-request", "plugin", level(0), only="ring", requests=True),
)
QUICK_COLUMNS = ("clang", "gcc", "L0")

# What gcc -O3 does to recursion, switched off piece by piece: inlining a function
# into itself (by default up to 8 deep) altogether, or but for 1 or 3 levels;
# copies for constant arguments; both; tail calls as jumps; complete unrolling and
# peeling of loops; jumps over tests whose outcome the path decides; knowing which
# registers a callee leaves alone; and splitting the early exit off a function.
NO_RECURSIVE_INLINING = "--param=max-inline-recursive-depth-auto={}"
WHY_COLUMNS = (
    Column("clang", "clang"),
    Column("gcc", "gcc"),
    Column("depth 0", "gcc", (NO_RECURSIVE_INLINING.format(0),)),
    Column("depth 1", "gcc", (NO_RECURSIVE_INLINING.format(1),)),
    Column("depth 3", "gcc", (NO_RECURSIVE_INLINING.format(3),)),
    Column("no ipa-cp", "gcc", ("-fno-ipa-cp",)),
    Column("neither", "gcc", (NO_RECURSIVE_INLINING.format(0), "-fno-ipa-cp")),
    Column("no sibling", "gcc", ("-fno-optimize-sibling-calls",)),
    Column("no unroll", "gcc",
           ("-fdisable-tree-cunroll", "-fdisable-tree-cunrolli",
            "-fno-peel-loops")),
    Column("no threading", "gcc", ("-fno-thread-jumps",)),
    Column("no ipa-ra", "gcc", ("-fno-ipa-ra",)),
    Column("no split", "gcc", ("-fno-partial-inlining", "-fno-shrink-wrap")),
    # What clang makes of a source that is inlined into itself already.
    Column("clang 1", "clang", unroll=1),
    Column("clang 2", "clang", unroll=2),
    Column("clang 3", "clang", unroll=3),
)
WHY_KERNELS = ("ring_knight_const", "bounded_horner")


class Kernel:
    """A source file with the class and the inputs its header comment states."""

    def __init__(self, path):
        self.path = path
        self.name = path.stem
        self.is_fortran = path.suffix == ".f90"
        text = (ROOT / path).read_text(encoding="utf-8")
        sign = "!" if self.is_fortran else "//"
        kind = re.search(rf"^{sign} class: (\S+)$", text, re.M)
        if not kind or kind.group(1) not in CLASSES:
            raise BenchError(f"{path} has no line '{sign} class: NAME' with NAME one "
                             f"of {', '.join(CLASSES)}; add one")
        sweep = re.search(rf"^{sign} sweep: (argument|[A-Z]+)((?: [0-9,]+)+)$",
                          text, re.M)
        if not sweep:
            raise BenchError(f"{path} has no line '{sign} sweep: argument N N ...' "
                             f"or '{sign} sweep: MACRO N N ...'; add one")
        self.kind = kind.group(1)
        self.macro = None if sweep.group(1) == "argument" else sweep.group(1)
        self.inputs = sweep.group(2).split()

    def flags(self, value):
        """Compiler flags that set the input."""
        return [f"-D{self.macro}={value}"] if self.macro else []

    def arguments(self, value):
        """Program arguments, behind the repeats, that set the input."""
        return [] if self.macro else value.split(",")

    def matches(self, name):
        return name in (self.name, self.name.partition("_")[2])


RECURSIVE = re.compile(r"^((?:[^\n]+\n)*?[^\n]*?\b(\w+)\([^{}();]*\)) "
                       r"\{\n  KERNEL_CALL\(\);\n.*?^\}\n", re.M | re.S)


def unroll_source(text, levels):
    """Inlines each function that calls itself into itself.

    A function F becomes F1, which calls F, F2, which calls F1, and so on, all of
    them always inlined, and F calls the last of them.
    """
    def unroll(match):
        head, name = match.group(1), match.group(2)
        copies = [head + ";\n"]
        for i in range(1, levels + 1):
            callee = f"{name}{i - 1}" if i > 1 else name
            copy = re.sub(rf"\b{name}\(", callee + "(", match.group(0))
            at = copy.index(callee + "(")
            copy = copy[:at] + f"{name}{i}" + copy[at + len(callee):]
            template = re.match(r"template <[^>]*>\s*", copy)
            at = template.end() if template else 0
            copies.append(copy[:at] + "__attribute__((always_inline)) inline " +
                          copy[at:])
        last = re.sub(rf"\b{name}\(", f"{name}{levels}(", match.group(0))
        return "\n".join(copies + [last.replace(f"{name}{levels}(", f"{name}(",
                                                1)])
    return RECURSIVE.sub(unroll, text)


def find_kernels(classes, names):
    """The kernels of these classes and names, all where None is given."""
    kernels = [Kernel(KERNELS / path.name)
               for path in sorted((ROOT / KERNELS).iterdir())
               if path.suffix in LANGUAGE]
    for kind in classes or ():
        if kind not in CLASSES:
            raise BenchError(f"unknown class '{kind}'; known are "
                             f"{', '.join(CLASSES)}")
    kernels = [k for k in kernels if not classes or k.kind in classes]
    for name in names or ():
        if not any(k.matches(name) for k in kernels):
            raise BenchError(f"no kernel '{name}' in the chosen classes; "
                             "--list shows them all")
    return sorted((k for k in kernels
                   if not names or any(k.matches(n) for n in names)),
                  key=lambda k: (CLASSES.index(k.kind), k.name))


def choose_columns(labels, levels, quick, extra, without_plugin):
    """The columns asked for, in the order of the table."""
    known = {c.label: c for c in COLUMNS}
    if labels:
        for label in labels:
            if label not in known:
                raise BenchError(f"unknown column '{label}'; known are "
                                 f"{', '.join(known)}")
        wanted = set(labels) | {"clang"}
    elif levels:
        for number in levels:
            if f"L{number}" not in known:
                raise BenchError(f"unknown level '{number}'; say for example "
                                 "--levels 0,1,2")
        wanted = {"clang", "gcc"} | {f"L{number}" for number in levels}
    else:
        wanted = set(QUICK_COLUMNS if quick else known)
    columns = [c for c in COLUMNS if c.label in wanted]
    if without_plugin:
        columns = [c for c in columns if c.family != "plugin"]
    more = tuple(shlex.split(extra))
    return [replace(c, flags=c.flags + more, default=c.default and not more)
            if c.family == "plugin" else c for c in columns]


@functools.lru_cache(maxsize=None)
def file_hash(path):
    return hashlib.sha256((ROOT / path).read_bytes()).hexdigest()


@functools.lru_cache(maxsize=None)
def version(compiler):
    try:
        return subprocess.run([compiler, "--version"], text=True, check=True,
                              stdout=subprocess.PIPE).stdout.splitlines()[0]
    except (OSError, subprocess.CalledProcessError):
        raise BenchError(f"{compiler} does not run; install it") from None


@functools.lru_cache(maxsize=None)
def flang_libraries():
    """Where flang's runtime libraries are: Debian's flang does not look there."""
    flang = shutil.which("flang-new-16")
    if not flang:
        raise BenchError("flang-new-16 does not run; install it")
    return Path(flang).resolve().parent.parent / "lib"


def measure_command(command, output=subprocess.PIPE, timeout=COMPILE_TIMEOUT):
    """Runs a command in ROOT: status, output, CPU seconds, peak memory in KiB.

    The status of a command that takes too long is None.
    """
    with subprocess.Popen(
            ["timeout", "-k", "1", str(timeout), *command], cwd=ROOT, text=True,
            stdin=subprocess.DEVNULL, stdout=output,
            stderr=subprocess.STDOUT) as child:
        text = child.stdout.read() if child.stdout else ""
        _, status, usage = os.wait4(child.pid, 0)
        child.returncode = os.waitstatus_to_exitcode(status)
    status = None if child.returncode in (124, 137) else child.returncode
    return status, text, usage.ru_utime + usage.ru_stime, usage.ru_maxrss


@dataclass
class Program:
    """A compiled kernel, or the error that kept it from being compiled."""

    key: str
    path: Path
    text: int = 0         # bytes
    seconds: float = 0.0  # CPU time of compiling and linking
    error: str = ""
    content: str = ""     # hash of the file


class Builder:
    """Compiles kernels; knows what it has compiled before."""

    def __init__(self, state, plugin):
        self.state = state
        self.plugin = plugin
        self.directory = state.directory / "programs"
        (ROOT / self.directory).mkdir(parents=True, exist_ok=True)

    def flags(self, column):
        flags = list(column.flags)
        if column.family == "plugin":
            # -load, beside -fpass-plugin, makes the plugin's options known
            # before -mllvm is looked at.
            flags = [f"-fpass-plugin={self.plugin}", "-Xclang", "-load",
                     "-Xclang", str(self.plugin)] + flags
        # The header with the annotation is seen by no other column: it would
        # otherwise change the plain builds too.
        return flags + (["-Iinclude"] if column.requests else [])

    def fortran_flags(self, column):
        if column.family == "gcc":
            return list(column.flags)
        flags = [f"-L{flang_libraries()}"]
        if column.family == "plugin":
            return [f"-fpass-plugin={self.plugin}", *flags]
        return [*column.flags, *flags]

    def command(self, kernel, column, value, extra=()):
        suffix = kernel.path.suffix
        flags = (self.fortran_flags(column) if kernel.is_fortran
                 else self.flags(column))
        return [FAMILIES[column.family][suffix], *LANGUAGE[suffix], "-O3", *flags,
                *kernel.flags(value), *extra, str(kernel.path)]

    def key(self, command, kernel, column):
        parts = [*command, version(command[0]), file_hash(kernel.path)]
        headers = "*.inc" if kernel.is_fortran else "*.h"
        parts += [file_hash(KERNELS / p.name)
                  for p in sorted((ROOT / KERNELS).glob(headers))]
        if column.family == "plugin":
            parts.append(file_hash(self.plugin))
        if column.unroll:
            parts += [str(column.unroll), file_hash("benchmarks/builds.py")]
        if column.requests:
            parts.append(file_hash(Path("include/inlinerecursion/request.h")))
        return hashlib.sha256("\0".join(parts).encode()).hexdigest()[:24]

    def build(self, kernel, column, value, extra=()):
        command = self.command(kernel, column, value, extra)
        key = self.key(command, kernel, column)
        path = self.directory / key
        if column.unroll:
            text = (ROOT / kernel.path).read_text(encoding="utf-8")
            command[-1] = f"{path}{kernel.path.suffix}"
            command[1:1] = [f"-I{KERNELS}"]
            (ROOT / command[-1]).write_text(unroll_source(text, column.unroll),
                                            encoding="utf-8")
        known = self.state.get("build", key)
        if known and (known[0]["error"] or (ROOT / path).exists()):
            return Program(key, path, **known[0])
        command += ["-o", str(path)]
        if kernel.is_fortran:
            # Compilers of Fortran leave module files somewhere, each its own.
            modules = f"{path}.modules"
            (ROOT / modules).mkdir(exist_ok=True)
            command += [MODULES_TO[command[0]], modules]
        status, output, seconds, _ = measure_command(command)
        if kernel.is_fortran:
            shutil.rmtree(ROOT / modules)
        program = Program(key, path, seconds=round(seconds, 4))
        if status == 0:
            program.text = text_size(path)
            program.content = hashlib.sha256(
                (ROOT / path).read_bytes()).hexdigest()[:24]
        else:
            program.error = error_line(status, output)
        self.state.add("build", key, text=program.text, error=program.error,
                       seconds=program.seconds, content=program.content)
        return program

    def refusal(self, column):
        """Why the compiler rejects the column's flags, or an empty string."""
        compiler = FAMILIES[column.family][".c"]
        status, output, _, _ = measure_command(
            [compiler, "-O3", *self.flags(column), "-x", "c", "/dev/null", "-c",
             "-o", "/dev/null"])
        return "" if status == 0 else error_line(status, output)


def error_line(status, output):
    if status is None:
        return f"does not compile within {COMPILE_TIMEOUT} s"
    lines = output.strip().splitlines() or [f"exit status {status}"]
    wrong = [l for l in lines if re.search(r"error|unknown", l, re.I)]
    return (wrong or lines)[0]


def text_size(path):
    output = subprocess.run(["size", path], cwd=ROOT, text=True, check=True,
                            stdout=subprocess.PIPE).stdout
    return int(output.splitlines()[1].split()[0])
