"""The ways to compile a program with the plugin, drawn from a random sequence.

  clang     levels 0 to 4, -O1 to -Oz, found requests and the policy for
            unrequested recursion on and off, annotations on and off, limits as
            they are or opened, debug information, link-time optimisation, flags
            that go with it
  opt       the compiler's IR through opt's default pipeline with -verify-each
  pipeline  the plugin's passes alone after SROA, verified; here the
            specialisations are counted; then the plain compiler
"""

import os
import re
import time

from case import BIN, LINK, Failure, execute

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
CONFIGS = ("clang", "opt", "pipeline")
# How often each is drawn, and how many programs may be in a bundle. After each
# pass over a function -verify-each looks at the whole module, which takes time
# that is quadratic in the number of programs.
WEIGHTS = {"clang": 13, "opt": 1, "pipeline": 6}
BUNDLE = {"clang": None, "opt": 2, "pipeline": None}
OPENED = ["-default-recursion-depth-threshold=30",
          "-special-inline-recursion-depth=16",
          "-inline-recursion-max-callsite-fun=50",
          "-inline-recursion-max-callsite-mod=50"]
OTHER_LIMITS = [["-inline-recursion-profitablity=0"],
                ["-inline-recursion-profitablity=100"],
                ["-inline-recursion-max-specializations=3"],
                ["-inline-recursion-max-specialized-size=300"],
                ["-inline-recursion-specialized-inline-size=20"],
                ["-inlinerecursion-ring-size-one-call=40",
                 "-inlinerecursion-ring-size-calls=40"],
                ["-inlinerecursion-cut-recurrences=false"],
                ["-special-inline-recursion-depth=1"],
                ["-inlinerecursion-auto-state-growth=2000"],
                ["-inlinerecursion-state-inline-size=0"],
                ["-inlinerecursion-state-inline-size=1000"]]
# The function in a remark about states, and its seed in a bundle. A mangled
# name says how long it is, and goes on with the arguments.
STATES_REMARK = re.compile(
    r"remark: (?:\S*: )?'([^']*)' rebuilt for (\d+) states? of")
VALUE_REMARK = re.compile(r"'([^']*)\.recurse\.value[.']")
MANGLED = re.compile(r"_ZL?(\d+)(f\w+)")
OWN_SEED = re.compile(r"f\d+_(\d+)")
# What is in a remark about a function that the policy has rebuilt.
POLICY_REMARK = "by the automatic policy"
# Limits for a whole module, which a bundle multiplies: (default, opened).
CLONES = "-maximum-clone-limit-inline-recursion"
CLONES_LIMITS = (25, 200)
SPECIALIZED = "-inline-recursion-max-specialized-size"
SPECIALIZED_LIMIT = 10000
STATES = "-inlinerecursion-auto-state-growth"
STATES_LIMIT = 20000

# Flags that change much of the code, and nothing of what it does.
EXTRA_FLAGS = [
    ["-fstack-protector-strong"], ["-fcf-protection=full"], ["-fPIC"],
    ["-fPIC", "-fsemantic-interposition"], ["-ffunction-sections"],
    ["-fno-inline"], ["-funroll-loops"], ["-fwrapv"],
    ["-fno-strict-aliasing"], ["-ftrivial-auto-var-init=pattern"],
    ["-fno-optimize-sibling-calls"], ["-fvisibility=hidden"],
    ["-fno-omit-frame-pointer"], ["-fexceptions"], ["-fno-jump-tables"],
    ["-fsanitize=undefined", "-fsanitize-trap=undefined"],
    ["-march=x86-64-v3", "-ffp-contract=off"], ["-gline-tables-only"],
    ["-fprofile-instr-generate"], ["-fpseudo-probe-for-profiling"],
    ["-fmerge-all-constants"], ["-mllvm", "-enable-merge-functions"],
    ["-mllvm", "-enable-partial-inlining"], ["-mllvm", "-enable-gvn-hoist"]]


