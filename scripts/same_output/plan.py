"""What is compiled, and how: the inputs of the project and the jobs for each.

An input is called by its path from the top of the checkout. A file that a test makes
is called by the test and what it calls the file; a file of a code base by the code
base and its path there.
"""

import fnmatch
import re
import shutil
import sys
from dataclasses import dataclass, field
from pathlib import Path

from .runlines import Reader
from .work import BIN, PLUGIN, BadInput, Job, digest, digest_files

ROOT = Path(__file__).resolve().parent.parent.parent
sys.path.append(str(ROOT / "benchmarks" / "codebases"))
from builds import find_all_units, find_units, limit_memory  # noqa: E402, F401
from catalogue import CODE_BASES  # noqa: E402
from sources import CodebasesError, SourcePackages  # noqa: E402, F401

KERNELS, C_TESTS, IR_TESTS, BASES = (
    "kernels", "tests, C and C++", "tests, IR", "code bases")
GROUPS = (KERNELS, C_TESTS, IR_TESTS, BASES)

C_SUFFIXES = (".c", ".cpp")
SUFFIXES = (*C_SUFFIXES, ".ll")
# Nobody expects these to be compiled; anything else that is not is told of.
NO_PROGRAMS = (".h", ".md", ".txt")

# The remarks that the compilers print; all kinds, in one stream.
CLANG_REMARKS = tuple(f"-R{kind}=inlinerecursion" for kind in (
    "pass", "pass-missed", "pass-analysis"))
OPT_REMARKS = tuple(f"-{kind}=inlinerecursion" for kind in (
    "pass-remarks", "pass-remarks-missed", "pass-remarks-analysis"))

# What inputs are in, and what these read.
COPIED = ("benchmarks/kernels", "docs", "examples", "fuzz", "include", "pass", "tests")

NAMED_PASSES = ("inlinerecursion-pipeline", "inlinerecursion-auto",
                "inlinerecursion", "inlinerecursion-behind-inliner",
                "print<inlinerecursion>")

# Beside the defaults, for paths that these seldom take.
VARIANTS = (
    ("-g",),
    ("-mllvm", "-inline-recursion-opt-level=2"),
    ("-mllvm", "-inline-recursion-opt-level=4"),
    ("-mllvm", "-inlinerecursion-auto-copies=3"),
    ("-mllvm", "-inlinerecursion-auto-function-growth=200"),
    ("-mllvm", "-inlinerecursion-auto-module-growth=100"),
)
VARIANT_LEVEL = "3"


@dataclass(frozen=True)
class Scope:
    """How much is compiled."""

    levels: tuple = ("1", "2", "3", "s")
    lto: bool = True
    quick: bool = False
    bases: tuple = ()  # code bases
    only: str = "*"

    def takes(self, name):
        return fnmatch.fnmatchcase(name, self.only)

    def may_take_below(self, prefix):
        """Whether a name that begins so can be taken at all."""
        literal = re.match(r"[^*?\[]*", self.only)[0]
        return prefix.startswith(literal) or literal.startswith(prefix)


@dataclass
class Plan:
    """All jobs, and what was left out: (group, name, reason)."""

    jobs: list = field(default_factory=list)
    skipped: list = field(default_factory=list)
    links: dict = field(default_factory=dict)


def read_bases(text):
    known = {base.name: base for base in CODE_BASES}
    names = [] if text == "none" else [n for n in text.split(",") if n]
    for name in names:
        if name not in known:
            raise BadInput(f"--codebases: no code base is called {name}; known: "
                           + ", ".join(known) + ", or none")
    return tuple(known[name] for name in names)


# --- Commands ----------------------------------------------------------------


def clang(path, *options):
    """A compiler's command up to what it writes."""
    driver = "clang++" if path.endswith(".cpp") else "clang"
    return (str(BIN / driver), f"-fpass-plugin={PLUGIN}", "-Xclang", "-load",
            "-Xclang", PLUGIN, "-ffile-compilation-dir=.",
            "-fno-crash-diagnostics", *options)


