"""Builds a code base in one configuration, and reads what the plugin did to it."""

import os
import re
import resource
import subprocess
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass, field
from pathlib import Path

from sources import CodebasesError

BIN = Path("/usr/lib/llvm-16/bin")
COMPILE_SECONDS = 1800
CHECK_SECONDS = 900
MEMORY_LIMIT = 6 << 30

# By the driver's own name, so that C++ units need no other one; the C++ library
# is named by the code bases that need it.
COMPILER = str(BIN / "clang")


@dataclass(frozen=True)
class Plugin:
    """What the shipped configuration file says."""

    configuration: Path
    shared_object: Path

    @staticmethod
    def read(configuration):
        if not configuration.is_file():
            raise CodebasesError(f"{configuration} does not exist; build the "
                                 "plugin first, or name its configuration file "
                                 "with --plugin-cfg")
        found = re.search(r"-fpass-plugin=(\S+)", configuration.read_text())
        if not found:
            raise CodebasesError(f"{configuration} loads no plugin")
        library = Path(found[1].replace("<CFGDIR>", str(configuration.parent)))
        if not library.is_file():
            raise CodebasesError(f"{library} does not exist; build the plugin")
        return Plugin(configuration, library)


@dataclass(frozen=True)
class Variant:
    """How a code base is compiled: plain, or with the plugin at a level."""

    plugin: Plugin = None
    level: int = 0
    lto: bool = False
    optimisation: str = "2"

    @property
    def name(self):
        name = f"L{self.level}" if self.plugin else "plain"
        return f"{name}-O{self.optimisation}" + ("-lto" if self.lto else "")

    def level_options(self):
        return [f"-inline-recursion-opt-level={self.level}"] if self.level else []

    def compile_flags(self):
        flags = [f"-O{self.optimisation}", "-w"]
        if self.lto:
            flags.append("-flto")
        if self.plugin:
            flags.append(f"--config={self.plugin.configuration}")
            for option in self.level_options():
                flags += ["-mllvm", option]
        return flags

    def link_flags(self):
        if not self.lto:
            return []
        flags = [f"-O{self.optimisation}", "-flto", "-fuse-ld=lld",
                 f"--ld-path={BIN / 'ld.lld'}"]
        if self.plugin:
            # Loaded plainly too, so that the linker knows the plugin's options.
            flags += [f"-Wl,--load-pass-plugin={self.plugin.shared_object}",
                      f"-Wl,-mllvm,-load={self.plugin.shared_object}"]
            flags += [f"-Wl,-mllvm,{option}" for option in self.level_options()]
        return flags


@dataclass
class Decisions:
    """What the plugin's optimisation records say, by function: those that call
    themselves, and what the pass and the automatic policy made of them."""

    seen: set = field(default_factory=set)
    chains: dict = field(default_factory=dict)
    rings: dict = field(default_factory=dict)
    automatic: dict = field(default_factory=dict)

    def add(self, text):
        documents = re.findall(r"^--- !(Passed|Missed)\n(.*?)^\.\.\.$", text,
                               re.M | re.S)
        for kind, document in documents:
            values = dict(re.findall(r"^(?:  - )?(\w+): *'?(.*?)'? *$",
                                     document, re.M))
            if values.get("Pass") != "inlinerecursion":
                continue
            function = values["Function"]
            self.seen.add(function)
            if kind == "Passed":
                built = self.choose(values)
                built[function] = values.get("Copies", values.get("Name"))

    def choose(self, values):
        if values["Name"].startswith("Auto"):
            return self.automatic
        return self.rings if values.get("Shape") == "ring" else self.chains


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))


def run_command(command, directory, seconds, environment=None):
    """Output and exit status; a status of None says that time ran out."""
    try:
        done = subprocess.run(
            command, cwd=directory, stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=seconds,
            env=environment)
    except subprocess.TimeoutExpired as expired:
        return expired.stdout or b"", None
    return done.stdout, done.returncode


def run_compiler(command, directory):
    output, status = run_command(command, directory, COMPILE_SECONDS)
    if status == 0:
        return
    lines = output.decode(errors="replace").strip().splitlines()
    reason = next((line for line in lines if "error" in line.lower()),
                  lines[0] if lines else "no output")
    how = f"took more than {COMPILE_SECONDS} s" if status is None \
        else f"ended with status {status}"
    raise BuildFailure(f"{how}: {' '.join(map(str, command))}\n  {reason}")


class BuildFailure(Exception):
    """A command that failed, and what it said."""


