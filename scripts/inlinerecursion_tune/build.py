"""Builds: the plain one, the plugin's default, and one for each plan that is tried.

What is kept about a build: its plan, what the plugin made of it, the hash of the programs
that came out, and why it takes no part any more, if it does not. Two builds whose programs
are the same bytes are one, and are measured once.
"""

import hashlib
import os
import re

from inlinerecursion_tune import compilers, plans
from inlinerecursion_tune.errors import TuneError
from inlinerecursion_tune.process import run_shell
from inlinerecursion_tune.workspace import hash_file

PLAIN = "plain"
DEFAULT = "default"
PROFILED = "profiled"
SHOWN_LINES = 15
# What the plugin warns of when it does not follow a plan.
REFUSED = re.compile(r"asks for is not built: (.*?)(?: \[-W.*)?$", re.M)


def name_variant(plan):
    """The same name for the same plan; the plugin's default has an empty one."""
    if not plan:
        return DEFAULT
    text = "\n".join(f"{key}: {plan[key]}" for key in sorted(plan))
    return hashlib.blake2b(text.encode(errors="surrogateescape"),
                           digest_size=8).hexdigest()


def show_end(path, lines=SHOWN_LINES):
    """The last lines of a log, for a message."""
    text = path.read_text(errors="replace").splitlines()
    return "".join(f"\n  {line}" for line in text[-lines:])


class Builder:
    def __init__(self, workspace, tools, command, state):
        self.workspace = workspace
        self.tools = tools
        self.command = command
        self.state = state
        self.targets = []
        self.scripts = {}

    def prepare(self):
        self.scripts = compilers.write_compilers(self.workspace, self.tools)
        for name in compilers.NAMES:
            if f"{{{name}}}" in self.command and name not in self.scripts:
                raise TuneError(f"{{{name}}}: {self.tools.llvm} has no"
                                f" {compilers.NAMES[name][0]}", 2)

    def run_command(self):
        """The user's command at the place. The status."""
        command = self.command
        for name, path in self.scripts.items():
            command = command.replace(f"{{{name}}}", str(path))
        environment = dict(os.environ, CCACHE_DISABLE="1")
        # __DATE__ and __TIME__ must not tell builds apart.
        environment.setdefault("SOURCE_DATE_EPOCH", "1600000000")
        with open(self.workspace.place / "build.log", "wb") as log:
            return run_shell(command, lambda process: process.wait(), stdout=log,
                             stderr=log, cwd=self.workspace.tree, env=environment)

    def make_tree(self, variant, plan, what):
        """Builds at the place; raises TuneError if that fails."""
        place = self.workspace.place
        self.workspace.begin()
        compilers.write_configuration(
            self.workspace, self.tools, with_plugin=variant not in (PLAIN, PROFILED),
            instrumented=variant == PROFILED)
        (place / "plan.yaml").write_text(plans.format_plan(plan, self.targets),
                                         errors="surrogateescape")
        self.note_concerned(variant, plan)
        status = self.run_command()
        if status:
            raise TuneError(f"{what} fails with status {status}; it ends with"
                            + show_end(place / "build.log"))
        if not (place / "calls").exists():
            raise TuneError(
                "the build command has called no compiler of {cc}, {cxx} and {fc}: hand"
                " these on, and have everything built anew, as with"
                " 'make -B CC={cc} CXX={cxx}'")
        self.workspace.finish(variant)

    def note_concerned(self, variant, plan):
        """Objects are shared by builds with the plugin, if it is known what is whose."""
        if variant in (PLAIN, PROFILED):
            return
        entries = [entry for target in self.targets if target.key in plan
                   for entry in target.entries]
        if all(entry.module for entry in entries):
            compilers.write_concerned(
                self.workspace, [entry.module for entry in entries]
                + [entry.file for entry in entries if entry.file], variant == DEFAULT)

    def hash_programs(self, variant):
        """What tells builds apart; the name where there is no program."""
        tree = self.workspace.tree
        programs = [f"{path.relative_to(tree)} {hash_file(path)}"
                    for path in self.workspace.find_built()]
        if not programs:
            return variant
        return hashlib.blake2b("\n".join(programs).encode(errors="surrogateescape"),
                               digest_size=16).hexdigest()

    def make(self, variant, plan=None, what=None):
        """What is known of a build, which is made if nothing is."""
        if known := self.state.variants.get(variant):
            return known
        plan = plan or {}
        self.make_tree(variant, plan, what or f"the build of {variant}")
        entries = plans.read_plan(self.workspace.place / "written.yaml")
        done = plans.find_done(entries)
        known = {"plan": plan, "programs": self.hash_programs(variant), "problem": "",
                 "done": {key: done[key] for key in plan if key in done}}
        if refused := REFUSED.findall((self.workspace.place / "build.log").read_text(
                errors="replace")):
            known["refused"] = refused[0]
        if variant == DEFAULT:
            known["entries"] = [vars(entry) for entry in entries]
        self.state.variants[variant] = known
        self.state.save()
        return known

    def make_or_note(self, variant, plan):
        """The same for a plan that is only tried: that it does not build is noted."""
        try:
            return self.make(variant, plan)
        except TuneError as error:
            known = {"plan": plan, "programs": variant, "problem": str(error).strip(),
                     "done": {}, "fails": True}
            self.state.variants[variant] = known
            self.state.save()
            return known

    def find_same(self, variant):
        """The build that was made first of those with the same programs."""
        programs = self.state.variants[variant]["programs"]
        return next(name for name, known in self.state.variants.items()
                    if known["programs"] == programs)

    def activate(self, variant):
        """Has a build at the place, made anew if it has been dropped."""
        if not self.workspace.activate(variant):
            self.make_tree(variant, self.state.variants[variant]["plan"],
                           f"building {variant} once more")
