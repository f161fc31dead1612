#!/usr/bin/env python3
"""Does the Debian package hold what it should, work once installed, and leave nothing?

    package.py [--list] [--only NAME,...] [--build DIR] [--scratch DIR]

What needs an installed package is skipped where it cannot be installed (installed.py).
"""

import contextlib
import shutil
import sys
from dataclasses import dataclass
from pathlib import Path

from installed import (PACKAGE, TOOLS, find_reason_against, installed_package,
                       make_package)
sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tools"))
from points import Failed, Skipped, main, point, run  # noqa: E402

EXAMPLES = Path(__file__).resolve().parent.parent.parent / "examples"
HOLDS = [
    "usr/lib/InlineRecursion-16.so",
    "usr/lib/libInlineRecursion.a",
    "usr/lib/inlinerecursion/inlinerecursion.cfg",
    "usr/lib/inlinerecursion/inlinerecursion-flang.cfg",
    "usr/lib/llvm-16/bin/inlinerecursion.cfg",
    "usr/lib/llvm-16/bin/inlinerecursion-flang.cfg",
    "usr/lib/cmake/InlineRecursion/InlineRecursionConfig.cmake",
    "usr/lib/cmake/InlineRecursion/InlineRecursionConfigVersion.cmake",
    "usr/include/inlinerecursion/request.h",
    "usr/bin/inlinerecursion-plan",
    "usr/bin/inlinerecursion-report",
    "usr/share/inlinerecursion/picture.py",
    "usr/share/inlinerecursion/inlinerecursion_plan/command.py",
    "usr/share/inlinerecursion/inlinerecursion_report/command.py",
    "usr/bin/inlinerecursion-tune",
    "usr/share/inlinerecursion/inlinerecursion_tune/command.py",
    "usr/share/doc/inlinerecursion-16/README.md",
    "usr/share/doc/inlinerecursion-16/copyright",
    "usr/share/doc/inlinerecursion-16/docs/user-guide.md",
    "usr/share/doc/inlinerecursion-16/docs/reference.md",
    "usr/share/doc/inlinerecursion-16/examples/permutations.c",
    "usr/share/doc/inlinerecursion-16/examples/still-wrong.sh",
]
# Of C++, whose own folders of headers have to stay in front of the system's.
SOURCE = """
#include <cstdlib>
#include <inlinerecursion/request.h>
INLINERECURSION_SPECIALIZE static int f(int n) {
  int k = n % 3;
  return n <= 0 ? k : k + f(n - 1) * 2;
}
int main(int argc, char **) { return std::abs(f(argc)); }
"""


@dataclass
class Package:
    path: Path
    scratch: Path

    def installed(self):
        """Installs it for the time of a point."""
        why_not = find_reason_against()
        if why_not:
            raise Skipped(why_not)
        return installed_package(self.path)

    def list_files(self):
        """All files in it, relative to the root of the machine."""
        lines = run("dpkg-deb", "-c", self.path).text.splitlines()
        return [line.split()[5].removeprefix("./") for line in lines
                if not line.startswith("d")]


@contextlib.contextmanager
def made_package(build, scratch):
    shutil.rmtree(scratch, ignore_errors=True)
    scratch.mkdir(parents=True)
    yield Package(make_package(build, scratch), scratch)


@point("fields")
def check_fields(package):
    """Name, version, maintainer, dependencies and description are what they should be."""
    about = run("dpkg-deb", "-f", package.path)
    about.needs(f"Package: {PACKAGE}\n", "Version: 0.1.0-1\n", "Section: devel\n",
                "Maintainer: InlineRecursion maintainers <", "Architecture: ",
                "Recommends: clang-16, python3-matplotlib, python3-scipy, python3-tqdm\n", "flang-16", "Description: LLVM 16 plugin")
    depends = run("dpkg-deb", "-f", package.path, "Depends").needs("libllvm16",
                                                                 "python3-yaml")
    depends.lacks("clang")


@point("files")
def check_files(package):
    """The package holds each file that it should, and owns nothing that others do."""
    files = package.list_files()
    missing = [name for name in HOLDS if name not in files]
    if missing:
        raise Failed(f"missing: {missing}")
    for name in files:
        if "inlinerecursion" not in name.lower():
            raise Failed(f"not to be told from other packages' files: {name}")