def opt(*options):
    return (str(BIN / "opt"), f"-load-pass-plugin={PLUGIN}", *options)


def legacy_opt(*options):
    return (str(BIN / "opt"), f"-load={PLUGIN}", "-enable-new-pm=0", *options)


def lld(level, options, inputs, output):
    """Links what calls a function that no file defines, too."""
    # The compiler driver passes -Os on as 2.
    level = level if level in "123" else "2"
    return (str(BIN / "ld.lld"), f"--load-pass-plugin={PLUGIN}",
            f"-mllvm=-load={PLUGIN}", f"--lto-O{level}", "--threads=1",
            "--thinlto-jobs=1", *options, *inputs, "-o", output)


def to_object(command, path):
    return (*command, "-c", path, "-o", "out.o")


def to_told_ir(command, path):
    """Remarks and the IR that goes to code generation."""
    return (*command, *CLANG_REMARKS, "-S", "-emit-llvm", path, "-o", "out.ll")


def link_steps(level, how, bitcode, name):
    """A link without remarks and one with: the plugin notices if there are any."""
    told = [f"-mllvm={option}" for option in OPT_REMARKS]
    return (lld(level, how, bitcode, name),
            lld(level, [*how, *told], bitcode, f"told-{name}"))


def link_options(is_program):
    """A program's other functions are local to it; without one, none is."""
    return ["-e", "main", "--unresolved-symbols=ignore-all"] if is_program \
        else ["-r"]


# --- Jobs --------------------------------------------------------------------