class Plugin:
    """The plugin under test, and what has to be loaded before it."""

    def __init__(self, path, preload=None):
        self.path = path
        self.before = []
        if preload:  # for one that is built with sanitizers
            self.before = ["env", f"LD_PRELOAD={preload}",
                           "ASAN_OPTIONS=detect_leaks=0",
                           "UBSAN_OPTIONS=print_stacktrace=1"]
        self.limited = not preload
        self.has_policy = self.run_pass("inlinerecursion-auto") is None
        # How often programs are built without it.
        self.without_policy = 0.25 if self.has_policy else 0
        self.levels = [0, 0, 0, 1, 2, 3, 4]
        self.opt_levels = ["O1", "O2", "O2", "O3", "O3", "Os", "Oz"]

    def run_pass(self, name):
        """What opt has to say against it, or None."""
        status, _, err = execute(
            [*self.before, f"{BIN}/opt", f"-load-pass-plugin={self.path}",
             f"-passes={name}", "-disable-output", os.devnull], 60,
            self.limited)
        return None if status == 0 else err or f"status {status}"


def draw_kind(kinds, rng):
    return rng.choices(kinds, [WEIGHTS[kind] for kind in kinds])[0]


class Build:
    """One way to compile with the plugin."""

    def __init__(self, plugin, kind, rng, case, programs):
        self.plugin, self.kind = plugin, kind
        self.seconds = 0.0  # that it took to compile
        self.level = rng.choice(plugin.levels)
        self.opt = rng.choice(plugin.opt_levels)
        # Verifying each pass takes eight times as long, too long for chains
        # that are flattened at every one of many entries.
        opened = rng.random() < 0.35 and self.kind != "opt"
        self.options = self.draw_options(rng, opened, programs)
        self.defines = [f"-I{ROOT}/include"]
        if rng.random() < 0.75:
            self.defines.append("-DREQUESTS")
        if rng.random() < 0.15:
            self.defines.append("-g")
        self.lto = None
        split = case.cxx or len(case.sources) > 1
        if self.kind == "clang" and rng.random() < (0.3 if split else 0.06):
            self.lto = rng.choice(["full", "thin"])
        self.extra = []
        if self.kind == "clang" and not self.lto and rng.random() < 0.35:
            self.extra = rng.choice(EXTRA_FLAGS)

    def draw_options(self, rng, opened, programs):
        options = [f"-inline-recursion-opt-level={self.level}"]
        if rng.random() < 0.3:
            options.append("-inlinerecursion-find-requests=false")
        if rng.random() < self.plugin.without_policy:
            options.append("-inlinerecursion-auto=false")
        if opened:
            options += OPENED
        if opened or programs > 1:
            options += [f"{CLONES}={CLONES_LIMITS[opened] * programs}"]
        if programs > 1:
            # Less than in proportion: most programs have no ring.
            limit = SPECIALIZED_LIMIT * (1 + programs // 4)
            options += [f"{SPECIALIZED}={limit}"]
            if self.plugin.has_policy:
                limit = STATES_LIMIT * (1 + programs // 4)
                options += [f"{STATES}={limit}"]
        if rng.random() < 0.3:
            options += rng.choice(OTHER_LIMITS)
        # An option may stand there only once.
        return list({option.split("=")[0]: option
                     for option in options}.values())

    def compile_options(self):
        """Options of the plugin where files are compiled."""
        return self.options

    def link_options(self):
        """Those of a link step that compiles."""
        return []

    def warnings(self):
        return ["-w"]

    def narrowed(self, seeds):
        """The same for the programs of these seeds alone."""
        return self

    def reduced(self, still_fails, seconds):
        """One for which still_fails(build) holds too, and asks for less."""
        return self

    def saved_files(self):
        """What the commands read beside the sources, as {name: text}."""
        return {}

    def compiler(self, case):
        return [word for word in case.compiler() if word != "-w"] + \
            self.warnings()

    def commands(self, case, program):
        return self.clang_commands(case, program) if self.kind == "clang" \
            else self.opt_commands(case, program)

    def clang_commands(self, case, program):
        mllvm = [word for option in self.compile_options()
                 for word in ("-mllvm", option)]
        path = self.plugin.path
        command = [*self.plugin.before, *self.compiler(case), *self.defines,
                   f"-{self.opt}", *self.extra, f"-fpass-plugin={path}",
                   "-Xclang", "-load", "-Xclang", path, *mllvm,
                   "-Rpass=inlinerecursion", *LINK]
        if self.lto:
            command += [f"-flto={self.lto}", "-fuse-ld=lld",
                        f"-Wl,--load-pass-plugin={path}"]
            if self.link_options():  # which the linker has to know first
                command += [f"-Wl,-mllvm,-load={path}"]
            command += [f"-Wl,-mllvm,{option}"
                        for option in self.link_options()]
        return [[*command, *case.sources, "-lm", "-o", program]]

    def opt_commands(self, case, program):
        commands, modules = [], []
        if self.kind == "opt":
            passes = f"default<{self.opt}>"
            optimise = ["-O1", "-Xclang", "-disable-llvm-passes"]
        else:
            passes = ("function(sroa,early-cse,simplifycfg),"
                      f"inlinerecursion-pipeline<level={self.level}>")
            optimise = [f"-{self.opt}"]
        for source in case.sources:
            ir, ready = f"{source}.bc", f"{source}.opt.bc"
            commands.append([*case.compiler(), *self.defines, f"-{self.opt}",
                             "-Xclang", "-disable-llvm-passes", "-c",
                             "-emit-llvm", source, "-o", ir])
            commands.append([
                *self.plugin.before, f"{BIN}/opt", f"-load={self.plugin.path}",
                f"-load-pass-plugin={self.plugin.path}", f"-passes={passes}",
                "-verify-each", "-pass-remarks=inlinerecursion",
                *self.compile_options(), ir, "-o", ready])
            modules.append(ready)
        commands.append([*case.compiler()[:1], "-w", *optimise, *LINK,
                         *modules, "-lm", "-o", program])
        return commands

    def check(self, case, wanted, counts=None):
        """Raises Failure unless the case behaves as wanted."""
        commands = self.commands(case, "with")
        began = time.monotonic()
        err = case.compile(commands, self.plugin.limited)
        self.seconds = time.monotonic() - began
        if counts is not None:
            self.count(case, err, counts)
        got, _ = case.behaviour("with")
        if got == wanted:
            return
        kind = "timeout" if got[0] == "timeout" else "difference"
        pairs = list(zip(got[1].split(b"\n"), wanted[1].split(b"\n")))
        raise Failure(kind, commands,
                      f"plain: {wanted[0]}\n{wanted[1].decode()}\n"
                      f"with the plugin: {got[0]}\n"
                      f"{got[1].decode(errors='replace')}",
                      [i for i, (a, b) in enumerate(pairs) if a != b])

    def count_states(self, case, err, counts):
        seeds = set()
        for name, copies in STATES_REMARK.findall(err):
            counts["states"] += 1
            counts["state copies"] += int(copies)
            mangled = MANGLED.match(name)
            if mangled:
                name = mangled.group(2)[:int(mangled.group(1))]
            own = OWN_SEED.match(name)
            seeds.add(own.group(1) if own else "")
        counts["with states"] += len(seeds)
        # Of a function that is left beside it; some are not, or are inlined.
        names = set(VALUE_REMARK.findall(err))
        if self.kind == "clang":
            _, out, _ = execute([f"{BIN}/llvm-nm", "--defined-only",
                                 os.path.join(case.directory, "with")], 60)
            names |= {name.decode() for name in
                      re.findall(rb" (\S*?)\.recurse\.value", out)}
        counts["values"] += len(names)

    def count(self, case, err, counts):
        self.count_states(case, err, counts)
        for line in err.split("\n"):
            level = re.search(r"rebuilt as a chain of .* at level (\d)", line)
            if "rebuilt as" not in line:
                continue
            if POLICY_REMARK in line:
                counts["policy"] += 1
            elif level:
                counts["chains"] += 1
                counts[f"level {level.group(1)}"] += 1
            else:
                counts["rings"] += 1
        if self.kind == "pipeline":
            for source in case.sources:
                _, out, _ = execute(
                    [f"{BIN}/llvm-nm", "--defined-only",
                     os.path.join(case.directory, f"{source}.opt.bc")], 60)
                counts["specialisations"] += len(re.findall(
                    rb"\.specialized\.", out))
