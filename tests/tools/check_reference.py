"""Compares docs/reference.md with the code: options, defaults, passes, parameters.

Usage: check_reference.py ROOT OPT PLUGIN

Options and defaults are read from the sources (every cl::opt there), passes and
parameters are tried out with opt. Each obstacle of the automatic policy has to stand
in the user guide, and to have a test in tests/negative that is named after it; what the
remarks say that helps stands in the tables of the guide and of docs/hazards.md. Prints
one line per difference, and how much was compared; exit status 1 on any difference.
"""

import re
import subprocess
import sys
from pathlib import Path

root, opt, plugin = Path(sys.argv[1]), sys.argv[2], sys.argv[3]
reference = (root / "docs" / "reference.md").read_text()
differences = []


def table(heading):
    """The rows of the table under a heading, as lists of cells."""
    section = reference.split(f"## {heading}\n", 1)[1].split("\n## ", 1)[0]
    rows = [line.strip("|").split("|") for line in section.splitlines() if line.startswith("|")]
    return [[cell.strip() for cell in row] for row in rows[2:]]


def compare(what, documented, actual):
    for name in sorted(documented.keys() | actual.keys()):
        if documented.get(name) != actual.get(name):
            differences.append(
                f"{what} {name}: documented {documented.get(name)}, in the code {actual.get(name)}"
            )


declared = {}
sources = [source for folder in ("pass", "host", "plugin")
           for source in sorted((root / folder).rglob("*.cpp"))]
for source in sources:
    text = source.read_text()
    for match in re.finditer(r'cl::opt<\w+>\s+\w+\(\s*"([^"]+)",(.*?)\);', text, re.S):
        declared[match[1]] = re.search(r"cl::init\(([\w:]+)\)", match[2])[1].split("::")[-1].lower()
documented = {row[0].strip("`-"): row[1] for row in table("Options")}
compare("option", documented, declared)

# What is narrower than the option's type.
ranges_source = (root / "plugin/pipeline/OptionRanges.cpp").read_text()
most = {"MaxCopiesAtAll": re.search(r"MaxCopiesAtAll = (\d+)",
                                    (root / "plugin/policy/Bounds.h").read_text())[1]}
ranges = {name: "true, false" if default in ("true", "false") else "from 0"
          for name, default in declared.items()}
for name, value in re.findall(r'^ +\{"([a-z-]+)", (\w+), "', ranges_source, re.M):
    ranges[name] = f"0 to {most.get(value, value)}"
ranges["inlinerecursion-lto"] = "compile, link"
ranges[re.search(r'LevelOption = "([^"]+)"', ranges_source)[1]] = (
    "0 to " + re.search(r"MaxLevel = (\d+)", ranges_source)[1])
compare("range of", {row[0].strip("`-"): row[2] for row in table("Options")}, ranges)


def accepts(pipeline):
    command = [opt, f"-load-pass-plugin={plugin}", f"-passes={pipeline}", "-disable-output", "-"]
    return subprocess.run(command, input="", text=True, capture_output=True).returncode == 0


def known_parameters():
    """What the whole pipeline takes, as it says itself of a wrong one."""
    command = [opt, f"-load-pass-plugin={plugin}", "-disable-output", "-",
               "-passes=inlinerecursion-pipeline<?>"]
    told = subprocess.run(command, input="", text=True, capture_output=True).stderr
    return re.search(r"known: (.*)", told)[1].replace("=N", "=3").split()


parameters = known_parameters()
names = dict(re.findall(r'StringLiteral (\w+Name) =\s*"([^"]+)"',
                        (root / "plugin/ir/Names.h").read_text()))
registered = {names[name] for name in re.findall(
    r"\{(\w+Name), ", (root / "plugin/pipeline/NamedPasses.cpp").read_text())}

def wrap(text):
    """A pass inside the pass managers that it needs."""
    levels = {"inlinerecursion-loop-hints": "function(loop({}))",
              "inlinerecursion-cut-recurrences": "function({})",
              "inlinerecursion-early-sums": "function({})"}
    return levels.get(text.split("<")[0], "{}").format(text)


documented, actual = {}, {}
for name, given, _ in table("Passes"):
    documented[name.strip("`")] = given.replace("`", "").replace("=N", "=3")
for name in registered:
    if not accepts(wrap(name)):
        differences.append(f"pass {name}: not accepted by opt")
    actual[name] = ", ".join(p for p in parameters if accepts(wrap(f"{name}<{p}>")))
compare("pass", documented, actual)

guide = (root / "docs" / "user-guide.md").read_text()
obstacles = set(re.findall(r'^ +\{"(Auto\w+)", ',
                           (root / "plugin/policy/Obstacles.cpp").read_text(), re.M))
for name in sorted(obstacles):
    if f"`{name}`" not in guide:
        differences.append(f"obstacle {name}: not in the user guide")
    test = "-".join(re.findall(r"[A-Z][a-z]*", name)).lower()
    if not (root / "tests/negative" / f"{test}.ll").exists():
        differences.append(f"obstacle {name}: no tests/negative/{test}.ll")

def read_remedies(path):
    """What helps against each reason in a table of reasons: {name: words}."""
    text = (root / path).read_text()
    remedies = {}
    for name, rest in re.findall(r'^    \{"(\w+)",(.*?)\},$', text, re.M | re.S):
        # Behind the predicate, which is the last word that is no string.
        behind = re.split(r",\s*[a-z]\w*[a-z](?=,|$)", rest)
        remedies[name] = "".join(re.findall(r'"([^"]*)"', behind[-1] if len(behind) > 1 else ""))
    return remedies


def documented_remedies(text):
    """The same from the rows of a page, whose third column they are."""
    rows = re.findall(r"^\|(.*?)\| `?(.*?)`? \|(.*?)\|", text, re.M)
    found = {}
    for first, second, third in rows:
        for name in re.findall(r"`(Auto\w+)`", first) or [second]:
            found[name] = third.strip().replace("`", "")
    return found


remedies = read_remedies("plugin/policy/Obstacles.cpp")
# These say what helps for the case at hand.
sources = "".join((root / path).read_text() for path in (
    "plugin/policy/Obstacles.cpp", "plugin/automatic/AutoPass.cpp"))
for name in ("AutoTooLarge", "AutoModuleGrowth"):
    told = documented_remedies(guide).get(name, "")
    if told and all(f'"{part}"' in sources for part in told.split(", or ")):
        remedies[name] = told
    else:
        differences.append(f"what helps against {name}: documented {told}, not in the code")
told = documented_remedies(guide)
compare("what helps against", {name: told.get(name) for name in remedies}, remedies)
remedies = read_remedies("plugin/legality/Hazards.cpp")
told = documented_remedies((root / "docs" / "hazards.md").read_text())
compare("what helps against", {name: told.get(name) for name in remedies}, remedies)

# The first for a test that reads the output, the second for whoever looks why.
print("\n".join(differences), file=sys.stderr)
print("\n".join(differences + [f"{len(declared)} options, {len(registered)} passes, "
                               f"{len(obstacles)} obstacles compared"]))
sys.exit(bool(differences))