class Planner:
    """Collects the jobs of all groups."""

    def __init__(self, scope, directory):
        self.scope = scope
        self.directory = directory
        self.copy_inputs()
        self.plan = Plan(links={name: directory / name for name in ("repo", "made")})
        self.headers = self.digest_headers()
        self.digests = {}

    def copy_inputs(self):
        """Somebody may edit the checkout while commands run."""
        shutil.rmtree(self.directory, ignore_errors=True)
        for name in COPIED:
            shutil.copytree(ROOT / name, self.directory / "repo" / name,
                            ignore=shutil.ignore_patterns("__pycache__"))
        (self.directory / "made").mkdir()

    def find_files(self, top, suffixes):
        """Names from the top of the checkout."""
        repo = self.directory / "repo"
        return sorted(str(p.relative_to(repo)) for p in (repo / top).rglob("*")
                      if p.suffix in suffixes and p.is_file())

    def digest_headers(self):
        """Of what C files and commands of tests may read besides: everything."""
        repo = self.directory / "repo"
        return digest_files(
            [p for p in repo.rglob("*") if p.is_file()
             and (p.suffix in (".h", ".inc", ".prof") or "Inputs" in p.parts)],
            repo)

    def find_file(self, path):
        """The file behind a path as jobs name it."""
        link, _, rest = path.partition("/")
        return self.plan.links[link] / rest

    def digest_of(self, path):
        if path not in self.digests:
            is_ir = path.endswith(".ll")
            content = digest(self.find_file(path).read_bytes())
            self.digests[path] = digest(
                f"{content} {'' if is_ir else self.headers}".encode())
        return self.digests[path]

    def add(self, group, name, steps, outputs, reads):
        self.plan.jobs.append(Job(group, name, tuple(steps), outputs, reads))

    def skip(self, group, name, reason):
        self.plan.skipped.append((group, name, reason))

    # --- C and C++ -----------------------------------------------------------

    def add_compilations(self, group, name, path, options=()):
        """One file at all levels, silently and with remarks, and with LTO."""
        reads = self.digest_of(path)
        options = ("-I", "repo/include", *options)
        for level in self.scope.levels:
            command = clang(path, f"-O{level}", *options)
            self.add(group, name, [to_object(command, path)], ("out.o",), reads)
            self.add(group, name, [to_told_ir(command, path)], ("out.ll",), reads)
            if self.scope.lto:
                self.add_lto(group, name, path, level, options)

    def add_lto(self, group, name, path, level, options):
        text = self.find_file(path).read_text(errors="replace")
        is_program = group == KERNELS or re.search(r"\bmain *\(", text)
        has_thin = group == KERNELS and level == VARIANT_LEVEL
        kinds = ("full", "thin") if has_thin else ("full",)
        for kind in kinds:
            command = clang(path, f"-O{level}", *options, f"-flto={kind}")
            steps = [(*command, "-c", path, "-o", "out.bc"),
                     *link_steps(level, link_options(is_program), ["out.bc"],
                                 "out.exe")]
            self.add(group, name, steps, ("out.bc", "out.exe", "told-out.exe"),
                     self.digest_of(path))

    def add_variants(self, group, name, path):
        for variant in VARIANTS:
            command = clang(path, f"-O{VARIANT_LEVEL}", "-I", "repo/include",
                            *variant)
            self.add(group, name,
                     [to_object(command, path), to_told_ir(command, path)],
                     ("out.o", "out.ll"), self.digest_of(path))

    def add_kernels(self):
        for file in self.find_files("benchmarks/kernels", C_SUFFIXES):
            if not self.scope.takes(file):
                continue
            self.add_compilations(KERNELS, file, f"repo/{file}")
            if VARIANT_LEVEL in self.scope.levels and not self.scope.quick:
                self.add_variants(KERNELS, file, f"repo/{file}")

    # --- IR ------------------------------------------------------------------

    def add_ir(self, name, path):
        """One file of IR, silently and with remarks."""
        commands = [opt(f"-passes={passes}") for passes in self.pipelines()]
        commands.append(legacy_opt("-inlinerecursion"))
        for command in commands:
            for remarks in ((), OPT_REMARKS):
                self.add(IR_TESTS, name,
                         [(*command, *remarks, "-S", path, "-o", "out.ll")],
                         ("out.ll",), self.digest_of(path))

    def pipelines(self):
        levels = () if self.scope.quick else self.scope.levels
        yield from (f"default<O{level}>" for level in levels)
        if self.scope.lto:
            yield from (f"lto-pre-link<O{level}>,lto<O{level}>"
                        for level in levels)
            if "3" in levels:
                yield "thinlto-pre-link<O3>,thinlto<O3>"
        yield from NAMED_PASSES

    # --- Tests ---------------------------------------------------------------

    def add_tests(self):
        """The tests' files, what they make, and their own commands."""
        for name in ("tests", "fuzz", "examples"):
            for file in self.find_files(name, (*SUFFIXES, ".test")):
                if self.scope.may_take_below(file) and self.is_quick(file):
                    self.add_test(file)

    def is_quick(self, file):
        return not self.scope.quick or re.match(r"tests/plugin/.*\.ll$", file)

    def add_test(self, file):
        text = self.find_file(f"repo/{file}").read_text(errors="replace")
        test = Reader(file, self.directory).read(text)
        if self.scope.takes(file):
            if not file.endswith(".test"):
                self.add_test_file(file, test, text)
            for command in test.commands:
                self.add_own(file, command)
            for reason in test.skipped:
                self.skip(IR_TESTS if file.endswith(".ll") else C_TESTS, file,
                          reason)
        for path in test.made:
            self.add_made(path)

    def add_test_file(self, file, test, text):
        if file.endswith(".ll"):
            if test.has_lines and not test.reads_itself:
                self.skip(IR_TESTS, file, "no command reads the file itself")
                return
            self.add_ir(file, f"repo/{file}")
            return
        if re.search(r'#include "(llvm|pass|plugin)/', text):
            self.skip(C_TESTS, file, "it needs LLVM's headers")
            return
        standard = re.search(r"RUN: %.*-std[ =](\S+)", text)
        options = (f"-std={standard[1]}",) if standard else ()
        self.add_compilations(C_TESTS, file, f"repo/{file}", options)

    def add_made(self, path):
        name = path.removeprefix("made/")
        if not self.scope.takes(name):
            return
        if path.endswith(".ll"):
            self.add_ir(name, path)
        elif path.endswith(C_SUFFIXES):
            self.add_compilations(C_TESTS, name, path)
        elif not path.endswith(NO_PROGRAMS):
            self.skip(C_TESTS, name, "it is not C, C++ or IR")

    def add_own(self, file, own):
        """A test's own command, for its options and its pipeline."""
        reads = digest(f"{self.digest_own(own.file)} {self.headers}".encode())
        if own.compiler == "%clang_with_pass":
            command = clang(own.file, *own.options)
            self.add(C_TESTS, file, [to_object(command, own.file)], ("out.o",),
                     reads)
            return
        tool = opt if own.compiler == "%opt" else legacy_opt
        command = tool(*own.options)
        self.add(IR_TESTS, file, [(*command, "-S", own.file, "-o", "out.ll")],
                 ("out.ll",), reads)

    def digest_own(self, path):
        return "" if path.startswith("/dev/") else self.digest_of(path)

    # --- Code bases ----------------------------------------------------------

    def add_base(self, base, packages):
        """The units one by one, and with LTO all of them and their programs."""
        sources = packages.prepare(base.name, base.package, base.prepare)
        self.plan.links[base.name] = sources
        reads = digest_files(
            [p for p in sources.rglob("*") if p.is_file() and p.suffix in (
                ".c", ".cc", ".cpp", ".h", ".hh", ".hpp", ".inc")], sources)
        options = ("-w", *(move_include(flag, base.name) for flag in base.flags))
        units = [f"{base.name}/{unit.relative_to(sources)}"
                 for unit in find_all_units(base, sources)]
        for level in self.scope.levels:
            for unit in filter(self.scope.takes, units):
                command = clang(unit, f"-O{level}", *options)
                self.add(BASES, unit, [to_object(command, unit)], ("out.o",),
                         reads)
                self.add(BASES, unit, [to_told_ir(command, unit)], ("out.ll",),
                         reads)
            if self.scope.lto and self.scope.takes(base.name):
                self.add_base_lto(base, sources, units, level, options, reads)

    def add_base_lto(self, base, sources, units, level, options, reads):
        steps, outputs = [], [to_bitcode_name(unit) for unit in units]
        for unit, output in zip(units, outputs):
            command = clang(unit, f"-O{level}", *options, "-flto")
            steps.append((*command, "-c", unit, "-o", output))
        for program, patterns in base.programs.items():
            bitcode = [to_bitcode_name(f"{base.name}/{unit.relative_to(sources)}")
                       for unit in find_units(patterns, sources)]
            steps += link_steps(level, link_options(True), bitcode,
                                f"{program}.exe")
            outputs += [f"{program}.exe", f"told-{program}.exe"]
        self.add(BASES, base.name, steps, tuple(outputs), reads)


def to_bitcode_name(unit):
    return unit.replace("/", "-") + ".bc"


def move_include(flag, name):
    """Code bases are compiled from their own directory; here it has a name."""
    return f"-I{name}/{flag[2:]}" if flag.startswith("-I") else flag


def make_plan(scope, directory, cache, progress):
    """The jobs in the order in which they are told of, whatever ran first."""
    planner = Planner(scope, directory)
    planner.add_kernels()
    planner.add_tests()
    wanted = [base for base in scope.bases
              if scope.may_take_below(f"{base.name}/") or scope.takes(base.name)]
    if wanted:
        cache.mkdir(parents=True, exist_ok=True)
    packages = SourcePackages(cache, progress)
    for base in wanted:
        planner.add_base(base, packages)
    planner.plan.jobs.sort(key=lambda job: (GROUPS.index(job.group), job.input))
    return planner.plan
