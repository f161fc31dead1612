#!/usr/bin/env python3
"""Is the plugin laid out as docs/internals.md says?

    check_layout.py ROOT

Reads the sources below ROOT/plugin, host and pass, and complains about

  - an include that goes up or sideways: each folder of plugin/ may include the
    folders below it that BELOW names, and what stands below all of them,
  - files that include each other in a circle,
  - a file of more than 500 lines (pass/InlineRecursion.cpp is the exception),
  - a function of more than 60 lines,
  - a folder of plugin/ that BELOW does not know.

Prints a line for each and exits with 1; 2 for a ROOT that holds no plugin.
"""

import re
import sys
from pathlib import Path

MAX_FILE = 500
MAX_FUNCTION = 60
LONG_FILES = {"pass/InlineRecursion.cpp"}

# What a folder may include, beside itself, what that may include in turn, and
# host/ and pass/.
BELOW = {
    "plugin": {"plugin/pipeline"},
    "plugin/pipeline": {"plugin/automatic", "plugin/literal", "plugin/loops"},
    "plugin/automatic": {"plugin/policy", "plugin/legality"},
    "plugin/policy": {"plugin/rewrite"},
    "plugin/rewrite": {"plugin/recursion", "plugin/tell"},
    "plugin/literal": {"plugin/legality", "plugin/recursion"},
    "plugin/legality": {"plugin/recursion", "plugin/tell"},
    "plugin/loops": {"plugin/recursion"},
    "plugin/recursion": {"plugin/ir"},
    "plugin/tell": {"plugin/plan"},
    "plugin/plan": {"plugin/ir"},
    "plugin/ir": {"pass"},
    "pass": {"host"},
    "host": set(),
}


def allowed_from(folder):
    """All folders that files of `folder` may include."""
    reached, pending = set(), [folder]
    while pending:
        current = pending.pop()
        if current not in reached:
            reached.add(current)
            pending.extend(BELOW[current])
    return reached


def read_includes(root, path):
    """The files of the project that `path` includes, relative to `root`."""
    for name in re.findall(r'^#include "([^"]+)"', path.read_text(), re.M):
        for base in (root, path.parent):
            if (base / name).is_file():
                yield (base / name).resolve().relative_to(root).as_posix()
                break


def find_circle(includes):
    """A list of files of which each includes the next, back to the first."""
    done, way = set(), []

    def visit(name):
        if name in way:
            return way[way.index(name):] + [name]
        if name in done:
            return None
        way.append(name)
        for included in includes[name]:
            circle = visit(included)
            if circle:
                return circle
        way.pop()
        done.add(name)
        return None

    for name in includes:
        circle = visit(name)
        if circle:
            return circle
    return None


def long_functions(lines):
    """(first line, length) of each function that is too long; the formatter
    has put the brace that ends one at the margin."""
    start = None
    for number, line in enumerate(lines, 1):
        if line.startswith("}"):
            if start is not None and number - start + 1 > MAX_FUNCTION:
                yield start, number - start + 1
            start = None
        elif re.match(r"(namespace|class|struct|enum|union|extern|using|template"
                      r"|#|//|public:|private:|protected:)", line):
            start = None
        elif start is None and re.match(r"[A-Za-z_]", line):
            start = number
        elif not line.strip() and start is not None and not any(
                "{" in text for text in lines[start - 1:number]):
            start = None


def check(root):
    """The complaints about the tree, one a line."""
    files = sorted(path for folder in ("plugin", "host", "pass")
                   for path in (root / folder).rglob("*")
                   if path.suffix in (".h", ".cpp"))
    includes = {}
    for path in files:
        name = path.relative_to(root).as_posix()
        folder = path.parent.relative_to(root).as_posix()
        # A header and the source of the same name are one unit of a circle.
        includes[name] = list(read_includes(root, path))
        lines = path.read_text().splitlines()
        if len(lines) > MAX_FILE and name not in LONG_FILES:
            yield f"{name}: {len(lines)} lines, more than {MAX_FILE}"
        for start, length in long_functions(lines):
            yield (f"{name}:{start}: a function of {length} lines, more than "
                   f"{MAX_FUNCTION}")
        if folder not in BELOW:
            yield f"{name}: the folder {folder} is not known"
            continue
        # The pass's own header stands beside the collaborators that it calls.
        allowed = allowed_from(folder)
        for included in includes[name]:
            if included.rpartition("/")[0] not in allowed:
                yield f"{name}: must not include {included}"
    units = {}
    for name, others in includes.items():
        unit = name.rpartition(".")[0]
        units.setdefault(unit, set()).update(
            other.rpartition(".")[0] for other in others)
    for unit, others in units.items():
        others.discard(unit)
    for others in list(units.values()):
        for other in others:
            units.setdefault(other, set())
    circle = find_circle({unit: sorted(others)
                          for unit, others in units.items()})
    if circle:
        yield "files include each other in a circle: " + " -> ".join(circle)


def main():
    if len(sys.argv) != 2 or not (Path(sys.argv[1]) / "plugin").is_dir():
        print("check_layout: give the folder that holds plugin/",
              file=sys.stderr)
        return 2
    complaints = list(check(Path(sys.argv[1]).resolve()))
    for complaint in complaints:
        print(complaint)
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
