"""Loads the plugin into every other LLVM that is installed, which has to be refused.

    other_llvms.py PLUGIN VERSION SOURCE

PLUGIN was built for LLVM's major VERSION. In clang, opt and lld of each other one
below /usr/lib/llvm-*, loading it has to end the process at once with status 1 and one
line that names both versions; clang is given the C program SOURCE. `scripts/setup.sh
--all` installs those that Debian has. LLVM 13 and earlier lack what the library needs
to be loaded at all, and say so themselves.

Prints a line for each tool, and how many there were; exits with 1 on the first that
does something else.
"""

import re
import subprocess
import sys
from pathlib import Path

OLDEST = 14
LIMIT_SECONDS = 60


def find_others(version):
    """(major, folder of its tools) of the other LLVMs, the oldest first."""
    found = []
    for folder in Path("/usr/lib").glob("llvm-*"):
        major = folder.name.removeprefix("llvm-")
        if major.isdigit() and int(major) >= OLDEST and int(major) != version:
            found.append((int(major), folder / "bin"))
    return sorted(found)


def commands(tools, plugin, source):
    """A command for each tool that loads the plugin in each way it has."""
    compile_source = ["-c", source, "-o", "/dev/null"]
    yield [tools / "clang", f"-fpass-plugin={plugin}", *compile_source]
    yield [tools / "clang", "-Xclang", "-load", "-Xclang", plugin, *compile_source]
    yield [tools / "opt", f"-load-pass-plugin={plugin}", "-disable-output",
           "/dev/null"]
    yield [tools / "ld.lld", f"-mllvm=-load={plugin}", "/dev/null"]


def main():
    plugin, version, source = sys.argv[1], int(sys.argv[2]), sys.argv[3]
    refused = 0
    for major, tools in find_others(version):
        wanted = re.compile(
            rf"InlineRecursion: error: built for LLVM {version}, loaded into LLVM "
            rf"{major}[.\d]*: use .*clang-{version}.*\n")
        for command in commands(tools, plugin, source):
            if not command[0].exists():
                continue
            done = subprocess.run([str(word) for word in command], text=True,
                                  capture_output=True, timeout=LIMIT_SECONDS)
            told = done.stdout + done.stderr
            if done.returncode != 1 or not wanted.fullmatch(told):
                sys.exit(f"other_llvms.py: {' '.join(map(str, command))}: status"
                         f" {done.returncode}\n{told}")
            refused += 1
            print(f"refused by {command[0].name} of LLVM {major}")
    print(f"{refused} refused" if refused else "skipped: no other LLVM is installed")


main()
