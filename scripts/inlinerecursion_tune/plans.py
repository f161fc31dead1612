"""Plan files: what is to become, or has become, of each function.

A file is a sequence of YAML documents, one for each module:

    ---
    version:         1
    module:          src/tree.c
    functions:
      - name:          walk
        plan:          ring copies=3 guard
    ...

What is tuned as one is a *target*: an inline function of C++ is in many modules, and has
one name in all of them, so its entries get the same plan. A plan for some targets, as
the search has it, is a dictionary {key of the target: text}; functions that it does not
name are decided by the plugin.
"""

import os
import re
from dataclasses import dataclass, field

import yaml

from inlinerecursion_tune.errors import TuneError

LOADER = getattr(yaml, "CBaseLoader", yaml.BaseLoader)
# In the names that C++ makes: something that each file may have for itself.
LOCAL = re.compile(r"^_ZL|^_ZZ|_GLOBAL__N_|\$_")
KEYS = ("name", "plan", "file", "where", "body", "reason")


@dataclass(frozen=True)
class Entry:
    name: str
    plan: str
    module: str = ""
    file: str = ""
    where: str = ""
    body: str = ""
    reason: str = ""


@dataclass
class Target:
    key: str
    entries: list = field(default_factory=list)
    # As a reader knows the function.
    title: str = ""
    heat: float = None

    @property
    def name(self):
        return self.entries[0].name

    @property
    def place(self):
        """The file, where it is only one."""
        files = {entry.file or entry.module for entry in self.entries}
        return files.pop() if len(files) == 1 else f"{len(files)} files"

    @property
    def plan(self):
        return self.entries[0].plan

    @property
    def reason(self):
        return self.entries[0].reason


def read_entries(document):
    for given in document.get("functions") or []:
        values = {key: given[key] for key in KEYS if key in given}
        yield Entry(module=document.get("module", ""), **values)


def read_plan(path):
    """All entries of a file; a file that nobody has written has none."""
    try:
        text = path.read_text(errors="surrogateescape")
    except FileNotFoundError:
        return []
    try:
        documents = [document for document in yaml.load_all(text, Loader=LOADER)
                     if document]
        return [entry for document in documents for entry in read_entries(document)]
    except (yaml.YAMLError, AttributeError, TypeError) as error:
        raise TuneError(f"{path}: the plugin's plan cannot be understood: {error}"
                        ) from None


def make_key(entry):
    """What two entries have in common if they are about the same function."""
    shared = entry.name.startswith("_Z") and not LOCAL.search(entry.name)
    place = "" if shared else os.path.normpath(entry.file or entry.module or ".")
    late = "" if entry.where in ("", "early") else f" {entry.where}"
    return f"{entry.name} {place}{late}".rstrip()


def make_targets(entries):
    """[Target] in the order of the entries."""
    targets = {}
    for entry in entries:
        target = targets.setdefault(make_key(entry), Target(make_key(entry)))
        target.entries.append(entry)
    return list(targets.values())


def find_done(entries):
    """{key: (plan, reason)} of what was made in a build."""
    return {target.key: (target.plan, target.reason) for target in make_targets(entries)}


def is_done(asked, done):
    """Did the plugin do what it was asked to? It may have decided what is left open."""
    return not (set(asked.split()) - set(done.split()))


def quote(text):
    return "'" + text.replace("'", "''").replace("\n", " ") + "'"


def write_module(module, entries):
    lines = ["---", "version:         1"]
    if module:
        lines.append(f"module:          {quote(module)}")
    lines.append("functions:")
    for entry in entries:
        given = [(key, getattr(entry, key)) for key in KEYS if getattr(entry, key)]
        for index, (key, value) in enumerate(given):
            # A plan has no character that YAML reads otherwise; the hash may be a number.
            shown = value if key in ("plan", "where") else quote(value)
            lines.append(("  - " if index == 0 else "    ") + f"{key + ':':<14} {shown}")
    return "\n".join([*lines, "..."]) + "\n"


def format_plan(chosen, targets, reasons=None):
    """The plan file for {key: text}; reasons, for readers, by key."""
    modules = {}
    for target in targets:
        if target.key not in chosen:
            continue
        for old in target.entries:
            reason = (reasons or {}).get(target.key, "")
            modules.setdefault(old.module, []).append(
                Entry(old.name, chosen[target.key], old.module, old.file, old.where,
                      old.body, reason))
    return "".join(
        write_module(module, sorted(modules[module], key=lambda each: (
            each.name, each.file, each.where))) for module in sorted(modules))
