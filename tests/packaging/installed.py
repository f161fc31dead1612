"""The plugin as a user has it: from its package, or by `cmake --install`.

    with installed(build, scratch) as plugin: ...

As root on a machine with dpkg, the package is made and installed, and removed again in
the end. Anywhere else, and where a package of that name is installed already, which is
left alone, the same files are put into a folder below `scratch`.
"""

import contextlib
import os
import shutil
import sys
from dataclasses import dataclass
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tools"))
from points import Failed, run  # noqa: E402

PACKAGE = "inlinerecursion-16"
TOOLS = Path("/usr/lib/llvm-16/bin")


@dataclass
class Installed:
    """Where what is; `why_no_package` is empty for an installed package."""

    build: Path
    scratch: Path
    prefix: Path
    why_no_package: str

    @property
    def plugin(self):
        return self.prefix / "lib" / "InlineRecursion-16.so"

    def config(self, name="inlinerecursion.cfg"):
        """What stands behind --config=; by its bare name, if the compiler finds it."""
        if not self.why_no_package:
            return name
        return str(self.prefix / "lib" / "inlinerecursion" / name)

    @property
    def documentation(self):
        return self.prefix / "share" / "doc" / PACKAGE

    @property
    def examples(self):
        return self.documentation / "examples"


def make_package(build, scratch):
    """Makes the package and returns its path."""
    folder = scratch / "package"
    run("cpack", "-G", "DEB", "-B", folder, directory=build)
    packages = list(folder.glob("*.deb"))
    if len(packages) != 1:
        raise Failed(f"cpack made {len(packages)} packages in {folder}")
    return packages[0]


def is_installed(package):
    """Does dpkg know `package`, in whatever state?"""
    text = run("bash", "-c", f"dpkg-query -W -f='${{Status}}' {package} 2>&1; true").text
    return "no packages found" not in text


def find_reason_against():
    """Why the package cannot be installed here; empty if it can."""
    if not shutil.which("dpkg"):
        return "there is no dpkg"
    if os.geteuid() != 0:
        return "not run by root"
    if is_installed(PACKAGE):
        return f"{PACKAGE} is installed already"
    if not is_installed("libllvm16"):
        return "LLVM does not come from Debian's packages here"
    lock = run("bash", "-c", "exec 9>/var/lib/dpkg/lock-frontend; python3 -c '"
               "import fcntl; fcntl.lockf(9, fcntl.LOCK_EX | fcntl.LOCK_NB)' 2>&1; true")
    return "another dpkg is running" if lock.text else ""


@contextlib.contextmanager
def installed_package(package):
    """Has the package installed, and purged in the end."""
    try:
        run("dpkg", "-i", package)
        yield
    finally:
        run("dpkg", "-P", PACKAGE)


@contextlib.contextmanager
def installed(build, scratch):
    """Has the plugin installed in the best way that there is here."""
    shutil.rmtree(scratch, ignore_errors=True)
    scratch.mkdir(parents=True)
    why_not = find_reason_against()
    if why_not:
        prefix = scratch / "prefix"
        run("cmake", "--install", build, "--prefix", prefix)
        yield Installed(build, scratch, prefix, why_not)
        return
    with installed_package(make_package(build, scratch)):
        yield Installed(build, scratch, Path("/usr"), "")
