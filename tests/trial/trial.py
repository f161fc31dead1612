#!/usr/bin/env python3
"""What a new user tries with an installed plugin, and what once went wrong, in one go.

    trial.py [--list] [--only NAME,...] [--build DIR] [--scratch DIR]

The points run with the files that are installed (tests/packaging/installed.py says how)
on the programs that are installed as examples. Each compares a program with what the
plain compiler makes of it, or what is printed with what the user guide says. What needs
software that is not there is skipped; `scripts/setup.sh --all` installs it, the
other LLVMs included.
"""

import contextlib
import hashlib
import os
import re
import shutil
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
TESTS = HERE.parent
sys.path[:0] = [str(TESTS / "tools"), str(TESTS / "packaging")]
from installed import TOOLS, installed  # noqa: E402
from points import Failed, Skipped, main, point, run, same  # noqa: E402

LLD = ["-fuse-ld=lld", f"--ld-path={TOOLS / 'ld.lld'}"]
REMARKS = ["-Rpass=inlinerecursion", "-Rpass-missed=inlinerecursion"]


class Trial:
    """The installed plugin, with the commands that most points need."""

    def __init__(self, plugin):
        self.installed = plugin
        self.plugin = plugin.plugin
        self.scratch = plugin.scratch
        self.examples = plugin.examples
        self.config = f"--config={plugin.config()}"

    def compile(self, *words, status=0):
        """clang with the configuration file."""
        return run(TOOLS / "clang", self.config, *words, status=status)

    def plain_output(self, *sources):
        """What the plain compiler's program prints."""
        program = self.scratch / "plain"
        run(TOOLS / "clang", "-w", "-O2", *sources, "-o", program)
        return run(program).text

    def check(self, program, wanted):
        got = run(program).text
        if got != wanted:
            raise Failed(f"{program} prints {got!r}, and not {wanted!r}")


def need(name, how):
    """The path of a program."""
    path = shutil.which(name)
    if not path:
        raise Skipped(f"{name} is not installed ({how})")
    return path


@point("option-values")
def option_values(trial):
    """A value out of its range is one line that names option, value and range."""
    source, out = trial.examples / "fraction.c", trial.scratch / "out.o"
    for option, value, values in (
            ("inline-recursion-profitablity", 101, "0 to 100 percent"),
            ("special-inline-recursion-depth", 1001, "0 to 1000 copies"),
            ("inlinerecursion-auto-copies", 5000, "0 to 1000 copies")):
        told = trial.compile("-O3", "-mllvm", f"-{option}={value}", "-c", source, "-o",
                             out, status=1).text
        wanted = (f"InlineRecursion: error: -{option}={value} is out of range: it takes"
                  f" {values}\n")
        same("the diagnostic", wanted, told)
    if out.exists():
        raise Failed("something was compiled")


@point("pass-parameters")
def pass_parameters(trial):
    """A parameter out of its range is told with its name, value and range."""
    run(TOOLS / "opt", f"-load-pass-plugin={trial.plugin}",
        "-passes=inlinerecursion-auto<copies=1001>", "-disable-output", os.devnull,
        status=1).needs("invalid number in parameter 'copies=1001'; copies is a number"
                        " from 0 to 1000\n")


@point("other-llvms")
def other_llvms(trial):
    """clang, opt and lld of LLVM 14, 15 and 19 refuse the plugin with one line."""
    told = run(sys.executable, TESTS / "tools" / "other_llvms.py", trial.plugin, 16,
               trial.examples / "fraction.c").text
    if told.startswith("skipped"):
        raise Skipped("no other LLVM is installed (scripts/setup.sh --all)")


@point("llvm-13")
def llvm_13(trial):
    """The loader refuses the plugin in LLVM 13."""
    clang = Path("/usr/lib/llvm-13/bin/clang")
    if not clang.exists():
        raise Skipped("LLVM 13 is not installed (Debian 12 has none)")
    run(clang, "-fpass-plugin=" + str(trial.plugin), "-c", trial.examples / "fraction.c",
        "-o", os.devnull, status=None).needs("undefined symbol")


@point("two-files")
def two_files(trial):
    """The plugin from two files is one line that names both; from one it is harmless."""
    source = trial.examples / "fraction.c"
    other = trial.installed.build / "lib" / trial.plugin.name
    told = trial.compile("-O3", f"-fpass-plugin={other}", "-c", source, "-o", os.devnull,
                         status=1).needs(str(trial.plugin), str(other)).text
    if told.count("\n") != 1 or "loaded from two files" not in told:
        raise Failed(f"not the line that it should be:\n{told}")
    trial.compile("-O3", f"-fpass-plugin={trial.plugin}", "-c", source, "-o",
                  os.devnull).lacks("error", "warning")


