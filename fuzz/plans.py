"""Random plans for the functions of a program, and builds that obey them.

A first build writes its plan, which names all recursive functions. Each gets a
plan of its own, drawn from the language of plans whether it can be built or
not; what cannot is refused with a warning, and nothing else may happen. That
build writes its plan too, in which parts stand that the plugin has made: the
rest of a split, copies for states. Those get plans as well, for a third build.
All of that is done twice. In some builds, what a build has written that obeyed
random plans is obeyed, too, and has to make the same program, byte by byte.

What is drawn for a function depends on the seed, its name and the place alone,
so that it is the same in a smaller program.
"""

import copy
import os
import random
import re
import time
from dataclasses import dataclass

from case import Failure
from matrix import Build

PLAN_FILE = "plans.yaml"
WRITTEN = "written.yaml"
ROUNDS = 2  # of plans, for each build that writes what there is
SHAPES = {"ring": 40, "leaves": 14, "split": 14, "states": 18, "chain": 10,
          "none": 4}
FLAGS = {"ring": ("guard", "staggered", "pass-sum", "loop-first"),
         "leaves": ("pass-sum", "loop-first"),
         "split": ("pass-sum", "loop-first")}
# How often such a word is said of a shape, and how often without `no-`: what is
# not there to be prepared is refused.
SAID = 0.35
MEANT = {"guard": 0.5, "staggered": 0.7, "pass-sum": 0.3, "loop-first": 0.3}
# What no shape is built of; a plan for such a function is tried now and then.
HOPELESS = re.compile(r"variable arguments|becomes a loop|returns twice|"
                      r"another definition|optnone")
GROWTH = "-inlinerecursion-plan-growth"
# A warning is a line, and so is a remark; both quote the name of the function.
FOLLOWED = re.compile(r"remark: .*'[^']*' rebuilt (as a leaf chain|as a \w+|"
                      r"for \d+ states?) .*, as planned")
REFUSED = re.compile(r"the plan '(\w+)[^']*' \(\S*\) that '[^']*' asks for is "
                     r"not built: (.*?)(?: \[-W|$)", re.MULTILINE)
IGNORED = re.compile(r"the plan for '[^']*' does not count: ")
OWN_SEED = re.compile(r"f\d+_(\d+)")
FIELD = re.compile(r"^(?:  - |    )?(\w+): +(.*)$")


@dataclass(frozen=True)
class Entry:
    """What a plan file says of one function."""
    module: str
    name: str
    where: str
    plan: str
    is_hopeless: bool = False

    def key(self):
        return self.module, self.name, self.where


def unquoted(text):
    return text[1:-1].replace("''", "'") if text[:1] == "'" else text


def read_plans(path):
    """The entries of a file that the plugin has written; none if it has not,
    as no function of the program calls itself."""
    if not os.path.exists(path):
        return []
    entries, module, fields = [], "", {}

    def finish():
        if "name" in fields:
            entries.append(Entry(module, fields["name"],
                                 fields.get("where", "early"),
                                 fields["plan"],
                                 bool(HOPELESS.search(fields["reason"]))))

    with open(path) as file:
        for line in file:
            match = FIELD.match(line.rstrip("\n"))
            if not match or line.startswith("  - "):
                finish()
                fields = {}
            if match and match.group(1) == "module":
                module = unquoted(match.group(2))
            elif match:
                fields[match.group(1)] = unquoted(match.group(2))
    finish()
    return entries


def print_plans(entries):
    text = []
    for module in sorted({entry.module for entry in entries}):
        text += ["---", "version: 1"]
        if module:
            text.append(f"module: '{module}'")
        text.append("functions:")
        for entry in entries:
            if entry.module == module:
                text += [f"  - name: '{entry.name}'",
                         f"    plan: {entry.plan}",
                         f"    where: {entry.where}"]
    return "\n".join([*text, "..." if text else "", ""])


def draw_copies(rng, first=2):
    return rng.randint(9, 20) if rng.random() < 0.15 else rng.randint(first, 8)