@point("unpacked")
def check_unpacked(package):
    """Unpacked into a folder, everything finds what it needs relative to itself."""
    root = package.scratch / "unpacked"
    run("dpkg-deb", "-x", package.path, root)
    source = package.scratch / "unpacked.cpp"
    source.write_text(SOURCE)
    beside = root / "usr/lib/inlinerecursion"
    for found in ([f"--config={beside}/inlinerecursion.cfg"],
                  [f"--config={root}/usr/lib/llvm-16/bin/inlinerecursion.cfg"],
                  [f"--config-user-dir={beside}", "--config=inlinerecursion.cfg"]):
        run(TOOLS / "clang++", *found, "-O3", "-Rpass=inlinerecursion", "-c", source, "-o",
            package.scratch / "unpacked.o").needs("'_ZL1fi' rebuilt as a ring of 3")
    plan = package.scratch / "recorded.plan"
    run(TOOLS / "clang++", *found, "-O3", "-fsave-optimization-record", "-mllvm",
        f"-inlinerecursion-write-plan={plan}", "-c", source, "-o",
        package.scratch / "recorded.o")
    run(root / "usr/bin/inlinerecursion-report",
        package.scratch / "recorded.opt.yaml").needs("f(int)", " ring ")
    run(root / "usr/bin/inlinerecursion-plan", "show",
        plan).needs("f(int)", " ring copies=3 ")
    tuned = package.scratch / "tuned"
    tuned.mkdir(exist_ok=True)
    (tuned / "a.cpp").write_text(SOURCE)
    # The parts, the plugin and its compiler are found; the program is too short to tune.
    run(root / "usr/bin/inlinerecursion-tune", "--source", tuned, "--work",
        package.scratch / "tuning", "--function", "^no", "--build",
        "{cxx} -O3 a.cpp -o a", "--run", "./a || true", status=1).needs(
            "no recursive function fits --function '^no'; there are: f(int)")
    if left := list(root.rglob("__pycache__")):
        raise Failed(f"the tools leave files behind: {left}")


@point("bare-name")
def check_bare_name(package):
    """Installed, clang and flang find their configuration files by the bare name."""
    source = package.scratch / "bare.cpp"
    source.write_text(SOURCE)
    with package.installed():
        run("clang++-16", "--config=inlinerecursion.cfg", "-O3", "-Rpass=inlinerecursion",
            "-mllvm", "-inlinerecursion-auto=true", source, "-o",
            package.scratch / "bare").needs("'_ZL1fi' rebuilt as a ring of 3")
        run(package.scratch / "bare", status=1)
        program = package.scratch / "fibonacci"
        if not shutil.which("flang-new-16"):
            raise Skipped("flang-16 is not installed (scripts/setup.sh)")
        run("flang-new-16", "--config=inlinerecursion-flang.cfg", "-O3", "-mllvm",
            "-pass-remarks=inlinerecursion", EXAMPLES / "fibonacci.f90", "-o",
            program).needs("fibonacci' rebuilt")
        run(program)


@point("cmake-package")
def check_cmake_package(package):
    """Installed, a project finds the CMake package without being told where it is."""
    app, build = package.scratch / "app", package.scratch / "app-build"
    app.mkdir()
    (app / "main.cpp").write_text(SOURCE)
    (app / "CMakeLists.txt").write_text("""
cmake_minimum_required(VERSION 3.20)
project(App LANGUAGES CXX)
find_package(InlineRecursion REQUIRED)
add_executable(app main.cpp)
target_compile_options(app PRIVATE -O3 -Rpass=inlinerecursion)
target_link_libraries(app PRIVATE InlineRecursion::ClangFlags)
""")
    with package.installed():
        run("cmake", "-S", app, "-B", build, "-G", "Ninja",
            "-DCMAKE_CXX_COMPILER=clang++-16")
        run("cmake", "--build", build).needs("'_ZL1fi' rebuilt as a ring of 3")


@point("removed")
def check_removed(package):
    """Installed and removed, and installed and purged, nothing of it is left."""
    with package.installed():
        missing = [name for name in package.list_files() if not Path("/", name).exists()]
        if missing:
            raise Failed(f"not installed: {missing}")
        run("dpkg", "-r", PACKAGE)
        check_nothing_left(package)
        run("dpkg", "-i", package.path)
    check_nothing_left(package)
    run("dpkg-query", "-W", PACKAGE, status=1)


def check_nothing_left(package):
    left = [name for name in package.list_files() if Path("/", name).exists()]
    left += [folder for folder in ("/usr/lib/inlinerecursion", "/usr/lib/cmake/"
                                   "InlineRecursion", f"/usr/share/doc/{PACKAGE}",
                                   "/usr/share/inlinerecursion",
                                   "/usr/include/inlinerecursion")
             if Path(folder).exists()]
    if left:
        raise Failed(f"left behind: {left}")


if __name__ == "__main__":
    sys.exit(main(__doc__, made_package))