@point("o2")
def o2(trial):
    """At -O2 each of five small functions has a remark."""
    source = HERE / "Inputs" / "five.c"
    program = trial.scratch / "five"
    told = trial.compile("-O2", *REMARKS, source, "-o", program)
    told.needs(*(f"remark: '{name}' " for name in
                 ("fib", "height", "ackermann", "hanoi", "ways")))
    trial.check(program, trial.plain_output(source))


@point("size")
def size(trial):
    """At -Os and -Oz nothing is built."""
    source = trial.examples / "takeuchi.c"
    module = trial.scratch / "size.ll"

    def build(level):
        trial.compile(level, "-S", "-emit-llvm", *REMARKS, source, "-o",
                      module).needs("'takeuchi' ")
        return ".recurse." in module.read_text()

    for level, wanted in (("-O3", True), ("-Os", False), ("-Oz", False)):
        if build(level) != wanted:
            raise Failed(f"{level}: copies in {module}: {not wanted}")


@point("cold")
def cold(trial):
    """A cold function is left alone, and the remark says so."""
    source = trial.scratch / "cold.c"
    source.write_text("__attribute__((cold)) int f(int n) {\n"
                      "  return n < 2 ? n : f(n - 1) + f(n - 2);\n}\n")
    trial.compile("-O3", *REMARKS, "-c", source, "-o", os.devnull).needs(
        "'f' not chained: it is rarely called (cold)")


@point("thinlto-cache")
def thinlto_cache(trial):
    """A cache of thin LTO that is named after the plugin's contents is right."""
    objects = []
    for name in ("dice", "dice_main"):
        objects.append(trial.scratch / f"{name}.thin.o")
        run(TOOLS / "clang", "-O3", "-flto=thin", "-c", trial.examples / f"{name}.c",
            "-o", objects[-1])
    digest = hashlib.sha256(trial.plugin.read_bytes()).hexdigest()[:16]
    link = [TOOLS / "clang", "-O3", "-flto=thin", *LLD, *objects]
    load = f"-Wl,--load-pass-plugin={trial.plugin}"
    programs = {}
    for name, words in (
            ("plain", [f"-Wl,--thinlto-cache-dir={trial.scratch}/cache"]),
            ("uncached", [load]),
            ("cached", [load, f"-Wl,--thinlto-cache-dir={trial.scratch}/cache-{digest}"]),
            ("again", [load, f"-Wl,--thinlto-cache-dir={trial.scratch}/cache-{digest}"])):
        program = trial.scratch / f"cache-{name}"
        run(*link, *words, "-o", program)
        programs[name] = program.read_bytes()
    same("the program", programs["uncached"], programs["cached"], programs["again"])
    if programs["plain"] == programs["uncached"]:
        raise Failed("the plugin in the linker changes nothing")


@point("ccache")
def ccache(trial):
    """With CCACHE_EXTRAFILES another plugin, or none, is another compilation."""
    program = need("ccache", "scripts/setup.sh --all")
    folder = trial.scratch / "ccache"
    (folder / "lib" / "inlinerecursion").mkdir(parents=True)
    plugin = shutil.copy(trial.plugin, folder / "lib")
    config = shutil.copy(trial.installed.prefix / "lib/inlinerecursion/inlinerecursion.cfg",
                         folder / "lib" / "inlinerecursion")
    env = {**os.environ, "CCACHE_DIR": str(folder / "cache"),
           "CCACHE_EXTRAFILES": f"{plugin}:{config}"}

    def compile_once():
        """Was it found?"""
        run(program, "-z", env=env)
        run(program, TOOLS / "clang", f"--config={config}", "-O3", "-c",
            trial.examples / "fraction.c", "-o", folder / "out.o", env=env)
        return "direct_cache_hit\t1" in run(program, "--print-stats", env=env).text

    found = [compile_once(), compile_once()]
    with open(plugin, "ab") as file:  # Behind the end of what is loaded.
        file.write(b"\0")
    found.append(compile_once())
    same("what was found: new, again, and with another plugin", [False, True, False], found)


@point("distcc")
def distcc(trial):
    """distcc compiles on this machine, with the plugin under its path."""
    program = need("distcc", "scripts/setup.sh --all")
    env = {**os.environ, "DISTCC_HOSTS": "localhost",
           "DISTCC_DIR": str(trial.scratch / "distcc")}
    run(program, TOOLS / "clang", trial.config, "-O3", *REMARKS, "-c",
        trial.examples / "fraction.c", "-o", trial.scratch / "distcc.o",
        env=env).needs("'fraction' rebuilt as")