def draw_plan(rng, found=None):
    """Any plan; now and then the one that the policy has found, or of its shape
    at least, as few functions have constant depths and leaves."""
    if found and rng.random() < 0.1:
        return found
    shape = rng.choices(list(SHAPES), list(SHAPES.values()))[0]
    if found and re.match(r"(chain|leaves)(?!.* rules)", found) and \
            rng.random() < 0.4:
        shape = found.split(" ")[0]
    words = [shape]
    if shape == "ring" and rng.random() < 0.85:
        words.append(f"copies={draw_copies(rng)}")
    if shape == "chain" and rng.random() < 0.2:
        words.append(f"copies={draw_copies(rng, 1)}")
    if shape == "leaves" and rng.random() < 0.5:
        levels = {draw_copies(rng) for _ in range(rng.choice((1, 1, 2, 3)))}
        words.append("levels=" + ",".join(
            str(level) for level in sorted(levels, reverse=True)))
    if shape == "states" and rng.random() < 0.3:
        some = sorted(rng.sample(range(1, 5), rng.choice((1, 1, 2, 3))))
        words.append("arguments=" + ",".join(map(str, some)))
    for flag in FLAGS.get(shape, ()):
        if rng.random() < SAID:
            words.append(flag if rng.random() < MEANT[flag] else f"no-{flag}")
    return " ".join(words)


def make_simpler(entry):
    """Versions of an entry with one word less."""
    words = entry.plan.split(" ")
    for i in range(1, len(words)):
        plan = " ".join(words[:i] + words[i + 1:])
        yield Entry(entry.module, entry.name, entry.where, plan)


def reduce_entries(entries, fails, seconds):
    """The entries that are needed for a failure, with as few words as are; or
    those that are left after so long."""
    deadline = time.monotonic() + seconds

    def still_fails(fewer):
        return time.monotonic() < deadline and fails(fewer)

    entries = list(entries)
    size = len(entries)
    while size:
        for first in reversed(range(0, len(entries), size)):
            fewer = entries[:first] + entries[first + size:]
            if still_fails(fewer):
                entries = fewer
        size //= 2
    i = 0
    while i < len(entries):
        for simpler in make_simpler(entries[i]):
            fewer = [*entries[:i], simpler, *entries[i + 1:]]
            if still_fails(fewer):
                entries = fewer
                break
        else:
            i += 1
    return entries


