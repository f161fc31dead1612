"""How hot each recursive function is.

By the counters of clang's front end (-fprofile-instr-generate), which know every function
as the source has it, inlined or not; or by samples of `perf record`, where the instrumented
build or its run fails. Heat is the share of all counts or samples, from 0 to 1.
"""

import re
import shutil
import subprocess

from inlinerecursion_tune.build import PROFILED
from inlinerecursion_tune.errors import Differs, TuneError

WAYS = ("auto", "profile", "perf", "none")
# A function below that share cannot change the time by more than a plan has to.
LEAST_HEAT = 0.005
# What the plugin appends to the name of what it takes apart.
PARTS = re.compile(r"\.recurse\..*$")
SUFFIXES = re.compile(r"\.(constprop|isra|part|cold|llvm|specialized|recurse)\..*$")


def parse_profile(text):
    """{name: sum of its counters} of a profile as text."""
    counts = {}
    for block in re.split(r"\n\s*\n", text):
        lines = [line.strip() for line in block.splitlines()]
        lines = [line for line in lines
                 if line and not line.startswith(("#", ":"))]
        # Name, hash, how many counters, and these; values of targets may stand behind.
        if len(lines) < 4 or not lines[2].isdigit():
            continue
        numbers = lines[3:3 + int(lines[2])]
        counts[lines[0]] = counts.get(lines[0], 0) + sum(map(int, numbers))
    return counts


def parse_samples(text):
    """{symbol: samples} of `perf report -F sample,symbol`."""
    counts = {}
    for line in text.splitlines():
        if match := re.fullmatch(r"\s*(\d+)\s+\[.\]\s+(\S+)\s*", line):
            name = SUFFIXES.sub("", match[2])
            counts[name] = counts.get(name, 0) + int(match[1])
    return counts


def is_same_place(one, other):
    """Do two paths agree in as many last components as the shorter has?"""
    pairs = list(zip(reversed(one.split("/")), reversed(other.split("/"))))
    return all(a == b for a, b in pairs if a not in (".", ".."))


def count_target(target, counts):
    """What all counts that can be meant by the target's entries add up to."""
    names = {PARTS.sub("", entry.name) for entry in target.entries}
    places = {entry.file or entry.module for entry in target.entries}
    total = 0
    for counted, count in counts.items():
        place, _, name = counted.rpartition(":")
        is_here = not place or any(not each or is_same_place(place, each)
                                   for each in places)
        if name in names and is_here:
            total += count
    return total


def profile(builder, runner, tools):
    """Counts by the front end's counters; raises TuneError if there are none."""
    profdata = tools.find("llvm-profdata")
    if not profdata:
        raise TuneError(f"{tools.llvm} has no llvm-profdata")
    place = builder.workspace.place
    try:
        builder.make_tree(PROFILED, {}, "the instrumented build")
        (place / "profile").mkdir()
        run = runner.run({"LLVM_PROFILE_FILE": f"{place}/profile/%p-%m.profraw"})
        runner.check_status(run, "the instrumented build")
        raw = sorted((place / "profile").glob("*.profraw"))
        if not raw:
            raise TuneError("the instrumented run has left no counts")
        merged = subprocess.run([profdata, "merge", "--text", *raw, "-o", "-"],
                                capture_output=True, text=True, errors="surrogateescape")
        if merged.returncode:
            raise TuneError(f"llvm-profdata: {merged.stderr.strip()}")
    except Differs as error:
        raise TuneError(f"the instrumented run comes to {error}") from None
    finally:
        builder.workspace.drop(PROFILED)
    return parse_profile(merged.stdout)


def sample(builder, runner, variant):
    """Counts by perf's samples of a build; raises TuneError if there are none."""
    if not shutil.which("perf"):
        raise TuneError("there is no perf")
    builder.activate(variant)
    data = builder.workspace.place / "perf.data"
    # A clock is there in virtual machines, too, where no counter of cycles is.
    record = ["perf", "record", "-q", "-e", "cpu-clock:u", "-o", str(data), "--",
              "/bin/sh", "-c", runner.options.command]
    try:
        done = subprocess.run(record, cwd=builder.workspace.tree,
                              stdin=subprocess.DEVNULL, capture_output=True, text=True,
                              errors="replace")
        report = subprocess.run(
            ["perf", "report", "-i", str(data), "--stdio", "--no-children", "-q",
             "--no-demangle", "-F", "sample,symbol"], capture_output=True, text=True,
            errors="surrogateescape")
    except OSError as error:
        raise TuneError(f"perf: {error.strerror}") from None
    counts = parse_samples(report.stdout)
    if not counts:
        last = (done.stderr.strip() or report.stderr.strip() or "no samples").splitlines()
        raise TuneError(f"perf: {last[-1]}")
    return counts


def find_counts(way, builder, runner, tools, variant):
    """(counts, what they are), and lines for the user about what did not work."""
    told = []
    if way in ("auto", "profile"):
        try:
            return profile(builder, runner, tools), "profile", told
        except TuneError as error:
            told.append(f"no profile: {error}")
    if way in ("auto", "perf"):
        try:
            return sample(builder, runner, variant), "perf", told
        except TuneError as error:
            told.append(f"no samples: {error}")
    return {}, "none", told


def rank(targets, counts):
    """The targets that matter, the hottest first; all of them where nothing is known."""
    if not counts:
        return list(targets)
    whole = sum(counts.values())
    for target in targets:
        target.heat = count_target(target, counts) / whole
    hot = [target for target in targets if target.heat >= LEAST_HEAT]
    # Two functions that are as hot as each other keep their order.
    return sorted(hot, key=lambda target: -target.heat)
