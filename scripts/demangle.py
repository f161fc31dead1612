"""Names of functions as their sources have them."""

import shutil
import subprocess

# The first that is there.
TOOLS = ("llvm-cxxfilt-16", "c++filt")


def demangle(names):
    """The names of C++ functions as they were written; others stay what they are."""
    for tool in TOOLS:
        if names and shutil.which(tool):
            done = subprocess.run(
                [tool], input="\n".join(names), text=True, capture_output=True
            )
            if done.returncode == 0:
                return done.stdout.splitlines()
    return names