class PlannedBuild(Build):
    """A build with random plans, or rather a few of them; once the plans are
    drawn, one."""

    def __init__(self, plugin, kind, rng, case, programs):
        super().__init__(plugin, kind, rng, case, programs)
        self.seed = rng.random()
        self.share = rng.choice((0.4, 0.9, 1))  # of functions with a plan
        self.growth = f"{GROWTH}={rng.choice((1000, 4000, 20000))}"
        # LLVM emits probes in the order of addresses.
        self.repeats = rng.random() < 0.3 and \
            "-fpseudo-probe-for-profiling" not in self.extra
        self.entries = None
        self.now = []  # options of the build that is being made

    def compile_options(self):
        return [*super().compile_options(), *self.link_options()]

    def link_options(self):
        return [self.growth, *self.now]

    def warnings(self):
        return ["-Wno-everything", "-Wpass-failed", "-Wbackend-plugin"]

    def with_entries(self, entries):
        other = copy.copy(self)
        other.entries = entries
        return other

    def narrowed(self, seeds):
        def is_meant(entry):
            own = OWN_SEED.search(entry.name)
            return not own or int(own.group(1)) in seeds

        return self.with_entries(
            self.entries and [e for e in self.entries if is_meant(e)])

    def reduced(self, still_fails, seconds):
        if self.entries is None:  # it fails before there are any
            return self
        return self.with_entries(reduce_entries(
            self.entries,
            lambda entries: still_fails(self.with_entries(entries)), seconds))

    def saved_files(self):
        return {} if self.entries is None else \
            {PLAN_FILE: print_plans(self.entries)}

    def draw(self, written, number):
        """Plans for some of the functions in a file that the plugin wrote,
        and for the looks that they are not in; others for each number."""
        wanted, hopeless = {}, set()
        for entry in written:
            if entry.is_hopeless:
                hopeless.add((entry.module, entry.name))
            wanted.setdefault(entry.key(), entry.plan)
            late = "link-late" if entry.where.startswith("link") else "late"
            if self.kind != "pipeline":  # which has no inliner
                wanted.setdefault((entry.module, entry.name, late), None)
            if self.lto and entry.where == "early":
                for where in ("link", "link-late"):
                    wanted.setdefault(("", entry.name, where), None)
        entries = []
        for key, plan in sorted(wanted.items()):
            rng = random.Random(f"{self.seed} {number} {key}")
            share = self.share * (1 if plan else 0.3) * \
                (0.1 if key[:2] in hopeless else 1)
            if rng.random() > share:
                continue
            entries.append(Entry(*key, draw_plan(rng, plan)))
        return entries

    def check(self, case, wanted, counts=None):
        if self.entries is not None:
            self.obey(case, wanted, counts, writes=self.repeats)
            return
        self.now = [f"-inlinerecursion-write-plan={WRITTEN}"]
        case.compile(self.commands(case, "with"), self.plugin.limited)
        written = os.path.join(case.directory, WRITTEN)
        functions = read_plans(written)
        if not functions:
            return
        known = {entry.key() for entry in functions}
        for number in range(ROUNDS):
            self.entries = self.draw(functions, number)
            if os.path.exists(written):
                os.remove(written)
            self.obey(case, wanted, counts, writes=True)
            parts = self.draw([entry for entry in read_plans(written)
                               if entry.key() not in known], number)
            known_now = {entry.key() for entry in self.entries}
            parts = [part for part in parts if part.key() not in known_now]
            if parts:
                self.entries += parts
                self.obey(case, wanted, counts, writes=False)

    def obey(self, case, wanted, counts, writes):
        with open(os.path.join(case.directory, PLAN_FILE), "w") as file:
            file.write(print_plans(self.entries))
        self.now = [f"-inlinerecursion-plan={PLAN_FILE}"]
        if not writes:
            super().check(case, wanted, counts)
            return
        self.now.append(f"-inlinerecursion-write-plan={WRITTEN}")
        super().check(case, wanted, counts)
        if self.repeats:
            self.repeat(case, counts)

    def repeat(self, case, counts):
        """Has the plan obeyed that has just been written."""
        if not os.path.exists(os.path.join(case.directory, WRITTEN)):
            return
        first = self.commands(case, "with")
        self.now = [f"-inlinerecursion-plan={WRITTEN}"]
        again = self.commands(case, "again")
        case.compile(again, self.plugin.limited)
        programs = []
        for name in ("with", "again"):
            with open(os.path.join(case.directory, name), "rb") as file:
                programs.append(file.read())
        if programs[0] != programs[1]:
            raise Failure("round-trip", [*first, *again, ["cmp", "with", "again"]],
                          "the plan that was written makes another program")
        if counts is not None:
            counts["repeated"] += 1

    def count(self, case, err, counts):
        super().count(case, err, counts)
        counts["plans"] += len(self.entries)
        for match in FOLLOWED.finditer(err):
            words = match.group(1).split()
            shape = "leaves" if "leaf" in words else \
                "states" if words[0] == "for" else words[-1]
            counts["followed"] += 1
            counts[f"followed {shape}"] += 1
        for shape, reason in REFUSED.findall(err):
            counts["refused"] += 1
            counts[f"refused {shape}"] += 1
            reason = re.sub(r"'[^']*'", "'...'", reason)
            counts["because " + re.sub(r"\d+", "N", reason)] += 1
        counts["ignored"] += len(IGNORED.findall(err))


def closing_words(counts):
    """For the line of counts."""
    def by_shape(what):
        return " ".join(f"{shape}:{counts[f'{what} {shape}']}"
                        for shape in SHAPES if shape != "none")
    return (f"{counts['plans']} plans ({counts['followed']} followed "
            f"({by_shape('followed')}), {counts['refused']} refused "
            f"({by_shape('refused')}), {counts['ignored']} not counted), "
            f"{counts['repeated']} repeated as written, ")


def list_reasons(counts):
    """Why plans were refused, and how often."""
    reasons = [(number, what) for what, number in counts.items()
               if what.startswith("because ")]
    return [f"{number:7} refused {what}" for number, what
            in sorted(reasons, reverse=True)]


def missing(counts):
    """Shapes that no plan led to; and refusals, if there are none."""
    return [*(f"a planned {shape}" for shape in SHAPES
              if shape != "none" and not counts[f"followed {shape}"]),
            *(["a refused plan"] if not counts["refused"] else [])]