@point("libtool")
def libtool(trial):
    """libtool compiles and links with the plugin in CFLAGS, and writes records."""
    program = need("libtool", "scripts/setup.sh --all")
    folder = trial.scratch / "libtool"
    folder.mkdir()
    flags = [TOOLS / "clang", trial.config, "-O3", "-fsave-optimization-record"]

    def call(mode, *words, status=0):
        run(program, "--tag=CC", f"--mode={mode}", *flags, *words, status=status,
            directory=folder)

    call("compile", "-c", trial.examples / "fraction.c", "-o", "fraction.lo")
    link = ["fraction.lo", "-o", "libfraction.la", "-rpath", folder / "installed"]
    call("link", *link)
    records = "".join(path.read_text() for path in folder.rglob("*.opt.yaml"))
    if "Pass:            inlinerecursion" not in records:
        raise Failed(f"no record of the plugin in {folder}")
    # What the guide warns of.
    call("link", "-Rpass=inlinerecursion", *link, status=1)


@point("profile")
def profile(trial):
    """x"""
    source, folder = trial.examples / "takeuchi.c", trial.scratch / "profile"
    wanted = trial.plain_output(source)
    program = trial.scratch / "profiled"

    def instrument(name, *options):
        trial.compile(*options, f"-fprofile-generate={folder / name}", source, "-o",
                      program)
        trial.check(program, wanted)
        data = folder / f"{name}.profdata"
        run(TOOLS / "llvm-profdata", "merge", folder / name, "-o", data)
        return data

    def use(data, *options):
        told = trial.compile(*options, f"-fprofile-use={data}", source, "-o", program)
        trial.check(program, wanted)
        return told

    discarded = "the profile of 'takeuchi' was discarded"
    at_o3 = instrument("O3", "-O3")
    use(at_o3, "-O3").lacks("warning")
    use(at_o3, "-O3", "-mllvm", "-inlinerecursion-auto-copies=2").needs(discarded)
    # The two levels have other limits, which need not show in this function.
    told = use(instrument("O2", "-O2"), "-O3").text
    same("whether clang and the plugin say that counts are discarded",
         "(hash mismatch) takeuchi" in told, discarded in told)


@point("other-compiler")
def other_compiler(trial):
    """A CMake project of another compiler is told, unless it ignores others."""
    gcc = need("gcc", "scripts/setup.sh")
    need("cmake", "scripts/setup.sh")
    project = trial.scratch / "project"
    shutil.copytree(trial.examples / "app", project / "app")
    shutil.copy(trial.examples / "fraction.c", project)
    lists = project / "app" / "CMakeLists.txt"

    def configure(name, compiler, status=0):
        build = project / name
        told = run("cmake", "-S", project / "app", "-B", build, "-G", "Ninja",
                   f"-DCMAKE_C_COMPILER={compiler}", f"-DCMAKE_C_FLAGS={REMARKS[0]}"
                   if compiler != gcc else "-DCMAKE_C_FLAGS=",
                   f"-DCMAKE_PREFIX_PATH={trial.installed.prefix}", status=status)
        return told if status else run("cmake", "--build", build)

    configure("clang", TOOLS / "clang").needs("'fraction' rebuilt as")
    configure("gcc", gcc, status=1).needs(
        "InlineRecursion::ClangFlags-needs-clang-16-and-the-compiler-is-GNU-")
    lists.write_text(lists.read_text().replace(
        "find_package(InlineRecursion REQUIRED)",
        "find_package(InlineRecursion REQUIRED COMPONENTS IgnoreOtherCompilers)"))
    configure("ignored", gcc)


@point("exported")
def exported(trial):
    """An exported function that the main program has, too, with -fsemantic-interposition."""
    library, program = trial.scratch / "libreplaced.so", trial.scratch / "replacing"
    sources = HERE / "Inputs"
    results = []
    for compiler in (lambda *words: run(TOOLS / "clang", *words), trial.compile):
        told = compiler("-O3", *REMARKS, "-fPIC", "-fsemantic-interposition", "-shared",
                        sources / "replaced.c", "-o", library)
        run(TOOLS / "clang", sources / "replacing.c", library, f"-Wl,-rpath,{library.parent}",
            "-o", program)
        results.append(run(program).text)
    told.needs("'steps' not chained: another definition may take its place")
    same("what the program prints", *results)