def disassemble(path):
    """The code of an object file, whatever else is in it."""
    done = subprocess.run([BIN / "llvm-objdump", "-d", path], check=True,
                          stdout=subprocess.PIPE)
    return done.stdout.split(b"\n", 2)[-1]


def find_units(patterns, sources):
    taken = []
    for pattern in patterns:
        excluded = pattern.startswith("!")
        found = sorted(sources.glob(pattern.lstrip("!")))
        if not found:
            raise CodebasesError(f"no file in {sources} matches {pattern}")
        if excluded:
            taken = [unit for unit in taken if unit not in found]
        else:
            taken += [unit for unit in found if unit not in taken]
    return taken


def find_all_units(base, sources):
    units = {}
    for patterns in base.programs.values():
        units.update(dict.fromkeys(find_units(patterns, sources)))
    return list(units)


def compile_command(base, variant, unit, output):
    return [COMPILER, *variant.compile_flags(), *base.flags, "-c", str(unit),
            "-o", str(output)]


class Build:
    """The programs of one code base in one configuration."""

    def __init__(self, base, sources, variant, directory):
        self.base = base
        self.sources = sources
        self.variant = variant
        self.directory = directory
        self.objects = directory / "objects"
        self.programs = directory / "bin"
        self.decisions = Decisions()
        self.changed_by_records = []

    def object_of(self, unit, suffix=".o"):
        name = str(unit.relative_to(self.sources)).replace("/", "-")
        return self.objects / (name + suffix)

    def run(self, jobs):
        for directory in (self.objects, self.programs):
            directory.mkdir(parents=True, exist_ok=True)
            for old in directory.iterdir():
                old.unlink()
        with ThreadPoolExecutor(jobs) as pool:
            list(pool.map(self.compile, find_all_units(self.base, self.sources)))
            list(pool.map(self.link, self.base.programs))

    def compile(self, unit):
        command = compile_command(self.base, self.variant, unit,
                                  self.object_of(unit))
        run_compiler(command, self.sources)
        if self.variant.plugin:
            self.record(unit)

    def record(self, unit):
        """Compiles once more, for the record of what was decided."""
        record = self.object_of(unit, ".yaml")
        recorded = self.object_of(unit, ".recorded.o")
        flags = ["-fsave-optimization-record=yaml",
                 f"-foptimization-record-file={record}",
                 "-foptimization-record-passes=inlinerecursion"]

        def compile_recorded(variant):
            run_compiler([*compile_command(self.base, variant, unit, recorded),
                          *flags], self.sources)

        compile_recorded(self.variant)
        self.read_record(record)
        # To write a record must change nothing in the code, except where it
        # does with the plain compiler: a record needs source locations.
        if not self.variant.lto and \
                disassemble(recorded) != disassemble(self.object_of(unit)):
            plain = Variant(optimisation=self.variant.optimisation)
            compile_recorded(plain)
            with_record = disassemble(recorded)
            run_compiler(compile_command(self.base, plain, unit, recorded),
                         self.sources)
            if with_record == disassemble(recorded):
                self.changed_by_records.append(unit.name)
        recorded.unlink()

    def read_record(self, record):
        if record.exists():
            self.decisions.add(record.read_text(errors="replace"))

    def link(self, name):
        units = find_units(self.base.programs[name], self.sources)
        record = self.directory / f"{name}.yaml"
        record.unlink(missing_ok=True)
        command = [COMPILER, *map(str, map(self.object_of, units)),
                   *self.variant.link_flags(), *self.base.libraries,
                   "-o", str(self.programs / name)]
        if self.variant.lto and self.variant.plugin:
            command += [f"-Wl,--opt-remarks-filename,{record}",
                        "-Wl,--opt-remarks-passes,inlinerecursion"]
        run_compiler(command, self.sources)
        self.read_record(record)

    def text_size(self):
        """Bytes of code in all programs."""
        total = 0
        for program in self.programs.iterdir():
            done = subprocess.run([BIN / "llvm-size", "-A", program], text=True,
                                  capture_output=True, check=True)
            total += int(re.search(r"^\.text\s+(\d+)", done.stdout, re.M)[1])
        return total

    def check(self, scripts):
        """What the code base's check prints, and its exit status."""
        work = self.directory / "work"
        subprocess.run(["rm", "-rf", work], check=True)
        work.mkdir()
        environment = dict(os.environ, BIN=str(self.programs),
                           SRC=str(self.sources), CHECKS=str(scripts))
        output, status = run_command(
            ["bash", "-euo", "pipefail", "-c", self.base.check], work,
            CHECK_SECONDS, environment)
        (self.directory / "check.log").write_bytes(output)
        return output, status