def link_dice(trial, mode, in_compiler, in_linker):
    """(what the program prints, what was said of roll())"""
    sources = [trial.examples / "dice.c", trial.examples / "dice_main.c"]
    program = trial.scratch / "dice"
    words = [TOOLS / "clang", "-O3", f"-flto={mode}", *LLD]
    if in_compiler:
        words += [trial.config, *REMARKS]
    if in_linker:
        words += [f"-Wl,--load-pass-plugin={trial.plugin}",
                  "-Wl,-mllvm,-pass-remarks=inlinerecursion",
                  "-Wl,-mllvm,-pass-remarks-missed=inlinerecursion"]
    told = run(*words, *sources, "-o", program).text
    return run(program).text, re.findall(r"'roll\b[^']*' (rebuilt|not chained)", told)


def check_lto(trial, mode):
    wanted = trial.plain_output(trial.examples / "dice.c", trial.examples / "dice_main.c")
    for where in ((True, False), (False, True), (True, True)):
        printed, remarks = link_dice(trial, mode, *where)
        same(f"what the program prints, plugin in (compiler, linker) {where}", wanted,
             printed)
        if "rebuilt" not in remarks:
            raise Failed(f"roll() is not rebuilt with the plugin in (compiler, linker)"
                         f" {where}: {remarks}")


@point("full-lto")
def full_lto(trial):
    """Full LTO: the plugin in the compiler, in the linker, and in both."""
    check_lto(trial, "full")


@point("thin-lto")
def thin_lto(trial):
    """Thin LTO: the plugin in the compiler, in the linker, and in both."""
    check_lto(trial, "thin")


@point("lld-options")
def lld_options(trial):
    """lld takes the plugin's options as the guide shows."""
    source = trial.examples / "takeuchi.c"
    link = [TOOLS / "clang", "-O3", "-flto", *LLD, source, "-o", trial.scratch / "lld",
            f"-Wl,--load-pass-plugin={trial.plugin}", f"-Wl,-mllvm,-load={trial.plugin}",
            "-Wl,-mllvm,-pass-remarks=inlinerecursion"]
    option = "-Wl,-mllvm,-inlinerecursion-auto-copies="
    run(*link, option + "3").needs("'takeuchi' rebuilt as a ring of 3 copies")
    trial.check(trial.scratch / "lld", trial.plain_output(source))
    run(*link, option + "1001", status=1).needs(
        "-inlinerecursion-auto-copies=1001 is out of range: it takes 0 to 1000 copies")


@point("flang")
def flang(trial):
    """flang loads the plugin by its configuration file, with LLVM's own remarks."""
    compiler = need(str(TOOLS / "flang-new"), "scripts/setup.sh")
    program, source = trial.scratch / "fibonacci", trial.examples / "fibonacci.f90"
    run(compiler, f"--config={trial.installed.config('inlinerecursion-flang.cfg')}", "-O3",
        "-mllvm", "-pass-remarks=inlinerecursion", source, "-o",
        program).needs("fibonacci' rebuilt")
    printed = run(program).text
    run(compiler, "-O0", "-L/usr/lib/llvm-16/lib", source, "-o", program)
    same("what the program prints", run(program).text, printed)


def check_instrumented(trial, flags):
    source = TESTS / "exec" / "instrumented.c"
    program = trial.scratch / "instrumented"
    env = {**os.environ, "LLVM_PROFILE_FILE": str(trial.scratch / "%m.profraw")}
    wanted = trial.plain_output(source)
    run(TOOLS / "clang", "-O2", *flags, source, "-o", program)
    if run("bash", "-c", f"{program} >/dev/null 2>&1; echo $?", env=env).text != "0\n":
        raise Skipped(f"a plain program does not run here with {' '.join(flags)}")
    trial.compile("-O2", "-mllvm", "-inline-recursion-opt-level=4", *flags, *REMARKS,
                  source, "-o", program).needs("'sum' rebuilt as a chain of 10 copies")
    same(f"what the program prints with {flags}", wanted, run(program, env=env).text)


@point("sanitizers")
def sanitizers(trial):
    """The address, undefined-behaviour and thread sanitizers find nothing new."""
    for name in ("address", "undefined", "thread"):
        check_instrumented(trial, [f"-fsanitize={name}", "-fno-sanitize-recover=all"])


@point("instrumentation")
def instrumentation(trial):
    """Programs count for profiles and coverage and still do the same."""
    for flags in (["-fprofile-generate"],
                  ["-fprofile-instr-generate", "-fcoverage-mapping"]):
        check_instrumented(trial, flags)


@contextlib.contextmanager
def make_trial(build, scratch):
    with installed(build, scratch) as plugin:
        print(f"installed below {plugin.prefix}"
              + (f" ({plugin.why_no_package})" if plugin.why_no_package else ""))
        yield Trial(plugin)


if __name__ == "__main__":
    sys.exit(main(__doc__, make_trial))
